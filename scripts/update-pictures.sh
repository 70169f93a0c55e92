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

# The tour's screen is always of one size and its windows stand where they stood, so places are fixed.
cut() { # PICTURE_OF_THE_TOUR WIDTHxHEIGHT+LEFT+TOP NAME
    set -- "$build"/tour/[0-9]*-"$1".png "$2" "$pictures/$3.png"
    if [ $# -ne 3 ] || [ ! -r "$1" ]; then
        echo "The tour takes no picture, or several, for ${3##*/}." >&2
        exit 1
    fi
    convert "$1" -crop "$2" +repage +dither -colors 128 -strip -define png:compression-level=9 "png8:$3"
}
cut connection-dialog-filled 446x361+407+180 connection-dialog
cut table-opened 748x562+0+0 connected
cut details-horizontal 756x282+0+402 database-details
cut query-built 728x578+276+95 query-page
cut query-result 728x578+276+95 query-result
cut compare-selection-filled 726x270+267+224 compare-selection
cut compare-half-way 474x273+394+223 compare-progress
cut compare-one-table 640x400+0+96 compare-result
cut options-mouse 401x286+430+216 options
du -cb "$pictures"/*.png
