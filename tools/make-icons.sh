#!/bin/sh
# Renders every drawing in the icons folders of the libraries to the PNG that their resource sets carry, and the lamps
# of lights to two smaller ones too: decoding the large picture for a small lamp is what its first frame waits for.
# Needs rsvg-convert (Debian package librsvg2-bin). Run it after a drawing changed; commit both files.
set -eu

command -v rsvg-convert >/dev/null || {
    echo "make-icons: rsvg-convert is missing; sudo apt-get install librsvg2-bin" >&2
    exit 1
}

cd "$(dirname "$0")/.."
for drawing in libs/*/icons/*.svg platform/*/icons/*.svg; do
    rsvg-convert --format=png --output="${drawing%.svg}.png" "$drawing"
    echo "${drawing%.svg}.png"
done

for drawing in libs/widgets/icons/light_*.svg; do
    for side in 160 256; do
        rsvg-convert --format=png --width=$side --height=$side --output="${drawing%.svg}_$side.png" "$drawing"
        echo "${drawing%.svg}_$side.png"
    done
done
