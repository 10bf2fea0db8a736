#include "export/information.h"

#include <cmath>

#include "growth/sources.h"
#include "growth/state.h"
#include "surface/surface.h"

static void WriteParameters(FILE *file);
static const char *ReportedSource();
static void WriteAggregate(FILE *file);
static void WriteStatistics(FILE *file);

void WriteInformation(FILE *file)
{
    WriteParameters(file);
    WriteAggregate(file);
    if (stats.timestep > 0)
        WriteStatistics(file);
}

static void WriteParameters(FILE *file)
{
    fprintf(file, "Version: %g\n", versionid / 100.0);
    fprintf(file, "Seed: %d\n", growthstate.seed);
    fprintf(file, "Bias towards origin: %g%% of step length\n", growthstate.bias);
    fprintf(file, "Branch length: %g\n", growthstate.branchlength);
    fprintf(file, "Stickiness: %g%%\n", growthstate.stickiness);
    fprintf(file, "Rotation: %g degrees about z axis\n", growthstate.rotation);
    fprintf(file, "Branch thickness: %g to %g\n", growthstate.thickfrom, growthstate.thickto);
    fprintf(file, "Intersection range: %g%% of branch length\n", growthstate.intersectrange);
    fprintf(file, "Seed association: %s\n", growthstate.association ? "On" : "Off");
    fprintf(file, "Number of roots: %d\n", growthstate.nroots);
    if (growthstate.nroots >= 2) {
        fprintf(file, "Root distribution range: %g\n", growthstate.rootrange);
        fprintf(file, "Root distribution: %s\n", growthstate.rootname);
    }
    fprintf(file, "Source type: %s\n", ReportedSource());
}

// The source on the negative z axis is reported as that on the negative x axis (kept).
static const char *ReportedSource()
{
    const int source = growthstate.sourcetype;
    return SourceName(source == kSourceAxisMinusZ ? kSourceAxisMinusX : source);
}

static void WriteAggregate(FILE *file)
{
    fprintf(file, "Constraint surface: %s\n", growthstate.surfacename);
    if (nstltri > 0) {
        fprintf(file, "Faces in constraint surface: %d\n", nstltri);
        fprintf(file, "Surface bounds\n");
        fprintf(file, "   %g <= x <= %g\n", stlmin.x, stlmax.x);
        fprintf(file, "   %g <= y <= %g\n", stlmin.y, stlmax.y);
        fprintf(file, "   %g <= z <= %g\n", stlmin.z, stlmax.z);
    }
    fprintf(file, "Number of particles: %d\n", ncells);
    fprintf(file, "Current radius: %g\n", growthstate.radius);
}

static void WriteStatistics(FILE *file)
{
    const int *classes = stats.branchcount;
    fprintf(file, "\nStatistics at time step: %d\n", stats.timestep);
    fprintf(file, "   Branch distribution\n");
    fprintf(file, "   0:%d 1:%d 2:%d 3:%d 4:%d 5:%d\n", classes[0], classes[1], classes[2], classes[3],
            classes[4], classes[5]);
    fprintf(file, "   Box counting [ size, N, log(1/size), log(N) ]\n");
    for (int level = 0; level < 10; level++) {
        const double size = stats.boxsize[level];
        const int count = stats.boxcount[level];
        if (count > 0 && size > 0)
            fprintf(file, "   %lf %d %lf %lf\n", size, count, std::log(1 / size), std::log(count));
    }
}
