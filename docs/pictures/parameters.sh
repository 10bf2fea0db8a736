#!/usr/bin/env bash
# Makes the contact sheets of parameters.md from aggregates grown without a screen. Needs the release build and what ./check
# installs.
#
#   docs/pictures/parameters.sh [SHEET...]     all of them if none is named
set -eu
pictures=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$pictures/grow.sh"
sheets="bias branch-length stickiness rotation thickness intersection association sources roots drawing surface-drawing"

# sheet NAME: its pictures: a label, then a recipe's settings and "--" with options of sarkelo-view; "|" parts them.
sheet() {
    local name range
    case $1 in
    bias) for range in 0 0.5 1; do echo "bias $range|growth.bias=$range"; done ;;
    branch-length)
        for range in 0.5 1 2; do echo "branch length $range|growth.branch_length=$range|--camera home|--zoom 0.7"; done
        ;;
    stickiness) for range in 100 10 1; do echo "stickiness $range|growth.stickiness=$range|stop.particles=8000"; done ;;
    rotation) for range in 0 5 -5; do echo "rotation $range|growth.rotation=$range|--tilt -80"; done ;;
    thickness)
        for range in "0.01 to 0.4" "0.3 to 0.3" "0.05 to 1.2"; do
            echo "$range|drawing.thickness_tip=${range% to*}|drawing.thickness_trunk=${range#*to }|stop.particles=1500|--mode tubes"
        done
        ;;
    intersection) for range in 0 0.1 1; do echo "range $range|growth.intersection_range=$range|stop.particles=300"; done ;;
    association)
        echo "3 roots|roots.count=3|roots.distribution=Ring: x axis plane|roots.range=18"
        echo "3 roots, associated|roots.count=3|roots.distribution=Ring: x axis plane|roots.range=18|growth.association=true"
        echo "12 roots, associated|roots.count=12|roots.distribution=Spherical|roots.range=50|growth.association=true"
        ;;
    sources)
        for name in "Sphere" "Double axis (y)" "Plane (y)" "Hemisphere (y)" "Single axis (+y)"; do
            echo "$name|source.type=$name"
        done
        echo "STL surface, box|source.type=STL surface|surface.sample=Box|surface.scale=[20,20,20]|--surface off"
        ;;
    roots)
        # The window's entry of a distribution is one place ahead of it.
        while IFS='|' read -r name range; do
            echo "$name|roots.distribution=$range|roots.count=9|roots.range=20|stop.particles=1500|--turn 23|--tilt -23"
        done <<'ROWS'
Spherical|Origin
Random: x axis plane|Spherical
Random: y axis plane|Random: x axis plane
Random: z axis plane|Random: y axis plane
Ring: x axis plane|Random: z axis plane
Ring: y axis plane|Ring: x axis plane
Ring: z axis plane|Ring: y axis plane
ROWS
        ;;
    drawing) for name in Points Lines Tubes; do echo "$name|--mode ${name,,}"; done ;;
    surface-drawing)
        while IFS='|' read -r name range; do
            echo "$name|surface.sample=Cylinder|stop.particles=1500|--surface $range|--tilt -17"
        done <<'ROWS'
Faces, wireframe|wireframe
Mid points of faces|midpoints
Face vertices|vertices
Faces, solid|solid
ROWS
        ;;
    *)
        echo "no sheet $1: $sheets" >&2
        exit 1
        ;;
    esac
}

# draw ROW PICTURE: grows one picture of a sheet and writes it, labelled, as a PPM file.
draw() {
    local label words word particles=2500 grow=() view=()
    IFS='|' read -ra words <<<"$1"
    label=${words[0]}
    for word in "${words[@]:1}"; do
        case $word in
        --*) view+=("${word%% *}" "${word#* }") ;;
        stop.particles=*) particles=${word#*=} ;;
        *) grow+=(--set "$word") ;;
        esac
    done
    [[ $1 == *--camera* ]] || view+=(--fit)
    "$build/sarkelo-grow" -o grown.sarkelo.h5 --particles "$particles" --force --quiet "${grow[@]}"
    "$build/sarkelo-view" grown.sarkelo.h5 --picture grown.png --force --size 270x270 "${view[@]}"
    pbmtext -nomargins -builtin fixed "$label, $particles" | pnmpad -white -top 4 -bottom 4 -left 6 | pnminvert |
        pnmpad -black -width 270 -halign 0 >label.pbm 2>/dev/null
    pngtopnm grown.png | pnmcat -topbottom label.pbm - >"$2"
}

# shellcheck disable=SC2086
for name in ${*:-$sheets}; do
    parts=() rows=()
    while IFS= read -r row; do
        part=part$(printf %02d ${#parts[@]}).ppm
        parts+=("$part")
        draw "$row" "$part" </dev/null
    done < <(sheet "$name")
    for ((k = 0; k < ${#parts[@]}; k += 3)); do
        pnmcat -leftright -black "${parts[@]:k:3}" >"row$k.ppm"
        rows+=("row$k.ppm")
    done
    pnmcat -topbottom -jleft -black "${rows[@]}" | small_png "$pictures/parameter-$name.png"
done
