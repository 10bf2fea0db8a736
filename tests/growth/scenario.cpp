#include "growth/scenario.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/array.h"
#include "growth/generators.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "surface/surface.h"
#include "temporary_file.h"

void StartAfresh()
{
    InitialiseGrowth();
    SetProgramDefaults();
    growthstate.pos = {0, 0, 0};
    for (const char *group : {"growth", "roots", "source", "drawing"})
        SetDefaults(group);
    strcpy(growthstate.surfacename, "None");
    nstltri = 0;
    UpdateSTL();
    InitialiseGrowth();
    ResetSeeds();
}

void StartWith(const std::vector<Setting> &settings)
{
    StartAfresh();
    for (const Setting &setting : settings)
        SetParameter(ParameterOf(setting.field), setting.value);
    RestartFromRoots();
}

Outcome TakeOutcome()
{
    const GrowthState &s = growthstate;
    Outcome o = {s.pos.x,        s.pos.y,       s.pos.z,
                 s.radius,       s.maxweight,   double(s.stepcount),
                 double(nseeds), DrawUniform(), double(DrawInteger()),
                 double(ncells)};
    for (int i = 0; i < ncells; i++)
        o.insert(o.end(),
                 {cells[i].p.x, cells[i].p.y, cells[i].p.z, cells[i].weight, double(cells[i].parent)});
    for (const Vector &launch : seeds)
        o.insert(o.end(), {launch.x, launch.y, launch.z});
    return o;
}

std::string Difference(const Outcome &a, const Outcome &b)
{
    // Bit for bit, but for the bits of what is not a number.
    const auto same = [](double x, double y) {
        return (std::isnan(x) && std::isnan(y)) || memcmp(&x, &y, sizeof x) == 0;
    };
    const auto differ = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), same);
    if (differ.first == a.end() && differ.second == b.end())
        return "";
    return "differs at number " + std::to_string(differ.first - a.begin()) + " of TakeOutcome";
}

unsigned long long HashParticles(int count)
{
    unsigned long long hash = Hash(nullptr, 0);
    for (int i = 0; i < count; i++) {
        hash = Hash(&cells[i].p, sizeof cells[i].p, hash);
        hash = Hash(&cells[i].weight, sizeof cells[i].weight, hash);
        hash = Hash(&cells[i].parent, sizeof cells[i].parent, hash);
    }
    return hash;
}

void Grow(GrowthStep step, int particles, long steps)
{
    for (long i = 0; i < steps && ncells < particles; i++)
        step();
}

void SetBoxSurface(double size, bool inward)
{
    // Corners, of which bits 0, 1 and 2 are set on the far side of x, y and z.
    static constexpr int kFaces[12][3] = {{0, 6, 2}, {0, 4, 6}, {1, 3, 7}, {1, 7, 5}, {0, 5, 4}, {0, 1, 5},
                                          {2, 6, 7}, {2, 7, 3}, {0, 3, 1}, {0, 2, 3}, {4, 5, 7}, {4, 7, 6}};
    const double h = size / 2;
    nstltri = 0;
    for (const auto &[first, second, third] : kFaces) {
        Triangle t = {};
        for (int k = 0; const int corner : {first, inward ? third : second, inward ? second : third})
            t.p[k++] = {corner & 1 ? h : -h, corner & 2 ? h : -h, corner & 4 ? h : -h};
        AppendToArray(&stltri, &nstltri, t);
    }
    UpdateSTL();
}
