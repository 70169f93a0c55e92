#!/bin/sh
# Runs what was built: the program beside a sample server, or the guided tour where there is no display.
# Usage: scripts/run.sh BUILD_FOLDER
set -eu
build=$(cd "$1" && pwd)
odbc=$("$(dirname "$0")/odbc-environment.sh" "$build")
if [ -n "$odbc" ]; then
    ODBCSYSINI=$odbc
    export ODBCSYSINI
fi

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    pictures=$build/tour
    echo "No display: playing the guided tour on a virtual one."
    "$(dirname "$0")/with-display.sh" "$build/bin/tablewright-tour" --pictures "$pictures"
    echo "The tour's pictures are in ${pictures#"$PWD"/}"
    exit 0
fi

exec "$build/bin/tablewright-sample"
