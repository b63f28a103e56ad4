#!/usr/bin/env bash
# End to end under Xvfb with a real tray host: the real pomvar in a copied install layout whose
# runtime server is the recording fake. Click the tray icon, see the 360 x 494 panel, click the
# first app row, and find "launch" with that app's key among the fake server's requests.
set -euo pipefail
pomvar=$1
fake=$2
source_dir=$3
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/bin" "$root/libexec/pomvar" "$root/fake" "$root/home"
cp "$pomvar" "$root/bin/pomvar"
cp "$fake" "$root/libexec/pomvar/pomvarsrv"
icons=(/usr/share/icons/Adwaita/24x24/legacy/*.png)
icon=${icons[0]}
cat >"$root/fake/script.json" <<JSON
{"defaults": {
  "get-myapps-menu-data": {"json": {"pinnedapps": [
      {"appkey": "key-first", "name": "First App", "bundleid": "", "iconpath": "$icon", "iconpath2x": "$icon"}],
    "appcats": [], "appcatapps": {}, "renamedAppcats": []}},
  "get-allapps-menu-data": {"json": [
      {"appkey": "key-first", "name": "First App", "bundleid": "", "iconpath": "$icon", "iconpath2x": "$icon", "pinned": true}]}
}}
JSON
export HOME="$root/home" XDG_CONFIG_HOME="$root/home/.config" XDG_CACHE_HOME="$root/home/.cache"
export POMVAR_FAKE_DIR="$root/fake" POMVAR_HEADLESS_CLICK_FIRST_ROW=1
unset QT_QPA_PLATFORM
out=$("$source_dir/scripts/headless-run.sh" "$root/bin/pomvar" "$root/panel.png" 2>&1) || {
    echo "$out"
    exit 1
}
echo "$out"
grep -q "panel mapped at 360x494" <<<"$out"
expected=$(printf '{\n    "id": "launch",\n    "appkey": "key-first"\n}' | python3 -c 'import json,sys; print(json.dumps(sys.stdin.read()))')
if ! grep -qxF "$expected" "$root/fake/requests.jsonl"; then
    echo "e2e: no launch request for key-first; the fake server got:"
    cat "$root/fake/requests.jsonl"
    exit 1
fi
echo "e2e: launch with key-first arrived"
