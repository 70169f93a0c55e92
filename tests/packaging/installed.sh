#!/bin/sh
# Installs into a folder of its own and looks at it: the program has its help beside it with every picture, the manual
# tells all options of the programs that have any, and desktops can read the descriptions. Usage: installed.sh BUILD_FOLDER
set -eu
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$1" --prefix "$prefix" >/dev/null
folder=$(dirname "$(readlink -e "$prefix/bin/tablewright")")
[ -x "$folder/tablewright-sample" ]
for picture in $(grep -o 'pictures/[a-z-]*[.]png' "$folder/Tablewright.hlp"); do
    [ -r "$folder/$picture" ] || { echo "$picture is missing" >&2; exit 1; }
done
for program in tablewright-sample-server tablewright-compare; do
    manual=$prefix/share/man/man1/$program.1
    for option in $("$prefix/bin/$program" --help | grep -o -- '--[a-z-]*'); do
        tr -d '\\' <"$manual" | grep -q -- "$option" || { echo "$option is not in the manual" >&2; exit 1; }
    done
done
desktop-file-validate "$prefix"/share/applications/*.desktop
appstreamcli validate --no-net "$prefix"/share/metainfo/*.xml
