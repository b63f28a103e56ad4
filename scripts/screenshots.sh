#!/usr/bin/env bash
# Takes the documentation's screenshots of the panel on a virtual display.
# Usage: scripts/screenshots.sh <panel_screenshots binary> <output folder>
set -euo pipefail

if [ $# -ne 2 ]; then
    echo "usage: $0 <panel_screenshots binary> <output folder>" >&2
    exit 2
fi
bin=$1
out=$2
mkdir -p "$out"

work=$(mktemp -d)
xvfb=""
cleanup() {
    if [ -n "$xvfb" ]; then
        kill "$xvfb" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

# A virtual display on a free number.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb=$!
for ((n = 0; n < 100; n++)); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
[ -s "$work/display" ] || { echo "screenshots: Xvfb did not start" >&2; exit 1; }

DISPLAY=":$(head -n 1 "$work/display")" QT_QPA_PLATFORM=xcb "$bin" "$out"
