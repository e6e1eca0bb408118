#!/bin/sh
# Renders every drawing in the icons folders of the libraries to the PNG that their resource sets carry.
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
