#!/bin/sh
# Renders every drawing in the icons folders of the libraries to the PNG that their resource sets carry, and the lamps
# of lights to two smaller ones too: decoding the large picture for a small lamp is what its first frame waits for.
# What is written is as small as it can be without a change of a pixel: a drawing of one colour becomes a table of shades,
# which is decoded several times faster. Needs rsvg-convert and optipng (Debian packages librsvg2-bin, optipng). Run it after a drawing changed; commit both files.
set -eu

for program in rsvg-convert optipng; do
    command -v $program >/dev/null || {
        echo "make-icons: $program is missing; sudo apt-get install librsvg2-bin optipng" >&2
        exit 1
    }
done

# render DRAWING PICTURE [RSVG-CONVERT ARGS]
render() {
    drawing=$1
    picture=$2
    shift 2
    rsvg-convert --format=png --output="$picture" "$@" "$drawing"
    optipng -quiet "$picture"
    echo "$picture"
}

cd "$(dirname "$0")/.."
for drawing in libs/*/icons/*.svg platform/*/icons/*.svg; do
    render "$drawing" "${drawing%.svg}.png"
done

for drawing in libs/widgets/icons/light_*.svg; do
    for side in 160 256; do
        render "$drawing" "${drawing%.svg}_$side.png" --width=$side --height=$side
    done
done
