#!/usr/bin/env bash
# Makes the README's pictures: aggregate.png, and window.png, which is the window of sarkelo with its settings. Needs the
# release build and what ./check installs.
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(realpath "${BUILD:-$here/../../build/release}")
program=$build/sarkelo
. "$here/../../tools/drive.sh"

# small_png NAME: writes the PPM picture on standard input with 256 colours.
small_png() {
    pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/$1.png"
}

"$build/sarkelo-grow" --seed 7 --particles 12000 --set drawing.thickness_tip=0.06 --set drawing.thickness_trunk=1 -o a.sarkelo.h5 --quiet
"$build/sarkelo-view" a.sarkelo.h5 --picture a.png --mode tubes --fit --size 4000x3600
pngtopnm a.png | pamscale 0.2 | pnmtopng -compression 9 2>/dev/null >"$here/aggregate.png"

# The window after a second of growth, seen from further away, and the settings.
start_window_manager
start
key F3
choose "DLA drawing mode" "Tubes (Slow)"
key --repeat 7 less
choose "Settings"
wait_for "the settings" has_panel settings
xdotool windowmove "$(panel settings)" 700 50
sleep 1
timeout 20 xwd -silent -root | xwdtopnm 2>/dev/null | pnmcut -width 1113 -height 627 | small_png window
press settings "Hide"
key q
wait "$pid"
