#!/bin/sh
# Prints the folder of an ODBC configuration with a driver for SQL Server, or nothing when the machine's own, which
# was looked at when the build was configured, has one. It is read, never written.
# Usage: scripts/odbc-environment.sh BUILD_FOLDER
set -eu
folder=$1/odbc-run
[ -d "$folder" ] || exit 0
[ ! -r /etc/odbc.ini ] || cp /etc/odbc.ini "$folder/odbc.ini"
echo "$folder"
