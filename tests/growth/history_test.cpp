// Runs in which everything that a user can change changes in the middle, in random order: the program's step and the
// plain reference leave the same to the last bit.

#include <climits>
#include <functional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/array.h"
#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/sources.h"
#include "surface/surface.h"
#include "temporary_file.h"

using Growth = void (*)(int steps);

template<GrowthStep step>
static void StepByStep(int steps)
{
    for (int i = 0; i < steps; i++)
        step();
}

static void WithDeferredFlows(int steps)
{
    const DeferredFlows flows;
    StepByStep<IterateSystem>(steps);
}

static void ManyAtOnce(int steps)
{
    while (steps > 0)
        steps -= IterateUntilStick(std::min(steps, 1 + steps % 50));
}

static void ScatterSurface(std::mt19937 &random)
{
    std::uniform_real_distribution<double> u(-1, 1);
    nstltri = 0;
    for (size_t faces = 1 + random() % 200; faces > 0; faces--) {
        const double size = std::pow(10, u(random));
        const Vector place = {12 * u(random), 12 * u(random), 12 * u(random)};
        Triangle t = {};
        for (Vector &corner : t.p)
            corner = place + size * Vector{u(random), u(random), u(random)};
        AppendToArray(&stltri, &nstltri, t);
    }
    UpdateSTL();
}

// Returns how many particles have stuck.
static int RunHistory(unsigned seed, Growth grow)
{
    std::mt19937 random(seed);
    const auto pick = [&](auto... values) {
        const double all[] = {static_cast<double>(values)...};
        return all[random() % std::size(all)];
    };
    GrowthState &s = growthstate;
    const std::function<void()> changes[] = {
        [&] { s.branchlength = pick(0.05, 0.3, 0.5, 0.99, 1, 1, 1.01, 2, 2.5, 5); },
        StartAfresh,
        [] { SetDefaults("growth"); },
        [&] { s.association = !s.association; },
        [&] { HandleSourceMenu(static_cast<int>(random() % 19)); },
        [&] { SetBoxSurface(pick(6, 15, 30), random() % 2 == 0); },
        [&] { ScatterSurface(random); },
        [&] {
            const double scale = pick(0, 1, 1); // 0 leaves nothing
            TransformSTL({scale, scale, scale}, {pick(-3, 0, 2), pick(-1, 0.5, 4), 1}, {});
        },
        [&] { s.stickiness = pick(100, 100, 50, 5, 1); },
        [&] { s.rotation = pick(0, 0, 5, -5, 0.3); },
        [&] { s.bias = pick(0, 0.1, 0.1, 1, 1000); },
        [&] { s.intersectrange = pick(0, 0, 0, 0, 20, 90); },
        [&] { InitialiseGrowth(); },
        [&] {
            s.nroots = static_cast<int>(pick(0, 1, 2, 3, 7, 50));
            s.roottype = static_cast<int>(random() % 11);
            s.rootrange = pick(0, 3, 3, 10, 40, 1e6);
            if (random() % 2 == 0)
                InitialiseGrowth();
            ResetSeeds();
        },
        [&] { // the counts start over before they overflow
            s.stepcount = INT_MAX - 3000;
            nseeds = INT_MAX;
        },
        [&] {
            const TemporaryFile file(random() % 2 == 0 ? "0 0 0\n1 2 3\n-4 5 6" : "0 0 0\n-4 5 inf\nnan 0 1");
            ReadSeedFile(file.path());
        },
    };
    StartWith({{&s.seed, double(random() >> 1)}});
    int stuck = 0;
    for (int event = 0; event < 60; event++) {
        if (const size_t change = random() % 21; change < std::size(changes))
            changes[change]();
        const int before = ncells;
        grow(static_cast<int>(random() % 6000));
        stuck += ncells - before;
    }
    return stuck;
}

TEST(History, StepsEqualTheReference)
{
    const Growth ways[] = {StepByStep<IterateSystem>, WithDeferredFlows, ManyAtOnce};
    int stuck = 0;
    for (unsigned seed = 1; seed <= SARKELO_HISTORIES; seed++) {
        RunHistory(seed, StepByStep<ReferenceStep>);
        const Outcome expected = TakeOutcome();
        stuck += RunHistory(seed, ways[seed % std::size(ways)]);
        EXPECT_EQ(Difference(expected, TakeOutcome()), "") << "history " << seed;
    }
    EXPECT_GT(stuck, 30 * SARKELO_HISTORIES) << "too little grew to compare";
}
