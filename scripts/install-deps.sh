#!/usr/bin/env bash
# Installs every Debian package that building, running and testing Pelorin needs.
# Does nothing when all of them are already there.
set -euo pipefail

packages=(
    # build
    cmake ninja-build g++ clang clang-format libclang-rt-14-dev pkg-config
    qt6-base-dev qt6-svg-dev qt6-image-formats-plugins qt6-qpa-plugins libgl-dev
    libmpdclient-dev libtag1-dev
    libxcb1-dev libxcb-keysyms1-dev libxcb-shape0-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    # run and test
    mpd mpc sox libsox-fmt-all
    xvfb xauth xdotool x11-utils x11-xserver-utils imagemagick openbox trayer
    fonts-dejavu-core dbus dbus-x11 locales
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    $SUDO apt-get -o DPkg::Lock::Timeout=300 update -q
    $SUDO apt-get -o DPkg::Lock::Timeout=300 install -y -q --no-install-recommends "${missing[@]}"
fi

# The number rules are tested under a decimal-comma locale as well.
if ! locale -a 2>/dev/null | grep -qix 'de_DE.utf8'; then
    echo "Generating the de_DE.UTF-8 locale"
    $SUDO localedef -i de_DE -f UTF-8 de_DE.UTF-8
fi
