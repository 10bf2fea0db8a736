#!/usr/bin/env bash
# The real program on a small disk that is full: what was saved before stays, and the user is told. Skipped where no disk
# can be mounted.
set -eu
program=$1
. "$(dirname "$0")/../../tools/drive.sh"

disk=$work/disk
mkdir "$disk"
if ! mount -t tmpfs -o size=32m tmpfs "$disk" 2>/dev/null; then
    echo "skipped: no disk can be mounted here"
    exit 77
fi
trap 'kill "$pid" "$virtual_display" 2>/dev/null; umount -l "$disk"; rm -rf "$work"' EXIT
pid=
cd "$disk"

# told COUNT PATTERN: that many lines of standard error have the pattern.
told() { [ "$(grep -c -- "$2" "$work/stderr.txt")" -eq "$1" ]; }
# save FILE ENTRY...
save() {
    local file=$1
    shift
    choose "$@"
    select_file "$disk/$file"
}

"$program" 2>"$work/stderr.txt" &
pid=$!
wait_for "the window" visible "$title"
window=$(xdotool search --onlyvisible --name "$title")
xdotool windowmove "$window" 0 0
sleep 1
key F3
save kept.txt "Save simulation information"
wait_for "the information" [ -s kept.txt ]
save kept.pov "Save DLA as" "PovRay (Cylinders + Spheres)"
wait_for "the scene" [ -s kept.pov ]
cp kept.txt kept.pov "$work"
dd if=/dev/zero of=filler bs=4k 2>/dev/null || true

save kept.pov "Save DLA as" "PovRay (Cylinders + Spheres)"
wait_for "a line about the scene" told 1 'Cannot write ".*kept.pov": No space left on device'
save kept.txt "Save simulation information"
answer
told 1 'Cannot write ".*kept.txt": No space left on device' || fail "nothing about the information"
cmp kept.txt "$work/kept.txt"
cmp kept.pov "$work/kept.pov"
key r
sleep 2
key r
told 1 'Cannot write "0000.tga": No space left on device' || fail "recording: $(cat "$work/stderr.txt")"
[ "$(ls -A)" = "$(printf 'filler\nkept.pov\nkept.txt')" ] || fail "left behind: $(ls -A)"

# Room again: everything can be saved.
rm filler
xdotool mousemove 20 580 key w
wait_for "a capture" [ -s 0000.tga ]
save kept.pov "Save DLA as" "Point cloud as DXF"
wait_for "another model" grep -q '^LAYER1' kept.pov
key q
wait $pid || fail "the program ended with status $?"
pid=
