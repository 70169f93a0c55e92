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

folder=$(mktemp -d)
mkfifo "$folder/stdin" "$folder/stdout"
server=''
cleanup() {
    exec 3>&- || true # the server ends when its standard input does
    [ -z "$server" ] || wait "$server" 2>/dev/null || true
    rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

"$build/bin/tablewright-sample-server" --port 1433 --next-free-port --stay-with-stdin \
    <"$folder/stdin" >"$folder/stdout" &
server=$!
exec 3>"$folder/stdin"
read -r line <"$folder/stdout" || line=''
case $line in
'listening on '*) ;;
*)
    echo "The sample server did not start." >&2
    exit 1
    ;;
esac
echo "A sample server is running. In the connection dialog type the server  ${line#listening on }"
echo "use SQL Server authentication with the user ID  sa  and leave the password empty."
"$build/bin/tablewright" 3>&-
