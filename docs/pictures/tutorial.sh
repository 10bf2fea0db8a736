#!/usr/bin/env bash
# Takes the steps of tutorial.md with the program on a virtual display, and makes the pictures of that page.
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
program=$(realpath "${SARKELO:-$here/../../build/release/sarkelo}")
. "$here/../gallery/grow.sh"

# screen NAME LEFT TOP WIDTH HEIGHT: a part of the screen, as a picture of the page.
screen() {
    timeout 20 xwd -silent -root | xwdtopnm 2>/dev/null | pnmcut -left "$2" -top "$3" -width "$4" -height "$5" |
        pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/tutorial-$1.png"
}

# The window alone, half as large.
half_window() {
    picture window.ppm
    pamscale 0.625 window.ppm | pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/tutorial-$1.png"
}

start
xdotool mousemove 1500 1150
sleep 1.5
half_window start

# The surface.
xdotool mousemove 20 20 click 3
sleep 0.5
xdotool mousemove 60 336
sleep 0.3
xdotool mousemove 62 334
sleep 0.7
xdotool mousemove 380 360
sleep 0.5
xdotool mousemove 382 362
sleep 1
screen menu 0 0 660 610
xdotool click 1
sleep 0.7
key F3

# The settings.
choose "Settings"
type_into settings "Random number seed" 3
type_into settings "Branch thickness" 0.03
type_into settings "to" 0.6
id=$(panel settings)
timeout 20 xwd -silent -id "$id" | xwdtopnm 2>/dev/null | pnmquant 64 2>/dev/null | pnmtopng >"$here/tutorial-settings.png"
press settings "Hide"
key F4
sleep 3
while :; do
    key F3
    save_information
    [ "$(reported "Number of particles")" -ge 12000 ] && break
    key F3
    sleep 1
done
cat info.txt
half_window grown

# Tubes, without circles and axes, from above.
choose "DLA drawing mode" "Tubes (Slow)"
key F1
aim_camera "Up*15 Right*20"
xdotool mousemove 1500 1150
sleep 4
half_window tubes

# The scene and its rendering.
choose "Save DLA as" "PovRay (Cylinders + Spheres)"
select_file cylinder.pov
sleep 1
tail -5 cylinder.pov
time timeout 500 povray +Icylinder.pov +Ocylinder.png +W800 +H800 +A -D >povray.txt 2>&1 || { cat povray.txt; fail "no rendering"; }
pngtopnm cylinder.png | pamscale 0.75 | pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/tutorial-rendered.png"
key q
wait "$pid"
