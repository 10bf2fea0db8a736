#!/usr/bin/env bash
# view_test.sh SARKELO-VIEW SARKELO-GROW: pictures without a display; then the window with files under a window manager.
set -eu
program=$1 grow=$2
. "$(dirname "$0")/../../tools/drive.sh"
menu_tree=$project/tests/viewer/view_menu_tree.txt
virtual=$DISPLAY
unset DISPLAY
export HOME=$work

# ends STATUS TEXT ARGUMENT...: sarkelo-view ends with the status, and one line on standard error with the text, or none.
ends() {
    local status=0 wanted=$1 text=$2
    shift 2
    "$program" "$@" >out 2>err </dev/null || status=$?
    [ "$status" -eq "$wanted" ] || fail "$* ended with $status, not $wanted: $(cat err)"
    if [ -z "$text" ]; then [ ! -s err ]; else [ "$(wc -l <err)" -eq 1 ] && grep -qF -- "$text" err; fi || fail "$*: $(cat err)"
}

"$grow" --particles 3000 --set drawing.thickness_tip=0.1 --set surface.sample=Box --set drawing.mode=tubes -o a.sarkelo.h5 --quiet
"$grow" --particles 500 --seed 8 --set growth.walk=flights -o b.sarkelo.h5 --quiet
while read -r name options; do ends 0 "" a.sarkelo.h5 --picture "$name.png" $options; done <<'TABLE'
lines --size 800x600 --samples 1 --mode lines --camera home
points --size 800x600 --samples 1 --mode points --camera home
tubes --size 800x600 --samples 1 --mode tubes --camera home
fine --size 640x480
film --film 5 --size 640x480
camera --turntable 4 --size 640x480 --lights camera
world --turntable 4 --size 640x480 --lights world
round --turntable 4 --size 640x480 --camera home
quarter --turn 90 --size 640x480 --camera home
level --size 640x480 --mode lines --surface solid
tilted --tilt 90 --size 640x480 --mode lines --surface solid
zoomed --zoom 2 --size 640x480 --mode lines --surface off
unzoomed --size 640x480 --mode lines --surface off
lines1000 --mode lines --size 1000x1000
lines3000 --mode lines --size 3000x3000
wide-lines --mode lines --size 1000x1000 --line-width 3
wide-points --mode points --size 1000x1000 --point-size 3 --camera home
points1000 --mode points --size 1000x1000 --camera home
samples9 --mode lines --size 1100x1100 --samples 9 --line-width 3 --surface off
samples16 --mode lines --size 1100x1100 --samples 16 --line-width 3 --surface off
TABLE
cmp fine.png film-0005.png || fail "the film does not end with the whole"
ends 3 "lines.png: exists already; --force overwrites it" a.sarkelo.h5 --picture lines.png
/usr/bin/python3 - <<'PYTHON'
from PIL import Image
import numpy as np
array = lambda name: np.asarray(Image.open(f"{name}.png").convert("RGB"), int)
lit = lambda name: (array(name).sum(2) > 0).sum()
mean = lambda name: array(name).mean()
counts = [lit(f"film-000{k}") for k in range(1, 6)]
assert counts == sorted(counts) and counts[0] < counts[4], counts
ratio = {}
for lights in "camera", "world":
    brightness = [mean(f"{lights}-000{i}") for i in range(1, 5)]
    ratio[lights] = max(brightness) / min(brightness)
assert ratio["camera"] < 1.2 < ratio["world"] / 1.2, ratio
assert 0.7 < mean("lines3000") / mean("lines1000") < 1.4
assert all(mean(f"wide-{mode}") > 1.4 * mean(f"{mode}1000") for mode in ("lines", "points"))
tiles = np.abs(array("samples9") - array("samples16")).mean((1, 2))  # sixteen samples are drawn in tiles, nine at once
assert 0 < tiles.max() < 4, tiles.max()
assert (np.abs(array("round-0002") - array("quarter")).max(2) > 64).mean() < 0.001
assert (array("level") != array("tilted")).any(2).mean() > 0.01
assert lit("zoomed") > 1.2 * lit("unzoomed")
PYTHON
ends 0 "" --version
grep -qx "sarkelo-view [0-9.]*" out
while IFS='|' read -r status text options; do
    ends "$status" "$text" a.sarkelo.h5 $options
done <<'TABLE'
2|--size 9000x10: WIDTHxHEIGHT up to 8192x8192 is expected|--picture x.png --size 9000x10
2|--size 10x0: |--picture x.png --size 10x0
2|--samples 3: 1, 4, 9 or 16 is expected|--picture x.png --samples 3
2|--zoom 0.009: a number from 0.01 to 100 is expected|--picture x.png --zoom 0.009
2|--lights off: camera or world is expected|--picture x.png --lights off
2|--tilt needs --picture FILE|--tilt 5
2|a name that ends in .png is expected|--picture x.jpg
2|--mode tube: tubes, lines, points or off is expected|--picture x.png --mode tube
2|--surface full: wireframe, midpoints, vertices, solid or off is expected|--picture x.png --surface full
2|--camera home and --fit exclude each other|--picture x.png --camera home --fit
3|Cannot write "no/x.png"|--picture no/x.png --size 40x30
TABLE
"$grow" --print-recipe >"a recipe.toml"
ends 2 "has not grown yet: sarkelo-grow 'a recipe.toml' -o 'a recipe.sarkelo.h5' && sarkelo-view 'a recipe.sarkelo.h5' --picture x.png" \
    "a recipe.toml" --picture x.png
ends 2 "--picture needs an aggregate file" --picture x.png
ends 3 "none.h5: cannot be read" none.h5 --picture x.png
mkdir no-vendors
__EGL_VENDOR_LIBRARY_DIRS=$work/no-vendors ends 3 "x.png: cannot be drawn: there is no EGL" a.sarkelo.h5 --picture x.png
[ ! -e x.png ]

# The printed command for a film takes no pictures of an earlier, longer series.
ffmpeg() { echo "$@" >arguments; }
for count in 3 2; do
    ends 0 "" a.sarkelo.h5 --picture "it's 5%.png" --film $count --size 33x21 --force
    eval "$(cat out)"
done
echo "-framerate 25 -start_number 1 -pattern_type sequence -i it's 5%%-%04d.png -frames:v 2 -vf pad=34:22 -pix_fmt yuv420p" \
    "it's 5%.mp4" | diff arguments -

# A signal leaves whole pictures, and no process that draws more.
"$program" a.sarkelo.h5 --picture ended.png --turntable 9999 --size 400x300 2>err &
pid=$!
wait_for "pictures" [ -s ended-0005.png ]
kill -TERM $pid
ends_with 143
count=$(ls ended-*.png | wc -l)
pngtopnm "ended-$(printf %04d "$count").png" >last.ppm
sleep 1
[ "$(ls ended-*.png | wc -l)" -eq "$count" ] || fail "drawing goes on"

# The window. Each mode looks as its picture does.
export DISPLAY=$virtual
start_window_manager
is_titled() { [ "$(xdotool getwindowname "$window")" = "$1" ]; }
busy() { awk '{ print $14 + $15 }' "/proc/$pid/stat"; } # hundredths of a second of the processor
save_to() {
    choose Files "Save aggregate"
    select_file "$work/$1.sarkelo.h5"
    wait_for "the file" [ -s "$1.sarkelo.h5" ]
}
start a.sarkelo.h5 --camera home
key F1 F2
for mode in lines:Lines points:Points "tubes:Tubes (Slow)"; do
    choose "DLA drawing mode" "${mode#*:}"
    sleep 1
    key w
    sleep 0.5
    mv 00*.tga "window-${mode%:*}.tga"
done
since=$(busy)
sleep 2
[ $(($(busy) - since)) -le 5 ] || fail "at rest it takes $(($(busy) - since)) hundredths of a second in 2 s"

# A run with steps and one with flights, opened, grown and saved, are what sarkelo-grow grows of the same files.
save_to saved
key F3
wait_for "mark of a changed run" is_titled "saved.sarkelo.h5 (unsaved) - $title"
sleep 1
key F3
save_to grown
choose Files "Open aggregate"
select_file "$work/b.sarkelo.h5"
key F3 F3
save_to flown
for run in "a straight grown" "b flying flown"; do
    read -r from straight grown <<<"$run"
    "$grow" --resume $from.sarkelo.h5 -o $straight.sarkelo.h5 --particles 100000000 --quiet \
        --steps "$(/usr/bin/python3 -c "import h5py; print(h5py.File('$grown.sarkelo.h5').attrs['steps'])")"
done
/usr/bin/python3 - <<'PYTHON'
import h5py, numpy as np
from PIL import Image
def same(a, b):
    a, b = h5py.File(f"{a}.sarkelo.h5"), h5py.File(f"{b}.sarkelo.h5")
    for name in "particles/position", "particles/flow", "particles/parent", "walk/launch_positions", "surface/faces":
        assert np.array_equal(a[name], b[name]), name
    for name in "position", "drand48", "rand", "launches", "radius", "largest_flow":
        assert np.array_equal(a["walk"].attrs[name], b["walk"].attrs[name]), name
    return b
assert same("a", "saved")["camera"].attrs["from_window"] == 1
assert same("straight", "grown").attrs["particles"] > 3500
assert same("flying", "flown").attrs["particles"] > 600
for mode in "lines", "points", "tubes":
    window, picture = (np.asarray(Image.open(name).convert("RGB"), int) for name in (f"window-{mode}.tga", f"{mode}.png"))
    assert (window != picture).any(2).mean() <= 0.001, mode
PYTHON

# Esc closes a menu, and then quits; a run that has grown is asked about.
xdotool mousemove $((left + 20)) $((top + 20)) click 3
wait_for "menu" visible "freeglut menu" 1
key Escape
wait_for "end of the menu" visible "freeglut menu" 0
key F3 F3 Escape
click_cancel

# A second window, in full screen: its captures do not mix with the first one's, and each panel opens in front of the last.
first=$pid
"$program" -f a.sarkelo.h5 2>stderr.txt &
pid=$!
wait_for "second window" visible "$title" 2
sleep 1
left=0 top=0
key w
wait_for "capture of its own" [ -s "$pid-0000.tga" ]
choose "Settings"
choose "Transform constraint surface"
wait_for "second panel" visible '^Constraint surface$'
sleep 0.5
xwininfo -root -tree | grep -E '"(Settings|Constraint surface)": .*XForm' | head -1 | grep -q Constraint || fail "the second panel is hidden"
kill -TERM "$pid"
ends_with 143

# Closed by the window manager, it asks what becomes of the run. What was rescued is offered.
pid=$first
xdotool mousemove $((left + 20)) $((top + 580)) click 2 key alt+F4
click_save
select_file "$work/closed"
ends_well
[ -s closed.sarkelo.h5 ] || fail "the run is not saved"
start
sleep 1
kill -TERM "$pid"
ends_with 143
"$program" 2>stderr.txt &
pid=$!
click_yes
find_window
wait_for "rescued run" is_titled "$(ls sarkelo-rescue-*) - $title"
key F3
sleep 1
key q
click_discard
ends_well
ends 1 "sarkelo-view: this display has no active stereo (-s)" -s
