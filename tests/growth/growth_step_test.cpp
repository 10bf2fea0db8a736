#include "growth/growth_step.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include <gtest/gtest.h>

#include "growth/reference_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/walker.h"
#include "surface/surface.h"

namespace
{
struct ParameterSet {
    const char *name;
    int source = kSourceSphere;
    int nroots = 1;
    int roottype = kRootOrigin;
    int association = 0;
    double rotation = 0;
    double stickiness = 100;
    double branchlength = 1;
    double bias = 0.1;
    double intersectrange = 0;
    double surface = 0; // edge of a box, negative for one whose normals point inward
    double rootrange = 10;
    int particles = 400;
    int atleast = 10; // fewer particles would compare too little
};
} // namespace

static const ParameterSet kParameterSets[] = {
    {.name = "defaults", .particles = 800},
    {.name = "plane", .source = kSourcePlaneX, .stickiness = 5},
    {.name = "unknown source", .source = 99, .bias = 0},
    {.name = "three roots", .nroots = 3, .roottype = kRootRingX},
    {.name = "three associated roots", .nroots = 3, .roottype = kRootRingZ, .association = 1},
    {.name = "association, two of three roots missing", .nroots = 3, .association = 1, .atleast = 1},
    {.name = "no roots counted", .nroots = 0, .association = 1},
    {.name = "low stickiness", .stickiness = 5},
    {.name = "short branches", .branchlength = 0.05, .particles = 150},
    {.name = "half branches", .branchlength = 0.5, .bias = 1},
    {.name = "half branches, associated",
     .nroots = 3,
     .roottype = kRootRandomY,
     .association = 1,
     .branchlength = 0.5,
     .rootrange = 2},
    {.name = "self-intersection, three roots",
     .nroots = 3,
     .roottype = kRootSpherical,
     .intersectrange = 20,
     .particles = 20},
    {.name = "surface", .surface = 14},
    {.name = "surface as source", .source = kSourceSurface, .surface = 30},
};

constexpr long kSteps = 400000;

// By so many steps at once, again and again, where no step is given.
static Outcome GrowBy(GrowthStep step, const ParameterSet &set)
{
    StartAfresh();
    growthstate.sourcetype = set.source;
    growthstate.nroots = set.nroots;
    growthstate.roottype = set.roottype;
    growthstate.rootrange = set.rootrange;
    growthstate.association = set.association;
    growthstate.rotation = set.rotation;
    growthstate.stickiness = set.stickiness;
    growthstate.branchlength = set.branchlength;
    growthstate.bias = set.bias;
    growthstate.intersectrange = set.intersectrange;
    if (set.surface != 0)
        SetBoxSurface(std::fabs(set.surface), set.surface < 0);
    InitialiseGrowth();
    ResetSeeds();
    if (step != nullptr)
        Grow(step, set.particles, kSteps);
    for (int most = 1; step == nullptr && ncells < set.particles && growthstate.steptotal < kSteps;
         most = most % 50 + 1) {
        const long before = growthstate.steptotal;
        const int taken = IterateUntilStick(static_cast<int>(std::min<long>(most, kSteps - before)));
        EXPECT_TRUE(taken > 0 && taken <= most && growthstate.steptotal == before + taken);
    }
    return TakeOutcome();
}

TEST(GrowthStep, GrowsWhatThePlainReferenceGrows)
{
    for (const ParameterSet &set : kParameterSets) {
        const Outcome expected = GrowBy(ReferenceStep, set);
        const Outcome grown = GrowBy(IterateSystem, set);
        EXPECT_EQ(Difference(expected, grown), "") << set.name;
        EXPECT_EQ(Difference(expected, GrowBy(nullptr, set)), "") << set.name << ", many steps at once";
        EXPECT_GE(static_cast<int>(grown.cells.size()), set.atleast) << set.name;
    }
}

TEST(GrowthStep, EverySourceGrowsWhatThePlainReferenceGrows)
{
    for (int source = 0; source <= kSourceSurface + 1; source++) {
        for (const double surface : {0.0, 40.0}) {
            const ParameterSet set = {.name = "", .source = source, .surface = surface, .particles = 25};
            EXPECT_EQ(Difference(GrowBy(ReferenceStep, set), GrowBy(IterateSystem, set)), "")
                << "source " << source << (surface > 0 ? " with a surface" : "");
        }
    }
}

TEST(GrowthStep, DefaultRunIsPinned)
{
    StartAfresh();
    Grow(IterateSystem, 3000, LONG_MAX);
    EXPECT_EQ(HashParticles(3000), 0x1fec8f014a1214ccULL) << std::hex << HashParticles(3000);
    Grow(IterateSystem, 20000, LONG_MAX);
    EXPECT_EQ(HashParticles(20000), 0xb4129258beabd5deULL) << std::hex << HashParticles(20000);
}

TEST(GrowthStep, TheStepCountStartsOverInPhaseBeforeItOverflows)
{
    StartAfresh();
    growthstate.stickiness = 0;
    growthstate.stepcount = INT_MAX - 1;
    IterateSystem();
    EXPECT_EQ(growthstate.stepcount, INT_MAX);
    IterateSystem();
    EXPECT_EQ(growthstate.stepcount, INT_MAX % 10000 + 1);
}

TEST(GrowthStep, TheLaunchCountStartsOverInPhaseWithItsRingBeforeItOverflows)
{
    StartAfresh();
    nseeds = INT_MAX;
    for (const int slot : {INT_MAX % kSeedRing, INT_MAX % kSeedRing + 1}) {
        growthstate.stepcount = 0;
        seeds[slot] = {0, 0, 0};
        IterateSystem();
        EXPECT_NEAR(Modulus(seeds[slot]), LaunchRadius(), 1e-9);
        EXPECT_GE(nseeds, kSeedRing); // all of the ring is drawn
        EXPECT_EQ(nseeds % kSeedRing, slot + 1);
    }
}
