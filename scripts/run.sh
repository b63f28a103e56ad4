#!/usr/bin/env bash
# Installs what is missing, builds Pomvar and runs it with its own runtime server.
# With no display it runs on a virtual one (Xvfb with a tray host), opens the panel from the
# tray icon and saves a screenshot of it to build/release/pomvar-panel.png.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release
cmake --build --preset release

bin=build/release/bin/pomvar
server=build/release/libexec/pomvar/pomvarsrv
for program in "$bin" "$server"; do
    if [ ! -x "$program" ]; then
        echo "run: $program is not built yet: this checkout does not have it." >&2
        exit 1
    fi
done

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$bin" "$@"
fi
exec scripts/headless-run.sh "$bin" build/release/pomvar-panel.png "$@"
