#!/bin/sh
# Makes the pictures of the guide: the panel of examples/workshop in Qt Designer, step by step, and as it runs. Takes the
# build folder and the folder of the pictures. Needs xvfb, xauth, xdotool and qttools5-dev-tools.
set -eu
here=$(cd "$(dirname "$0")/.." && pwd)
build=$1
out=$2

work=$(mktemp -d)
sim=
trap '[ -z "$sim" ] || kill "$sim"; rm -rf "$work"' EXIT

cp "$here"/examples/workshop/* "$work"
"$build/bin/kel" catalog make "$work/workshop.toml" "$work/workshop.sqlite"

# OUT FORM DEED...: where to press is where Designer's window of 1400 by 880 pixels has its parts.
designer() {
    picture=$1
    form=$2
    shift 2
    "$here/tools/designer-picture.sh" "$build" "$out/$picture" "$form" "$work/workshop.sqlite" "$@"
}
button='click=360,160'
filter='click=1090,381 type=ID'
firstProperty='click=940,476'
editSignals='click=264,62'
signalEditor='click=956,862'
# shellcheck disable=SC2086
designer guide-numbers.png "$here/designer/picture/workshop-begun.ui" $button $filter $firstProperty
designer guide-form.png "$work/workshop.ui"
designer guide-wires.png "$work/workshop.ui" $editSignals $signalEditor

# The panel, with the lamp switched on and the fan at work.
"$build/bin/kel" sim "$work/workshop.rules" --link "$work/workshop.port" >"$work/sim.log" &
sim=$!
while [ ! -e "$work/workshop.port" ]; do
    kill -0 "$sim"
    sleep 0.1
done
mkdir "$work/run"
chmod 700 "$work/run"
cd "$work"
XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=xcb xvfb-run -a -s '-screen 0 560x380x24 -nolisten tcp' \
    "$build/bin/kel_screen_picture" "$out/guide-panel.png" click=200,50 click=270,160 \
    "$build/bin/kel" panel workshop.ui --db workshop.sqlite 2>"$work/panel.log" || { cat "$work/panel.log"; exit 1; }
