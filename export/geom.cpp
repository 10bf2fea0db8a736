#include "export/geom.h"

#include "export/branches.h"

void WriteGEOM(TextWriter &out)
{
    out.Print("# 3D DLA by Orvandel"); // no line end: the first record's comment goes on (kept)
    ForEachBranch([&](const Branch &branch) {
        out.Print("# From: %d to %d, thickness: %g to %g\n"
                  "c %g %g %g %g %g %g %g %g %g %g %g\n"
                  "s %g %g %g %g\n"
                  "%g %g %g\n",
                  branch.parent, branch.index, branch.fromradius, branch.toradius, branch.from, branch.to,
                  branch.fromradius, branch.toradius, branch.colour, branch.to, branch.toradius,
                  branch.colour);
    });
    for (int i = 0; IsSurfaceSaved() && i < nstltri; i++)
        out.Print("f3 %g %g %g %g %g %g %g %g %g 0.5 0.5 0.5\n", stltri[i].p[0], stltri[i].p[1],
                  stltri[i].p[2]);
}
