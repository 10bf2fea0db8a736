#!/usr/bin/env bash
# view_test.sh SARKELO-VIEW SARKELO-GROW: pictures without a display; then the window with files, on a virtual one. Its picture
# is the one made without it, growth goes on exactly, and what it saves is what sarkelo-grow writes.
set -eu
program=$1
grow=$2
. "$(dirname "$0")/../../tools/drive.sh"
menu_tree=$project/tests/viewer/view_menu_tree.txt
virtual=$DISPLAY
unset DISPLAY

# ends STATUS TEXT ARGUMENT...: sarkelo-view ends so, with one line on standard error that has the text, or none.
ends() {
    local status=0 wanted=$1 text=$2
    shift 2
    "$program" "$@" >out 2>err </dev/null || status=$?
    [ "$status" -eq "$wanted" ] || fail "$* ended with $status, not $wanted: $(cat err)"
    if [ -z "$text" ]; then [ ! -s err ]; else [ "$(wc -l <err)" -eq 1 ] && grep -qF -- "$text" err; fi || fail "$*: $(cat err)"
}

"$grow" --particles 3000 --set drawing.thickness_tip=0.1 --set surface.sample=Box --set drawing.mode=tubes -o a.sarkelo.h5 --quiet
"$grow" --particles 500 --seed 8 --set growth.walk=flights -o b.sarkelo.h5 --quiet
for mode in lines points tubes; do
    ends 0 "" a.sarkelo.h5 --picture $mode.png --size 800x600 --samples 1 --mode $mode --camera home
done
ends 3 "lines.png: exists already" a.sarkelo.h5 --picture lines.png
ends 0 "" a.sarkelo.h5 --picture lines.png --mode lines --size 800x600 --samples 1 --force --camera home
ends 0 "" a.sarkelo.h5 --picture fine.png --size 640x480
ends 0 "" a.sarkelo.h5 --picture film.png --film 5 --size 640x480
cmp fine.png film-0005.png || fail "the film does not end with the whole"
for lights in camera world; do
    ends 0 "" a.sarkelo.h5 --picture $lights.png --turntable 4 --size 640x480 --lights $lights
done
ends 0 "" a.sarkelo.h5 --picture round.png --turntable 4 --size 640x480 --camera home
ends 0 "" a.sarkelo.h5 --picture quarter.png --turn 90 --size 640x480 --camera home
for size in 1000 3000; do
    ends 0 "" a.sarkelo.h5 --picture lines$size.png --mode lines --size ${size}x$size
    ends 0 "" a.sarkelo.h5 --picture points$size.png --mode points --size ${size}x$size --surface off
done
ends 0 "" a.sarkelo.h5 --picture wide-lines.png --mode lines --size 1000x1000 --line-width 3
ends 0 "" a.sarkelo.h5 --picture wide-points.png --mode points --surface off --size 1000x1000 --point-size 3
# Sixteen samples a pixel of this size are drawn in tiles, nine at once.
for samples in 9 16; do
    ends 0 "" a.sarkelo.h5 --picture samples$samples.png --mode lines --size 1100x1100 --samples $samples --line-width 3 --surface off
done
/usr/bin/python3 - <<'PYTHON'
from PIL import Image, ImageChops
import numpy as np
lit = lambda name: (np.asarray(Image.open(name).convert("RGB")).sum(2) > 0).sum()
assert Image.open("fine.png").size == (640, 480)
counts = [lit(f"film-000{k}.png") for k in range(1, 6)]
assert counts == sorted(counts) and counts[0] < counts[4], counts
assert lit("points.png") < lit("lines.png") < lit("tubes.png")
mean = lambda name: np.asarray(Image.open(name), float).mean()
brightness = {k: [mean(f"{k}-000{i}.png") for i in range(1, 5)] for k in ("camera", "world")}
ratio = {k: max(values) / min(values) for k, values in brightness.items()}
print("a turntable's brightest picture to its darkest:", ratio)
assert ratio["camera"] < 1.2 < ratio["world"] / 1.2
for mode in "lines", "points":
    larger, wider = (mean(name) / mean(f"{mode}1000.png") for name in (f"{mode}3000.png", f"wide-{mode}.png"))
    assert 0.7 < larger < 1.4 and wider > 1.4, (mode, larger, wider)
tiles = np.abs(np.asarray(Image.open("samples9.png"), int) - np.asarray(Image.open("samples16.png"), int)).mean((1, 2))
assert 0 < tiles.max() < 4, tiles.max()
far = (np.abs(np.asarray(Image.open("round-0002.png"), int) - np.asarray(Image.open("quarter.png"), int)).max(2) > 64).mean()
assert far < 0.001, far
PYTHON
for option in "--size 9000x10" "--size 4294967297x10" "--samples 3" "--tilt nan" "--turn inf" "--zoom nan" "--line-width 0" "--lights off"; do
    ends 2 "$option: " a.sarkelo.h5 --picture x.png $option
done
ends 2 "--tilt needs --picture FILE" a.sarkelo.h5 --tilt 5
"$grow" --print-recipe >"a recipe.toml"
ends 2 "has not grown yet: sarkelo-grow 'a recipe.toml' -o 'a recipe.sarkelo.h5' && sarkelo-view 'a recipe.sarkelo.h5' --picture x.png" \
    "a recipe.toml" --picture x.png
ends 2 "ends in .png" a.sarkelo.h5 --picture x.jpg
ends 2 "--mode tube:" a.sarkelo.h5 --picture x.png --mode tube
ends 2 "--picture needs an aggregate" --picture x.png
ends 3 "none.h5: cannot be read" none.h5 --picture x.png
ends 3 "Cannot write \"no/x.png\"" a.sarkelo.h5 --picture no/x.png --size 40x30
mkdir no-vendors
__EGL_VENDOR_LIBRARY_DIRS=$work/no-vendors ends 3 "x.png: cannot be drawn: there is no EGL" a.sarkelo.h5 --picture x.png
[ ! -e x.png ]

# Of an earlier, longer series of the same name the line takes nothing.
ffmpeg() { printf '%s\n' "$@" >arguments; }
for count in 3 2; do
    ends 0 "" a.sarkelo.h5 --picture "it's 5%.png" --film $count --size 33x20 --force
    eval "$(cat out)"
done
diff arguments - <<'ARGUMENTS'
-framerate
25
-start_number
1
-pattern_type
sequence
-i
it's 5%%-%04d.png
-frames:v
2
-vf
pad=34:20
-pix_fmt
yuv420p
it's 5%.mp4
ARGUMENTS

# Whatever memory there is: the whole picture, or one line.
for kilobytes in $(seq 100000 75000 1000000); do
    rm -f x.png
    status=0
    (ulimit -v "$kilobytes" && exec "$program" a.sarkelo.h5 --picture x.png --size 640x480 2>err) || status=$?
    case $status in
    0) cmp x.png fine.png ;;
    3 | 4) [ ! -e x.png ] && [ "$(wc -l <err)" -eq 1 ] ;;
    *) false ;;
    esac || fail "$kilobytes KB: status $status: $(cat err)"
done

# A signal leaves whole pictures, and nobody who draws on.
"$program" a.sarkelo.h5 --picture ended.png --turntable 9999 --size 400x300 2>err &
pid=$!
wait_for "pictures" [ -s ended-0005.png ]
kill -TERM $pid
wait $pid && fail "it was not ended" || [ $? -eq 143 ]
sleep 1
count=$(ls ended-*.png | wc -l)
pngtopnm "ended-$(printf %04d "$count").png" >last.ppm
sleep 1
[ "$(ls ended-*.png | wc -l)" -eq "$count" ] || fail "drawing goes on"
[ -z "$(ls -d .sarkelo-* 2>/dev/null)" ]

captured() { [ -n "$(find . -name '00*.tga' -size +0)" ]; }

export DISPLAY=$virtual
start a.sarkelo.h5 --camera home
key F1 F2
for mode in lines points tubes; do
    choose "DLA drawing mode" "$(case $mode in lines) echo Lines ;; points) echo Points ;; *) echo "Tubes (Slow)" ;; esac)"
    sleep 1
    key w
    wait_for "a capture" captured
    mv 00*.tga window-$mode.tga
done
# Paused, then growing, then paused again, and saved.
choose Files "Save aggregate"
select_file "$work/saved.sarkelo.h5"
wait_for "the file" [ -s saved.sarkelo.h5 ]
key F3
sleep 1
key F3
choose Files "Save aggregate"
select_file "$work/grown.sarkelo.h5"
wait_for "the file" [ -s grown.sarkelo.h5 ]
# A file that stands there is replaced only after a question, which is answered with no; and what is no aggregate is told.
cp b.sarkelo.h5 kept.sarkelo.h5
choose Files "Save aggregate"
select_file "$work/kept.sarkelo.h5"
click_no
cmp b.sarkelo.h5 kept.sarkelo.h5
choose Files "Open aggregate"
select_file "$work/lines.png"
answer
choose Files "Open aggregate"
select_file "$work/b.sarkelo.h5"
choose Files "Save aggregate"
select_file "$work/opened.sarkelo.h5"
wait_for "the file" [ -s opened.sarkelo.h5 ]
# Its walkers fly.
key F3
sleep 0.5
key F3
choose Files "Save aggregate"
select_file "$work/flown.sarkelo.h5"
wait_for "the file" [ -s flown.sarkelo.h5 ]
key q
wait $pid || fail "the program ended with status $?"
for run in "a straight grown" "b flying flown"; do
    read -r from straight grown <<<"$run"
    "$grow" --resume $from.sarkelo.h5 -o $straight.sarkelo.h5 --particles 100000000 --quiet \
        --steps "$(/usr/bin/python3 -c "import h5py; print(h5py.File('$grown.sarkelo.h5').attrs['steps'])")"
done
/usr/bin/python3 - <<'PYTHON'
import h5py, numpy as np
from PIL import Image

def same(a, b):
    a, b = h5py.File(a), h5py.File(b)
    for name in "particles/position", "particles/flow", "particles/parent", "walk/launch_positions", "surface/faces":
        assert np.array_equal(a[name], b[name]), name
    for name in "position", "drand48", "rand", "steps_since_particle", "launches", "radius", "largest_flow":
        assert np.array_equal(a["walk"].attrs[name], b["walk"].attrs[name]), name
    assert a.attrs["steps"] == b.attrs["steps"]

same("a.sarkelo.h5", "saved.sarkelo.h5")
same("straight.sarkelo.h5", "grown.sarkelo.h5")
same("b.sarkelo.h5", "opened.sarkelo.h5")
same("flying.sarkelo.h5", "flown.sarkelo.h5")
assert h5py.File("flown.sarkelo.h5").attrs["particles"] > 600
assert h5py.File("grown.sarkelo.h5").attrs["particles"] > 3500 and h5py.File("saved.sarkelo.h5")["camera"].attrs["from_window"] == 1
for mode in "lines", "points", "tubes":
    window, picture = (np.asarray(Image.open(name).convert("RGB"), int) for name in (f"window-{mode}.tga", f"{mode}.png"))
    differ = (window != picture).any(2).mean()
    print(f"{mode}: {100 * differ:.4f} % of the pixels differ")
    assert differ <= 0.001, mode
PYTHON
