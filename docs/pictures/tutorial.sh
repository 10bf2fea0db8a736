#!/usr/bin/env bash
# Takes the steps of tutorial.md with the program on a virtual display, and makes the pictures of that page.
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(realpath "${BUILD:-$here/../../build/release}")
program=$build/sarkelo
. "$here/../../tools/drive.sh"

# screen NAME LEFT TOP WIDTH HEIGHT: a part of the screen, as a picture of the page.
screen() {
    timeout 20 xwd -silent -root | xwdtopnm 2>/dev/null | pnmcut -left "$2" -top "$3" -width "$4" -height "$5" |
        pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/tutorial-$1.png"
}

# small NAME PICTURE: the PPM picture at 0.625 of its size, as a picture of the page.
small() {
    pamscale 0.625 "$2" | pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/tutorial-$1.png"
}

start
xdotool mousemove 1500 1150
sleep 1.5
picture window.ppm
small start window.ppm

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
sleep 0.7
while :; do
    key F3
    save_information
    [ "$(reported "Number of particles")" -ge 12000 ] && break
    key F3
    sleep 0.2
done
cat info.txt
picture window.ppm
small grown window.ppm

# Tubes, without circles and axes, turned.
choose "DLA drawing mode" "Tubes (Slow)"
key F1
xdotool mousemove 20 580 key --delay 15 --repeat 15 Up
xdotool mousemove 20 580 key --delay 15 --repeat 20 Right
sleep 1

# The scene and its rendering.
choose "Save DLA as" "PovRay (Cylinders + Spheres)"
select_file cylinder.pov
sleep 1
tail -5 cylinder.pov
time timeout 500 povray +Icylinder.pov +Ocylinder.png +W800 +H800 +A -D >povray.txt 2>&1 || { cat povray.txt; fail "no rendering"; }
pngtopnm cylinder.png | pamscale 0.75 | pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/tutorial-rendered.png"
key q
wait "$pid"

# The same without a window.
unset DISPLAY
"$build/sarkelo-grow" --seed 3 --set surface.sample=Cylinder --set drawing.thickness_tip=0.03 --set drawing.thickness_trunk=0.6 \
    --particles 12000 -o cylinder.sarkelo.h5
"$build/sarkelo-view" cylinder.sarkelo.h5 --picture tubes.png --mode tubes --tilt -17 --turn 23 --size 800x600
pngtopnm tubes.png >tubes.ppm
small tubes tubes.ppm
