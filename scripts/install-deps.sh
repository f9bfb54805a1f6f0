#!/usr/bin/env bash
# Installs every Debian package kvKalivo needs to build, run its demo and run its tests.
# Idempotent: when everything is present it returns at once without touching apt.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools
  libqt6sql6-sqlite libqt6svg6
  libgl-dev
  fonts-dejavu-core fonts-dejavu-extra
  sqlite3
)

missing=()
for package in "${PACKAGES[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = "installed" ] || missing+=("$package")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#PACKAGES[@]} packages present"
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
