#!/usr/bin/env bash
# Builds the Debian package build/package/pomvar_<version>_<arch>.deb (an optimised build installed
# under /usr) and checks it with lintian. Install it with: sudo apt install ./build/package/pomvar_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset package
cmake --build --preset package
rm -f build/package/pomvar_*.deb
(cd build/package && cpack --config CPackConfig.cmake >/dev/null)
deb=$(ls build/package/pomvar_*.deb)
echo "package: $deb"
# Errors fail the build; the warnings kept are explained in data/lintian-overrides.
lintian --fail-on error --suppress-tags-from-file data/lintian-overrides "$deb"
