#!/usr/bin/env bash
# slow_screen_test.sh PROGRAM [PARTICLES...]: however long a frame takes, growth gets as much time as drawing, panels
# answer, and a box count ends. Prints what frames took, and growth's share of the time, at each size.
set -eu
program=$1
shift
[ $# -gt 0 ] || set -- 5000
. "$(dirname "$0")/../../tools/drive.sh"

# Records anew.
look() {
    rm -f records
    kill -USR1 "$pid"
    wait_for "the program's answer" [ -f records ]
}
value_of() { sed -n "s/^$1 //p" records; }
has() { look && [ "$(value_of ncells)" -ge "$1" ]; }
# Answers come between frames.
has_seed() { look && [ "$(value_of seed)" = "$1" ]; }
has_no_panel() { look && [ "$(value_of settingformvisible)" = 0 ]; }
is_counting() { look && [ "$(value_of boxcountrequest)" -eq 1 ]; }
is_done() { ! is_counting; }

start
choose "Constraint surface drawing mode" "Off"
key F1 F2
for particles in "$@"; do
    choose "DLA drawing mode" "Off"
    until has "$particles"; do sleep 1; done
    choose "DLA drawing mode" "Tubes (Slow)"
    sleep 3
    look
    cp records before
    sleep 12
    look
    paste before records | awk -v least=0.45 '
        { before[$1] = $2; after[$1] = $4 }
        END {
            time = after["time"] - before["time"]
            drawing = after["drawing"] - before["drawing"]
            frames = after["frames"] - before["frames"]
            share = 1 - drawing / time
            printf "%d particles: frames of %.2f s, %.0f %% of the time for growth, %.0f particles a second\n", \
                before["ncells"], drawing / frames, 100 * share, (after["ncells"] - before["ncells"]) / time
            exit share < least
        }' || fail "growth is starved"
    choose "Settings"
    type_into settings "Random number seed" 4321
    wait_for "the seed" has_seed 4321
    press settings "Hide"
    wait_for "the panel gone" has_no_panel
done
key F3 F5
wait_for "a box count" is_counting
wait_for "the end of the box count" is_done
key q
wait $pid || fail "the program ended with status $?"
