#include "growth/scenario.h"

#include <cmath>
#include <cstring>

#include "base/array.h"
#include "growth/generators.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "hash.h"
#include "surface/surface.h"

// Bit for bit, but for the bits of what is not a number.
static bool Same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || memcmp(&a, &b, sizeof a) == 0;
}

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
    Outcome o = {{cells, cells + ncells}, {}};
    const auto add = [&o](std::initializer_list<double> numbers) {
        o.numbers.insert(o.numbers.end(), numbers);
    };
    for (const Particle &particle : o.cells)
        add({particle.p.x, particle.p.y, particle.p.z, particle.weight, double(particle.parent)});
    for (int i = 0; i < kSeedRing; i++)
        add({seeds[i].x, seeds[i].y, seeds[i].z});
    const GrowthState &s = growthstate;
    add({s.pos.x, s.pos.y, s.pos.z, s.radius, s.maxweight, double(s.stepcount), double(nseeds)});
    add({double(DrawInteger()), DrawUniform()});
    return o;
}

std::string Difference(const Outcome &a, const Outcome &b)
{
    if (a.cells.size() != b.cells.size())
        return "particles: " + std::to_string(a.cells.size()) + " and " + std::to_string(b.cells.size());
    for (size_t i = 0; i < a.numbers.size(); i++)
        if (!Same(a.numbers[i], b.numbers[i]))
            return "number " + std::to_string(i) +
                   " (five a particle, then three a launch): " + std::to_string(a.numbers[i]) + " and " +
                   std::to_string(b.numbers[i]);
    return "";
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
