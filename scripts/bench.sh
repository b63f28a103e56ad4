#!/usr/bin/env bash
# Builds the optimised benchmark programs (bench preset) and prints every figure Pomvar tracks,
# after a description of the machine, so that two runs can be compared:
#   start-up to tray icon and peak memory of both programs, the server's with the background check
#   of its cached catalogue (bench_trayup, own Xvfb and trayer);
#   first and later panel openings and scrolling at 1,000 and 5,000 apps (bench_panel, Xvfb);
#   building the menus at 1,000 and 5,000 apps (bench_menu_build);
#   the search keystroke and window with the calculator and a provider, the calculator's answer
#   (bench_search, Xvfb); the panel's typed character to the search shown (bench_handover, Xvfb);
#   the organizer's opening (bench_organizer) and the other windows' (bench_windows), Xvfb;
#   the server's start-up and payloads (bench_pomvarsrv), the request round trip
#   (bench_ipc_roundtrip) and the front end's readiness probe (bench_startup);
#   the peer check per connection with 2 and with 20,000 sockets in the table (bench_peercheck);
#   the check of the icon files named in the menus at 5,000 apps (bench_iconcheck).
# Benchmarks that take port 50818 run one after another; run nothing else on the machine meanwhile.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh >/dev/null
cmake --preset bench >/dev/null
cmake --build --preset bench >/dev/null

section() { printf '\n== %s\n' "$1"; }

section "machine"
echo "date:      $(date -u '+%Y-%m-%d %H:%M UTC')"
echo "commit:    $(git rev-parse --short HEAD 2>/dev/null || echo unknown)$(git diff --quiet 2>/dev/null || echo ' (with local changes)')"
echo "cpu:       $(lscpu | sed -n 's/^Model name: *//p') ($(nproc) cores available)"
echo "memory:    $(free -h | awk '/^Mem:/ {print $2}')"
echo "system:    $(. /etc/os-release && echo "$PRETTY_NAME"), Linux $(uname -r)"
echo "compiler:  $(c++ --version | head -n 1)"
echo "qt:        $(dpkg-query -W -f '${Version}' libqt6core6 2>/dev/null)"
echo "load:      $(cut -d ' ' -f 1-3 /proc/loadavg)"

b=build/bench/bench
xvfb() { xvfb-run -a -s "-screen 0 1280x800x24" env QT_QPA_PLATFORM=xcb "$@"; }

section "start-up to tray icon, first reply, peak memory (bench_trayup)"
"$b/bench_trayup"
section "front end to the server's port (bench_startup)"
"$b/bench_startup"
section "panel opening and scrolling (bench_panel)"
xvfb "$b/bench_panel"
section "building the menus (bench_menu_build)"
QT_QPA_PLATFORM=offscreen "$b/bench_menu_build"
section "search (bench_search)"
xvfb "$b/bench_search"
section "panel to search by typing (bench_handover)"
xvfb "$b/bench_handover"
section "organizer (bench_organizer)"
xvfb "$b/bench_organizer"
section "info, about, welcome and updates windows (bench_windows)"
xvfb "$b/bench_windows"
section "runtime server start-up and payloads (bench_pomvarsrv)"
"$b/bench_pomvarsrv"
section "request round trip (bench_ipc_roundtrip)"
QT_QPA_PLATFORM=offscreen "$b/bench_ipc_roundtrip"
section "peer check per connection (bench_peercheck)"
"$b/bench_peercheck"
section "icon files named in the menus (bench_iconcheck)"
"$b/bench_iconcheck"
