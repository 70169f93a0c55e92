#!/bin/sh
# Prints the folder of an ODBC configuration that knows a driver named "SQL Server", or nothing when the
# machine's own does. The machine's configuration is read, never written.
# Usage: scripts/odbc-environment.sh BUILD_FOLDER
set -eu
if odbcinst -q -d -n 'SQL Server' >/dev/null 2>&1; then
    exit 0
fi
folder=$1/odbc-run
mkdir -p "$folder"
for file in odbcinst.ini odbc.ini; do
    own=$1/odbc/$file
    if [ -r "/etc/$file" ]; then
        { cat "/etc/$file"; echo; cat "$own"; } >"$folder/$file"
    else
        cp "$own" "$folder/$file"
    fi
done
echo "$folder"
