#!/usr/bin/env bash
# soak.sh PROGRAM SEED SECONDS: random input for a time, bounded so that it asks for no absurd work. The program (the one
# that shows its records) must answer after every action, end well when asked to, and not hold more and more memory.
# Each action is told before it happens; the same seed gives the same actions again. The seed also decides the switch.
set -eu
program=$1 seed=$2 seconds=$3
here=$(cd "$(dirname "$0")" && pwd)
. "$here/drive.sh"
# Built with the sanitizers, the program says what is wrong and ends; leaks are looked for at its end.
export ASAN_OPTIONS=detect_leaks=1:quarantine_size_mb=16 UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=print_suppressions=0:suppressions=$here/leaks.supp

most_particles=6000
resting_every=20 # actions
# Bytes by which what is held at rest may grow: GL keeps what the largest picture so far took, and tables have room for the
# largest aggregate. Ten minutes find a growth of some 50 kB an action; what nothing points to any more is found at the end.
allowance=10000000

fail() {
    echo "seed $seed, action $action, line ${BASH_LINENO[*]}: $1" >&2
    if ! kill -0 "$pid" 2>/dev/null; then
        wait "$pid" || echo "the program ended with status $?" >&2
    fi
    grep -vE '^ +(Tracing|Processing)|^Slice|^\*\*\*' stderr.txt | tail -n 80 >&2 || true
    exit 1
}

# Random choices --------------------------------------------------------------------------------------------------------

# draw N: a number below N.
draw() { drawn=$((RANDOM % $1)); }
# pick VALUE...: one of them.
pick() {
    draw $#
    shift "$drawn"
    picked=$1
}
# pick_label MENU: the label of one of its entries.
pick_label() {
    local labels
    mapfile -t labels < <(labels_of "$1")
    pick "${labels[@]}"
}
tell() { echo "$action: $*"; }

odd_numbers=("" 0 -1 x1 nan -inf inf 1e308 -1e308 1e-300 2000000000 1.2.3 %s%n 0x1p9 "1 2"
    99999999999999999999999999999999999999999999999999999999999999999999999999999999)
# pick_number VALUE...: one of the values, or an odd one at times.
pick_number() {
    draw 3
    if [ "$drawn" -eq 0 ]; then
        pick "${odd_numbers[@]}"
    else
        pick "$@"
    fi
}

# What stands on the display --------------------------------------------------------------------------------------------

value_of() { sed -n "s/^$1 //p" records; }
answer_dialogs() {
    local windows
    windows=$(xwininfo -root -tree)
    case $windows in
    *'"FileSelector"'*) select_file ;;
    *'"Message"'*) answer ;;
    *'"Question"'*) click_no ;;
    esac
}
# Waits until the program has done all it was asked to, and has written its records; answers dialogs on the way.
look() {
    local since=$SECONDS
    rm -f records
    kill -USR1 "$pid" || fail "the program is gone"
    until [ -f records ]; do
        [ $((SECONDS - since)) -lt 60 ] || fail "the program does not answer"
        answer_dialogs
        sleep 0.05
    done
}
close_menus() {
    visible "freeglut menu" || return 0
    xdotool mousemove 5 5 click 1
    wait_for "the menus gone" visible "freeglut menu" 0
}
# Side by side below the window.
place_panels() {
    local x=0 name id
    for name in settings transform slicing; do
        id=$(panel "$name")
        [ -z "$id" ] || xdotool windowmove "$id" $x 640
        x=$((x + 430))
    done
}
open_panel() {
    choose "$1"
    wait_for "$1" has_panel "$2"
    place_panels
    sleep 0.1
}
hide_at_times() {
    draw 3
    [ "$drawn" -ne 0 ] || press "$@"
}

# Actions ---------------------------------------------------------------------------------------------------------------

press_keys() {
    local list=()
    draw 6
    for _ in $(seq 0 "$drawn"); do
        pick a A h H bracketleft bracketright plus equal minus underscore less comma greater period w W x 1 Tab \
            Return BackSpace space F1 F2 F3 F4 F5 F6 F12 Left Right Up Down Home shift+Left ctrl+a alt+F1
        list+=("$picked")
    done
    tell "keys ${list[*]}"
    key "${list[@]}"
}
zoom_far() {
    pick plus minus less greater a bracketleft
    tell "key $picked 80 times"
    xdotool mousemove 20 580 key --delay 2 --repeat 80 "$picked"
}
record() {
    tell "recording"
    key r
    key r
}
drag() {
    local button x y moves=()
    pick 1 1 2 3
    button=$picked
    draw 700
    x=$((50 + drawn))
    draw 400
    y=$((50 + drawn))
    for _ in 1 2 3 4; do
        # Not far with the right button: it would reach the menu's last entry.
        if [ "$button" -eq 3 ]; then draw 100; else draw 500; fi
        moves+=(mousemove $((x + drawn)) $((y + drawn / 4)))
    done
    tell "drag $button from $x,$y: ${moves[*]}"
    xdotool mousemove "$x" "$y" mousedown "$button"
    [ "$button" -ne 3 ] || wait_for "the menu" visible "freeglut menu"
    xdotool "${moves[@]}" mouseup "$button"
}
choose_mode() {
    local entry
    pick "DLA drawing mode" "Constraint surface drawing mode" "New particle distribution" "Sample constraint surfaces" \
        "Initial root distribution"
    entry=$picked
    pick_label "$entry"
    tell "menu $entry, $picked"
    choose "$entry" "$picked"
}
choose_command() {
    pick "-" "Toggle extras (f1)" "Toggle info (f2)" "Pause / Continue (f3)" "Restart simulation (f4)" \
        "Calculate statistics (f5)"
    tell "menu $picked"
    choose "$picked"
}
dismiss_menu() {
    tell "menu dismissed"
    xdotool mousemove 20 20 click 3
    wait_for "the menu" visible "freeglut menu"
    xdotool mousemove 60 230 mousemove 62 232
}
settings() {
    local label
    open_panel "Settings" settings
    for _ in 1 2 3; do
        pick "Random number seed" "Bias towards origin" "Branch length" "Stickiness" "Particle rotation" "Branch thickness" \
            "Intersection range" "Number of roots" "Number of roots" "Root distribution range" "Associate seeds with roots"
        label=$picked
        case $label in
        "Number of roots") pick 0 1 2 3 4 50 1000 -4 x1 nan "" 2000000000 ;;
        "Branch length") pick_number 1 2 0.5 ;;
        "Root distribution range") pick_number 10 50 0.1 ;;
        *) pick_number 12345 0.5 5 50 100 ;;
        esac
        tell "settings, $label: $picked"
        if [ "$label" = "Associate seeds with roots" ]; then
            press settings "$label"
        else
            type_into settings "$label" "$picked"
            look
        fi
    done
    hide_at_times settings "Hide"
}
transform() {
    local input
    open_panel "Transform constraint surface" transform
    for _ in 1 2; do
        pick Scale Shift Rotate
        input=$picked
        pick 1 2 3
        input=$input#$picked
        pick_number 1 2 0.5 -1 45 90
        tell "transform, $input: $picked"
        type_into transform "$input" "$picked"
    done
    press transform "Apply"
    hide_at_times transform "Hide"
}
slices() {
    local input
    open_panel "Compute/save slices" slicing
    pick 1 2 3
    input="Plane normal#$picked"
    pick_number 0 1 -1 0.5
    tell "slices, $input: $picked"
    type_into slicing "$input" "$picked"
    pick 1 2 7 60 -3 x1 nan "" 2000000000
    tell "slices: $picked"
    type_into slicing "Number of slices" "$picked"
    press slicing "Slice"
    look
    hide_at_times slicing "Hide"
}
save() {
    local entry
    draw 12
    case $drawn in
    10) entry=("Save constraint surface to STL file") ;;
    11) entry=("Save simulation information") ;;
    *)
        pick_label "Save DLA as"
        entry=("Save DLA as" "$picked")
        ;;
    esac
    pick new kept kept "" no/such/place . "a b" "$(printf 'long%.0s' $(seq 60))"
    tell "save ${entry[*]}: \"$picked\""
    look
    [ "$(value_of ncells)" -lt 1500 ] || key F4
    choose "${entry[@]}"
    if [ -n "$picked" ]; then
        select_path "$work/$picked"
    else
        select_file
    fi
}
read_surface() {
    pick box.stl box.stl corner.stl many.stl none.stl huge.stl missing.stl ""
    tell "surface \"$picked\""
    choose "Read constraint surface from STL file"
    if [ -n "$picked" ]; then select_path "$work/$picked"; else select_file; fi
}
read_seeds() {
    pick few.txt hundreds.txt huge.txt empty.txt junk.txt missing.txt ""
    tell "seeds \"$picked\""
    choose "Read seeds"
    if [ -n "$picked" ]; then select_path "$work/$picked"; else select_file; fi
}
# A path that the selector takes for a directory leaves it standing.
select_path() {
    local id
    wait_for "a file selector" visible FileSelector
    id=$(xdotool search --onlyvisible --name FileSelector | head -1)
    xdotool mousemove --window "$id" 140 302 click 1 key ctrl+e ctrl+u
    xdotool type --delay 2 -- "$1"
    xdotool key Return
    sleep 0.5
}
resize() {
    pick "1 1" "100 900" "1600 100" "640 480"
    tell "window of $picked"
    xdotool windowsize "$window" $picked
    sleep 0.5
    xdotool windowsize "$window" "$width" 600
    sleep 0.2
}
hide_window() {
    tell "window hidden for a while"
    xdotool windowunmap "$window"
    sleep 0.5
    xdotool windowmap --sync "$window"
    sleep 0.5
}

# The run ---------------------------------------------------------------------------------------------------------------

prepare_files() {
    local corner="facet normal 0 0 1\nouter loop\nvertex %s 0 0\nvertex 0 %s 0\nvertex 0 0 %s\nendloop\nendfacet\n"
    { printf 'solid\n'; printf "$corner" 20 20 20 -30 30 30; printf 'endsolid\n'; } >corner.stl
    { printf 'solid\n'; printf "$corner" 1e308 1e308 -1e308 nan 1 inf; printf 'endsolid\n'; } >huge.stl
    head -c 80 /dev/zero >none.stl
    cp none.stl many.stl
    printf '\0\0\0\0' >>none.stl
    printf '\377\377\377\377' >>many.stl
    printf '0 0 0\n5 0 0\n0 5 0\n' >few.txt
    seq 300 | awk '{ print $1 % 7 * 3, $1 % 11 * 3, $1 % 13 * 3 }' >hundreds.txt
    printf '1e308 -1e308 0\nnan inf 0\n1 2 3\n' >huge.txt
    : >empty.txt
    head -c 3000 "$program" >junk.txt
    echo kept >kept
}

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
    tell "at rest: ${held[-1]} bytes, $(awk '/VmRSS/ { print $2 }' "/proc/$pid/status") kB resident, $(files) files"
    [ "$(files)" -eq "$files_at_first" ] || fail "$(files) open files, $files_at_first at first"
    key F3
}
files() { ls "/proc/$pid/fd" | wc -l; }
# extreme ORDER VALUE...: the least (-g) or the most (-gr).
extreme() { printf '%s\n' "${@:2}" | sort "$1" | head -1; }
# After a run long enough for that: what is held in the last quarter is no more than in the first half.
check_memory() {
    local n=${#held[@]} most least
    [ "$n" -ge 8 ] || return 0
    most=$(extreme -gr "${held[@]:0:n / 2}")
    least=$(extreme -g "${held[@]:n - n / 4}")
    [ "$least" -le $((most + allowance)) ] || fail "memory grows: from at most $most to at least $least bytes"
}

action=0 held=()
prepare_files
case $((seed % 3)) in
0) start ;;
1) start -d ;;
2) start -ss ;;
esac
width=$([ $((seed % 3)) -eq 2 ] && echo 1600 || echo 800)
choose "Sample constraint surfaces" "Box"
choose "Save constraint surface to STL file"
select_file "$work/box.stl"
files_at_first=$(files)
echo "seed $seed, $seconds seconds"
while [ $SECONDS -lt "$seconds" ]; do
    action=$((action + 1))
    # Each action has its own numbers, however many those before it drew.
    RANDOM=$(((seed * 7919 + action * 104729) % 2147483647))
    draw 32768
    pick press_keys press_keys press_keys zoom_far record drag drag drag choose_mode choose_mode choose_mode \
        choose_command dismiss_menu settings settings transform slices save save read_surface read_seeds resize hide_window
    $picked
    look
    close_menus
    place_panels
    look
    [ "$(value_of ncells)" -lt $most_particles ] || key F4
    rm -f ./*.tga slice_*.txt new long*
    [ $((action % resting_every)) -ne 0 ] || rest
done
check_memory
key q
wait $pid || fail "the program ended with status $?"
echo "$action actions, none at fault"
