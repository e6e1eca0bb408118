#!/bin/sh
# Makes the pictures of the example hall, a room each, with lights switched on. Takes the build folder and the folder of
# the pictures. Needs xvfb, xauth and xdotool.
set -eu
build=$1
out=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/run"
chmod 700 "$work/run"

# NAME DEED...: where to press is where the panel of 1024 by 600 pixels has its parts.
room() {
    picture=$1
    shift
    XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=xcb xvfb-run -a -s '-screen 0 1024x600x24 -nolisten tcp' \
        "$build/bin/kel_screen_picture" "$out/$picture" "$@" "$build/bin/kel" demo >"$work/log" 2>&1 ||
        { cat "$work/log"; exit 1; }
}
dining='click=388,85'
dinner='click=652,460'
full='click=919,460'
night='click=519,460'
# shellcheck disable=SC2086
{
    room hall-dining.png $dining $dinner
    room hall-garden.png click=635,85 click=148,250 wait=3000
    room hall-climate.png $dining $dinner wait=8000 $full wait=8000 $night click=883,85 wait=8000
}

cd "$work"
QT_QPA_PLATFORM=offscreen "$build/bin/kel" demo >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
mv demo.png "$out/hall.png"
