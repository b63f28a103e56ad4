#!/usr/bin/env bash
# The Debian package as a user gets it: scripts/package.sh builds it (an optimised build installed
# under /usr, checked by lintian); its content is extracted into a scratch folder, laid out as
# expected, and its programs run from there.
# usage: check_deb.sh <source folder> <project version>
set -euo pipefail
source=$1 version=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "check_deb: $*" >&2; exit 1; }
export HOME=$scratch/home XDG_CACHE_HOME=$scratch/home/.cache XDG_CONFIG_HOME=$scratch/home/.config

"$source/scripts/package.sh" >"$scratch/package.log" 2>&1 || { cat "$scratch/package.log"; fail "scripts/package.sh failed"; }
deb=$source/build/package/pomvar_${version}_$(dpkg --print-architecture).deb
[ -f "$deb" ] || fail "no $deb"

dpkg-deb -x "$deb" "$scratch/root"
expected="usr/bin/pomvar
usr/libexec/pomvar/generic-app-24.png
usr/libexec/pomvar/generic-app-48.png
usr/libexec/pomvar/pomvar-calculator.so
usr/libexec/pomvar/pomvarsrv
usr/libexec/pomvar/version
usr/share/applications/org.pomvar.Pomvar.desktop
usr/share/doc/pomvar/changelog.gz
usr/share/doc/pomvar/copyright
usr/share/icons/hicolor/scalable/apps/org.pomvar.Pomvar.svg
usr/share/icons/hicolor/symbolic/apps/org.pomvar.Pomvar-symbolic.svg
usr/share/man/man1/pomvar.1.gz
usr/share/metainfo/org.pomvar.Pomvar.metainfo.xml
usr/share/pomvar/translations/pomvar_de.qm
usr/share/pomvar/translations/pomvar_en.qm"
actual=$(cd "$scratch/root" && find . -type f | sed 's|^\./||' | sort)
[ "$actual" = "$expected" ] || fail "the package holds:
$actual"
grep -qx "Exec=/usr/libexec/pomvar/pomvarsrv --search" "$scratch/root/usr/share/applications/org.pomvar.Pomvar.desktop" \
    || fail "the Search Apps action does not run /usr/libexec/pomvar/pomvarsrv"

depends=$(dpkg-deb -f "$deb" Depends)
for package in lsof libqt6svg6 libqt6widgets6 libglib2.0-0; do
    grep -q "\b$package\b" <<<"$depends" || fail "Depends lacks $package: $depends"
done

bin=$scratch/root/usr/bin/pomvar
[ "$("$bin" --version)" = "Pomvar for Linux version $version" ] \
    || fail "pomvar --version printed: $("$bin" --version)"
help=$("$bin" --help)
grep -qx "usage: pomvar \[options\]" <<<"$help" || fail "pomvar --help printed: $help"
echo "check_deb: $(basename "$deb") is built, clean for lintian, laid out as expected and runs"
