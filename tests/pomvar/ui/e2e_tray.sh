#!/usr/bin/env bash
# End to end under Xvfb with a real tray host: the real pomvar in a copied install layout whose
# runtime server is the recording fake. A click on the tray icon opens the 360 x 494 panel; a
# click on its first row reaches the server as "launch" with that app's key; a middle click on
# the icon as "app-search"; a right-click shows the control menu's entries.
set -euo pipefail
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/bin" "$root/libexec/pomvar" "$root/fake" "$root/home"
cp "$1" "$root/bin/pomvar"
cp "$2" "$root/libexec/pomvar/pomvarsrv"
icons=(/usr/share/icons/Adwaita/24x24/legacy/*.png)
app='{"appkey": "key-first", "name": "First App", "bundleid": "", "iconpath": "'${icons[0]}'", "iconpath2x": "'${icons[0]}'"'
echo '{"defaults": {"get-myapps-menu-data": {"json": {"pinnedapps": ['"$app"'}], "appcats": [], "appcatapps": {}, "renamedAppcats": []}},
  "get-allapps-menu-data": {"json": ['"$app"', "pinned": true}]}}}' >"$root/fake/script.json"
export HOME="$root/home" XDG_CONFIG_HOME="$root/home/.config" XDG_CACHE_HOME="$root/home/.cache"
export POMVAR_FAKE_DIR="$root/fake" POMVAR_HEADLESS_CLICK_FIRST_ROW=1 POMVAR_HEADLESS_TRAY_GESTURES=1
unset QT_QPA_PLATFORM
out=$("$3/scripts/headless-run.sh" "$root/bin/pomvar" "$root/panel.png" 2>&1) || { echo "$out"; exit 1; }
echo "$out"
grep -q "panel mapped at 360x494" <<<"$out"
grep -q "the right-click menu is open" <<<"$out"
# One JSON string per request, exact text.
requests="$root/fake/requests.jsonl"
grep -qF '"{\n    \"id\": \"launch\",\n    \"appkey\": \"key-first\"\n}"' "$requests" &&
    grep -qF '"{\n    \"id\": \"app-search\"\n}"' "$requests" ||
    { echo "e2e: no launch of key-first or no app-search among:"; cat "$requests"; exit 1; }
