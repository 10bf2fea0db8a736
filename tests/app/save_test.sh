#!/usr/bin/env bash
# Saving with the real toolkit: menu entries and file selectors write files, slices and captures lie in the current
# directory, and a capture shows the pixels of the window.
set -eu
program=$1
. "$(dirname "$0")/drive.sh"

start
sleep 1
key F3
choose "Save DLA as" 3
select_file "$work/model.geom"
grep -q '^# 3D DLA by Orvandel# From: 0 to 1' model.geom || fail "no GEOM file"
choose "Save DLA as" 9
select_file
choose "Save DLA as" 1
select_file "$work/no/such/place.pov"
expect running 0
choose "Sample constraint surfaces" 8
choose "Save constraint surface to STL file"
select_file "$work/sphere.stl"
[ "$(grep -c facet sphere.stl)" -eq $((2 * 5040)) ] || fail "no STL file"
choose "Save simulation information"
select_file "$work/run.txt"
grep -qx "Constraint surface: Sphere" run.txt || fail "no information file"

choose "Compute/save slices"
type_into $slicing 180 145 3
press $slicing 260 215
press $slicing 350 215
[ -s slice_000.txt ] && [ -s slice_002.txt ] && [ ! -e slice_003.txt ] || fail "no slices"

# The window is the one thing on the display that stands still now.
xdotool mousemove 1500 1100
sleep 0.5
key w
sleep 0.5
[ -f 0000.tga ] && [ ! -e 0001.tga ] || fail "no capture"
picture window.ppm
tgatoppm 0000.tga 2>/dev/null >capture.ppm
[ "$(colours window.ppm 0 799)" -ge 20 ] || fail "the window is empty"
cmp window.ppm capture.ppm || fail "the capture differs from the window"
key r
sleep 0.5
key r
[ "$(ls ./*.tga | wc -l)" -ge 5 ] || fail "recording saves few frames"

# A directory that cannot be written to: the program says so and runs on.
if [ "$(id -u)" -ne 0 ]; then
    chmod a-w .
    key w
    sleep 0.5
    chmod u+w .
    expect running 0
fi
key q
wait $pid || fail "the program ended with status $?"
