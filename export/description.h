// Lines that describe a run, for the report file and for the information text in the window. Each line is printed by
// out.Print(format, ...), with a format as for printf.

#pragma once

#include "growth/sources.h"
#include "growth/state.h"
#include "surface/surface.h"

// `sourcetype` is the source to name: the report file names one of them differently (kept).
template<typename Printer>
void DescribeParameters(Printer &out, int sourcetype)
{
    out.Print("Version: %g", versionid / 100.0);
    out.Print("Seed: %d", growthstate.seed);
    out.Print("Bias towards origin: %g%% of step length", growthstate.bias);
    out.Print("Branch length: %g", growthstate.branchlength);
    out.Print("Stickiness: %g%%", growthstate.stickiness);
    out.Print("Rotation: %g degrees about z axis", growthstate.rotation);
    out.Print("Branch thickness: %g to %g", growthstate.thickfrom, growthstate.thickto);
    out.Print("Intersection range: %g%% of branch length", growthstate.intersectrange);
    out.Print("Seed association: %s", growthstate.association ? "On" : "Off");
    out.Print("Number of roots: %d", growthstate.nroots);
    if (growthstate.nroots >= 2) {
        out.Print("Root distribution range: %g", growthstate.rootrange);
        out.Print("Root distribution: %s", growthstate.rootname);
    }
    out.Print("Source type: %s", SourceName(sourcetype));
}

template<typename Printer>
void DescribeSurface(Printer &out)
{
    out.Print("Constraint surface: %s", growthstate.surfacename);
    if (nstltri == 0)
        return;
    out.Print("Faces in constraint surface: %d", nstltri);
    out.Print("Surface bounds");
    out.Print("   %g <= x <= %g", stlmin.x, stlmax.x);
    out.Print("   %g <= y <= %g", stlmin.y, stlmax.y);
    out.Print("   %g <= z <= %g", stlmin.z, stlmax.z);
}

template<typename Printer>
void DescribeSize(Printer &out)
{
    out.Print("Number of particles: %d", ncells);
    out.Print("Current radius: %g", growthstate.radius);
}

// The numbers of particles with no to five children.
template<typename Printer>
void DescribeBranchDistribution(Printer &out)
{
    const int *classes = stats.branchcount;
    out.Print("   0:%d 1:%d 2:%d 3:%d 4:%d 5:%d", classes[0], classes[1], classes[2], classes[3], classes[4],
              classes[5]);
}
