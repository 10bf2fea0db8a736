#!/usr/bin/env bash
# The panels and file selectors of the real toolkit, worked by hand: what is typed reaches the records within its
# limits, buttons do their work, odd input does no harm.
set -eu
program=$1
. "$(dirname "$0")/drive.sh"
input=200 # the column of the settings' inputs

start
choose "Settings"
expect settingformvisible 1
while read -r y text name value; do
    type_into $settings $input "$y" "$text"
    expect "$name" "$value"
done <<'TABLE'
75 777 seed 777
75 -9 seed 9
75 letters seed 0
110 0.5 bias 0.5
110 7 bias 1
110 -1 bias 0
145 0.5 branchlength 0.5
145 -3 branchlength 0.01
145 nan branchlength 0.01
145 1e308 branchlength 1e+308
145 1 branchlength 1
180 50 stickiness 50
180 1e308 stickiness 100
180 0 stickiness 1
180 100 stickiness 100
215 9 rotation 5
215 -9 rotation -5
215 0 rotation 0
255 -0.02 thickto 0.02
290 5 intersectrange 5
290 99 intersectrange 90
290 0 intersectrange 0
365 -4 nroots 4
365 0 nroots 0
TABLE
type_into $settings 280 255 0.5
expect thickfrom 0.5
type_into $settings $input 75 ""
expect seed 0

# More roots than memory holds: a message, and the number of roots stays.
type_into $settings $input 365 3
expect nroots 3
choose "Initial root distribution" 5
expect roottype 5
type_into $settings $input 365 2000000000
answer
expect nroots 3
type_into $settings $input 400 8
expect rootrange 8
expect placed 3
expect rootname "Random: z axis plane"
press $settings 185 435
expect association 1
press $settings 350 495
expect settingformvisible 0
[ -z "$(panel $settings)" ] || fail "the settings are still there"

# A sample surface, transformed; the panel returns to the identity after each time.
choose "Sample constraint surfaces" 5
expect surfacename Box
expect nstltri 16
choose "Transform constraint surface"
type_into $transform 120 100 2
press $transform 200 260
expect stlmaxx 56.56854249
press $transform 200 260
expect stlmaxx 56.56854249
type_into $transform 120 100 0.5
press $transform 200 260
expect stlmaxx 28.28427125
press $transform 290 260
expect stlformvisible 0
choose "Constraint surface drawing mode" 5
expect surfacemode 5
choose "DLA drawing mode" 1
expect dlamode 1
choose "New particle distribution" 17
expect sourcetype 17

choose "Compute/save slices"
type_into $slicing 180 145 1
expect slicecount 2
type_into $slicing 180 95 0.5
expect sliceparam1 0.5
press $slicing 350 215
expect sliceformvisible 0

# Files: cancelled, missing, empty, good.
printf '1 2 3\n4 5 6\n' >roots.txt
: >empty.txt
printf 'solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 9 0 0\nvertex 0 9 0\nendloop\nendfacet\nendsolid\n' >face.stl
choose "Read seeds"
select_file
expect nroots 3
choose "Read seeds"
select_file "$work/missing.txt"
answer
expect nroots 3
choose "Read seeds"
select_file "$work/roots.txt"
expect nroots 2
expect rootname "$work/roots.txt"
choose "Read seeds"
select_file "$work/empty.txt"
answer
expect nroots 1
expect rootname Origin
choose "Read constraint surface from STL file"
select_file
expect nstltri 16
choose "Read constraint surface from STL file"
select_file "$work/missing.stl"
answer
expect nstltri 16
choose "Constraint surface drawing mode" 1
expect surfacemode 1
choose "Read constraint surface from STL file"
select_file "$work/face.stl"
expect nstltri 1
expect surfacename None
expect surfacemode 2

choose "-"
expect running 1
key F3
expect running 0
key F1 F2
expect showextras 0
expect showinfo 0
key F4
expect running 1
choose "Toggle extras (f1)"
expect showextras 1
choose "Quit (q)"
wait $pid || fail "the program ended with status $?"
