#!/bin/sh
# Installs the Debian packages that building, testing and running need, as far as they are missing.
# On a system without apt-get it says what is missing instead. Usage: scripts/setup.sh
set -eu

packages='g++ cmake ninja-build qt6-base-dev libqt6svg6 unixodbc-dev odbcinst tdsodbc libsqlite3-dev
python3 xvfb openbox x11-utils fonts-dejavu-core freetds-bin dpkg-dev file desktop-file-utils appstream'

if ! command -v apt-get >/dev/null 2>&1; then
    missing=''
    for tool in c++ cmake ninja python3 odbcinst Xvfb openbox; do
        command -v "$tool" >/dev/null 2>&1 || missing="$missing $tool"
    done
    if [ -n "$missing" ]; then
        echo "Not a Debian system. These are missing:$missing" >&2
        echo "Needed besides: Qt 6.4 (Core, Gui, Widgets, Network, Test, SVG), unixODBC and the FreeTDS ODBC driver" >&2
        echo "with their headers, and SQLite 3." >&2
        exit 1
    fi
    exit 0
fi

missing=''
for package in $packages; do
    state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

root=''
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
        echo "These packages are missing, and there is no sudo to install them with:$missing" >&2
        exit 1
    fi
    root=sudo
fi
echo "Installing:$missing"
$root env DEBIAN_FRONTEND=noninteractive apt-get update -qq
# shellcheck disable=SC2086 # a list of words on purpose
$root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing
