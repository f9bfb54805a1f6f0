#!/usr/bin/env bash
# Installs every Debian package kvKalivo needs to build, run its demo and run its tests.
# Idempotent: when everything is present it returns at once without touching apt.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools
  libqt6opengl6-dev  # Qt6::UiTools (QUiLoader, the Designer plugin tests) needs Qt6::OpenGLWidgets
  libqt6sql6-sqlite libqt6svg6
  libgl-dev
  fonts-dejavu-core fonts-dejavu-extra
  sqlite3
  libqt6sql6-mysql libqt6sql6-odbc unixodbc odbcinst tdsodbc odbc-mdbtools
  mariadb-server mariadb-client
  poppler-utils
  qt6-translations-l10n  # Qt's own German texts for the standard dialogs (file, print)
  xvfb openbox xdotool x11-utils imagemagick  # the end-to-end tests: a real X server driven by real input
  doxygen
  clang libclang-rt-14-dev  # the preset asan (ASan, UBSan) and the libFuzzer targets
)

missing=()
for package in "${PACKAGES[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = "installed" ] || missing+=("$package")
done

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#PACKAGES[@]} packages present"
else
  echo "install-deps: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The ODBC drivers the data layer names (FreeTDS for SQL Server, MDBTools for Access) must be
# registered in /etc/odbcinst.ini; the Debian packages usually do it, this makes sure.
register_odbc_driver() {
  local name=$1 library=$2
  if odbcinst -q -d -n "$name" >/dev/null 2>&1; then return; fi
  [ -e "$library" ] || { echo "install-deps: $library missing, cannot register $name" >&2; return 1; }
  printf '[%s]\nDescription=%s\nDriver=%s\n' "$name" "$name" "$library" \
    | $SUDO odbcinst -i -d -r >/dev/null
  echo "install-deps: registered ODBC driver $name"
}
odbc_dir=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH 2>/dev/null || gcc -print-multiarch)/odbc
register_odbc_driver FreeTDS "$odbc_dir/libtdsodbc.so"
register_odbc_driver MDBTools "$odbc_dir/libmdbodbc.so"
