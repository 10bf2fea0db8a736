#!/usr/bin/env bash
# grow_test.sh SARKELO-GROW: the command as it is used: what is written, what is told, the status it ends with; interrupted,
# killed, on a full disk, and gone on with.
set -eu
grow=$(realpath "$1")
docs=$(realpath "$(dirname "$0")/../../docs")
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT
cd "$work"

fail() { echo "line ${BASH_LINENO[*]}: $1" >&2; exit 1; }

# ends STATUS TEXT ARGUMENT...: the command ends so, with at most one line on standard error that contains the text, and with
# none where the text is empty.
ends() {
    local status=0 wanted=$1 text=$2
    shift 2
    "$grow" "$@" >out 2>err </dev/null || status=$?
    [ "$status" -eq "$wanted" ] || fail "$* ended with $status, not $wanted: $(cat err)"
    if [ -z "$text" ]; then
        [ ! -s err ] || fail "$*: $(cat err)"
    else
        [ "$(wc -l <err)" -eq 1 ] && grep -qF -- "$text" err || fail "$*: $(cat err)"
    fi
}

# of FILE NAME: a number that the file keeps.
of() { /usr/bin/python3 -c 'import h5py, sys; print(h5py.File(sys.argv[1]).attrs[sys.argv[2]])' "$1" "$2"; }

# same A B: the same run to the last bit; how long it took does not matter.
same() {
    /usr/bin/python3 - "$1" "$2" <<'PYTHON'
import sys, h5py, numpy
a, b = (h5py.File(name) for name in sys.argv[1:])
def content(file):
    all = {"/@" + name: value for name, value in file.attrs.items() if name != "seconds"}
    def visit(name, item):
        all.update({f"{name}@{key}": value for key, value in item.attrs.items()})
        if isinstance(item, h5py.Dataset):
            all[name] = item[()]
    file.visititems(visit)
    return all
a, b = content(a), content(b)
assert a.keys() == b.keys() and len(a) > 60
for name in a:
    assert numpy.array_equal(a[name], b[name]), name
PYTHON
}

# Without a word it grows the default aggregate; here a smaller one.
ends 0 "" --particles 3000
grep -qx "aggregate.sarkelo.h5: 3000 particles, radius 21.2719, [0-9.]* s" out || fail "$(cat out)"
[ "$(of aggregate.sarkelo.h5 particles)" = 3000 ]
mv aggregate.sarkelo.h5 whole.sarkelo.h5
ends 0 "" --version
grep -q '^sarkelo-grow 1\.' out
ends 0 "" --help
for option in --output --particles --steps --minutes --seed --set --resume --continue --checkpoint --checkpoint-file --save \
    --slices --statistics --force --quiet --print-recipe; do
    grep -q -- "$option" out || fail "no $option in the help"
done

# Every option and key is in the documentation, and so is each default.
grep -oE -- '^ +(-[a-z],)?--[a-z-]+' "$work/out" | grep -oE -- '--[a-z-]+' | while read -r option; do
    grep -qE -- "^\|.*$option\b" "$docs/recipes.md" || fail "$option is not documented"
done
"$grow" --print-recipe | awk '/^\[/ { table = substr($1, 2, length($1) - 2); next }
    /; default: / { standard = $0; sub(/.*; default: /, "", standard) }
    /^(# )?[a-z_]+ =/ { sub(/^# /, ""); print table "." $1 "|" standard; standard = "" }' >keys
[ "$(wc -l <keys)" -eq 28 ] || fail "$(wc -l <keys) keys"
while IFS='|' read -r key standard; do
    row=$(grep -F "| \`$key\` |" "$docs/recipes.md") || fail "$key is not documented"
    [ -z "$standard" ] || [ "$(cut -d '|' -f 4 <<<"$row" | sed 's/`//g; s/^ *//; s/ *$//')" = "$standard" ] ||
        fail "documented in another way: the default of $key, $standard"
done <keys

# A recipe that was printed grows the same; so does its seed, set in three ways.
ends 0 "" --print-recipe
mv out printed.toml
ends 0 "" printed.toml --particles 3000 -o a.sarkelo.h5 --quiet
[ ! -s out ]
same a.sarkelo.h5 whole.sarkelo.h5
printf '[growth]\nseed = 5\n[stop]\nparticles = 500\nsteps = 1000000000\n' >five.toml
ends 0 "" five.toml -o five.sarkelo.h5
ends 0 "" --seed 5 --particles 500 -o b.sarkelo.h5
ends 0 "" --set growth.seed=5 --set stop.particles=500 -o c.sarkelo.h5
ends 0 "" printed.toml --set growth.seed=6 --seed 5 --particles 500 -o d.sarkelo.h5
for other in b c d; do same five.sarkelo.h5 $other.sarkelo.h5; done

# Going on: in one file or another, and only with what a run can go on with.
ends 0 "" --particles 1000 -o a.sarkelo.h5 --force
ends 0 "" --resume a.sarkelo.h5 --steps 400000 -o b.sarkelo.h5 --force
ends 0 "" --resume b.sarkelo.h5 --particles 3000 --set drawing.mode=lines
same b.sarkelo.h5 whole.sarkelo.h5
ends 2 "five.toml is not needed" five.toml --resume b.sarkelo.h5
ends 2 "--seed is not allowed" --resume b.sarkelo.h5 --seed 1
ends 2 "only stop and drawing" --resume b.sarkelo.h5 --set growth.bias=0
ends 2 "exclude each other" --resume b.sarkelo.h5 --continue
ends 3 "none.sarkelo.h5: cannot be read: No such file" --resume none.sarkelo.h5

# What another run wrote stays.
cp five.sarkelo.h5 kept.sarkelo.h5
ends 3 "kept.sarkelo.h5: exists already" --particles 10 -o kept.sarkelo.h5
ends 3 "kept.sarkelo.h5: exists already" --resume b.sarkelo.h5 --particles 10 -o kept.sarkelo.h5
ends 3 "five.toml: exists already" --particles 10 -o new.sarkelo.h5 --save csv:five.toml
ends 3 "five.toml: exists already" --particles 10 -o new.sarkelo.h5 --statistics five.toml
ends 3 "five.toml: exists already" --particles 10 -o new.sarkelo.h5 --checkpoint-file five.toml
ends 3 "not a directory" --particles 10 -o new.sarkelo.h5 --slices 3,0,0,1 five.toml
mkdir held folder
touch held/slice_007.txt
ln -s . link
ends 3 "holds slices already" --particles 10 -o new.sarkelo.h5 --slices 3,0,0,1 held
ends 3 "folder: is a directory" --particles 10 -o folder --force
ends 2 "five.toml: is both input and output" five.toml -o new.sarkelo.h5 --statistics link/five.toml --force
ends 2 "is named for two outputs" --particles 10 -o new.sarkelo.h5 --save csv:link/new.sarkelo.h5
ends 2 "--seed" --particles 10 --seed "" -o new.sarkelo.h5
ends 2 "--slices 4294967298,0,0,1" --slices 4294967298,0,0,1 slices
ends 3 "cannot be written: No such file" --particles 10 -o missing/new.sarkelo.h5
ends 3 ".: is a directory" --particles 10 -o .
ends 2 "is named for two outputs" --particles 10 -o new.sarkelo.h5 --save csv:./new.sarkelo.h5
ends 2 'unknown extension "foo"; kinds: pov-sweep (.pov) pov-cones geom (.geom) vrml (.wrl)' --save new.foo
ends 2 "unknown kind foo" --save foo:new.pov
ends 2 "--slices 1,0,0,1" --slices 1,0,0,1 slices
ends 2 "--bogus" --bogus
ends 2 "--checkpoint" --checkpoint -1
ends 2 "1000000 roots are more than the 100000 particles at which growth stops" --set roots.count=1000000 --set roots.distribution=Spherical
[ ! -e new.sarkelo.h5 ]
cmp five.sarkelo.h5 kept.sarkelo.h5

# Schedulers: --continue starts, goes on, and leaves what is finished; another run, and what is no run, is not gone on with.
job="--continue -o job.sarkelo.h5"
ends 0 "" five.toml $job --checkpoint-file job.part --steps 50000 --save job.csv
ends 3 "job.csv: exists already" five.toml $job --checkpoint-file job.part --save job.csv
ends 0 "" five.toml $job --checkpoint-file job.part --save job.csv --force
same job.sarkelo.h5 five.sarkelo.h5
cp -p job.sarkelo.h5 before
ends 0 "" five.toml $job
cmp job.sarkelo.h5 before
ends 2 "growth.seed is not the same" --seed 6 $job
ends 2 "the surface is not the same" five.toml --set surface.sample=Box $job
printf '1 1 1\n' >root.txt
ends 2 "the roots are not the same" five.toml --set roots.file=root.txt $job
ends 2 "whole.sarkelo.h5: cannot be continued: growth.seed" five.toml $job --checkpoint-file whole.sarkelo.h5
echo precious >notes.txt
ends 3 "notes.txt: not an aggregate file" five.toml $job --checkpoint-file notes.txt
head -c 5000 before >job.sarkelo.h5
mv before job.part
ends 3 "not a whole file" five.toml $job --checkpoint-file job.part
ends 0 "it is overwritten" five.toml $job --checkpoint-file job.part --force
[ ! -e job.part ] && [ "$(cat notes.txt)" = precious ]
same job.sarkelo.h5 five.sarkelo.h5

# A checkpoint goes when the output stands: what this run did not write stays, and so does the output under another name.
ends 0 "" five.toml -o link/linked.sarkelo.h5 --checkpoint-file linked.sarkelo.h5 --checkpoint 0.00001
same linked.sarkelo.h5 five.sarkelo.h5
ends 0 "" five.toml -o other.sarkelo.h5 --checkpoint-file notes.txt --checkpoint 0 --force
mkfifo pipe
ends 0 "" five.toml -o other.sarkelo.h5 --checkpoint-file pipe --checkpoint 0 --force
ends 0 "" five.toml -o other.sarkelo.h5 --checkpoint-file part --checkpoint 0.00001 --force
[ "$(cat notes.txt)" = precious ] && [ -p pipe ] && [ ! -e part ]
ends 0 "" --resume other.sarkelo.h5 -o later.sarkelo.h5 --checkpoint-file other.sarkelo.h5 --checkpoint 0.00001 --particles 600 --force
[ -e other.sarkelo.h5 ] && [ -e later.sarkelo.h5 ]
# What appears in the output's place meanwhile is another run's.
mkdir rescue
(TMPDIR=$work/rescue exec "$grow" -o race.sarkelo.h5 --minutes 0.015 --quiet 2>err) &
sleep 0.3
cp five.sarkelo.h5 race.sarkelo.h5
status=0
wait $! || status=$?
[ "$status" -eq 3 ] && cmp race.sarkelo.h5 five.sarkelo.h5 || fail "two runs: $status"
grep -q "another program has written it meanwhile; the aggregate is kept in $work/rescue" err || fail "$(cat err)"
rm -r rescue
# Two runs that are the same have the same file, but for the seconds and their checksum.
ends 0 "" five.toml -o again.sarkelo.h5
sleep 1.1
ends 0 "" five.toml -o again.sarkelo.h5 --force
[ "$(cmp -l again.sarkelo.h5 five.sarkelo.h5 | wc -l)" -le 12 ] || fail "$(cmp -l again.sarkelo.h5 five.sarkelo.h5 | wc -l) bytes differ"

# Signals: the file is written, and a run that goes on later is the same.
for signal in INT:130 TERM:143 HUP:129 XCPU:152 USR1:138; do
    rm -f signal.sarkelo.h5
    (trap - INT; exec "$grow" -o signal.sarkelo.h5 --quiet --particles 100000000 2>err) &
    sleep 0.3
    kill -"${signal%:*}" $!
    status=0
    wait $! || status=$?
    [ "$status" -eq "${signal#*:}" ] || fail "$signal: $status"
    ends 0 "" --particles "$(of signal.sarkelo.h5 particles)" --steps "$(of signal.sarkelo.h5 steps)" -o straight.sarkelo.h5 --force
    [ "$(of straight.sarkelo.h5 particles)" -gt 300 ] || fail "only $(of straight.sarkelo.h5 particles)"
    ends 0 "" --resume straight.sarkelo.h5 --steps "$(of signal.sarkelo.h5 steps)" --particles 100000000
    same signal.sarkelo.h5 straight.sarkelo.h5
done

# Killed at any moment, what stands is whole; --continue goes on from it until the run is done.
for k in 1 2 3 4 5 6; do
    "$grow" -o killed.sarkelo.h5 --continue --checkpoint 0.0005 --particles 20000 --quiet &
    sleep "0.$((k * 37 % 10))$k"
    kill -KILL $! 2>/dev/null || true
    wait $! 2>/dev/null || true
    rm -f .sarkelo-*
    [ ! -e killed.sarkelo.h5 ] || "$grow" --resume killed.sarkelo.h5 --steps 1 -o checked.sarkelo.h5 --force --quiet
done
[ -e killed.sarkelo.h5 ] || fail "no checkpoint was written"
ends 0 "" -o killed.sarkelo.h5 --continue --particles 20000
ends 0 "" -o straight.sarkelo.h5 --force --particles 20000
same killed.sarkelo.h5 straight.sarkelo.h5

# Everything that can be saved besides. Without statistics the report has none.
ends 0 "" five.toml -o all.sarkelo.h5 --save all.pov --save pov-cones:cones.pov --save all.wrl --save vrml-low:low.wrl \
    --save all.geom --save geom-points:points.geom --save all.dxf --save all.stl --save stl-surface:surface.stl --save all.txt \
    --save all.vtp --save all.ply --save all.csv --set surface.sample=Box --slices 4,0,0,2 slices
for file in all.pov cones.pov all.wrl low.wrl all.geom points.geom all.dxf all.stl surface.stl all.txt all.vtp all.ply all.csv \
    slices/slice_000.txt slices/slice_003.txt; do
    [ -s $file ] || fail "no $file"
done
[ ! -e slices/slice_004.txt ]
! grep -q Statistics all.txt || fail "statistics"
/usr/bin/python3 - <<'PYTHON'
import csv, h5py
particles = h5py.File("all.sarkelo.h5")["particles"]
for i, row in enumerate(csv.DictReader(open("all.csv"))):
    assert [int(row["id"]), int(row["parent"])] == [i, particles["parent"][i]]
    assert [float(row[axis]) for axis in "xyz"] == list(particles["position"][i]) and float(row["flow"]) == particles["flow"][i]
assert i == 499
PYTHON

# Statistics, computed once more by others' means.
ends 0 "" --resume straight.sarkelo.h5 --particles 20000 --statistics s.json --save report.txt
grep -q "Statistics at time step: 20000" report.txt
/usr/bin/python3 - <<'PYTHON'
import json, h5py, numpy as np
s = json.load(open("s.json"))
file = h5py.File("straight.sarkelo.h5")
p, parent = file["particles/position"][:], file["particles/parent"][:]
assert s["particles"] == 20000 and s["steps"] == file.attrs["steps"] and s["launches"] >= 19999
assert s["radius"] == np.sqrt((p**2).sum(1)).max()
def gyration(n): return np.sqrt(((p[:n] - p[:n].mean(0))**2).sum() / n)
assert abs(s["radius_of_gyration"] - gyration(20000)) < 1e-9
assert s["branch_distribution"] == np.bincount(np.bincount(parent[parent >= 0], minlength=20000), minlength=10).tolist()
def fit(x, y):
    c, cov = np.polyfit(x, y, 1, cov=True)
    return c[0], np.sqrt(cov[0][0])
box = s["box_count"]
used = [l for l in box["levels"] if box["range"][0] <= l["edge"] <= box["range"][1]]
assert len(used) == box["points"] >= 3
slope, error = fit(np.log([l["edge"] for l in used]), np.log([l["count"] for l in used]))
assert abs(slope - box["slope"]) < 1e-9 and abs(error - box["standard_error"]) < 1e-9 and -2.6 < slope < -1.5
g = s["number_by_radius_of_gyration"]
n = sorted({int(round(100 * 10**(k / 10))) for k in range(24)} | {20000})
n = [k for k in n if k <= 20000]
slope, error = fit(np.log([gyration(k) for k in n]), np.log(n))
assert g["range"] == [100, 20000] and g["points"] == len(n)
assert abs(slope - g["slope"]) < 1e-6 and abs(error - g["standard_error"]) < 1e-6 and 2 < slope < 3
PYTHON

# A disk on which nothing more fits: told, growth goes on, and what stood there stays.
cp five.sarkelo.h5 full.sarkelo.h5
status=0
(ulimit -f 8; HOME=/nonexistent TMPDIR=$work/rescue exec "$grow" --resume full.sarkelo.h5 --particles 20000 --checkpoint 0.004 2>err >out) || status=$?
[ "$status" -eq 3 ] || fail "a full disk: $status"
grep -q 'checkpoint: Cannot write "full.sarkelo.h5": File too large; growth goes on' err || fail "$(cat err)"
tail -1 err | grep -q '^sarkelo-grow: Cannot write "full.sarkelo.h5": File too large' || fail "$(cat err)"
cmp five.sarkelo.h5 full.sarkelo.h5
status=0
mkdir rescue
[ ! -e /dev/full ] || TMPDIR=$work/rescue "$grow" -o /dev/full --particles 500 --seed 5 2>err || status=$?
[ "$status" -eq 3 ] || fail "/dev/full: $status"
grep -q "No space left on device; the aggregate is kept in $work/rescue/rescued-" err || fail "$(cat err)"
same rescue/rescued-*.sarkelo.h5 five.sarkelo.h5
