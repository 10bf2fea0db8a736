#!/usr/bin/env bash
# view_window_test.sh SARKELO-VIEW SARKELO-GROW: the window of sarkelo-view under a window manager, as a person finds it: it
# rests, says which file is open, asks before a run is lost, and goes on after a file that cannot be read.
set -eu
program=$1
grow=$2
. "$(dirname "$0")/../../tools/drive.sh"
start_window_manager
menu_tree=$project/tests/viewer/view_menu_tree.txt
export HOME=$work

is_titled() { [ "$(xdotool getwindowname "$window")" = "$1" ]; }
# Hundredths of a second of the processor so far.
busy() { awk '{ print $14 + $15 }' "/proc/$pid/stat"; }
# stays: the program is still there, and no question stands on the display.
stays() {
    sleep 0.5
    kill -0 "$pid" || fail "the program is gone"
    visible Choice 0 || fail "a question is left"
}
ends() {
    local status=0
    wait "$pid" || status=$?
    [ "$status" -eq 0 ] || fail "the program ended with status $status: $(cat stderr.txt)"
}

"$grow" --particles 1000 -o a.sarkelo.h5 --quiet
start a.sarkelo.h5
is_titled "a.sarkelo.h5 - $title" || fail "title: $(xdotool getwindowname "$window")"
sleep 1
since=$(busy)
sleep 3
[ $(($(busy) - since)) -le 5 ] || fail "at rest it takes $(($(busy) - since)) hundredths of a second in 3 s"

# Esc closes a menu, and then quits; a run that has grown is asked about.
xdotool mousemove $((left + 20)) $((top + 20)) click 3
wait_for "the menu" visible "freeglut menu" 1
key Escape
wait_for "the menu gone" visible "freeglut menu" 0
key F3
wait_for "the mark of a run that grows" is_titled "a.sarkelo.h5 (unsaved) - $title"
key F3
key Escape
click_cancel
stays
choose "Quit (q)"
click_save
select_file
stays
printf 'solid s\nouter loop\nvertex 1 2\n' >bad.stl
choose Files "Read constraint surface from STL file"
select_file "$work/bad.stl"
answer
stays
key w
wait_for "a capture" [ -s 0000.tga ]

# A second window, in full screen: its captures do not mix with the first one's, and each panel opens in front of the last.
first=$pid
"$program" -f a.sarkelo.h5 2>stderr.txt &
pid=$!
wait_for "its window" visible "$title" 2
sleep 1
left=0 top=0
key w
wait_for "a capture of its own" [ -s "$pid-0000.tga" ]
choose "Settings"
wait_for "the settings" visible '^Settings$'
choose "Transform constraint surface"
wait_for "another panel" visible '^Constraint surface$'
sleep 0.5
xwininfo -root -tree | sed -nE 's/.*"(Settings|Constraint surface)": .*XForm.*/\1/p' | head -1 | grep -q Constraint ||
    fail "a panel is hidden behind another"
kill -TERM "$pid"
wait "$pid" || true
pid=$first
[ "$(ls ./*.tga | wc -l)" -eq 2 ] || fail "$(ls ./*.tga)"

# Closed by the window manager, it asks what becomes of the run.
xdotool mousemove $((left + 20)) $((top + 580)) click 2 key alt+F4
click_save
select_file "$work/closed"
ends
[ -s closed.sarkelo.h5 ] || fail "the run is not saved"

# What was rescued is offered.
start
sleep 1
kill -TERM "$pid"
wait "$pid" || true
rescued=$(ls sarkelo-rescue-*)
"$program" 2>stderr.txt &
pid=$!
click_button Question 100
window=$(xdotool search --onlyvisible --name "$title")
find_corner
wait_for "the rescued run" is_titled "$rescued - $title"
key F3
sleep 1
key q
click_discard
ends

status=0
"$program" -s 2>stderr.txt || status=$?
[ "$status" -eq 1 ] && grep -qx "sarkelo-view: this display has no active stereo (-s)" stderr.txt || fail "$status, $(cat stderr.txt)"
