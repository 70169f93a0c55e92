#!/bin/sh
# Takes the guided tour at each text size, scale, screen and colours that the windows are made for. The pictures go
# into FOLDER/SETTING; look at them. Usage: scripts/tour-looks.sh BUILD FOLDER [SETTING..], for instance
# scripts/tour-looks.sh build/dev /tmp/looks 18pt dark
set -eu
build=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
shift 2
cd "$(dirname "$0")/.."
odbc=$(scripts/odbc-environment.sh "$build")
[ -z "$odbc" ] || export ODBCSYSINI="$odbc"
[ $# -gt 0 ] || set -- 9pt 11pt 18pt scale1.5 scale2 dark dark18pt small small18pt
failed=''

# tour SETTING SCREEN SCALE [OPTION..]
tour() {
    setting=$1 TABLEWRIGHT_SCREEN=$2 QT_SCALE_FACTOR=$3
    export TABLEWRIGHT_SCREEN QT_SCALE_FACTOR
    shift 3
    echo "== $setting"
    scripts/with-display.sh "$build/bin/tablewright-tour" --pictures "$folder/$setting" "$@" || failed="$failed $setting"
}

for wanted; do
    case $wanted in
        9pt) tour 9pt 1280x800 1 --font-size 9 ;;
        11pt) tour 11pt 1280x800 1 --font-size 11 ;;
        18pt) tour 18pt 1280x800 1 --font-size 18 ;;
        scale1.5) tour scale1.5 1366x768 1.5 ;;
        scale2) tour scale2 1920x1080 2 ;;
        dark) tour dark 1280x800 1 --dark ;;
        dark18pt) tour dark18pt 1280x800 1 --dark --font-size 18 ;;
        small) tour small 1024x600 1 ;;
        small18pt) tour small18pt 1024x600 1 --font-size 18 ;;
        *) echo "There is no setting $wanted." >&2; exit 2 ;;
    esac
done
[ -z "$failed" ] || { echo "Failed:$failed" >&2; exit 1; }
