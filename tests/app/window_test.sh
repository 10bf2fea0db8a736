#!/usr/bin/env bash
# The real program on a virtual display: the window opens, branches in several flow colours grow in it, keys steer it,
# and it ends on request. Dual-screen stereo shows a picture in each half.
set -eu
program=$1
title="Diffusion Limited Aggregation"
work=$(mktemp -d)
. "$(dirname "$0")/../../packaging/packages.sh"
start_virtual_display
trap 'kill "$virtual_display" 2>/dev/null; rm -rf "$work"' EXIT
cd "$work"

fail() {
    echo "$1" >&2
    exit 1
}

# Starts the program with the given arguments and waits for its window.
start() {
    "$program" "$@" &
    pid=$!
    for _ in $(seq 100); do
        if window=$(xdotool search --name "$title" 2>/dev/null); then
            xdotool windowmove "$window" 0 0
            return
        fi
        sleep 0.1
    done
    fail "no window"
}

key() {
    # Keys go to the window under the pointer.
    xdotool mousemove 400 300 key "$@"
    sleep 0.5
}

picture() {
    timeout 20 xwd -silent -name "$title" | xwdtopnm 2>/dev/null >"$1"
}

# Colours of an area (columns left to right) of a picture that are not black.
colours() {
    pnmcut -left "$2" -right "$3" "$1" | ppmhist -noheader | awk '$5 > 0 && $1 + $2 + $3 > 0' | wc -l
}

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
