#!/bin/sh
# Runs a command on a virtual screen of its own with a window manager, and takes both down afterwards.
# Usage: [TABLEWRIGHT_SCREEN=1280x800] scripts/with-display.sh COMMAND [ARGUMENT..]
set -eu
folder=$(mktemp -d)
screen=''
manager=''
cleanup() {
    [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
    [ -z "$screen" ] || kill "$screen" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 "${TABLEWRIGHT_SCREEN:-1280x800}x24" -nolisten tcp 3>"$folder/display" 2>"$folder/xvfb.log" &
screen=$!
if ! read -r number <"$folder/display"; then
    cat "$folder/xvfb.log" >&2
    exit 1
fi
DISPLAY=:$number
export DISPLAY
unset WAYLAND_DISPLAY || true
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    XDG_RUNTIME_DIR=$folder
    export XDG_RUNTIME_DIR
fi
openbox --sm-disable >"$folder/openbox.log" 2>&1 &
manager=$!
# A window that is shown before the manager runs would never be framed.
tries=0
until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; do
    tries=$((tries + 1))
    if [ $tries -gt 100 ]; then
        echo "The window manager did not start." >&2
        cat "$folder/openbox.log" >&2
        exit 1
    fi
    sleep 0.05
done
QT_QPA_PLATFORM=xcb "$@"
