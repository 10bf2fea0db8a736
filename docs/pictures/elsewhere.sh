#!/usr/bin/env bash
# Makes elsewhere.png: what sarkelo-grow leaves, as other programs see it. Needs the release build and what ./check installs.
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
grow=$(realpath "${GROW:-$here/../../build/release/sarkelo-grow}")
work=$(mktemp -d)
. "$here/../../packaging/packages.sh"
start_virtual_display
trap 'kill "$virtual_display"; rm -rf "$work"' EXIT
cd "$work"

"$grow" "$here/../gallery/river.toml" -o river.sarkelo.h5 --save river.vtp --quiet
"$grow" --particles 2000 --set drawing.thickness_tip=0.1 --set drawing.scale=4 -o body.sarkelo.h5 --save body.stl --quiet
"$grow" --particles 100000 -o large.sarkelo.h5 --quiet
cat >render.py <<'PYTHON'
import vtk

def picture(reader, name, array=None, colour=(0.86, 0.8, 0.72)):
    reader.SetFileName(name)
    reader.Update()
    mapper = vtk.vtkPolyDataMapper()
    mapper.SetInputConnection(reader.GetOutputPort())
    actor = vtk.vtkActor()
    actor.SetMapper(mapper)
    actor.GetProperty().SetColor(colour)
    actor.GetProperty().SetLineWidth(1.5)
    if array:
        mapper.SetScalarModeToUsePointFieldData()
        mapper.SelectColorArray(array)
        mapper.SetScalarRange(reader.GetOutput().GetPointData().GetArray(array).GetRange())
    renderer = vtk.vtkRenderer()
    renderer.SetBackground(0.1, 0.1, 0.12)
    renderer.AddActor(actor)
    renderer.GetActiveCamera().SetPosition(1, 0.4, 0.3)
    renderer.GetActiveCamera().SetViewUp(0, 0, 1)
    renderer.ResetCamera()
    renderer.GetActiveCamera().Zoom(1.5)
    window = vtk.vtkRenderWindow()
    window.SetOffScreenRendering(1)
    window.SetMultiSamples(8)
    window.SetSize(400, 400)
    window.AddRenderer(renderer)
    window.Render()
    grab = vtk.vtkWindowToImageFilter()
    grab.SetInput(window)
    writer = vtk.vtkPNGWriter()
    writer.SetInputConnection(grab.GetOutputPort())
    writer.SetFileName(name + ".png")
    writer.Write()

picture(vtk.vtkXMLPolyDataReader(), "river.vtp", "branches_from_root")
picture(vtk.vtkSTLReader(), "body.stl")
PYTHON
/usr/bin/python3 render.py
/usr/bin/python3 "$here/../../examples/radius_by_number.py" large.sarkelo.h5 plot.png
for file in river.vtp.png body.stl.png plot.png; do
    pngtopnm -mix -background white $file | pamscale -xyfit 400 400 | pnmpad -white -width 400 -height 400 >$file.ppm
done
pnmcat -lr river.vtp.png.ppm body.stl.png.ppm plot.png.ppm | pnmquant 256 2>/dev/null | pnmtopng -compression 9 2>/dev/null >"$here/elsewhere.png"
