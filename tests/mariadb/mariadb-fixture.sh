#!/usr/bin/env bash
# A throwaway MariaDB server on loopback for the database tests (CTest fixture "MariaDB").
#
#   mariadb-fixture.sh start DIR   creates a fresh data directory under DIR, starts mariadbd
#                                  on 127.0.0.1 at a free port (33306 upwards, or $KV_MARIADB_PORT)
#                                  and on the socket DIR/mysqld.sock, creates the database
#                                  kvkalivo_test and the user kvkalivo, and writes DIR/mariadb.info
#   mariadb-fixture.sh stop DIR    stops that server and removes its data (logs stay)
#
# Faults, for the tests that start a server of their own:
#   mariadb-fixture.sh pause DIR   stops the server with SIGSTOP (it accepts connections, answers nothing)
#   mariadb-fixture.sh resume DIR  continues it with SIGCONT
#   mariadb-fixture.sh kill DIR    kills it with SIGKILL
#   mariadb-fixture.sh restart DIR starts it again on its port and data directory
#
# mariadb.info holds key=value lines: host, port, socket, user, password, database,
# general_log (every statement the server received), error_log, connection_string.
set -euo pipefail

command=${1:-}
dir=${2:-}
[ -n "$command" ] && [ -n "$dir" ] || { echo "usage: $0 start|stop|pause|resume|kill|restart DIR" >&2; exit 2; }
mkdir -p "$dir"
dir=$(cd "$dir" && pwd)
info="$dir/mariadb.info"
datadir="$dir/data"
pidfile="$dir/mariadbd.pid"

find_program() {
  local name
  for name in "$@"; do
    if command -v "$name" >/dev/null 2>&1; then command -v "$name"; return; fi
    if [ -x "/usr/sbin/$name" ]; then echo "/usr/sbin/$name"; return; fi
  done
  echo "mariadb-fixture: none of $* found; run scripts/install-deps.sh" >&2
  exit 1
}

stop_server() {
  local pid
  # The server's own pid file is exact; ours is what the launch started (setsid may fork).
  if [ -s "$dir/mariadbd.server.pid" ]; then pid=$(cat "$dir/mariadbd.server.pid")
  elif [ -s "$pidfile" ]; then pid=$(cat "$pidfile")
  else return 0; fi
  if kill -0 "$pid" 2>/dev/null; then
    kill -CONT "$pid" 2>/dev/null || true   # a paused server could not stop
    kill -TERM "$pid"
    for _ in $(seq 1 300); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
    if kill -0 "$pid" 2>/dev/null; then
      echo "mariadb-fixture: server $pid did not stop, killing it" >&2
      kill -KILL "$pid" 2>/dev/null || true
    fi
  fi
  rm -f "$pidfile" "$dir/mariadbd.server.pid"
}

port_in_use() {
  (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

# Starts mariadbd on port $1; returns non-zero when it exits before answering.
launch() {
  local port=$1 pid
  rm -f "$socket" "$dir/mariadbd.server.pid"
  : >"$dir/error.log"
  setsid "$mariadbd" --no-defaults $user_option --datadir="$datadir" --socket="$socket" \
    --port="$port" --bind-address=127.0.0.1 --skip-name-resolve --pid-file="$dir/mariadbd.server.pid" \
    --log-error="$dir/error.log" --general-log=1 --general-log-file="$dir/general.log" \
    --character-set-server=utf8mb4 --collation-server=utf8mb4_unicode_ci \
    --innodb-buffer-pool-size=32M --innodb-log-file-size=8M --skip-log-bin \
    </dev/null >"$dir/mariadbd.out" 2>&1 &
  pid=$!
  echo "$pid" >"$pidfile"
  for _ in $(seq 1 600); do
    if ! kill -0 "$pid" 2>/dev/null; then rm -f "$pidfile"; return 1; fi
    if "$admin" --no-defaults --socket="$socket" --user=root --connect-timeout=2 ping >/dev/null 2>&1; then
      return 0
    fi
    sleep 0.1
  done
  echo "mariadb-fixture: server did not answer within 60 s" >&2
  stop_server
  return 1
}

find_programs() {
  mariadbd=$(find_program mariadbd mysqld)
  admin=$(find_program mariadb-admin mysqladmin)
  user_option=""
  [ "$(id -u)" -ne 0 ] || user_option="--user=root"
}

start() {
  stop_server
  rm -rf "$datadir" "$info"
  mkdir -p "$datadir"
  install_db=$(find_program mariadb-install-db mysql_install_db)
  client=$(find_program mariadb mysql)
  find_programs

  # A Unix socket path must stay below 108 bytes.
  socket="$dir/mysqld.sock"
  if [ ${#socket} -gt 100 ]; then socket="$(mktemp -d /tmp/kvmariadb.XXXXXX)/mysqld.sock"; fi

  "$install_db" --no-defaults $user_option --auth-root-authentication-method=normal \
    --datadir="$datadir" --skip-test-db >"$dir/install.log" 2>&1 \
    || { cat "$dir/install.log" >&2; echo "mariadb-fixture: mariadb-install-db failed" >&2; exit 1; }

  local first=${KV_MARIADB_PORT:-33306} port started=""
  [[ "$first" =~ ^[0-9]+$ ]] || { echo "mariadb-fixture: KV_MARIADB_PORT '$first' is no port number" >&2; exit 1; }
  for port in $(seq "$first" $((first + 99))); do
    port_in_use "$port" && continue
    if launch "$port"; then started=$port; break; fi
    grep -qi "address already in use\|bind on tcp/ip port" "$dir/error.log" || {
      cat "$dir/error.log" >&2; echo "mariadb-fixture: mariadbd failed to start" >&2; exit 1; }
  done
  [ -n "$started" ] || { echo "mariadb-fixture: no free port from $first" >&2; exit 1; }

  local password
  password="kv-$(head -c 9 /dev/urandom | od -An -tx1 | tr -d ' \n')"
  "$client" --no-defaults --socket="$socket" --user=root <<SQL
CREATE DATABASE kvkalivo_test CHARACTER SET utf8mb4 COLLATE utf8mb4_unicode_ci;
CREATE USER 'kvkalivo'@'127.0.0.1' IDENTIFIED BY '$password';
CREATE USER 'kvkalivo'@'localhost' IDENTIFIED BY '$password';
GRANT ALL PRIVILEGES ON kvkalivo_test.* TO 'kvkalivo'@'127.0.0.1';
GRANT ALL PRIVILEGES ON kvkalivo_test.* TO 'kvkalivo'@'localhost';
SQL

  cat >"$info.tmp" <<INFO
host=127.0.0.1
port=$started
socket=$socket
user=kvkalivo
password=$password
database=kvkalivo_test
general_log=$dir/general.log
error_log=$dir/error.log
connection_string=Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=$started;Database=kvkalivo_test;Uid=kvkalivo;Pwd=$password
INFO
  mv "$info.tmp" "$info"
  echo "mariadb-fixture: MariaDB $("$mariadbd" --version | awk '{print $3}') on 127.0.0.1:$started, info in $info"
}

stop() {
  local socket=""
  [ -f "$info" ] && socket=$(sed -n 's/^socket=//p' "$info")
  stop_server
  case "$socket" in /tmp/kvmariadb.*/mysqld.sock) rm -rf "$(dirname "$socket")" ;; esac
  rm -rf "$datadir" "$info"
  echo "mariadb-fixture: stopped; logs stay in $dir"
}

info_value() {
  [ -f "$info" ] || { echo "mariadb-fixture: no server in $dir" >&2; exit 1; }
  sed -n "s/^$1=//p" "$info"
}

signal_server() {
  local pid
  pid=$(cat "$dir/mariadbd.server.pid" 2>/dev/null) || { echo "mariadb-fixture: no server pid in $dir" >&2; exit 1; }
  kill "-$1" "$pid"
  if [ "$1" = KILL ]; then
    for _ in $(seq 1 100); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
    rm -f "$pidfile" "$dir/mariadbd.server.pid"
  fi
}

restart() {
  local port
  port=$(info_value port)
  socket=$(info_value socket)
  find_programs
  launch "$port" || { cat "$dir/error.log" >&2; echo "mariadb-fixture: restart on port $port failed" >&2; exit 1; }
  echo "mariadb-fixture: restarted on 127.0.0.1:$port"
}

case "$command" in
  start) start ;;
  stop) stop ;;
  pause) signal_server STOP ;;
  resume) signal_server CONT ;;
  kill) signal_server KILL ;;
  restart) restart ;;
  *) echo "usage: $0 start|stop|pause|resume|kill|restart DIR" >&2; exit 2 ;;
esac
