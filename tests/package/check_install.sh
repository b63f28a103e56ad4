#!/usr/bin/env bash
# The install layout, as `cmake --install` lays it out in an empty prefix, checked by the tools a
# distribution checks it with: the programs where the front end looks for them, the version file
# the update check reads, a desktop entry whose "Search Apps" action runs the installed server,
# AppStream metadata, the icons and a manual page without warnings.
# usage: check_install.sh <build folder> <project version>
set -euo pipefail
build=$1 version=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
fail() { echo "check_install: $*" >&2; exit 1; }
export HOME=$prefix/home XDG_CACHE_HOME=$prefix/home/.cache XDG_CONFIG_HOME=$prefix/home/.config

cmake --install "$build" --prefix "$prefix" >/dev/null
for file in bin/pomvar libexec/pomvar/pomvarsrv; do
    [ -x "$prefix/$file" ] || fail "$file is not installed as a program"
done
[ "$(cat "$prefix/libexec/pomvar/version")" = "$version" ] || fail "the version file does not say $version"

entry=$prefix/share/applications/org.pomvar.Pomvar.desktop
desktop-file-validate "$entry" || fail "desktop-file-validate refuses $entry"
grep -qx "Exec=pomvar" "$entry" || fail "the entry does not run pomvar"
grep -qx "Exec=$prefix/libexec/pomvar/pomvarsrv --search" "$entry" \
    || fail "the Search Apps action does not run the installed server: $(grep '^Exec=' "$entry")"

appstreamcli validate --no-net "$prefix/share/metainfo/org.pomvar.Pomvar.metainfo.xml" >/dev/null \
    || fail "appstreamcli refuses the metainfo: $(appstreamcli validate --no-net "$prefix/share/metainfo/org.pomvar.Pomvar.metainfo.xml")"
for icon in scalable/apps/org.pomvar.Pomvar.svg symbolic/apps/org.pomvar.Pomvar-symbolic.svg; do
    [ -s "$prefix/share/icons/hicolor/$icon" ] || fail "no icon $icon"
done

page=$prefix/share/man/man1/pomvar.1.gz
warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
[ -z "$warnings" ] || fail "man --warnings: $warnings"
# Every option of the help text is in the manual.
for option in $("$prefix/bin/pomvar" --help | grep -o -- '--[a-z-]*' | sort -u); do
    LC_ALL=C.UTF-8 MANWIDTH=200 man -l "$page" 2>/dev/null | grep -q -- "$option" \
        || fail "the manual does not describe $option"
done
echo "check_install: layout, desktop entry, metainfo, icons and manual page are right"
