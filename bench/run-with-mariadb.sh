#!/usr/bin/env bash
# Runs bench_grid with a throwaway MariaDB server on loopback beside the SQLite tables:
#
#   bench/run-with-mariadb.sh BUILD_DIR [bench_grid options...]
#
# e.g. bench/run-with-mariadb.sh build --sizes 2000,100000,1000000 --dir /tmp/benchdb
# The server is the test suite's (tests/mariadb/mariadb-fixture.sh) with its statement log off,
# and is stopped again at the end. The MariaDB table holds 100,000 rows unless
# --mariadb-sizes says otherwise; building it takes a minute or two.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=${1:?usage: $0 BUILD_DIR [bench_grid options...]}
shift
fixture="$here/../tests/mariadb/mariadb-fixture.sh"
server=$(mktemp -d /tmp/kvbench-mariadb.XXXXXX)
trap '"$fixture" stop "$server" >/dev/null; rm -rf "$server"' EXIT

"$fixture" start "$server"
socket=$(sed -n 's/^socket=//p' "$server/mariadb.info")
client=$(command -v mariadb || command -v mysql)
"$client" --no-defaults --socket="$socket" --user=root -e "SET GLOBAL general_log = 0"
connection=$(sed -n 's/^connection_string=//p' "$server/mariadb.info")

QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} "$build/bench/bench_grid" --mariadb "$connection" "$@"
