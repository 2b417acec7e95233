#!/bin/sh
# Draws the .ico files beside this script anew from the .svg files. Needs rsvg-convert and icotool (Debian: librsvg2-bin,
# icoutils). The results are in the repository, so building the program needs neither.
set -eu
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# draw NAME DRAWING SIZE...: adds pictures of the drawing in these sizes to the work folder of an icon.
draw() {
    name=$1 drawing=$2
    shift 2
    mkdir -p "$work/$name"
    for size in "$@"; do
        rsvg-convert -w "$size" -h "$size" -o "$work/$name/$(printf %03d "$size").png" "$drawing.svg"
    done
}

pack() {
    large="$work/$1/256.png"
    if [ -e "$large" ]; then
        mv "$large" "$work/large.png"
        icotool -c -o "$1.ico" "$work/$1"/*.png --raw="$work/large.png"
    else
        icotool -c -o "$1.ico" "$work/$1"/*.png
    fi
}

for name in information warning error critical verbose audit_success audit_failed log folder computer; do
    draw "$name" "$name" 16 20 24 32
    pack "$name"
done
# Small pictures of the program's own icon have fewer, larger parts.
draw corvina corvina_small 16 20 24
draw corvina corvina 32 40 48 64 128 256
pack corvina
