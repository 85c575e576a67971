#!/bin/sh
# Installs the Debian packages that building, running and testing Kelmo need,
# if any are missing. Run as root or with sudo.
set -eu

PACKAGES="build-essential cmake ninja-build pkg-config
libsdl2-dev libgl-dev libgl1-mesa-dri
libboost-dev libgtest-dev libgmock-dev libbenchmark-dev
libfreetype-dev fonts-dejavu-core fonts-dejavu-extra
xvfb xdotool x11-utils xauth
libpng-dev"

missing=""
for package in $PACKAGES; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing="$missing $package"
  fi
done

if [ -n "$missing" ]; then
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
  echo "Installing:$missing"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $missing
fi
