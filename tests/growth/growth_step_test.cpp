#include "growth/growth_step.h"

#include <climits>
#include <cstdlib>
#include <optional>

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/deferred_flows.h"
#include "growth/flows.h"
#include "growth/generators.h"
#include "growth/parallel_growth.h"
#include "growth/replay.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "search/neighbour_search.h"

TEST(GrowthStep, LargeRunsHaveTheirHashes)
{
    const struct {
        bool flies, defers;
        int threads;
        double branchlength;
        int particles;
        unsigned long long hash;
    } rows[] = {{false, false, 1, 1, 20000, 0xb4129258beabd5deULL},
                {false, true, 1, 0.4, 2000, 0xa3bedc2db5d4cba5ULL},
                {true, false, 1, 1, 20000, 0xc360a8697f61a55dULL},
                {true, true, 2, 1, 20000, 0xc360a8697f61a55dULL}};
    for (const auto &row : rows) {
        StartWith({{&growthstate.branchlength, row.branchlength}, {&growthstate.walk, double(row.flies)}});
        std::optional<DeferredFlows> flows;
        if (row.defers)
            flows.emplace();
        const auto grow = [&](int particles) {
            if (row.flies)
                GrowFlights({.particles = particles}, row.threads);
            else
                Grow(IterateSystem, particles, LONG_MAX);
        };
        grow(row.particles / 2);
        SettleFlows();
        const unsigned long long half = HashParticles(row.particles / 2);
        grow(row.particles);
        flows.reset();
        EXPECT_EQ(HashParticles(ncells), row.hash) << std::hex << HashParticles(ncells);
        {
            const Replay replay;
            replay.GrowTo(row.particles / 2);
            EXPECT_EQ(HashParticles(ncells), half);
        }
        EXPECT_EQ(HashParticles(ncells), row.hash);
        for (int i = 0; i < ncells; i++)
            cells[i].weight = 0;
        for (int i = 1; i < ncells; i++)
            AddFlowWithoutTables(cells[i].parent);
        EXPECT_EQ(HashParticles(ncells), row.hash);
    }
}

TEST(Generators, DrawAsTheLibraryDoes)
{
    for (const int seed : {0, 1, -7, 2147483647, -2147483647 - 1}) {
        srand(static_cast<unsigned>(seed));
        srand48(seed);
        SeedGenerators(seed);
        for (int i = 0; i < 20000; i++)
            ASSERT_TRUE(DrawUniform() == drand48() && DrawInteger() == rand()) << seed << ", draw " << i;
    }
}

TEST(NeighbourSearch, FindsAParticleThatWasMoved)
{
    StartWith({{&growthstate.bias, 0}});
    Grow(IterateSystem, 31, 1000000);
    EXPECT_LT(CurrentFreeBall().radius2, 0); // no ball is free for sure once a particle has stuck
    cells[30].p = {100, 100, 100};
    growthstate.radius = 500;
    for (int i = 0; i < 200 && ncells == 31; i++) {
        growthstate.pos = {100, 100, 100.9};
        growthstate.stepcount = 1;
        IterateSystem();
    }
    EXPECT_TRUE(ncells == 32 && cells[31].parent == 30);
}

// What a restart decides, and the first three particles.
static void PrintState(std::ostream &text)
{
    const GrowthState &s = growthstate;
    text << s.nroots << ' ' << s.roottype << ' ' << s.rootname << ' ' << s.radius << ' ' << s.running << ' '
         << s.stepcount << ' ' << s.maxweight << ' ' << s.steptotal << ' ' << nseeds << ' ' << stats.timestep
         << ' ' << ncells;
    for (int i = 0; i < ncells && i < 3; i++)
        text << " (" << Plain(cells[i].p.x) << ' ' << Plain(cells[i].p.y) << ' ' << Plain(cells[i].p.z) << ' '
             << cells[i].weight << ' ' << cells[i].parent << ')';
    text << '\n';
}

// The roots of every type and number, the draws that follow, and the radius that a restart gives them.
TEST(Roots, MatchExpectedText)
{
    std::ostringstream text;
    for (int roottype = -1; roottype <= 10; roottype++) {
        for (const int nroots : {-3, 0, 3}) {
            StartAfresh();
            HandleRootMenu(roottype);
            growthstate.nroots = nroots;
            growthstate.rootrange = 30;
            text << growthstate.rootname << ": ";
            ResetSeeds();
            text << DrawUniform() << ' ' << DrawInteger() << ' ';
            growthstate.rootrange = 5;
            InitialiseGrowth();
            PrintState(text);
        }
    }
    ExpectGolden("roots.txt", text.str());
}

TEST(SeedFile, ReadingMatchesExpectedText)
{
    const TemporaryDirectory directory;
    std::ostringstream text;
    for (const char *content : {"1 2 3\n4 5 6\n7 8\n", "1 2 3\r\n4\t5\n6", "1 2 3\n4 five 6\n7 8 9\n", "",
                                "30 40 0\nnan inf 1\n", "/no/such/file", "/"}) {
        StartWith({{&growthstate.roottype, kRootRingX}, {&growthstate.nroots, 3}});
        Grow(IterateSystem, 30, LONG_MAX);
        std::ofstream("seeds") << content;
        const char *path = content[0] == '/' ? content : "seeds";
        text << '"' << content << "\": " << ReadSeedFile(path) << '\n';
        PrintState(text);
        stats.timestep = 17;
        growthstate.running = 0;
        InitialiseGrowth();
        PrintState(text);
        text << DrawInteger() << '\n';
    }
    ExpectGolden("seed_files.txt", text.str());
}
