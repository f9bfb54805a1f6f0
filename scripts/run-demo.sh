#!/usr/bin/env bash
# The main job: builds kvKalivo and opens the demo host application on its SQLite database.
# Without a display it says so and writes a screenshot of the demo instead.
# Extra arguments go to the demo (see: build/demo/kvkalivo-demo --help).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh
demo=build/demo/kvkalivo-demo
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  exec "$demo" "$@"
fi
screenshot=${KVKALIVO_SCREENSHOT:-build/demo-screenshot.png}
echo "run-demo: no display (DISPLAY and WAYLAND_DISPLAY are unset);"
echo "run-demo: rendering the demo offscreen into $screenshot instead."
QT_QPA_PLATFORM=offscreen "$demo" --screenshot "$screenshot" "$@"
echo "run-demo: wrote $screenshot"
