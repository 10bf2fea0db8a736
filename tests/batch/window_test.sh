#!/usr/bin/env bash
# window_test.sh INSPECTED-SARKELO SARKELO-GROW: an aggregate that is set up by hand in the window and grown there is what its
# recipe grows, to the last bit; and what the window saves of it is what sarkelo-grow saves.
set -eu
program=$1
grow=$2
. "$(dirname "$0")/../../tools/drive.sh"
printf '0 -30 -15\n0 0 -15\n0 30 -15\n' >row.txt
cat >recipe.toml <<'RECIPE'
growth = {seed = 9, association = true}
source.type = "Plane (z)"
roots.file = "row.txt"
surface = {sample = "Cylinder", scale = [0.8, 0.8, 1.3]}
drawing = {thickness_tip = 0.04, thickness_trunk = 0.5, mode = "off"}
RECIPE

start
key F1 F2
choose "DLA drawing mode" Off
choose "Sample constraint surfaces" Cylinder
choose "Transform constraint surface"
for axis in 1:0.8 2:0.8 3:1.3; do type_into transform "Scale#${axis%:*}" ${axis#*:}; done
press transform "Apply"
press transform "Hide"
choose "New particle distribution" "Plane (z)"
choose "Settings"
type_into settings "Random number seed" 9
type_into settings "Branch thickness" 0.04
type_into settings to 0.5
press settings "Associate seeds with roots"
press settings "Hide"
choose "Read seeds" # starts the run anew
select_file "$work/row.txt"
key F3 # growth pauses
while save_information; [ "$(reported "Number of particles")" -lt 400 ]; do
    key F3
    key F3
done
cp info.txt window.info
kill -USR1 "$pid"
wait_for "the particles" [ -f records ]
choose "Save DLA as" "VRML (Cylinders + Spheres)"
select_file "$work/window.vrml"
choose "Save constraint surface to STL file"
select_file "$work/window.stl-surface"
wait_for "the surface" [ -e window.stl-surface ]
kill "$pid"
wait "$pid" || true

"$grow" recipe.toml --particles "$(reported "Number of particles")" --quiet -o grown.sarkelo.h5 --save info:grown.info \
    --save vrml:grown.vrml --save stl-surface:grown.stl-surface --save grown.csv
sed -i 's|: /.*/row.txt|: row.txt|' window.info # the window names the seed file by its whole path
for saved in window.*; do
    diff "$saved" "grown.${saved#window.}" >difference || fail "$saved: $(head -5 difference)"
done
cmp particles.csv grown.csv || fail "it grows in another way without a window"
