#!/usr/bin/env bash
# Makes the contact sheets of parameters.md: grows each aggregate with the program on a virtual display.
#
#   docs/pictures/parameters.sh [SHEET...]
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
program=$(realpath "${SARKELO:-$here/../../build/release/sarkelo}")

# sheet NAME: the pictures of a sheet, "label|settings", settings parted by semicolons.
sheet() {
    case $1 in
    bias)
        echo "bias 0|bias: 0"
        echo "bias 0.5|bias: 0.5"
        echo "bias 1|bias: 1"
        ;;
    branch-length)
        echo "branch length 0.5|branch length: 0.5; keys: comma*3"
        echo "branch length 1|branch length: 1; keys: comma*3"
        echo "branch length 2|branch length: 2; keys: comma*3"
        ;;
    stickiness)
        echo "stickiness 100|stickiness: 100; particles: 8000; keys: comma*1"
        echo "stickiness 10|stickiness: 10; particles: 8000; keys: comma*1"
        echo "stickiness 1|stickiness: 1; particles: 8000; keys: comma*1"
        ;;
    rotation)
        echo "rotation 0|rotation: 0; keys: Up*70 comma*6"
        echo "rotation 5|rotation: 5; keys: Up*70 comma*6"
        echo "rotation -5|rotation: -5; keys: Up*70 comma*6"
        ;;
    thickness)
        echo "0.01 to 0.4|thickness: 0.01 0.4; particles: 1500; drawing: Tubes (Slow)"
        echo "0.3 to 0.3|thickness: 0.3 0.3; particles: 1500; drawing: Tubes (Slow)"
        echo "0.05 to 1.2|thickness: 0.05 1.2; particles: 1500; drawing: Tubes (Slow)"
        ;;
    intersection)
        echo "range 0|intersection range: 0; particles: 300; keys: plus*9"
        echo "range 0.1|intersection range: 0.1; particles: 300; keys: plus*9"
        echo "range 1|intersection range: 1; particles: 300; keys: plus*9"
        ;;
    association)
        echo "3 roots|roots: 3; root distribution: Ring: y axis plane; root range: 18; keys: comma*3"
        echo "3 roots, associated|roots: 3; root distribution: Ring: y axis plane; root range: 18; association: on; keys: comma*3"
        echo "12 roots, associated|roots: 12; root distribution: Random: x axis plane; root range: 50; association: on; keys: comma*3"
        ;;
    sources)
        echo "Sphere|source: Sphere; keys: comma*4"
        echo "Double axis (y)|source: Double axis (y); keys: comma*4"
        echo "Plane (y)|source: Plane (y); keys: comma*4"
        echo "Hemisphere (y)|source: Hemisphere (y); keys: comma*4"
        echo "Single axis (+y)|source: Single axis (+y); keys: comma*4"
        echo "STL surface, box|source: STL surface; surface: Box; transform: 20 20 20 0 0 0 0 0 0; surface drawing: Off; keys: comma*4"
        ;;
    roots)
        local entry
        for entry in "Spherical" "Random: x axis plane" "Random: y axis plane" "Random: z axis plane" \
            "Ring: x axis plane" "Ring: y axis plane" "Ring: z axis plane"; do
            echo "$entry|root distribution: $entry; roots: 9; root range: 20; particles: 1500; keys: Right*20 Up*20"
        done
        ;;
    drawing)
        echo "Points|drawing: Points"
        echo "Lines|drawing: Lines"
        echo "Tubes|drawing: Tubes (Slow)"
        ;;
    surface-drawing)
        local mode
        for mode in "Faces, wireframe" "Mid points of faces" "Face vertices" "Faces, solid"; do
            echo "$mode|surface: Cylinder; surface drawing: $mode; particles: 1500; keys: Up*15"
        done
        ;;
    *)
        echo "no sheet $1" >&2
        exit 1
        ;;
    esac
}

# Grows one picture of a sheet and writes a labelled PPM file. Runs in a shell of its own.
grow_one() (
    . "$here/../gallery/grow.sh"
    {
        printf 'particles: 2500\ndrawing: Lines\nwindow: 270\nkeys: plus*4\n'
        tr ';' '\n' <<<"$2" | sed 's/^ *//'
    } | tac | awk -F: '!seen[$1]++' >settings.txt
    set_up <settings.txt
    grow_to "$(value particles)"
    take_picture window.ppm
    pbmtext -nomargins -builtin fixed "$1, $grown" | pnmpad -white -top 4 -bottom 4 -left 6 | pnminvert |
        pnmpad -black -width 270 -halign 0 >label.pbm 2>/dev/null
    pnmcat -topbottom label.pbm window.ppm >"$3"
    finish
)

for name in "${@:-bias}"; do
    parts=()
    folder=$(mktemp -d)
    while IFS= read -r line; do
        part=$folder/$(printf %02d ${#parts[@]}).ppm
        echo "$line" >&2
        parts+=("$part")
        grow_one "${line%%|*}" "${line#*|}" "$part" </dev/null
    done < <(sheet "$name")
    rows=()
    for ((k = 0; k < ${#parts[@]}; k += 3)); do
        pnmcat -leftright -black "${parts[@]:k:3}" >"$folder/row$k.ppm"
        rows+=("$folder/row$k.ppm")
    done
    pnmcat -topbottom -jleft -black "${rows[@]}" | pnmquant 256 2>/dev/null |
        pnmtopng -compression 9 2>/dev/null >"$here/parameter-$name.png"
    rm -rf "$folder"
done
