#!/usr/bin/env bash
# End to end under Xvfb with a real tray host: the real pomvar in a copied install layout whose
# runtime server is the recording fake. A click on the tray icon opens the 360 x 494 panel; a
# middle click on the icon reaches the server as "app-search"; a right-click shows the control
# menu's entries. (A click on a row: tst_pomvarview, and e2e_installed with the real programs.)
set -euo pipefail
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/bin" "$root/libexec/pomvar" "$root/fake" "$root/home"
cp "$1" "$root/bin/pomvar"
cp "$2" "$root/libexec/pomvar/pomvarsrv"
export HOME="$root/home" XDG_CONFIG_HOME="$root/home/.config" XDG_CACHE_HOME="$root/home/.cache"
export POMVAR_FAKE_DIR="$root/fake" POMVAR_HEADLESS_TRAY_GESTURES=1
unset QT_QPA_PLATFORM
out=$("$3/scripts/headless-run.sh" "$root/bin/pomvar" "$root/panel.png" 2>&1) || { echo "$out"; exit 1; }
echo "$out"
grep -q "panel mapped at 360x494" <<<"$out"
grep -q "the right-click menu is open" <<<"$out"
# One JSON string per request, exact text.
requests="$root/fake/requests.jsonl"
grep -qF '"{\n    \"id\": \"app-search\"\n}"' "$requests" ||
    { echo "e2e: no app-search among:"; cat "$requests"; exit 1; }
