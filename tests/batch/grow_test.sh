#!/usr/bin/env bash
# grow_test.sh SARKELO-GROW: the command as it is used: what is written and printed, the status it ends with; interrupted,
# killed, on a full disk, and continued.
set -eu
grow=$(realpath "$1")
tests=$(realpath "$(dirname "$0")")
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$work"' EXIT
cd "$work"

fail() { echo "line ${BASH_LINENO[*]}: $1" >&2; exit 1; }

# ends STATUS TEXT ARGUMENT...: the command ends with this status and one line on standard error that has the text, or no line.
ends() {
    local status=0 wanted=$1 text=$2 lines=${2:+1}
    shift 2
    "$grow" "$@" >out 2>err </dev/null || status=$?
    [ "$status $(grep -cF -- "$text" err) $(wc -l <err)" = "$wanted ${lines:-0} ${lines:-0}" ] || fail "$* ended with $status: $(cat err)"
}

# fails STATUS: the same for lines "TEXT|ARGUMENTS" on standard input.
fails() { while IFS='|' read -r text arguments; do eval "ends $1 ${text@Q} $arguments"; done; }

# of FILE NAME [GROUP]: a number or a text that the file keeps.
of() { /usr/bin/python3 -c 'import h5py, sys; print(h5py.File(sys.argv[1])[sys.argv[3]].attrs[sys.argv[2]])' "$1" "$2" "${3:-/}"; }

# same A B: the same files, but for the seconds of growth.
same() {
    cp "$1" same.a && cp "$2" same.b
    /usr/bin/python3 -c 'import h5py; [h5py.File(name, "r+").attrs.modify("seconds", 0.0) for name in ("same.a", "same.b")]'
    cmp same.a same.b || fail "$1 and $2 differ"
}

# finishes STATUS: the command that was started last ends so.
finishes() {
    local status=0
    wait $! || status=$?
    [ "$status" -eq "$1" ] || fail "ended with $status, not $1: $(cat err)"
}

ends 0 "" --particles 3000
grep -qx "aggregate.sarkelo.h5: 3000 particles, radius 21.2719, [0-9.]* s" out || fail "$(cat out)"
mv aggregate.sarkelo.h5 whole.sarkelo.h5
# Every option and key is in the documentation; the file has every parameter with its unit or the name of its value.
ends 0 "" --print-recipe
mv out printed.toml
ends 0 "" --help
words=$(grep -ohE -- '--[a-z-]+|^(# )?[a-z_]+ =' out printed.toml | tr -d '#= ' | sort -u)
[ "$(wc -l <<<"$words")" -eq 45 ] || fail "$(wc -l <<<"$words") options and keys"
for word in $words; do grep -qE -- "^\|.*$word\b" "$tests/../../docs/recipes.md" || fail "$word is not documented"; done
[ "$(of whole.sarkelo.h5 bias_unit parameters/growth)" = "b'% of the branch length'" ]
[ "$(of whole.sarkelo.h5 walk_name parameters/growth)" = "b'steps'" ]

# A recipe that was printed grows the same; so does its seed, set by an option.
ends 0 "" printed.toml --particles 3000 -o a.sarkelo.h5 --quiet
[ ! -s out ]
same a.sarkelo.h5 whole.sarkelo.h5
printf '[growth]\nseed = 5\n[stop]\nparticles = 500\nsteps = 1000000000\n' >five.toml
ends 0 "" five.toml -o five.sarkelo.h5
ends 0 "" printed.toml --set growth.seed=6 --set stop.particles=500 --seed 5 -o b.sarkelo.h5
same five.sarkelo.h5 b.sarkelo.h5
ends 0 "" --particles 1000 -o a.sarkelo.h5 --force
ends 0 "" --resume a.sarkelo.h5 --steps 400000 -o b.sarkelo.h5 --force
ends 0 "" --resume b.sarkelo.h5 --particles 3000 --set drawing.mode=lines
same b.sarkelo.h5 whole.sarkelo.h5

# What cannot be done is reported before anything is grown, and the files of another run stay.
cp five.sarkelo.h5 kept.sarkelo.h5
mkdir held folder
touch held/slice_007.txt
ln -s . link
printf '1 1 1\n' >root.txt
new="--particles 10 -o new.sarkelo.h5"
fails 2 <<ROWS
five.toml is not needed|five.toml --resume b.sarkelo.h5
--seed is not allowed|--resume b.sarkelo.h5 --seed 1
only stop and drawing|--resume b.sarkelo.h5 --set growth.bias=0
exclude each other|--resume b.sarkelo.h5 --continue
root.txt: is both input and output|--set roots.file=root.txt --save csv:link/root.txt --force
is named for two outputs|$new --save csv:link/new.sarkelo.h5
--seed|$new --seed ""
--slices 4294967298,0,0,1|--slices 4294967298,0,0,1 slices
unknown extension "foo"; kinds: pov-sweep (.pov) pov-cones geom (.geom) vrml (.wrl)|--save new.foo
unknown kind foo|--save foo:new.pov
--checkpoint|--checkpoint -1
--threads|--threads 1025
1000000 roots are more than the 100000 particles|--set roots.count=1000000 --set roots.distribution=Spherical
ROWS
fails 3 <<ROWS
none.sarkelo.h5: cannot be read: No such file|--resume none.sarkelo.h5
.: not an aggregate file|--resume .
kept.sarkelo.h5: exists already|--resume b.sarkelo.h5 --particles 10 -o kept.sarkelo.h5
kept.sarkelo.h5: exists already|--resume b.sarkelo.h5 --particles 10 --checkpoint-file kept.sarkelo.h5
five.toml: exists already|$new --save csv:five.toml
five.toml: exists already|$new --checkpoint-file five.toml
not a directory|$new --slices 3,0,0,1 five.toml
holds slices already|$new --slices 3,0,0,1 held
folder: is a directory|--particles 10 -o folder --force
cannot be written: No such file|--particles 10 -o missing/new.sarkelo.h5
ROWS
[ ! -e new.sarkelo.h5 ]
cmp five.sarkelo.h5 kept.sarkelo.h5

# Schedulers: --continue starts, goes on, and leaves what is finished. It refuses other runs, and files of something else.
ends 0 "" five.toml --set surface.sample=Box -o box.sarkelo.h5
job="five.toml --continue -o job.sarkelo.h5"
part="$job --checkpoint-file job.part"
ends 0 "" $part --steps 50000 --save job.csv --set drawing.mode=tubes
ends 0 "" $part --save job.csv --force
same job.sarkelo.h5 five.sarkelo.h5
cp -p job.sarkelo.h5 before
ends 0 "" $job
cmp job.sarkelo.h5 before
[ ! job.sarkelo.h5 -nt before ]
echo precious >notes.txt
fails 2 <<ROWS
growth.seed is not the same|$job --seed 6
the surface is not the same|five.toml --continue -o box.sarkelo.h5
the roots are not the same|$job --set roots.file=root.txt
whole.sarkelo.h5: cannot be continued: growth.seed|$job --checkpoint-file whole.sarkelo.h5
ROWS
ends 3 "notes.txt: not an aggregate file" $job --checkpoint-file notes.txt
head -c 5000 before >job.sarkelo.h5
mv before job.part
ends 3 "not a whole file" $part
ends 0 "it is overwritten" $part --force
[ ! -e job.part ]
same job.sarkelo.h5 five.sarkelo.h5

# A checkpoint is removed once the output is written; not so the output under another name, and files that this run did not write.
ends 0 "" five.toml -o link/linked.sarkelo.h5 --checkpoint-file linked.sarkelo.h5 --checkpoint 0.00001
same linked.sarkelo.h5 five.sarkelo.h5
for checkpoint in "notes.txt 0" "own.sarkelo.h5 0.00001"; do
    ends 0 "" five.toml -o other.sarkelo.h5 --checkpoint-file ${checkpoint% *} --checkpoint ${checkpoint#* } --force
done
[ "$(cat notes.txt)" = precious ] && [ ! -e own.sarkelo.h5 ] || fail "a checkpoint of another name"
ends 0 "" --resume other.sarkelo.h5 -o later.sarkelo.h5 --checkpoint-file other.sarkelo.h5 --checkpoint 0.00001 --particles 9000 --force
[ -e other.sarkelo.h5 ] && [ -e later.sarkelo.h5 ] || fail "the file that was continued is gone"

# A file that appears in the output's place meanwhile is another run's, and stays.
mkdir rescue
export TMPDIR=$work/rescue
"$grow" -o race.sarkelo.h5 --minutes 0.015 --quiet 2>err &
sleep 0.3
cp five.sarkelo.h5 race.sarkelo.h5
finishes 3
cmp race.sarkelo.h5 five.sarkelo.h5
grep -q "another program has written it meanwhile; the aggregate is kept in $work/rescue" err || fail "$(cat err)"
rm rescue/*

# Signals: the file is written, and a run that goes on later is the same, whatever its settings.
printf '1 2 3\n-4 5 6\n0.1 0 -7\n' >seeds
flights="growth.walk = 'flights'" ring="roots = {distribution = 'Ring: x axis plane', count = 6, range = 5}" plane="source.type = 'Plane (z)'"
cylinder="source.type = 'STL surface';surface = {sample = 'Cylinder', scale = [20, 20, 21]}"
while IFS='|' read -r signal status recipe; do
    tr ';' '\n' <<<"$recipe" >recipe.toml
    rm -f signal.sarkelo.h5
    (trap - INT; exec "$grow" recipe.toml -o signal.sarkelo.h5 --quiet --particles 100000000 2>err) &
    sleep 0.3
    kill -"$signal" $!
    finishes "$status"
    taken=$(of signal.sarkelo.h5 steps)
    [ "$(of signal.sarkelo.h5 particles)" -gt 10 ] || fail "too little grew to compare"
    ends 0 "" recipe.toml --steps $((taken / 2)) -o straight.sarkelo.h5 --force --threads 1
    ends 0 "" --resume straight.sarkelo.h5 --steps "$taken"
    same signal.sarkelo.h5 straight.sarkelo.h5
done <<ROWS
INT|130|
TERM|143|$flights
HUP|129|growth = {stickiness = 50, rotation = 5, bias = 1};roots.file = 'seeds'
XCPU|152|growth = {branch_length = 0.3, intersection_range = 2};$plane
USR1|138|growth.launch_scale = 1.5;growth.killing_scale = 5;$flights;$plane;$ring
INT|130|growth.association = true;$ring;drawing = {thickness_tip = 0.1, mode = 'tubes'}
INT|130|growth.association = true;$flights;$ring;surface = {sample = 'Box', shift = [0, 0, 1]}
INT|130|growth.killing_scale = 5;$cylinder
INT|130|growth.branch_length = 5;$flights;$cylinder
INT|130|growth.bias = 0;$flights;source.type = 'Infinity'
ROWS

# Each kind of file is saved, the kind taken from the extension or given. Without statistics the report has none.
files="all/a.pov all/b.wrl all/c.geom all/d.dxf all/e.stl all/f.txt all/g.vtp all/h.ply all/i.csv pov-cones:all/j geom-points:all/k vrml-low:all/l"
mkdir all
ends 0 "" five.toml -o all.sarkelo.h5 --set surface.sample=Box --slices 2,0,0,2 slices $(printf -- '--save %s ' $files)
[ "$(find all slices -type f -size +0 | wc -l)" -eq 14 ] && ! grep -q Statistics all/f.txt || fail "$(ls all slices)"

# The statistics: every number of the expected file has been computed once more from the particles, by other means.
ends 0 "" --resume five.sarkelo.h5 --particles 2000 -o s.sarkelo.h5 --statistics s.json --save report.txt
grep -q "Statistics at time step: 2000" report.txt
[ "$(grep -oP '"seconds": \K[^,]*' s.json)" = "$(of s.sarkelo.h5 seconds)" ]
diff <(grep -vE 'seconds|version' s.json) "$tests/statistics.json" || fail "other statistics"

# A full disk is reported, growth goes on, and the file that was there stays.
cp five.sarkelo.h5 full.sarkelo.h5
(ulimit -f 8; HOME=/nonexistent exec "$grow" --resume full.sarkelo.h5 --particles 20000 --checkpoint 0.004 2>err >out) &
finishes 3
grep -q 'checkpoint: Cannot write "full.sarkelo.h5": File too large; growth goes on' err || fail "$(cat err)"
tail -1 err | grep -q '^sarkelo-grow: Cannot write "full.sarkelo.h5": File too large; .*; Cannot write "/nonexistent": No such file' || fail "$(cat err)"
cmp five.sarkelo.h5 full.sarkelo.h5
"$grow" -o /dev/full --particles 500 --seed 5 2>err &
finishes 3
grep -q "No space left on device; the aggregate is kept in $work/rescue/rescued-" err || fail "$(cat err)"
same rescue/rescued-*.sarkelo.h5 five.sarkelo.h5
