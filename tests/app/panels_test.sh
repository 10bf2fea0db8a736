#!/usr/bin/env bash
# The panels and file selectors of the real toolkit, worked by hand: what is typed reaches the records within its
# limits, buttons do their work, odd input does no harm.
set -eu
program=$1
. "$(dirname "$0")/../../tools/drive.sh"
start
choose "Settings"
expect settingformvisible 1
while IFS='|' read -r label text name value; do
    type_into settings "$label" "$text"
    expect "$name" "$value"
done <<'TABLE'
Random number seed|777|seed|777
Bias towards origin|7|bias|1
Branch length|nan|branchlength|0.01
Branch length|1|branchlength|1
Stickiness|50|stickiness|50
Particle rotation|-9|rotation|-5
Branch thickness|-0.02|thickto|0.02
to|0.5|thickfrom|0.5
Intersection range|5|intersectrange|5
Number of roots|-3|nroots|3
TABLE
type_into settings "Random number seed" ""
expect seed 0

# More roots than memory holds: a message, and the number of roots stays.
choose "Initial root distribution" "Ring: x axis plane"
expect roottype 5
type_into settings "Number of roots" 2000000000
answer
expect nroots 3
type_into settings "Root distribution range" 8
expect rootrange 8
expect placed 3
expect rootname "Random: z axis plane"
press settings "Associate seeds with roots"
expect association 1
press settings "Hide"
expect settingformvisible 0
[ -z "$(panel settings)" ] || fail "the settings are still there"

# A sample surface, transformed; the panel returns to the identity after each time.
choose "Sample constraint surfaces" "Box"
expect surfacename Box
expect nstltri 16
choose "Transform constraint surface"
type_into transform "Scale" 2
press transform "Apply"
expect stlmaxx 56.56854249
press transform "Apply"
expect stlmaxx 56.56854249
type_into transform "Scale" 0.5
press transform "Apply"
expect stlmaxx 28.28427125
press transform "Hide"
expect stlformvisible 0

choose "Compute/save slices"
type_into slicing "Number of slices" 1
expect slicecount 2
type_into slicing "Plane normal" 0.5
expect sliceparam1 0.5
press slicing "Hide"
expect sliceformvisible 0

# Files: cancelled, missing, empty, good.
printf '1 2 3\n4 5 6\n' >roots.txt
: >empty.txt
printf 'solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 9 0 0\nvertex 0 9 0\nendloop\nendfacet\nendsolid\n' >face.stl
choose "Read seeds"
select_file
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
select_file "$work/face.stl"
expect nstltri 1

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
