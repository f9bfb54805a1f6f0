#!/usr/bin/env bash
# The whole test suite once more, built with clang under AddressSanitizer and
# UndefinedBehaviorSanitizer (the preset asan, build-asan/): any sanitizer report fails the
# test it happens in. Leaks inside Qt are suppressed one by one in
# tests/sanitizers/lsan-qt.supp. Exits non-zero when anything fails.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset asan >/dev/null
cmake --build --preset asan --parallel "$(nproc)"
ctest --preset asan "$@"
