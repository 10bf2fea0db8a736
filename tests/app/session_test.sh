#!/usr/bin/env bash
# session_test.sh INSPECTED-SARKELO: the real program and toolkits under a window manager: menus, keys, panels and
# dialogs. What the window shows and saves must agree with the program's records.
set -eu
program=$1
. "$(dirname "$0")/../../tools/drive.sh"
status=0
DISPLAY='' timeout 20 "$program" 2>usage.txt || status=$?
[ $status -eq 1 ] || fail "without a display it ends with $status: $(cat usage.txt)"
start_window_manager

shows() {
    picture shown.ppm
    ppmhist -noheader shown.ppm | grep -qE "^ *$1\s"
}
shows_not() { ! shows "$1"; }
is_coloured() {
    picture coloured.ppm
    [ "$(colours coloured.ppm 0 799)" -ge 20 ]
}
is_saved() { [ -s "$1" ] && ! ls -l "/proc/$pid/fd" | grep -q " $1$"; } # closed, and therefore whole
has() { look && [ "$(value_of ncells)" -ge "$1" ]; }
owner_of() { xprop -id "$1" WM_TRANSIENT_FOR; }

# Watching it grow.
start
xprop -id "$window" WM_CLASS | grep -q '"sarkelo", "Sarkelo"' || fail "class: $(xprop -id "$window" WM_CLASS)"
xprop -id "$window" _NET_WM_ICON | grep -q "48 x 48" || fail "no icon"
wait_for "branches of many colours" is_coloured
wait_for "information" shows "255 +255 +255"
key F1 F2
wait_for "information hidden" shows_not "255 +255 +255"

# Keys, in their order, and a record after each.
while IFS='|' read -r keys record value; do
    key $keys
    expect "$record" "$value"
done <<'TABLE'
F3|running|0
F1|extras|1
F2|info|1
plus equal|aperture|54.15
minus underscore|aperture|60
Left|turned|0.01999866669
Right Right|turned|-0.01999866669
Up|tilted|0.01999866669
Down Down|tilted|-0.01999866669
h|turned|0
r|recording|1
r|recording|0
TABLE
[ -s 0000.tga ] || fail "no recording"
before=$(value_of ncells)
key F4 F3
look
[ "$(value_of ncells)" -lt "$before" ] || fail "a restart leaves $(value_of ncells) particles of $before"
rm ./*.tga
key h w
look
mv ./*.tga capture.tga
picture window.ppm
tgatoppm capture.tga 2>/dev/null | cmp - window.ppm || fail "the capture differs from the window"
xdotool mousemove 300 300 mousedown 1 sleep 0.2 mousemove 340 300 sleep 0.2 mouseup 1
look
[ "$(value_of turned)" != 0 ] || fail "a drag does not turn the camera"

# The first and last entry of the menus that choose something.
while IFS='|' read -r entry record; do
    while read -r id label; do
        choose "$entry" "$label"
        expect "$record" "$([ "$record" = surface ] && echo "$label" || echo "$id")"
    done < <(sed -nE "s/^$(submenu "$entry") ([0-9]+) /\1 /p" "$menu_tree" | sed -n '1p; $p')
done <<'TABLE'
Constraint surface drawing mode|drawing.surface
DLA drawing mode|drawing.mode
New particle distribution|source.type
Initial root distribution|roots.distribution
Sample constraint surfaces|surface
TABLE
choose "Sample constraint surfaces" "Box"
choose "Constraint surface drawing mode" "Faces, wireframe"
wait_for "a wireframe" shows "12[78] +12[78] +12[78]"
choose "Settings"
expect panels 1

# Panels: what is typed reaches the records within its limits, and buttons do their work.
owner=$(printf 'window id # 0x%x' "$window")
owner_of "$(panel settings)" | grep -q "$owner$" || fail "the panel has another owner"
xprop -id "$(panel settings)" _NET_WM_STATE | grep -q SKIP_TASKBAR || fail "the panel is in the taskbar"
while IFS='|' read -r panel label text record value; do
    case $panel in transform | slicing) has_panel "$panel" || choose "$record" ;; esac
    if [ "$text" = press ]; then press "$panel" "$label"; else type_into "$panel" "$label" "$text"; fi
    [ -z "$value" ] || expect "$record" "$value"
done <<'TABLE'
settings|Random number seed|777|growth.seed|777
settings|Stickiness|50|growth.stickiness|50
settings|to|0.5|drawing.thickness_trunk|0.5
settings|Number of roots|-3|roots.count|3
settings|Root distribution range|8|placed|3
settings|Associate seeds with roots|press|growth.association|1
settings|Hide|press|panels|0
transform|Scale|2|Transform constraint surface|
transform|Apply|press|largestx|56.56854249
transform|Hide|press|panels|0
slicing|Number of slices|4|Compute/save slices|
slicing|Plane normal|0.5|slices.x|0.5
slicing|Slice|press|panels|4
slicing|Hide|press|panels|0
TABLE
[ "$(ls slice_* | wc -l)" -eq 4 ] || fail "slices: $(ls slice_*)"

# Files: saved in every format, with the keyboard in the selector at once; cancelled, missing, empty and good ones.
expect running 1
wait_for "branches" has 100
key F3 F5
expect boxcount 0
while read -r label; do
    choose "Save DLA as" "$label"
    select_file "$work/saved"
    wait_for "$label" is_saved "$work/saved"
    rm saved
done < <(labels_of "Save DLA as")
choose "Save constraint surface to STL file"
select_file "$work/box.stl"
choose "Save simulation information"
wait_for "a file selector" visible FileSelector
owner_of "$(xdotool search --onlyvisible --name FileSelector)" | grep -q "$owner$" || fail "the selector has another owner"
xdotool type --delay 5 -- "$work/info.txt"
xdotool key Return
wait_for "information" is_saved "$work/info.txt"
look
[ "$(grep -c "^facet" box.stl)" = 16 ] || fail "the saved surface is not the box"
[ "$(reported "Statistics at time step")" = "$(value_of ncells)" ] || fail "$(cat info.txt)"
choose "Sample constraint surfaces" "None"
printf '1 2 3\n4 5 6\n' >roots.txt
: >empty.txt
while IFS='|' read -r entry file message record value; do
    choose "$entry"
    select_file "$work/$file"
    [ -z "$message" ] || answer
    expect "$record" "$value"
done <<TABLE
Read seeds|roots.txt||roots|$work/roots.txt
Read seeds|empty.txt|message|roots|Origin
Read constraint surface from STL file|box.stl||faces|16
TABLE

choose "Quit (q)"
ends_well
