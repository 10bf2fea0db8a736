// Histories: runs in which everything that a user can change changes in the middle, in random order. The
// program's step and the plain reference must leave the same to the last bit.

#include <cstdlib>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/array.h"
#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/reference_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/sources.h"
#include "surface/surface.h"
#include "temporary_file.h"

static void GrowWithDeferredFlows(int steps)
{
    const DeferredFlows flows;
    for (int i = 0; i < steps; i++)
        IterateSystem();
}

static void GrowPlainly(int steps)
{
    for (int i = 0; i < steps; i++)
        IterateSystem();
}

static void GrowByReference(int steps)
{
    for (int i = 0; i < steps; i++)
        ReferenceStep();
}

// Moves the surface as a whole.
static void ShiftSurface(Vector shift)
{
    for (int i = 0; i < nstltri; i++)
        for (Vector &corner : stltri[i].p)
            corner = corner + shift;
    UpdateSTL();
}

// Faces scattered at random, of very different sizes.
static void ScatterSurface(std::mt19937 &random)
{
    std::uniform_real_distribution<double> u(-1, 1);
    nstltri = 0;
    const int faces = 1 + static_cast<int>(random() % 200);
    for (int i = 0; i < faces; i++) {
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
static int RunHistory(unsigned seed, void (*grow)(int))
{
    std::mt19937 random(seed);
    const auto pick = [&](auto... values) {
        const double all[] = {static_cast<double>(values)...};
        return all[random() % std::size(all)];
    };
    StartAfresh();
    growthstate.seed = static_cast<int>(random());
    InitialiseGrowth();
    int stuck = 0;
    for (int event = 0; event < 60; event++) {
        switch (random() % 22) {
        case 0:
        case 1:
            growthstate.branchlength = pick(0.01, 0.05, 0.3, 0.5, 0.99, 1, 1.01, 2, 2.5, 5);
            break;
        case 2:
            growthstate.association = !growthstate.association;
            break;
        case 3:
            HandleSourceMenu(static_cast<int>(random() % 19));
            break;
        case 4:
            SetBoxSurface(pick(6, 15, 30), random() % 2 == 0);
            break;
        case 5:
            ScatterSurface(random);
            break;
        case 6:
            ShiftSurface({pick(-3, 0, 2), pick(-1, 0.5, 4), pick(-0.1, 7)});
            break;
        case 7:
            nstltri = 0;
            UpdateSTL();
            break;
        case 8:
            growthstate.stickiness = pick(100, 100, 50, 5, 1);
            break;
        case 9:
            growthstate.rotation = pick(0, 0, 5, -5, 0.3);
            break;
        case 10:
            growthstate.bias = pick(0, 0.1, 1, 1000);
            break;
        case 11:
            growthstate.intersectrange = pick(0, 0, 0, 20, 90);
            break;
        case 12:
            InitialiseGrowth();
            break;
        case 13:
        case 14:
            growthstate.nroots = static_cast<int>(pick(0, 1, 2, 3, 7, 50));
            growthstate.roottype = static_cast<int>(random() % 11);
            growthstate.rootrange = pick(0, 3, 10, 40, 1e6);
            InitialiseGrowth();
            ResetSeeds();
            break;
        default:
            break;
        case 15: {
            const TemporaryFile file("0 0 0\n1 2 3\n-4 5 " + std::string(random() % 2 == 0 ? "6" : "inf") +
                                     "\nnan 0 1\n");
            ReadSeedFile(file.path());
            // The name of the file is the only thing that two runs do not share.
            growthstate.rootname[0] = '\0';
            break;
        }
        }
        const int before = ncells;
        grow(static_cast<int>(random() % 6000));
        stuck += ncells - before;
    }
    return stuck;
}

TEST(History, LeavesWhatThePlainReferenceLeaves)
{
    const char *chosen = getenv("SARKELO_HISTORY_SEED");
    const unsigned first = chosen != nullptr ? static_cast<unsigned>(atol(chosen)) : 1;
    const unsigned count = chosen != nullptr ? 1 : SARKELO_HISTORIES;
    int stuck = 0;
    for (unsigned seed = first; seed < first + count; seed++) {
        RunHistory(seed, GrowByReference);
        const Outcome expected = TakeOutcome();
        stuck += RunHistory(seed, seed % 3 == 0 ? GrowPlainly : GrowWithDeferredFlows);
        const Outcome grown = TakeOutcome();
        EXPECT_EQ(Difference(expected, grown), "") << "SARKELO_HISTORY_SEED=" << seed;
    }
    if (chosen == nullptr) {
        EXPECT_GT(stuck, 30 * SARKELO_HISTORIES) << "too little grew to compare";
    }
}

// Aggregates large enough that the index has been rebuilt, its map has grown, and cells has moved.
TEST(History, LargeAggregatesGrowAsByThePlainReference)
{
    for (const double branchlength : {1.0, 0.4}) {
        Outcome outcomes[2];
        for (const bool plain : {true, false}) {
            StartAfresh();
            growthstate.branchlength = branchlength;
            growthstate.seed = 77;
            InitialiseGrowth();
            while (ncells < 2500)
                (plain ? GrowByReference : GrowWithDeferredFlows)(1000);
            outcomes[plain] = TakeOutcome();
        }
        EXPECT_EQ(Difference(outcomes[1], outcomes[0]), "") << branchlength;
    }
}

// Steps with the walker beside a place until one sticks; returns its parent, or -1.
static int StickNear(Vector p)
{
    growthstate.bias = 0;
    const int before = ncells;
    for (int i = 0; i < 200 && ncells == before; i++) {
        growthstate.pos = {p.x, p.y, p.z + 0.9};
        growthstate.stepcount = 1;
        IterateSystem();
    }
    return ncells > before ? cells[before].parent : -1;
}

// Roots read anew, of which only the first, not looked at by the index when it is asked, has moved.
TEST(History, TheIndexFollowsNewRoots)
{
    StartAfresh();
    for (const char *first : {"0 0 0", "9 9 9", "-3 2 1"}) {
        const TemporaryFile file(std::string(first) + "\n5 5 5\n");
        ASSERT_EQ(ReadSeedFile(file.path()), kSeedFileRead);
        EXPECT_EQ(StickNear(cells[0].p), 0) << first;
        ncells = 2; // as if it had not stuck: the next roots are as many, at the same place in memory
        StickNear({0, -8, -5});
    }
}

// A search after a particle was moved where the index can notice it, or is told.
TEST(History, TheIndexFollowsChangedParticles)
{
    StartAfresh();
    for (const bool told : {false, true}) {
        RestartFromRoots();
        GrowWithDeferredFlows(50000);
        ASSERT_GT(ncells, 10);
        const int moved = told ? 0 : ncells - 1;
        cells[moved].p = {100, 100, 100};
        growthstate.radius = 500;
        if (told)
            ForgetAggregate();
        EXPECT_EQ(StickNear({100, 100, 100}), moved);
    }
}
