#!/usr/bin/env bash
# The real program on a virtual display: the window opens, branches in several flow colours grow in it, keys steer it,
# and it ends on request. Dual-screen stereo shows a picture in each half.
set -eu
program=$1
. "$(dirname "$0")/drive.sh"

start
sleep 4
picture one.ppm
[ "$(colours one.ppm 0 799)" -ge 20 ] || fail "too few colours: $(colours one.ppm 0 799)"
sleep 2
picture two.ppm
cmp -s one.ppm two.ppm && fail "nothing grows"
key q
wait $pid || fail "q ended with status $?"

start -ss
sleep 4
picture stereo.ppm
pnmfile stereo.ppm | grep -q '1600 by 600' || fail "dual-screen window: $(pnmfile stereo.ppm)"
pnmcut -left 0 -right 799 stereo.ppm >left.ppm
pnmcut -left 800 -right 1599 stereo.ppm >right.ppm
[ "$(colours stereo.ppm 0 799)" -ge 20 ] || fail "left eye is empty"
[ "$(colours stereo.ppm 800 1599)" -ge 20 ] || fail "right eye is empty"
cmp -s left.ppm right.ppm && fail "both eyes see the same"
key Escape
wait $pid || fail "Escape ended with status $?"
