# Grows aggregates with the real program on a virtual display, by its menus, panels and keys. Sourced with `program` set;
# ends in an empty directory of its own, "$work".
#
# An aggregate is described by lines of "name: value"; names that are missing keep their defaults:
#
#   seed, bias, branch length, stickiness, rotation, intersection range, roots, root range    numbers of the settings
#   thickness              two numbers, left and right
#   association            on
#   source, surface, root distribution    the entry of the menu, as it is labelled there
#   transform              the nine numbers of the transform panel, row by row
#   seed file              a file to read, beside this one
#   particles              how many to grow at least
#   drawing, surface drawing    the entries of the two drawing modes for the picture
#   window                 pixels of the square window, 1200 if missing; lines are thicker in the picture of a small one
#   keys                   keys that turn the camera and zoom, each with a count: Left*10 plus*3

gallery=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$gallery/../../tools/drive.sh"

window_size=1200
# Branches whose positions are compared.
hashed_branches=2000
# Seconds of growth between two looks at the number of particles.
shortest_burst=0.05 longest_burst=3

# value NAME: what the description in "$work/description" says of it.
value() {
    sed -n "s/^$1: *//p" "$work/description"
}

# Saves the simulation information to info.txt.
save_information() {
    rm -f "$work/info.txt"
    choose "Save simulation information"
    select_file "$work/info.txt"
    for _ in $(seq 50); do
        grep -q '^Current radius' info.txt 2>/dev/null && return
        sleep 0.1
    done
    fail "no information"
}

# reported NAME: what the information says of it.
reported() {
    sed -n "s/^$1: //p" "$work/info.txt"
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

# Saves the hash of the positions of the first N particles that grew, ten points a branch, from a point cloud.
hash_of_first() {
    rm -f "$work/cloud.geom"
    choose "Save DLA as" "Point cloud as GEOM"
    select_file "$work/cloud.geom"
    for _ in $(seq 50); do
        [ "$(wc -l 2>/dev/null <cloud.geom)" -ge $((10 * $1)) ] && break
        sleep 0.1
    done
    [ "$(wc -l <cloud.geom)" -ge $((10 * $1)) ] || fail "fewer than $1 branches"
    head -n $((10 * $1)) cloud.geom | sha256sum | cut -d ' ' -f 1
}

# aim_camera KEYS: presses keys, each with its count.
aim_camera() {
    local item
    for item in $1; do
        xdotool mousemove 20 580 key --delay 15 --repeat "${item#*\*}" "${item%\**}"
    done
}

# Draws as the description says and takes the picture, a PPM file.
take_picture() {
    local text
    aim_camera "$(value keys)"
    text=$(value "surface drawing")
    [ -z "$text" ] || choose "Constraint surface drawing mode" "$text"
    text=$(value drawing)
    choose "DLA drawing mode" "${text:-Tubes (Slow)}"
    text=$(value window)
    xdotool mousemove 1500 1150 windowsize "$window" "${text:-$window_size}" "${text:-$window_size}"
    sleep 2
    picture "$1"
    # The same frame twice: the window is not being drawn any more.
    for _ in $(seq 20); do
        sleep 0.5
        picture again.ppm
        cmp -s "$1" again.ppm && return
        mv again.ppm "$1"
    done
    fail "the picture does not stand still"
}

# shrink PPM SIZE PNG: cuts the empty border away and writes a square PNG.
shrink() {
    pnmcrop -black -margin=20 "$1" 2>/dev/null >cropped.ppm
    local width height side
    read -r width height < <(pnmfile cropped.ppm | sed -E 's/.* ([0-9]+) by ([0-9]+) .*/\1 \2/')
    side=$((width > height ? width : height))
    pnmpad -black -width $side -height $side cropped.ppm | pamscale -xyfit "$2" "$2" |
        pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$3"
}

# describe NAME: the description of an aggregate of the gallery: its recipe, and what its picture needs.
describe() {
    [ ! -r "$gallery/$1.toml" ] || /usr/bin/python3 "$gallery/describe.py" "$gallery/$1.toml"
    awk -v name="[$1]" '/^\[/ { found = $0 == name; next } found && NF && !/^#/' "$gallery/gallery.txt"
}

finish() {
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}
