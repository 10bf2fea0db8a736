#!/usr/bin/env bash
# window_test.sh INSPECTED-SARKELO SARKELO-GROW: three aggregates of the gallery, set up by hand in the window and grown there,
# are what their recipes grow, to the last bit; and what the window saves of them is what sarkelo-grow saves.
set -eu
program=$1
grow=$2
gallery=$(cd "$(dirname "$0")/../../docs/gallery" && pwd)
. "$(dirname "$0")/../../tools/drive.sh"

# type_settings LABEL TEXT...: types settings, the number of roots last: it starts the run anew with all of them.
type_settings() {
    choose "Settings"
    while [ $# -gt 1 ]; do
        type_into settings "$1" "$2"
        shift 2
    done
}

# A cylinder of other proportions, and thicker branches
set_bottle() {
    choose "Sample constraint surfaces" Cylinder
    choose "Transform constraint surface"
    type_into transform "Scale#1" 0.8
    type_into transform "Scale#2" 0.8
    type_into transform "Scale#3" 1.3
    press transform "Apply"
    press transform "Hide"
    type_settings "Random number seed" 3 "Branch thickness" 0.03 to 0.6 "Number of roots" 1
}

# Six roots on a ring, each with the walkers of its own class. Each entry of the menu places what the one before it is called.
set_ring() {
    choose "Initial root distribution" "Ring: y axis plane"
    type_settings "Random number seed" 11 "Root distribution range" 40
    press settings "Associate seeds with roots"
    type_into settings "Number of roots" 6
}

# A row of roots from a seed file, walkers from above
set_hedge() {
    choose "New particle distribution" "Plane (z)"
    type_settings "Random number seed" 9 "Branch thickness" 0.04 to 0.5 "Number of roots" 1
    press settings "Hide"
    choose "Read seeds"
    select_file "$gallery/row.txt"
}

for name in bottle ring hedge; do
    start
    key F1 F2
    choose "DLA drawing mode" Off
    "set_$name"
    [ "$name" = hedge ] || press settings "Hide"
    key F3 # growth pauses
    save_information
    while [ "$(reported "Number of particles")" -lt 400 ]; do
        key F3
        key F3
        save_information
    done
    cp info.txt window.info
    rm -f records
    kill -USR1 "$pid"
    wait_for "the particles" [ -f records ]
    choose "Save DLA as" "VRML (Cylinders + Spheres)"
    select_file "$work/window.vrml"
    choose "Save constraint surface to STL file"
    select_file "$work/window.stl-surface"
    wait_for "the surface" [ -e window.stl-surface ]
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    # Nothing is drawn while the settings are made; colours depend on it.
    "$grow" "$gallery/$name.toml" --particles "$(reported "Number of particles")" --set drawing.mode=off -o grown.sarkelo.h5 \
        --force --quiet --save info:grown.info --save vrml:grown.vrml --save stl-surface:grown.stl-surface --save grown.csv
    # The window names the seed file by its whole path.
    for saved in window.*; do
        diff <(sed 's|: /.*/row.txt|: row.txt|' "$saved") <(sed 's|: /.*/row.txt|: row.txt|' "grown.${saved#window.}") >difference ||
            { head -5 difference >&2; fail "$name: ${saved#window.} differs"; }
    done
    cmp particles.csv grown.csv || fail "$name grows in another way without a window"
    rm -f window.* grown.*
done
