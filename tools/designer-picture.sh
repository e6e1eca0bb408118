#!/bin/sh
# Shows a form with our widgets in Qt Designer on a screen of its own and saves a picture of it. Takes the build folder,
# the file to write, and maybe the form, the catalogue and what is done before the picture (see kel_screen_picture).
# Needs xvfb, xdotool and qttools5-dev-tools.
set -eu
build=$1
out=$2
form=${3-$(dirname "$0")/../designer/picture/panel.ui}
catalogue=${4-}
[ $# -le 4 ] && set -- || shift 4

work=$(mktemp -d)
server=
trap '[ -z "$server" ] || kill "$server"; rm -rf "$work"' EXIT

# A Designer without a past: its widget box closed down to our group, its window (as Qt writes such
# geometries) at 0,0 and 1400 by 880.
mkdir -p "$work/config/QtProject" "$work/run"
chmod 700 "$work/run"
cat >"$work/config/QtProject/Designer.conf" <<'CONF'
[WidgetBox]
Closed%20categories=Layouts, Spacers, Buttons, Item Views (Model-Based), Item Widgets (Item-Based), Containers, Input Widgets, Display Widgets, Qwt Widgets, QtWebKit, Qt Quick
[MDIWindow]
geometry=@ByteArray(\x1\xd9\xd0\xcb\0\x3\0\0\0\0\0\0\0\0\0\0\0\0\x5\x77\0\0\x3\x6f\0\0\0\0\0\0\0\0\0\0\x5\x77\0\0\x3\x6f\0\0\0\0\0\0\0\0\x5\x78\0\0\0\0\0\0\0\0\0\0\x5\x77\0\0\x3\x6f)
CONF
if [ -z "$catalogue" ]; then
    QT_QPA_PLATFORM=offscreen "$build/bin/kel" demo --into "$work/hall" >/dev/null
    catalogue=$work/hall/hall.sqlite
fi
cp "$form" "$work"

Xvfb -displayfd 3 -screen 0 1400x900x24 -nolisten tcp 3>"$work/display" 2>"$work/server.log" &
server=$!
while [ ! -s "$work/display" ]; do
    kill -0 "$server" || { cat "$work/server.log"; exit 1; }
    sleep 0.1
done

designer=$(qmake -query QT_HOST_BINS 2>/dev/null || echo /usr/bin)/designer
DISPLAY=":$(cat "$work/display")"
export DISPLAY XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run"
export QT_LOGGING_RULES='default.debug=false' QT_QPA_PLATFORM=xcb QT_PLUGIN_PATH="$build/plugins" KEL_CATALOGUE="$catalogue"
"$build/bin/kel_screen_picture" "$out" "$@" "$designer" "$work/$(basename "$form")"

# With our plugin loaded the editor still keeps its settings where it always does.
[ ! -e "$work/config/Kel" ] || { echo "Designer wrote its settings to $(ls "$work/config/Kel")"; exit 1; }
