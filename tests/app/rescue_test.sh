#!/usr/bin/env bash
# rescue_test.sh SARKELO SARKELO-VIEW SARKELO-GROW: signals in every state of the window and a lost display keep the aggregate in
# a file, from which growth goes on exactly.
set -eu
program=$1 view=$2 grow=$3
. "$(dirname "$0")/../../tools/drive.sh"
printf 'solid s\nouter loop\nvertex 1 2\n' >bad.stl

none_left() { [ -z "$(ls -d sarkelo-rescue-* 2>/dev/null)" ] || fail "left behind: $(ls -d sarkelo-rescue-*)"; }
# kept STATUS: the program ends with the status within two seconds, one file is left, and it goes on exactly.
kept() {
    local since=${EPOCHREALTIME/./} file steps
    ends_with "$1"
    [ $((${EPOCHREALTIME/./} - since)) -lt 2000000 ] || fail "it took $((${EPOCHREALTIME/./} - since)) microseconds"
    file=$(ls sarkelo-rescue-*.sarkelo.h5)
    grep -qx "    sarkelo-view $file" stderr.txt || fail "$(cat stderr.txt)"
    steps=$(/usr/bin/python3 -c "import h5py; print(h5py.File('$file').attrs['steps'])")
    "$grow" --resume "$file" -o rest.sarkelo.h5 --steps $((steps + 300000)) --save rest.csv --quiet
    "$grow" -o whole.sarkelo.h5 --steps $((steps + 300000)) --save whole.csv --quiet
    cmp rest.csv whole.csv || fail "growth does not go on exactly"
    [ "$(wc -l <rest.csv)" -gt 1500 ] || fail "only $(wc -l <rest.csv) lines"
    rm -f sarkelo-rescue-* rest.* whole.*
}

# Each state of the window with one signal, and the growing window with all three.
for case in growing:HUP:129 growing:INT:130 growing:TERM:143 hidden:TERM:143 menu:HUP:129 selector:INT:130 message:TERM:143; do
    IFS=: read -r state signal status <<<"$case"
    (trap - INT HUP; exec "$program" 2>stderr.txt) &
    pid=$!
    find_window
    sleep 1
    case $state in
    hidden) xdotool windowunmap "$window" ;;
    menu) xdotool mousemove 20 20 click 3 ;;
    selector) choose "Save simulation information" ;;
    message) choose "Read seeds" && select_file "$work/no/such/file" ;;
    esac
    sleep 0.5
    kill -"$signal" $pid
    kept "$status"
done

# A surface that cannot be read ends the program after its message; what the user ends is not kept.
start
choose "Read constraint surface from STL file"
select_file "$work/bad.stl"
answer
kept 255
start
key q
ends_with 0
none_left

# An ignored SIGHUP stays ignored. The home directory takes what the current one cannot.
program=$view
mkdir locked home
cd locked
HOME=$work/home nohup "$view" >/dev/null 2>"$work/stderr.txt" &
pid=$!
wait_for "window" visible "$title"
sleep 0.5
kill -HUP $pid
sleep 0.5
kill -0 $pid || fail "SIGHUP is not ignored"
rmdir "$work/locked"
kill -TERM $pid
cd "$work"
ends_with 143
ls home/sarkelo-rescue-*.sarkelo.h5 >/dev/null || fail "nothing in the home directory"

# Windows of one directory that end in the same second, their standard error unread, keep an aggregate each.
pids=()
for count in 1 2; do
    "$view" 2> >(:) &
    pid=$!
    pids+=($pid)
    wait_for "window $count" visible "$title" $count
done
sleep 0.5
kill -PIPE "${pids[0]}"
kill -XCPU "${pids[1]}"
pid=${pids[0]} ends_with 141
pid=${pids[1]} ends_with 152
[ "$(ls sarkelo-rescue-* | wc -l)" -eq 2 ] || fail "kept: $(ls sarkelo-rescue-*)"
for file in sarkelo-rescue-*; do "$grow" --resume "$file" --particles 1 -o opened.sarkelo.h5 --force --quiet; done
rm sarkelo-rescue-*

# An unchanged file is not kept again; a run that loses its display is.
"$grow" --particles 50000 -o large.sarkelo.h5 --quiet
start large.sarkelo.h5
kill -TERM $pid
ends_with 143
none_left
start large.sarkelo.h5
key F3
sleep 1
kill -KILL "$virtual_display"
trap 'rm -rf "$work"' EXIT
kept 1
