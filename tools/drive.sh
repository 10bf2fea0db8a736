# Drives the real program on a virtual display as a person would: sourced, with `program` set, by tests and docs/pictures.

title="Diffusion Limited Aggregation"
work=$(mktemp -d)
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$project/packaging/packages.sh"
start_virtual_display
trap 'kill "$virtual_display" 2>/dev/null; rm -rf "$work"' EXIT
cd "$work"

fail() {
    echo "line ${BASH_LINENO[*]}: $1" >&2
    tail -n 80 "$work/stderr.txt" >&2
    exit 1
}

# wait_for WHAT COMMAND...: until the command succeeds.
wait_for() {
    local what=$1 since=$SECONDS
    shift
    until "$@"; do
        kill -0 "$pid" 2>/dev/null || fail "the program is gone"
        [ $((SECONDS - since)) -lt 60 ] || fail "no $what after 60 s"
        sleep 0.05
    done
}

# visible NAME [COUNT]: that many windows of the name (or at least one) are on the display.
visible() {
    local found=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | wc -l)
    if [ $# -gt 1 ]; then [ "$found" -eq "$2" ]; else [ "$found" -gt 0 ]; fi
}

# Without a window manager, as by default, windows have no frames and the keyboard goes to the one under the pointer.
start_window_manager() {
    openbox >/dev/null 2>&1 &
    pid=$! # ends with the display
    wait_for "window manager" eval 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
}

# Starts the program with the given arguments and waits for its window.
start() {
    "$program" "$@" 2>stderr.txt &
    pid=$!
    find_window
}

# Waits for the program's window and moves it to the screen's corner; its picture begins at `left` and `top`.
left=0 top=0
find_window() {
    wait_for "window" visible "$title"
    window=$(xdotool search --onlyvisible --name "$title" | tail -1)
    xdotool windowmove "$window" 0 0
    sleep 0.5
    eval "$(xdotool getwindowgeometry --shell "$window" | sed -n 's/^X=/left=/p; s/^Y=/top=/p')"
}

# Keys go to the window under the pointer.
key() {
    xdotool mousemove $((left + 20)) $((top + 580)) key "$@"
    sleep 0.2
}

# Saves the window's picture; where a panel covers it, the depth would be another.
picture() {
    timeout 20 xwd -silent -id "$window" | xwdtopnm 2>/dev/null | pamdepth 255 2>/dev/null >"$1"
}

# Colours of an area (columns left to right) of a picture that are not black.
colours() {
    pnmcut -left "$2" -right "$3" "$1" | ppmhist -noheader | awk '$5 > 0 && $1 + $2 + $3 > 0' | wc -l
}

# The menus: "MENU ID LABEL", or "MENU > SUBMENU LABEL", the main menu last.
menu_tree=$project/tests/viewer/menu_tree.txt
entry_height=25 # pixels

# labels_in MENU: the labels of a menu's entries, by its number, from top to bottom.
labels_in() { sed -nE "s/^$1 (> )?[0-9]+ (.*)/\2/p" "$menu_tree"; }

# submenu LABEL: the number of the menu that an entry opens.
submenu() {
    awk -v label="$1" '$2 == ">" { id = $3; sub(/^[0-9]+ > [0-9]+ /, ""); if ($0 == label) print id }' "$menu_tree"
}

labels_of() { labels_in "$(submenu "$1")"; }

# choose LABEL...: chooses an entry of the main menu, or of the menu that an entry opens, and so on.
choose() {
    local menu label number depth=1 x=$((left + 20)) y=$((top + 20))
    menu=$(tail -1 "$menu_tree" | cut -d " " -f 1)
    xdotool mousemove $x $y click 3
    for label in "$@"; do
        wait_for "menu $depth" visible "freeglut menu" $depth
        # Each menu opens to the right of the one before, above those that were open earlier.
        [ $depth -eq 1 ] || read -r x y < <(xwininfo -root -tree |
            sed -nE 's/.*"freeglut menu".* \+([0-9]+)\+([0-9]+)$/\1 \2/p' |
            awk -v x="$x" '$1 > x { print; exit }')
        number=$(labels_in "$menu" | grep -nxF -m 1 -- "$label" | cut -d : -f 1)
        [ -n "$number" ] || fail "no entry $label"
        y=$((y + 14 + entry_height * (number - 1)))
        xdotool mousemove $((x + 40)) $((y + 2)) mousemove $((x + 42)) $y
        menu=$(submenu "$label")
        depth=$((depth + 1))
    done
    sleep 0.1
    xdotool click 1
    wait_for "end of the menu" visible "freeglut menu" 0
    sleep 0.05
}

declare -A panel_sizes=([settings]="411 531" [transform]="351 291" [slicing]="421 251")

# panel NAME: prints the panel's window, or nothing while it is hidden.
panel() {
    xwininfo -root -tree | awk -v size="${panel_sizes[$1]/ /x}" '/XForm/ && index($0, " " size "+") { print $1; exit }'
}

# Whether a panel is drawn: what is clicked before that reaches the window below.
has_panel() { [ -n "$(panel "$1")" ] && xwininfo -id "$(panel "$1")" | grep -q IsViewable; }

# place PANEL LABEL[#N]: the middle of the button or input with a label in panel_layout.txt, or of the Nth input to the right
# of a text.
place() {
    local number=1
    [ "${2%#*}" = "$2" ] || number=${2##*#}
    awk -v size="${panel_sizes[$1]}" -v label="${2%#*}" '
        $1 == "form" { found = $2 " " $3 == size }
        !found || !/^(button|checkbutton|input|text) / { next }
        {
            split($0, quoted, "\"")
            split($0, parts, ", ")
            split(parts[2], at, " ")
            x = int(at[1] + at[3] / 2)
            y = int(at[2] + at[4] / 2)
        }
        $1 != "text" && quoted[2] == label { print x, y; exit }
        $1 == "text" && quoted[2] == label { textx = x; texty = y }
        $1 == "input" { rows[x " " y] = y }
        END { for (input in rows) if (textx && input + 0 > textx && (rows[input] - texty) ^ 2 < 144) print input }
    ' "$project/tests/toolkit/panel_layout.txt" | sort -n | sed -n "${number}p"
}

# press PANEL LABEL: clicks at what bears the label.
press() {
    local at=$(place "$1" "$2")
    [ -n "$at" ] || fail "nothing is labelled $2 in $1"
    wait_for "panel $1" has_panel "$1"
    xdotool mousemove --window "$(panel "$1")" $at click 1
    sleep 0.2
}

# click_at TITLE X [Y]: clicks at the button there of a box, with Y below 0 from its lower edge, and waits until it is gone.
click_at() {
    local id y=${3:-103}
    wait_for "$1" visible "$1"
    id=$(xdotool search --onlyvisible --name "$1" | head -1)
    [ "$y" -ge 0 ] || y=$((y + $(xwininfo -id "$id" | awk '/Height:/ { print $2 }')))
    xdotool mousemove --window "$id" "$2" "$y" click 1
    wait_for "end of $1" visible "$1" 0
}

answer() { click_at Message 200 -23; }
click_yes() { click_at Question 100; }
click_no() { click_at Question 335; }
click_save() { click_at Choice 85; }
click_discard() { click_at Choice 230; }
click_cancel() { click_at Choice 375; }

# Types a path into the open file selector; without one, cancels it.
select_file() {
    if [ $# -eq 0 ]; then
        click_at FileSelector 250 215
    else
        type_path "$1"
        wait_for "end of the file selector" visible FileSelector 0
    fi
    sleep 0.2
}
type_path() {
    wait_for "file selector" visible FileSelector
    xdotool mousemove --window "$(xdotool search --onlyvisible --name FileSelector | head -1)" 140 302 click 1 key ctrl+e ctrl+u
    xdotool type --delay 5 -- "$1"
    xdotool key Return
}

# type_into PANEL LABEL TEXT: replaces the text of the input there and leaves it.
type_into() {
    press "$1" "$2"
    xdotool key ctrl+e ctrl+u
    [ -z "$3" ] || xdotool type -- "$3"
    xdotool key Tab
    sleep 0.05
}

# value_of NAME: a record of inspected_sarkelo, as last written by look.
value_of() { sed -n "s/^$1 //p" records; }
look() {
    rm -f records
    kill -USR1 "$pid"
    wait_for "records" [ -f records ]
}

# expect NAME VALUE: the record gets the value.
has_value() { look && [ "$(value_of "$1")" = "$2" ]; }
expect() { wait_for "$1 of $2" has_value "$@"; }

# ends_with STATUS: waits for the program's end.
ends_with() {
    local status=0
    wait "$pid" || status=$?
    [ $status -eq "$1" ] || fail "the program ended with status $status, not $1"
}
ends_well() { ends_with 0; }

# Saves the simulation information to info.txt; reported NAME: a value in it.
save_information() {
    rm -f "$work/info.txt"
    choose "Save simulation information"
    select_file "$work/info.txt"
    wait_for "the information" grep -qs '^Current radius' info.txt
}

reported() { sed -n "s/^$1: //p" "$work/info.txt"; }
