#!/usr/bin/env bash
# window_test.sh INSPECTED-SARKELO SARKELO-GROW: each aggregate of the gallery, set up by hand in the window and grown there,
# is what its recipe grows, to the last bit; and what the window saves of it is what sarkelo-grow saves.
set -eu
program=$1
grow=$2
tests=$(cd "$(dirname "$0")" && pwd)
. "$tests/grow_in_window.sh"

# The entries of "Save DLA as", and what sarkelo-grow calls them.
kinds='PovRay (Sphere sweep)|pov-sweep
PovRay (Cylinders + Spheres)|pov-cones
GEOM (Cylinders + Spheres)|geom
VRML (Cylinders + Spheres)|vrml
VRML (Cylinders + Endcaps + Spheres)|vrml-caps
Point cloud as DXF|dxf
Point cloud as GEOM|geom-points
VRML (Cylinders + EndCaps + Spheres as a mesh), low resolution|vrml-low
VRML (Cylinders + EndCaps + Spheres as a mesh), medium resolution|vrml-medium
VRML (Cylinders + EndCaps + Spheres as a mesh), high resolution|vrml-high'

# Saves every format in the window, and appends to `saves` how sarkelo-grow is to save it.
save_all() {
    local entry kind
    while IFS='|' read -r entry kind; do
        choose "Save DLA as" "$entry"
        select_file "$work/window.$kind"
        wait_for "$kind" [ -e "window.$kind" ]
        saves+=(--save "$kind:grown.$kind")
    done <<<"$kinds"
    choose "Save constraint surface to STL file"
    select_file "$work/window.stl-surface"
    wait_for "the surface" [ -e window.stl-surface ]
    saves+=(--save stl-surface:grown.stl-surface)
}

for name in river canopy bottle ring whirl moss hedge crown; do
    set_up < <(/usr/bin/python3 "$tests/window_settings.py" "$gallery/$name.toml")
    grow_to 1200
    cp info.txt window.info
    rm -f records
    kill -USR1 "$pid"
    wait_for "the particles" [ -f records ]
    saves=(--save info:grown.info --save grown.csv)
    case $name in bottle | ring) save_all ;; esac
    finish
    # Nothing is drawn while the settings are made; colours depend on it.
    "$grow" "$gallery/$name.toml" --particles "$grown" --set drawing.mode=off -o grown.sarkelo.h5 --force --quiet "${saves[@]}"
    cmp particles.csv grown.csv || fail "$name grows in another way without a window"
    # The window names the seed file by its whole path.
    for saved in window.*; do
        diff <(sed 's|: /.*/row.txt|: row.txt|' "$saved") <(sed 's|: /.*/row.txt|: row.txt|' "grown.${saved#window.}") >difference ||
            { head -5 difference >&2; fail "$name: ${saved#window.} differs"; }
    done
    echo "$name: $grown particles"
    rm -f window.* grown.*
done
