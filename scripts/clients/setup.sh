#!/bin/sh
# Installs the clients that run.py tries, from Debian and npm. Usage: scripts/clients/setup.sh [FOLDER for npm's]
set -eu
folder=${1:-$(dirname "$0")/../../build/clients}
root=''
[ "$(id -u)" -eq 0 ] || root=sudo
$root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends freetds-bin tdsodbc unixodbc \
    python3-pyodbc python3-pymssql python3-tds libjtds-java default-jdk-headless mono-mcs mono-runtime \
    libmono-system-data4.0-cil libmono-i18n-west4.0-cil libdbd-sybase-perl libdbd-odbc-perl php-cli php-sybase php-odbc \
    $(command -v npm >/dev/null || echo nodejs npm)
mkdir -p "$folder"
cd "$folder"
[ -f package.json ] || npm init -y >/dev/null
npm install --no-audit --no-fund tedious mssql
