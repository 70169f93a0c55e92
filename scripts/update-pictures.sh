#!/bin/sh
# Takes the guide's pictures anew: plays the tour, cuts the windows out of its pictures of the screen and leaves
# them, with few colours, in docs/pictures. For the maintainers; needs ImageMagick (Debian: imagemagick).
# Usage: scripts/update-pictures.sh BUILD_FOLDER
set -eu
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")/.." && pwd)
pictures=$here/docs/pictures
command -v convert >/dev/null || {
    echo "ImageMagick is missing." >&2
    exit 1
}
env -u DISPLAY -u WAYLAND_DISPLAY "$here/scripts/run.sh" "$build"

cut() { # PICTURE_OF_THE_TOUR NAME [WIDTHxHEIGHT+LEFT+TOP, else the active window]
    place=${3-}
    set -- "$build"/tour/[0-9]*-"$1".png "$pictures/$2.png"
    if [ $# -ne 2 ] || [ ! -r "$1" ]; then
        echo "The tour takes no picture, or several, for ${2##*/}." >&2
        exit 1
    fi
    [ -n "$place" ] || place=$(identify -format '%[window]' "$1")
    convert "$1" -crop "$place" +repage +dither -colors 128 -strip -define png:compression-level=9 "png8:$2"
}
cut connection-dialog-filled connection-dialog
cut table-opened connected 750x543+0+0
cut details-horizontal database-details 772x276+0+399
cut query-built query-page
cut query-result query-result
cut compare-selection-filled compare-selection
cut compare-half-way compare-progress
cut compare-one-table compare-result 640x400+1+96
cut options-mouse options
du -cb "$pictures"/*.png
