#!/usr/bin/env bash
# Programs that others wrote read what the exports write: a renderer, a mesh checker, a VRML and a DXF reader.
set -eu
samples=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "$1" >&2
    exit 1
}

# Renders a scene, and expects more lit pixels than the given number.
render() {
    povray +I"$1" +O"$1.ppm" +FP +W160 +H120 -D +A >"$1.log" 2>&1 || { tail -20 "$1.log" >&2; fail "$1 does not render"; }
    grep -q "Parse Error\|Possible Parse" "$1.log" && fail "$1 has parse errors"
    lit=$(pnmnoraw "$1.ppm" | tail -n +4 | tr -s ' \n' '\n' | awk 'NF && $1 > 20 { n++ } END { print n + 0 }')
    [ "$lit" -gt "$2" ] || fail "$1 renders to a black picture ($lit)"
}

for variant in plain surface roots; do
    mkdir "$work/$variant"
    cd "$work/$variant"
    "$samples" $variant
    render sweep.pov 600
    render cones.pov 600
    for model in spheres coarse medium fine; do
        osgconv $model.wrl $model.osgt >osg.log 2>&1 || { cat osg.log >&2; fail "$variant: $model.wrl is not read"; }
        shapes=$(grep -c 'osg::Geometry {' $model.osgt)
        [ "$shapes" -ge 194 ] || fail "$variant: $model.wrl gives only $shapes shapes" # two a branch
    done
    /usr/bin/python3 - <<'PYTHON'
import ezdxf
points = ezdxf.readfile("cloud.dxf").modelspace().query("POINT")
roots = 3 if __import__("os").getcwd().endswith("roots") else 1
assert len(points) == 10 * (1500 - roots), len(points)
PYTHON
done

cd "$work/surface"
admesh -n surface.stl 2>/dev/null >admesh.log || true
grep -q "Number of facets *: *288" admesh.log || { cat admesh.log >&2; fail "admesh does not count 288 facets"; }
[ ! -s ../plain/surface.stl ] || fail "a surface without a surface"
