#!/usr/bin/env bash
# Configures and builds kvKalivo with the default preset (build/). Installs the Debian
# packages first, so a fresh Debian 12 machine needs nothing else.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --parallel "$(nproc)"
