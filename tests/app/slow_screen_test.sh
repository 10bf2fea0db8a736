#!/usr/bin/env bash
# slow_screen_test.sh INSPECTED-SARKELO [PARTICLES...]: however long a frame takes, growth gets as much time as drawing, and panels
# answer. Prints what frames took, and growth's share of the time, at each size.
set -eu
program=$1
shift
[ $# -gt 0 ] || set -- 5000
. "$(dirname "$0")/../../tools/drive.sh"
has() { look && [ "$(value_of ncells)" -ge "$1" ]; }
start
choose "Constraint surface drawing mode" "Off"
key F1 F2
for particles in "$@"; do
    choose "DLA drawing mode" "Off"
    until has "$particles"; do sleep 1; done
    choose "DLA drawing mode" "Tubes (Slow)"
    sleep 2
    look
    cp records before
    sleep 8
    look
    paste before records | awk '
        { before[$1] = $2; after[$1] = $4 }
        END {
            time = after["time"] - before["time"]
            drawing = after["drawing"] - before["drawing"]
            printf "%d particles: frames of %.2f s, %.0f %% of the time for growth, %.0f particles a second\n", before["ncells"],
                drawing / (after["frames"] - before["frames"]), 100 * (1 - drawing / time), (after["ncells"] - before["ncells"]) / time
            exit 1 - drawing / time < 0.45
        }' || fail "growth is starved"
    choose "Settings"
    type_into settings "Random number seed" 4321
    expect growth.seed 4321
    press settings "Hide"
    expect panels 0
done
key q
ends_well
