# Sets up and grows aggregates in the real window, by its menus, panels and keys. Sourced with `program` set; ends in an empty
# directory of its own, "$work". A run is described by lines of "name: value"; names that are missing keep their defaults:
#
#   seed, bias, branch length, stickiness, rotation, intersection range, roots, root range    numbers of the settings
#   thickness              two numbers, left and right
#   association            on
#   source, surface, root distribution    the entry of the menu, as it is labelled there
#   transform              the nine numbers of the transform panel, row by row
#   seed file              a file to read, in the folder "$gallery"

gallery=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../docs/gallery" && pwd)
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/drive.sh"

# Seconds of growth between two looks at the number of particles.
shortest_burst=0.05 longest_burst=3

# value NAME: what the description in "$work/description" says of it.
value() {
    sed -n "s/^$1: *//p" "$work/description"
}

# Types every setting of the description, the number of roots last: it starts the run anew with all of them. Growth is
# paused then.
enter_settings() {
    local name label text
    choose "Settings"
    while IFS='|' read -r name label; do
        text=$(value "$name")
        [ -z "$text" ] || type_into settings "$label" "$text"
    done <<'ROWS'
seed|Random number seed
bias|Bias towards origin
branch length|Branch length
stickiness|Stickiness
rotation|Particle rotation
intersection range|Intersection range
root range|Root distribution range
ROWS
    text=$(value thickness)
    if [ -n "$text" ]; then
        type_into settings "Branch thickness" "${text% *}"
        type_into settings "to" "${text#* }"
    fi
    [ "$(value association)" != on ] || press settings "Associate seeds with roots"
    text=$(value roots)
    press settings "Number of roots"
    xdotool key ctrl+e ctrl+u type "${text:-1}"
    xdotool key Tab sleep 0.1 mousemove 20 580 key F3
    press settings "Hide"
}

enter_transform() {
    local numbers k rows=(Scale Shift Rotate)
    read -ra numbers <<<"$1"
    choose "Transform constraint surface"
    for k in 0 1 2 3 4 5 6 7 8; do
        type_into transform "${rows[k / 3]}#$((k % 3 + 1))" "${numbers[$k]}"
    done
    press transform "Apply"
    press transform "Hide"
}

# Whether the information reports the settings of the description; says what it does not.
settings_arrived() {
    local name label unit text arrived=0
    save_information
    while IFS='|' read -r name label unit; do
        text=$(value "$name")
        [ -z "$text" ] || [ "$(reported "$label")" = "$text$unit" ] ||
            { echo "$label is $(reported "$label"), not $text" >&2; arrived=1; }
    done <<'LABELS'
seed|Seed|
bias|Bias towards origin|% of step length
branch length|Branch length|
stickiness|Stickiness|%
rotation|Rotation| degrees about z axis
intersection range|Intersection range|% of branch length
source|Source type|
surface|Constraint surface|
LABELS
    [ -n "$(value "seed file")" ] || [ -z "$(value roots)" ] ||
        [ "$(reported "Number of roots")" = "$(value roots)" ] ||
        { echo "the number of roots is not $(value roots)" >&2; arrived=1; }
    [ "$(value association)" != on ] || [ "$(reported "Seed association")" = On ] ||
        { echo "no association" >&2; arrived=1; }
    return $arrived
}

# Starts the program with all settings of the description on standard input; growth is paused near its start. Where the
# machine was too slow for the panels, starts over, twice at most.
set_up() {
    cat >"$work/description"
    for _ in 1 2 3; do
        start
        key F1 F2
        make_settings
        settings_arrived && return
        finish
    done
    fail "the settings do not arrive"
}

make_settings() {
    local text
    choose "DLA drawing mode" Off
    text=$(value source)
    [ -z "$text" ] || choose "New particle distribution" "$text"
    text=$(value surface)
    [ -z "$text" ] || choose "Sample constraint surfaces" "$text"
    text=$(value transform)
    [ -z "$text" ] || enter_transform "$text"
    text=$(value "root distribution")
    [ -z "$text" ] || choose "Initial root distribution" "$text"
    enter_settings
    text=$(value "seed file")
    if [ -n "$text" ]; then
        choose "Read seeds"
        select_file "$gallery/$text"
        key F3
    fi
}

# Grows in bursts to at least the given number of particles, and sets `grown` to the number there are. Each burst aims
# at less than what seems to be missing, so that little more is grown than was asked for.
# Needs information saved while growth is paused.
grow_to() {
    local before burst=$shortest_burst
    grown=$(reported "Number of particles")
    while [ "$grown" -lt "$1" ]; do
        xdotool mousemove 20 580 key F3 sleep "$burst" key F3
        before=$grown
        save_information
        grown=$(reported "Number of particles")
        burst=$(awk -v burst="$burst" -v gain=$((grown - before)) -v missing=$(($1 - grown)) \
            -v low=$shortest_burst -v high=$longest_burst 'BEGIN {
                seconds = gain > 0 ? 0.7 * burst * missing / gain : 2 * burst
                print (seconds < low ? low : seconds > high ? high : seconds)
            }')
    done
}

finish() {
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}
