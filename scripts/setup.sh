#!/usr/bin/env bash
# Installs every Debian package Pomvar needs to build, run and test. Idempotent: apt is only
# touched when something is missing.
set -euo pipefail

packages=(
    # build
    cmake ninja-build g++ pkg-config clang-format
    qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6svg6 libgl-dev libxcb1-dev
    nlohmann-json3-dev libsimdjson-dev libglib2.0-dev
    libxcb-keysyms1-dev            # the search shortcut grabbed on X11
    libqalculate-dev               # the calculator module of the search
    qt6-tools-dev qt6-l10n-tools   # CMake's LinguistTools package; lupdate and lrelease
    # run
    lsof fonts-urw-base35 fonts-liberation2 adwaita-icon-theme hicolor-icon-theme
    qt6-wayland
    qt6-translations-l10n          # Qt's own texts (standard buttons) in the user's language
    # tests and screenshots
    xvfb xauth trayer xdotool x11-utils imagemagick dbus dbus-x11
    at-spi2-core gir1.2-atspi-2.0 python3-gi desktop-file-utils
    gsettings-desktop-schemas gnome-settings-daemon-common  # GNOME's keybindings, in a key file
    # packaging and its checks
    dpkg-dev lintian appstream man-db
    util-linux procps iproute2   # unshare and ip: the fixed-port tests in a network of their own
    weston xwayland
    rofi                           # the launcher the start-up benchmark compares with
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "setup: all ${#packages[@]} packages are installed"
    exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    sudo=(sudo)
fi
echo "setup: installing ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
