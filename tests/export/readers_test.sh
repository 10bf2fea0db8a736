#!/usr/bin/env bash
# Programs that others wrote read what the exports write: a renderer, a mesh checker, a slicer of printers, readers of VRML, DXF,
# VTK and PLY.
set -eu
samples=$1
grow=$2
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

# A body of 2,000 particles for a printer, thin tips and all: closed, oriented outwards, and sliced. A radius of 0 makes no
# degenerate facet.
mkdir "$work/print"
cd "$work/print"
"$grow" --particles 2000 --set drawing.scale=4 --set drawing.thickness_tip=0.1 --save body.stl --save body.vtp --save body.ply --quiet
"$grow" --particles 1000 --set drawing.thickness_tip=0 -o apex.sarkelo.h5 --save apex.stl --save apex.ply --quiet
for body in body apex; do
    admesh -n $body.stl >admesh.log
    for none in "Total disconnected facets" "Degenerate facets" "Edges fixed" "Facets removed" "Facets reversed" "Normals fixed"; do
        grep -qE "^ *$none *: *0( |\$)" admesh.log || { cat admesh.log >&2; fail "$body.stl: $none"; }
    done
    grep -qE "Volume *: *[1-9]" admesh.log || fail "$body.stl is inside out"
done
"$grow" --particles 10000 -o large.sarkelo.h5 --save large.stl --quiet
[ "$(stat -c %s large.stl)" -lt 60000000 ] || fail "10,000 particles take $(stat -c %s large.stl) bytes"
prusa-slicer --export-gcode body.stl -o body.gcode >slicer.log 2>&1 || { tail -5 slicer.log >&2; fail "the body is not sliced"; }
[ "$(grep -c '^;LAYER_CHANGE' body.gcode)" -gt 300 ] || fail "the body has $(grep -c '^;LAYER_CHANGE' body.gcode) layers"
/usr/bin/python3 - <<'PYTHON'
from collections import Counter
import h5py, meshio, numpy as np, vtk
from vtk.util.numpy_support import vtk_to_numpy

particles = h5py.File("aggregate.sarkelo.h5")["particles"]
parent = particles["parent"][:]
reader = vtk.vtkXMLPolyDataReader()
reader.SetFileName("body.vtp")
reader.Update()
data = reader.GetOutput()
assert (vtk_to_numpy(data.GetPoints().GetData()) == particles["position"][:]).all()
array = lambda name: vtk_to_numpy(data.GetPointData().GetArray(name))
assert (array("flow") == particles["flow"][:]).all() and (array("parent") == parent).all()
assert (array("arrival") == np.arange(2000)).all()
distance = [0]
for i in range(1, 2000):
    distance.append(distance[parent[i]] + 1)
assert (array("branches_from_root") == distance).all()
lines = vtk_to_numpy(data.GetLines().GetData()).reshape(-1, 3)
assert (lines == np.stack([np.full(1999, 2), parent[1:], np.arange(1, 2000)], axis=1)).all()

for name in "body.ply", "apex.ply":
    mesh = meshio.read(name)
    facets = mesh.cells_dict["triangle"]
    edges = Counter((a, b) for facet in facets for a, b in zip(facet, np.roll(facet, -1)))
    assert len(edges) > 10000 and all(n == 1 and edges[b, a] == 1 for (a, b), n in edges.items()), "not closed"
    p = mesh.points[facets].astype(float)
    assert np.einsum("ij,ij->", p[:, 0], np.cross(p[:, 1], p[:, 2])) > 0, "inside out"
    assert len(np.unique(np.stack([mesh.point_data[c] for c in ("red", "green", "blue")]), axis=1).T) > 20
PYTHON
