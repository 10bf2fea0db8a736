#!/usr/bin/env bash
# One session with the real program and toolkits under a window manager, from its start to its end, as a person would play
# it. What the window shows is looked at before and after each step; what is saved must agree with the number of particles
# reported.
set -eu
program=$1
. "$(dirname "$0")/../../tools/drive.sh"
start_window_manager

shows() {
    picture shown.ppm
    ppmhist -noheader shown.ppm | grep -qE "^ *$1\s"
}
shows_no() { ! shows "$1"; }
# That many colours (20 for branches that have grown for a while).
is_coloured() {
    picture coloured.ppm
    [ "$(colours coloured.ppm 0 799)" -ge "${1:-20}" ]
}
differs() {
    picture now.ppm
    ! cmp -s "$1" now.ppm
}
matches() { ! differs "$1"; }
is_still() {
    picture still.ppm
    sleep 0.3
    matches still.ppm
}
# Grey text to the right of the middle; while boxes are counted, they can lie there, in green.
has_statistics() {
    picture statistics.ppm
    pnmcut -left 400 -width 300 -top 13 -height 52 statistics.ppm | ppmhist -noheader |
        awk '$1 != $2 || $2 != $3 { exit bad = 1 } $1 > 0 { text = 1 } END { exit bad || !text }'
}
drag() {
    xdotool mousemove 300 300 mousedown "$1" mousemove 340 320 mousemove 380 310 mouseup "$1"
}
# A file is whole once the program has closed it.
has_focus() { [ "$(xdotool getactivewindow getwindowname 2>/dev/null)" = "$1" ]; }
is_saved() { [ -e "$1" ] && ! ls -l "/proc/$pid/fd" | grep -q " $1$"; }
# save FILE ENTRY...
save() {
    local file=$work/$1
    shift
    choose "$@"
    select_file "$file"
    wait_for "$file" is_saved "$file"
}
# Information anew, and a value of it.
report() {
    rm -f run.txt
    save run.txt "Save simulation information"
}
reported() { sed -n "s/^$1: //p" run.txt; }
# count NUMBER PATTERN FILE: lines that have the pattern.
count() {
    local found
    found=$(grep -c -- "$2" "$3") || true
    [ "$found" -eq "$1" ] || fail "$3: $found lines of \"$2\", not $1"
}
# Restarts, and pauses again when a small aggregate stands there.
grow_a_little() {
    key F4 F3
    until is_coloured; do
        xdotool key --delay 100 F3 F3
    done
    wait_for "a pause" is_still
}
white="255 +255 +255" # the information; no branch is white

# Watching it grow.
start
xprop -id "$window" WM_CLASS | grep -q '"sarkelo", "Sarkelo"' || fail "class: $(xprop -id "$window" WM_CLASS)"
xprop -id "$window" _NET_WM_ICON | grep -q "48 x 48" || fail "no icon"
wait_for "branches of many colours" is_coloured
picture before.ppm
wait_for "growth" differs before.ppm
shows "$white" || fail "no information"
key F1 F2
grow_a_little
shows_no "$white" || fail "information that nobody wants"
picture home.ppm
drag 1
wait_for "another view" differs home.ppm
key h
wait_for "the first view" matches home.ppm
key plus plus plus plus plus plus
wait_for "a larger view" differs home.ppm
key h F2
wait_for "the information" shows "$white"

# Three roots on a ring and walkers from a plane, from the start.
choose "Initial root distribution" "Ring: z axis plane"
choose "Settings"
type_into settings "Number of roots" 3

# With a panel open, a file selector has the keyboard at once.
owner=$(printf 'window id # 0x%x' "$window")
xprop -id "$(panel settings)" WM_TRANSIENT_FOR | grep -q "$owner$" || fail "the panel has another owner"
xprop -id "$(panel settings)" _NET_WM_STATE | grep -q SKIP_TASKBAR || fail "the panel is in the taskbar"
choose "Save simulation information"
wait_for "a file selector with the keyboard" has_focus "FileSelector"
xprop -id "$(xdotool getactivewindow)" WM_TRANSIENT_FOR | grep -q "$owner$" || fail "the selector has another owner"
xdotool type --delay 5 -- "$work/typed.txt"
xdotool key Return
wait_for "the file typed" is_saved "$work/typed.txt"
press settings "Hide"
choose "New particle distribution" "Plane (z)"
key F2
grow_a_little

# A box around it all, drawn solid, then half as large; the branches as tubes.
choose "Sample constraint surfaces" "Box"
choose "Constraint surface drawing mode" "Faces, wireframe"
wait_for "a wireframe" shows "12[78] +12[78] +12[78]"
picture before.ppm
choose "Transform constraint surface"
for n in 1 2 3; do type_into transform "Scale#$n" 0.5; done
press transform "Apply"
press transform "Hide"
wait_for "another box" differs before.ppm
choose "DLA drawing mode" "Tubes (Slow)"
wait_for "shaded tubes" is_coloured 100
choose "DLA drawing mode" "Lines"
wait_for "lines" is_still
has_statistics && fail "statistics from the start"
key F5
wait_for "the statistics" has_statistics

# Everything that can be saved.
report
particles=$(reported "Number of particles")
branches=$((particles - 3))
[ "$branches" -gt 20 ] || fail "$particles particles"
[ "$(reported "Number of roots")" = 3 ] || fail "roots: $(reported "Number of roots")"
for line in "Root distribution: Ring: y axis plane" "Source type: Plane (z)" "Faces in constraint surface: 16" \
    "   -14.1421 <= x <= 14.1421"; do
    grep -qxF -- "$line" run.txt || fail "not reported: $line"
done
[ "$(reported "Statistics at time step")" = "$particles" ] || fail "statistics of another aggregate"
awk '/Box counting/ { boxes = 1; next } boxes && NF == 4 { if (!levels++) first = $2; last = $2 }
    END { exit !(levels >= 3 && first > 0 && last > first) }' run.txt ||
    fail "box count: $(sed -n "/Box counting/,\$p" run.txt)"

save cones.pov "Save DLA as" "PovRay (Cylinders + Spheres)"
count "$branches" "^ cone {" cones.pov
count 16 "^ triangle {" cones.pov
save box.stl "Save constraint surface to STL file"
count 16 "^facet " box.stl
choose "Save DLA as" "Point cloud as DXF"
select_file

# Four slices along z: each branch lies in at least one of them.
choose "Compute/save slices"
type_into slicing "Number of slices" 4
press slicing "Slice"
wait_for "slices" is_saved "$work/slice_003.txt"
press slicing "Hide"
[ "$(ls slice_* | wc -l)" -eq 4 ] || fail "slices: $(ls slice_*)"
[ "$(cat slice_* | wc -l)" -ge "$branches" ] || fail "$(cat slice_* | wc -l) pieces of $branches branches"

# A capture has the pixels of the window; recording saves frame after frame.
wait_for "the statistics gone" is_still
xdotool mousemove 20 580 key w
wait_for "a capture" is_saved "$work/0000.tga"
tgatoppm 0000.tga 2>/dev/null >capture.ppm
matches capture.ppm || fail "the capture differs from the window"
key r
wait_for "frames" is_saved "$work/0005.tga"
key r

key F3
sleep 1
key F3
report
particles=$(reported "Number of particles")
key F4 F3
wait_for "the pause" is_still
report
[ "$(reported "Number of particles")" -lt "$particles" ] || fail "a restart leaves $(reported "Number of particles") particles"
key q
wait $pid || fail "the program ended with status $?"
