#!/usr/bin/env bash
# Runs pomvar on a virtual display with a tray host, opens the panel from the tray icon, saves
# a screenshot of it, then quits pomvar (and with it its runtime server) from the control menu.
# Usage: scripts/headless-run.sh <pomvar binary> <png path> [pomvar arguments]
set -euo pipefail

if [ $# -lt 2 ]; then
    echo "usage: $0 <pomvar binary> <png path> [arguments]" >&2
    exit 2
fi
bin=$1
png=$2
shift 2

work=$(mktemp -d)
pids=()
cleanup() {
    for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
        kill "${pids[$i]}" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanup EXIT

# Waits up to $1 tenths of a second for the command that follows to succeed.
wait_for() {
    local tries=$1
    shift
    for ((n = 0; n < tries; n++)); do
        if "$@" >/dev/null 2>&1; then
            return 0
        fi
        sleep 0.1
    done
    return 1
}

# A virtual display on a free number.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
pids+=($!)
wait_for 100 test -s "$work/display" || { echo "headless-run: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$(head -n 1 "$work/display")"

# A session bus of our own (without a StatusNotifierWatcher, so Qt docks through XEmbed).
dbus-daemon --session --fork --print-address=4 --print-pid=5 4>"$work/bus" 5>"$work/buspid"
pids+=("$(cat "$work/buspid")")
export DBUS_SESSION_BUS_ADDRESS
DBUS_SESSION_BUS_ADDRESS=$(head -n 1 "$work/bus")

trayer --edge top --align right --widthtype request --height 28 --SetDockType true \
    --transparent false --tint 0x303030 >"$work/trayer.log" 2>&1 &
pids+=($!)
wait_for 100 xdotool search --class trayer || {
    echo "headless-run: no tray host; trayer said:" >&2
    cat "$work/trayer.log" >&2
    exit 1
}

"$bin" "$@" >"$work/pomvar.log" 2>&1 &
pomvar=$!
pids+=($pomvar)

# The tray icon: pomvar's small embedded window.
icon=""
for ((n = 0; n < 150; n++)); do
    [ -z "$icon" ] || break
    for id in $(xdotool search --pid "$pomvar" 2>/dev/null); do
        read -r w h < <(xwininfo -id "$id" | awk '/Width:/{w=$2} /Height:/{h=$2} END{print w, h}')
        if [ "${w:-0}" -gt 0 ] && [ "${w:-0}" -le 64 ] && [ "${h:-0}" -le 64 ] \
            && xwininfo -id "$id" | grep -q "IsViewable"; then
            icon=$id
            break
        fi
    done
    [ -n "$icon" ] || sleep 0.1
done
if [ -z "$icon" ]; then
    echo "headless-run: the tray icon did not appear; pomvar said:" >&2
    cat "$work/pomvar.log" >&2
    exit 1
fi

# Clicks the tray icon and waits for the 360 x 494 panel; sets $panel, $px and $py.
open_panel() {
    xdotool mousemove --window "$icon" 8 8 click 1
    panel=""
    for ((n = 0; n < 100; n++)); do
        [ -z "$panel" ] || break
        for id in $(xdotool search --onlyvisible --pid "$pomvar" 2>/dev/null); do
            if xwininfo -id "$id" | grep -q "Width: 360" && xwininfo -id "$id" | grep -q "Height: 494"; then
                panel=$id
            fi
        done
        [ -n "$panel" ] || sleep 0.1
    done
    if [ -z "$panel" ]; then
        echo "headless-run: the panel did not open" >&2
        exit 1
    fi
    read -r px py < <(xwininfo -id "$panel" | awk '/Absolute upper-left X/{x=$4} /Absolute upper-left Y/{y=$4} END{print x, y}')
    sleep 0.5
}

open_panel
echo "headless-run: panel mapped at 360x494"
import -window "$panel" "$png"
echo "headless-run: panel screenshot saved to $png"

# With POMVAR_HEADLESS_CLICK_FIRST_ROW set, click the first row of the menu shown (which
# launches that app and closes the panel), then open the panel again.
if [ -n "${POMVAR_HEADLESS_CLICK_FIRST_ROW:-}" ]; then
    xdotool mousemove $((px + 200)) $((py + 22)) click 1
    wait_for 50 bash -c "! xwininfo -id $panel | grep -q IsViewable" || {
        echo "headless-run: the panel did not close after the row click" >&2
        exit 1
    }
    echo "headless-run: clicked the first row"
    sleep 0.3
    open_panel
fi

# With POMVAR_HEADLESS_TRAY_GESTURES set, close the panel, middle-click the tray icon (which asks
# for the search window), right-click it and wait for the control menu's entries, close them,
# then open the panel again.
if [ -n "${POMVAR_HEADLESS_TRAY_GESTURES:-}" ]; then
    xdotool key Escape
    wait_for 50 bash -c "! xwininfo -id $panel | grep -q IsViewable" || {
        echo "headless-run: Escape did not close the panel" >&2
        exit 1
    }
    xdotool mousemove --window "$icon" 8 8 click 2
    echo "headless-run: middle-clicked the tray icon"
    xdotool mousemove --window "$icon" 8 8 click 3
    menu=""
    for ((n = 0; n < 50; n++)); do
        for id in $(xdotool search --onlyvisible --pid "$pomvar" 2>/dev/null); do
            if [ "$id" != "$icon" ] && [ "$id" != "$panel" ]; then
                menu=$id
            fi
        done
        [ -z "$menu" ] || break
        sleep 0.1
    done
    if [ -z "$menu" ]; then
        echo "headless-run: no menu on a right-click of the tray icon" >&2
        exit 1
    fi
    echo "headless-run: the right-click menu is open"
    xdotool key Escape
    wait_for 50 bash -c "! xwininfo -id $menu | grep -q IsViewable"
    sleep 0.3
    open_panel
fi

# Quit from the control menu: pomvar asks its runtime server to quit, then ends.
xdotool mousemove $((px + 360 - 32)) $((py + 494 - 24)) click 1
sleep 0.5
xdotool key Up Return
if ! wait_for 100 bash -c "! kill -0 $pomvar 2>/dev/null"; then
    echo "headless-run: pomvar did not quit; stopping it" >&2
    kill "$pomvar" 2>/dev/null || true
fi
server=$(lsof -t -iTCP:50818 -sTCP:LISTEN 2>/dev/null || true)
if [ -n "$server" ] && ! wait_for 50 bash -c "! kill -0 $server 2>/dev/null"; then
    echo "headless-run: the runtime server did not quit; stopping it" >&2
    kill "$server" 2>/dev/null || true
fi
