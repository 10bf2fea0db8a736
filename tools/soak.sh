#!/usr/bin/env bash
# soak.sh INSPECTED-SARKELO SEED SECONDS: random input, the same for a seed, after which no memory and no file is left in use.
set -eu
program=$1 seed=$2 seconds=$3
here=$(cd "$(dirname "$0")" && pwd)
. "$here/drive.sh"
# Under the sanitizers faults end the program, and leaks are looked for at its end.
export ASAN_OPTIONS=detect_leaks=1:quarantine_size_mb=16 UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=print_suppressions=0:suppressions=$here/leaks.supp
most_particles=3000
allowance=60000000 # bytes, for the largest window and aggregate so far

# pick VALUE...: sets `picked` to one of them.
pick() {
    shift $((RANDOM % $#))
    picked=$1
}
# Waits until the program has written its records; closes dialogs on the way.
look() {
    local since=$SECONDS
    rm -f records
    kill -USR1 "$pid" || fail "the program is gone"
    until [ -f records ]; do
        [ $((SECONDS - since)) -lt 60 ] || fail "the program does not respond"
        case $(xwininfo -root -tree) in
        *'"FileSelector"'*) select_file ;;
        *'"Message"'*) answer ;;
        *'"Question"'*) click_no ;;
        esac
        sleep 0.05
    done
}

press_keys() {
    pick a A h bracketleft bracketright plus minus less greater w r x F1 F2 F3 F4 F5 Left Right Up Down shift+Left
    echo "$number: key $picked"
    key --delay 2 --repeat $((1 + RANDOM % 30)) "$picked"
}
choose_entry() {
    local labels entry
    pick "DLA drawing mode" "Constraint surface drawing mode" "New particle distribution" "Sample constraint surfaces"
    entry=$picked
    mapfile -t labels < <(labels_of "$entry")
    pick "${labels[@]}"
    echo "$number: menu $entry, $picked"
    choose "$entry" "$picked"
}
use_panel() {
    local input
    choose "Settings"
    wait_for "settings" has_panel settings
    xdotool windowmove "$(panel settings)" 0 640
    pick "Random number seed" "Bias towards origin" "Branch length" "Stickiness" "Branch thickness" to "Number of roots"
    input=$picked
    pick 0 1 2 0.5 50 -4 nan 1e308 ""
    echo "$number: $input: $picked"
    type_into settings "$input" "$picked"
    look
    press settings "Hide"
}
use_file() {
    local labels entry format file
    mapfile -t labels < <(labels_of "Save DLA as")
    pick "${labels[@]}"
    pick "Save DLA as|$picked|saved" "Save DLA as|$picked|no/such/place" "Save simulation information||saved" \
        "Read seeds||roots.txt" "Read seeds||missing" "Read constraint surface from STL file||box.stl"
    IFS='|' read -r entry format file <<<"$picked"
    echo "$number: $entry $format: $file"
    choose "$entry" ${format:+"$format"}
    type_path "$work/$file"
    sleep 0.5
}
resize() {
    pick "1 1" "100 900" "1600 100"
    echo "$number: window of $picked, then hidden"
    xdotool windowsize "$window" $picked sleep 0.5 windowsize "$window" 800 600 windowunmap "$window" sleep 0.5 \
        windowmap --sync "$window" sleep 0.5
}
# Drops what takes most memory; sets `files` and `held` to what is in use then.
rest() {
    choose "Sample constraint surfaces" "None"
    key F4
    look
    files=$(ls "/proc/$pid/fd" | wc -l)
    held=$(value_of heap)
}

start
choose "Sample constraint surfaces" "Box"
choose "Save constraint surface to STL file"
select_file "$work/box.stl"
rest
first_files=$files first_held=$held
seq 300 | awk '{ print $1 % 7 * 3, $1 % 11 * 3, $1 % 13 * 3 }' >roots.txt
for ((number = 1; SECONDS < seconds; number++)); do
    RANDOM=$((seed * 7919 + number * 10473)) # the same actions, however many numbers those before drew
    : $RANDOM
    pick press_keys press_keys choose_entry use_panel use_panel use_file use_file resize
    $picked
    look
    [ "$(value_of ncells)" -lt $most_particles ] || key F4
    rm -f ./*.tga slice_*.txt
done
rest
[ "$files" -eq "$first_files" ] || fail "$files open files, $first_files at first"
[ "$held" -le $((first_held + allowance)) ] || fail "memory grows from $first_held to $held bytes"
key q
ends_well
