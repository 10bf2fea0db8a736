#include "export/stl.h"

#include "export/branches.h"

void WriteSTLSurface(TextWriter &out)
{
    if (!IsSurfaceSaved())
        return;
    out.Print("solid 2tlobject\n");
    for (int i = 0; i < nstltri; i++)
        out.Print("facet normal %g %g %g\n"
                  " outer loop\n"
                  "  vertex %g %g %g\n"
                  "  vertex %g %g %g\n"
                  "  vertex %g %g %g\n"
                  " endloop\n"
                  "endfacet\n",
                  stltri[i].n, stltri[i].p[0], stltri[i].p[1], stltri[i].p[2]);
    out.Print("endsolid"); // no line end (kept)
}
