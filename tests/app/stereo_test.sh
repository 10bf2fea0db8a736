#!/usr/bin/env bash
# Dual-screen stereo shows a picture of its own in each half of the window, and Escape ends the program.
set -eu
program=$1
. "$(dirname "$0")/../../tools/drive.sh"

is_coloured() {
    picture stereo.ppm
    [ "$(colours stereo.ppm 0 799)" -ge 20 ] && [ "$(colours stereo.ppm 800 1599)" -ge 20 ]
}
start -ss
wait_for "a picture for each eye" is_coloured
pnmfile stereo.ppm | grep -q '1600 by 600' || fail "dual-screen window: $(pnmfile stereo.ppm)"
pnmcut -left 0 -right 799 stereo.ppm >left.ppm
pnmcut -left 800 -right 1599 stereo.ppm >right.ppm
cmp -s left.ppm right.ppm && fail "both eyes see the same"
key Escape
wait $pid || fail "Escape ended with status $?"
