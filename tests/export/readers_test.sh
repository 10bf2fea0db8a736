#!/usr/bin/env bash
# readers_test.sh SARKELO-GROW: other programs read the exports, and write surfaces that are read.
set -eu
grow=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() {
    tail -20 log >&2
    echo "$1" >&2
    exit 1
}

cylinder=(--set surface.sample=Cylinder)
roots=(--set roots.count=3 --set "roots.distribution=Ring: z axis plane" --set growth.association=true)
"$grow" "${cylinder[@]}" --particles 100 -o small.sarkelo.h5 --quiet \
    --save vrml:a.wrl --save vrml-low:b.wrl --save vrml-medium:c.wrl --save vrml-high:d.wrl --save stl-surface:surface.stl
"$grow" "${cylinder[@]}" --particles 1500 -o one.sarkelo.h5 --save pov-sweep:a.pov --save pov-cones:b.pov --save a.dxf --quiet
"$grow" "${roots[@]}" --particles 1500 -o three.sarkelo.h5 --save pov-sweep:c.pov --save pov-cones:d.pov --save b.dxf --quiet
for scene in a b c d; do
    povray +I$scene.pov +O$scene.ppm +FP +W160 +H120 -D +A >log 2>&1 && ! grep "Possible Parse" log || fail "$scene.pov is not rendered"
    lit=$(pnmnoraw $scene.ppm | tail -n +4 | tr -s ' \n' '\n' | awk 'NF && $1 > 20 { n++ } END { print n + 0 }')
    [ "$lit" -gt 600 ] || fail "$scene.pov renders to a black picture"
    osgconv $scene.wrl $scene.osgt >log 2>&1 || fail "$scene.wrl is not read"
    [ "$(grep -c 'osg::Geometry {' $scene.osgt)" -ge 194 ] || fail "$scene.wrl has less than two shapes a branch"
done

# Surfaces that another program has written, in both formats, are read whole.
admesh --write-ascii-stl=ascii.stl --write-binary-stl=binary.stl surface.stl >log
for surface in ascii binary; do
    "$grow" --set surface.file=$surface.stl --particles 10 -o $surface.sarkelo.h5 --save stl-surface:again.stl --force --quiet
    admesh -n again.stl >log
    grep -q "Number of facets *: *288" log || fail "$surface.stl does not have 288 facets"
done

# Bodies for a printer, thin tips and all: closed, oriented outwards, and sliced. A radius of 0 makes no degenerate facet.
"$grow" --particles 2000 --set drawing.scale=4 --set drawing.thickness_tip=0.1 --save body.stl --save body.vtp --save body.ply --quiet
"$grow" --particles 1000 --set drawing.thickness_tip=0 -o apex.sarkelo.h5 --save apex.stl --save apex.ply --quiet
for body in body apex; do
    admesh -n $body.stl >log
    for none in "Total disconnected facets" "Degenerate facets" "Edges fixed" "Facets removed" "Facets reversed" "Normals fixed"; do
        grep -qE "^ *$none *: *0( |\$)" log || fail "$body.stl: $none"
    done
    grep -qE "Volume *: *[1-9]" log || fail "$body.stl is inside out"
done
prusa-slicer --export-gcode body.stl -o body.gcode >log 2>&1 || fail "the body is not sliced"
[ "$(grep -c '^;LAYER_CHANGE' body.gcode)" -gt 300 ] || fail "the body has few layers"

/usr/bin/python3 - <<'PYTHON'
from collections import Counter
import ezdxf, h5py, meshio, numpy as np, vtk
from vtk.util.numpy_support import vtk_to_numpy

for name, roots in ("a.dxf", 1), ("b.dxf", 3):
    assert len(ezdxf.readfile(name).modelspace().query("POINT")) == 10 * (1500 - roots), name

particles = h5py.File("aggregate.sarkelo.h5")["particles"]
parent = particles["parent"][:]
reader = vtk.vtkXMLPolyDataReader()
reader.SetFileName("body.vtp")
reader.Update()
body = reader.GetOutput()
assert (vtk_to_numpy(body.GetPoints().GetData()) == particles["position"][:]).all()
assert (vtk_to_numpy(body.GetPointData().GetArray("flow")) == particles["flow"][:]).all()
distance = vtk_to_numpy(body.GetPointData().GetArray("branches_from_root"))
assert distance[0] == 0 and (distance[1:] == distance[parent[1:]] + 1).all()
lines = vtk_to_numpy(body.GetLines().GetData()).reshape(-1, 3)
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
