#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "archive/aggregate_file.h"
#include "growth/aggregate.h"
#include "growth/parameters.h"

void ResumeRun(StoredAggregate stored)
{
    const std::span<const Parameter> rows = Parameters();
    for (std::size_t i = 0; i < rows.size(); i++)
        std::visit(
            [&](auto *field) {
                *field = static_cast<std::remove_pointer_t<decltype(field)>>(stored.values[i]);
            },
            rows[i].field);
    GrowthState &state = growthstate;
    state.pos = stored.state.pos;
    state.stepcount = stored.state.stepcount;
    state.steptotal = stored.state.steptotal;
    state.radius = stored.state.radius;
    state.maxweight = stored.state.maxweight;
    memcpy(state.rootname, stored.state.rootname, sizeof state.rootname);
    memcpy(state.surfacename, stored.state.surfacename, sizeof state.surfacename);
    state.running = 1;
    stats.timestep = 0;

    free(cells);
    cells = stored.particles.release();
    ncells = stored.count;
    free(roots);
    roots = stored.roots.release();
    free(stltri);
    stltri = stored.faces.release();
    nstltri = stored.facecount;
    UpdateSTL();
    std::copy(stored.launches.begin(), stored.launches.end(), seeds);
    nseeds = stored.launchcount;
    ForgetAggregate();

    generators = stored.generators;
}

std::string DifferenceFromRun(const StoredAggregate &stored)
{
    const std::span<const Parameter> rows = Parameters();
    for (std::size_t i = 0; i < rows.size(); i++) {
        if (FindGroup(rows[i].group).affectsgrowth && ParameterValue(rows[i]) != stored.values[i])
            return std::string(rows[i].group) + "." + rows[i].key + " is not the same";
    }
    if (nstltri != stored.facecount)
        return "the surface is not the same";
    for (int i = 0; i < nstltri; i++)
        for (int corner = 0; corner < 3; corner++)
            if (stltri[i].p[corner] != stored.faces[i].p[corner])
                return "the surface is not the same";
    for (int i = 0; i < ncells; i++)
        if (i >= stored.count || stored.particles[i].parent >= 0 || cells[i].p != stored.particles[i].p)
            return "the roots are not the same";
    if (ncells < stored.count && stored.particles[ncells].parent < 0)
        return "the roots are not the same";
    return "";
}
