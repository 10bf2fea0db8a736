#!/usr/bin/env bash
# rescue_test.sh SARKELO SARKELO-VIEW SARKELO-GROW: whatever ends the program other than its user keeps the aggregate first, in
# every state of the window; the file opens, and growth goes on exactly.
set -eu
program=$1
view=$2
grow=$3
. "$(dirname "$0")/../../tools/drive.sh"

printf 'solid s\nouter loop\nvertex 1 2\n' >bad.stl
echo nothing >empty.txt

# kept STATUS: the program ends with the status within two seconds, one file is left, and it goes on exactly.
kept() {
    local since status=0 file steps
    since=$(date +%s%N)
    wait "$pid" || status=$?
    [ "$status" -eq "$1" ] || fail "status $status, not $1: $(cat stderr.txt)"
    [ $((($(date +%s%N) - since) / 1000000)) -lt 2000 ] || fail "it took $((($(date +%s%N) - since) / 1000000)) ms"
    file=$(ls sarkelo-rescue-*.sarkelo.h5)
    grep -qx "    sarkelo-view $file" stderr.txt || fail "$(cat stderr.txt)"
    steps=$(/usr/bin/python3 -c "import h5py; print(h5py.File('$file').attrs['steps'])")
    "$grow" --resume "$file" -o rest.sarkelo.h5 --steps $((steps + 300000)) --save rest.csv --quiet
    "$grow" -o whole.sarkelo.h5 --steps $((steps + 300000)) --save whole.csv --quiet
    cmp rest.csv whole.csv || fail "growth does not go on exactly"
    [ "$(wc -l <rest.csv)" -gt 1500 ] || fail "only $(wc -l <rest.csv) lines"
    rm -f sarkelo-rescue-* rest.* whole.*
}

# bring_to STATE: growing, hidden, or with a menu, a file selector or a message box open.
bring_to() {
    case $1 in
    hidden) xdotool windowunmap "$window" ;;
    menu)
        xdotool mousemove 20 20 click 3
        wait_for "the menu" visible "freeglut menu"
        ;;
    selector)
        choose "Save simulation information"
        wait_for "a file selector" visible FileSelector
        ;;
    message)
        choose "Read seeds"
        select_file "$work/no/such/file"
        wait_for "a message" visible Message
        ;;
    esac
    sleep 0.3
}

for signal in TERM:143 HUP:129 INT:130; do
    for state in growing hidden menu selector message; do
        (trap - INT HUP; exec "$program" 2>stderr.txt) &
        pid=$!
        wait_for "the window" visible "$title"
        window=$(xdotool search --onlyvisible --name "$title")
        xdotool windowmove "$window" 0 0
        sleep 1
        bring_to $state
        kill -"${signal%:*}" $pid
        kept "${signal#*:}"
    done
done

# A surface that cannot be read ends the program after its message.
start
sleep 0.5
choose "Read constraint surface from STL file"
select_file "$work/bad.stl"
answer
kept 255

# What the user ends is not kept.
start
sleep 0.5
key q
wait $pid || fail "status $?"
program=$view
[ -z "$(ls -d sarkelo-rescue-* 2>/dev/null)" ] || fail "left behind: $(ls -d sarkelo-rescue-*)"

# An ignored SIGHUP stays ignored; where the current directory cannot be written, another is.
for place in HOME TMPDIR; do
    mkdir locked other
    cd locked
    env HOME=/nonexistent $place="$work/other" nohup "$view" >/dev/null 2>"$work/stderr.txt" &
    pid=$!
    wait_for "the window" visible "$title"
    sleep 0.5
    kill -HUP $pid
    sleep 0.5
    kill -0 $pid || fail "SIGHUP is not ignored"
    rmdir "$work/locked"
    kill -TERM $pid
    wait $pid || [ $? -eq 143 ]
    ls "$work"/other/sarkelo-rescue-*.sarkelo.h5 >/dev/null || fail "not kept in $place"
    cd "$work"
    rm -r other
done

# Windows of one directory that end in the same second, and whose standard error nobody reads, keep an aggregate each.
pids=()
for window in 1 2 3; do
    "$view" 2> >(:) &
    pids+=($!)
    pid=$!
    wait_for "window $window" visible "$title" $window
done
sleep 0.5
kill -PIPE "${pids[0]}"
kill -XCPU "${pids[1]}"
kill -USR1 "${pids[2]}"
for ended in "${pids[0]}:141" "${pids[1]}:152" "${pids[2]}:138"; do
    status=0
    wait "${ended%:*}" || status=$?
    [ $status -eq "${ended#*:}" ] || fail "status $status, not ${ended#*:}"
done
for file in sarkelo-rescue-*; do
    "$grow" --resume "$file" --particles 1 -o opened.sarkelo.h5 --force --quiet
done
[ "$(ls sarkelo-rescue-* | wc -l)" -eq 3 ] || fail "kept: $(ls sarkelo-rescue-*)"
rm sarkelo-rescue-*

# What was only looked at is not kept again.
"$grow" --particles 50000 -o large.sarkelo.h5 --quiet
start large.sarkelo.h5
kill -TERM $pid
wait $pid || [ $? -eq 143 ]
[ -z "$(ls -d sarkelo-rescue-* 2>/dev/null)" ] || fail "left behind: $(ls -d sarkelo-rescue-*)"

# The display goes away in mid-growth.
start large.sarkelo.h5
key F3
sleep 1
kill -KILL "$virtual_display"
trap 'rm -rf "$work"' EXIT
kept 1
