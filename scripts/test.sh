#!/usr/bin/env bash
# The whole test suite: installs the packages, builds, and runs every test with CTest
# (widgets offscreen). Exits non-zero when anything fails.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh
ctest --preset default "$@"
