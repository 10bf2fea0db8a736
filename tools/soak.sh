#!/usr/bin/env bash
# soak.sh PROGRAM SEED SECONDS: random input for a time, bounded so that it asks for no absurd work. The program (the one
# that shows its records) must answer after every action, end well when asked to, and not hold more and more memory.
# Each action is printed before it happens; the same seed gives the same actions again. The seed also decides the switch.
set -eu
program=$1 seed=$2 seconds=$3
here=$(cd "$(dirname "$0")" && pwd)
. "$here/drive.sh"
# Built with the sanitizers, the program prints what is wrong and ends; leaks are looked for at its end.
export ASAN_OPTIONS=detect_leaks=1:quarantine_size_mb=16 UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=print_suppressions=0:suppressions=$here/leaks.supp

most_particles=6000
resting_every=20 # actions
# Bytes by which what is held at rest may grow: GL keeps what the largest picture so far took, and tables have room for the
# largest aggregate. Ten minutes find a growth of some 50 kB an action; what nothing points to any more is found at the end.
allowance=10000000

fail() {
    echo "seed $seed, action $action, line ${BASH_LINENO[*]}: $1" >&2
    kill -0 "$pid" 2>/dev/null || wait "$pid" || echo "the program ended with status $?" >&2
    grep -vE '^ +(Tracing|Processing)|^Slice|^\*\*\*' stderr.txt | tail -n 80 >&2 || true
    exit 1
}

# pick VALUE...: sets `picked` to one of them.
pick() {
    shift $((RANDOM % $#))
    picked=$1
}
# Waits until the program has done all it was asked to, and has written its records; answers dialogs on the way.
look() {
    local since=$SECONDS
    rm -f records
    kill -USR1 "$pid" || fail "the program is gone"
    until [ -f records ]; do
        [ $((SECONDS - since)) -lt 60 ] || fail "the program does not answer"
        case $(xwininfo -root -tree) in
        *'"FileSelector"'*) select_file ;;
        *'"Message"'*) answer ;;
        *'"Question"'*) click_no ;;
        esac
        sleep 0.05
    done
}
# open_panel ENTRY PANEL: beside the others, below the window.
open_panel() {
    choose "$1"
    wait_for "$1" has_panel "$2"
    case $2 in settings) set -- 0 ;; transform) set -- 430 ;; *) set -- 860 ;; esac
    xdotool windowmove "$(xwininfo -root -tree | awk '/XForm/ { print $1; exit }')" "$1" 640
    sleep 0.1
}

# Actions ---------------------------------------------------------------------------------------------------------------

press_keys() {
    local list=()
    for _ in $(seq $((RANDOM % 6 + 1))); do
        pick a A h H bracketleft bracketright plus minus less greater period w r x Tab Return F1 F2 F3 F4 F5 F6 F12 Left Right \
            Up Down Home shift+Left ctrl+a alt+F1
        list+=("$picked")
    done
    pick 1 1 80
    echo "keys ${list[*]}, $picked times ${list[0]}"
    key "${list[@]}"
    case ${list[0]} in plus | minus | less | greater | a) key --delay 2 --repeat "$picked" "${list[0]}" ;; esac
}
drag() {
    local moves=() x=$((50 + RANDOM % 700)) y=$((50 + RANDOM % 400))
    for _ in 1 2 3 4; do moves+=(mousemove $((x + RANDOM % 500)) $((y + RANDOM % 120))); done
    pick 1 2
    echo "drag $picked from $x $y: ${moves[*]}"
    xdotool mousemove $x $y mousedown "$picked" "${moves[@]}" mouseup "$picked"
}
choose_entry() {
    local path labels
    pick "DLA drawing mode" "Constraint surface drawing mode" "New particle distribution" "Sample constraint surfaces" \
        "Initial root distribution" "Calculate statistics (f5)" "Pause / Continue (f3)"
    path=("$picked")
    mapfile -t labels < <(labels_of "$picked")
    if [ ${#labels[@]} -gt 0 ]; then pick "${labels[@]}" && path+=("$picked"); fi
    echo "menu ${path[*]}"
    choose "${path[@]}"
}
fill_panel() {
    local entry panel button inputs input
    pick "Settings|settings|Hide|Random number seed,Bias towards origin,Branch length,Stickiness,Particle rotation,Branch thickness,to" \
        "Settings|settings|Associate seeds with roots|Intersection range,Number of roots,Number of roots,Root distribution range" \
        "Transform constraint surface|transform|Apply|Scale#1,Scale#3,Shift#1,Shift#2,Rotate#2,Rotate#3" \
        "Compute/save slices|slicing|Slice|Plane normal#1,Plane normal#2,Plane normal#3,Number of slices"
    IFS='|' read -r entry panel button inputs <<<"$picked"
    IFS=, read -ra inputs <<<"$inputs"
    open_panel "$entry" "$panel"
    for _ in 1 2; do
        pick "${inputs[@]}"
        input=$picked
        case $input in
        "Number of "*) pick 0 1 2 3 50 -4 x1 nan "" 2000000000 ;;
        "Branch length") pick 1 2 0.5 nan 1e308 -1 ;;
        *) pick 1 0.5 2 -1 45 100 "" x1 nan -inf 1e308 1e-300 1.2.3 %s%n 0x1p9 "1 2" 99999999999999999999999999999999999999 ;;
        esac
        echo "$panel, $input: $picked"
        type_into "$panel" "$input" "$picked"
        look
    done
    press "$panel" "$button"
}
# Saves or reads a file; a path that the selector takes for a directory leaves it open, and look cancels it.
choose_file() {
    local entry labels file
    mapfile -t labels < <(labels_of "Save DLA as")
    pick new kept no/such/place . "a b" "$(printf 'long%.0s' $(seq 60))"
    file=$picked
    pick "Save DLA as" "Save DLA as" "Save constraint surface to STL file" "Save simulation information" "Read seeds" \
        "Read constraint surface from STL file"
    entry=("$picked")
    case $picked in
    "Save DLA as") pick "${labels[@]}" && entry+=("$picked") ;;
    "Read seeds") pick hundreds.txt huge.txt empty.txt missing . && file=$picked ;;
    "Read constraint"*) pick box.stl corner.stl many.stl none.stl huge.stl missing . && file=$picked ;;
    esac
    echo "${entry[*]}: $file"
    [ "$(value_of ncells)" -lt 1500 ] || key F4
    choose "${entry[@]}"
    type_path "$work/$file"
    sleep 0.5
}
resize() {
    pick "1 1" "100 900" "1600 100" "640 480"
    echo "window of $picked, then hidden for a while"
    xdotool windowsize "$window" $picked sleep 0.5 windowsize "$window" "$width" 600 windowunmap "$window" sleep 0.5 \
        windowmap --sync "$window" sleep 0.5
}

# The run ---------------------------------------------------------------------------------------------------------------

prepare_files() {
    local corner="facet normal 0 0 1\nouter loop\nvertex %s 0 0\nvertex 0 %s 0\nvertex 0 0 %s\nendloop\nendfacet\n"
    printf "solid\n${corner}endsolid\n" 20 20 20 >corner.stl
    printf "solid\n$corner${corner}endsolid\n" 1e308 1e308 -1e308 nan 1 inf >huge.stl
    head -c 84 /dev/zero >none.stl
    { head -c 80 /dev/zero; printf '\377\377\377\377'; } >many.stl
    seq 300 | awk '{ print $1 % 7 * 3, $1 % 11 * 3, $1 % 13 * 3 }' >hundreds.txt
    printf '1e308 -1e308 0\nnan inf 0\n1 2 3\n' >huge.txt
    touch kept empty.txt
}
files() {
    local corner="facet normal 0 0 1\nouter loop\nvertex %s 0 0\nvertex 0 %s 0\nvertex 0 0 %s\nendloop\nendfacet\n"
    { printf 'solid\n'; printf "$corner" 20 20 20 -30 30 30; printf 'endsolid\n'; } >corner.stl
    { printf 'solid\n'; printf "$corner" 1e308 1e308 -1e308 nan 1 inf; printf 'endsolid\n'; } >huge.stl
    head -c 84 /dev/zero >none.stl
    { head -c 80 /dev/zero; printf '\377\377\377\377'; } >many.stl
    printf '0 0 0\n5 0 0\n0 5 0\n' >few.txt
    seq 300 | awk '{ print $1 % 7 * 3, $1 % 11 * 3, $1 % 13 * 3 }' >hundreds.txt
    printf '1e308 -1e308 0\nnan inf 0\n1 2 3\n' >huge.txt
    : >empty.txt
    echo kept >kept
}
files() { ls "/proc/$pid/fd" | wc -l; }
# Puts in order what decides how much memory is in use, and notes that.
rest() {
    choose "Sample constraint surfaces" "None"
    open_panel "Settings" settings
    for input in "Branch length|1" "Root distribution range|10" "Number of roots|1"; do
        type_into settings "${input%|*}" "${input#*|}"
        look
    done
    press settings "Hide"
    key F4 F3
    look
    held+=("$(value_of heap)")
    echo "at rest: ${held[-1]} bytes, $(files) files"
    [ "$(files)" -eq "$files_at_first" ] || fail "$(files) open files, $files_at_first at first"
    key F3
}

action=0 held=() width=800
prepare_files
case $((seed % 3)) in
0) start ;;
1) start -d ;;
2) start -ss && width=1600 ;;
esac
choose "Sample constraint surfaces" "Box"
choose "Save constraint surface to STL file"
select_file "$work/box.stl"
files_at_first=$(files)
until [ $SECONDS -ge "$seconds" ]; do
    action=$((action + 1))
    # Each action has its own numbers, however many those before it drew.
    RANDOM=$(((seed * 7919 + action * 104729) % 2147483647))
    : $RANDOM
    pick press_keys press_keys drag choose_entry choose_entry fill_panel fill_panel choose_file choose_file resize
    echo -n "$action: "
    $picked
    look
    [ "$(value_of ncells)" -lt $most_particles ] || key F4
    rm -f ./*.tga slice_*.txt new long*
    [ $((action % resting_every)) -ne 0 ] || rest
done
# After a run long enough for that: what is held in the last quarter is no more than in the first half.
n=${#held[@]}
if [ "$n" -ge 8 ]; then
    most=$(printf '%s\n' "${held[@]:0:n / 2}" | sort -gr | head -1)
    least=$(printf '%s\n' "${held[@]:n - n / 4}" | sort -g | head -1)
    [ "$least" -le $((most + allowance)) ] || fail "memory grows: from at most $most to at least $least bytes"
fi
key q
ends_well
echo "$action actions, none at fault"
