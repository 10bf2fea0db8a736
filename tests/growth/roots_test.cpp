#include "growth/roots.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

static std::string Particles(int most)
{
    std::ostringstream text;
    text.precision(8);
    for (int i = 0; i < ncells && i < most; i++)
        text << " (" << Plain(cells[i].p.x) << ' ' << Plain(cells[i].p.y) << ' ' << Plain(cells[i].p.z) << ' '
             << cells[i].parent << ')';
    return text.str();
}

// The roots of every type and number, and the draws that follow.
TEST(Roots, ArePlacedAsRightBefore)
{
    std::ostringstream text;
    for (int roottype = -1; roottype <= 10; roottype++) {
        for (const int nroots : {-3, 0, 3}) {
            StartAfresh();
            HandleRootMenu(roottype);
            growthstate.nroots = nroots;
            growthstate.rootrange = 30;
            text << growthstate.roottype << ' ' << growthstate.rootname << ", ";
            ResetSeeds();
            text << growthstate.rootname << ' ' << nroots << ": " << ncells << Particles(3) << ' '
                 << DrawUniform() << ' ' << DrawInteger() << '\n';
        }
    }
    ExpectGolden("roots.txt", text.str());
}

TEST(Roots, RestartFallsBackToThePlacedRoots)
{
    StartWith({{&growthstate.nroots, 5}}); // kRootOrigin places one of them
    Grow(IterateSystem, 100, LONG_MAX);
    const double flow = cells[0].weight;
    stats.timestep = 17;
    stats.branchcount[3] = 4;
    growthstate.running = 0;
    InitialiseGrowth();
    EXPECT_TRUE(ncells == 1 && cells[0].weight == flow && nseeds == 0 && growthstate.steptotal == 0);
    EXPECT_TRUE(growthstate.running && growthstate.stepcount == 0 && growthstate.maxweight == 0);
    EXPECT_TRUE(stats.timestep == 0 && stats.branchcount[3] == 4);
    EXPECT_EQ(growthstate.radius, 20); // five roots are counted: the range of 10 and a margin of 10

    StartWith({{&growthstate.nroots, 5}, {&growthstate.roottype, kRootRingX}, {&growthstate.rootrange, 50}});
    growthstate.rootrange = 5;
    InitialiseGrowth();
    EXPECT_EQ(ncells, 5);
    EXPECT_NEAR(growthstate.radius, 50, 1e-12); // the farthest root
}

// Good files, odd files and files that are none: the roots, and the run that starts from them.
TEST(SeedFile, GivesWhatItGaveRightBefore)
{
    const std::string longpath = "/tmp/" + std::string(150, 'd');
    std::ofstream(longpath) << "1 2 3";
    std::ostringstream text;
    for (const std::string &content : std::vector<std::string>{
             "1 2 3\n4 5 6\n7 8\n", "1 2 3\r\n4\t5\n6", "1 2 3\n4 five 6\n7 8 9\n", "", "1 2\n", "# 1 2 3\n",
             "30 40 0\nnan inf 1\n", "/no/such/file", "/", longpath}) {
        StartWith({{&growthstate.roottype, kRootRingX}, {&growthstate.nroots, 3}});
        Grow(IterateSystem, 30, LONG_MAX);
        const TemporaryFile file(content);
        const std::string path = content[0] == '/' ? content : file.path();
        text << '"' << content << "\": " << ReadSeedFile(path.c_str());
        for (const bool restarted : {false, true}) { // a restart keeps the roots
            text << "; " << growthstate.nroots << ' ' << growthstate.roottype << ' ' << growthstate.radius
                 << ' ' << (growthstate.rootname == path ? "path" : growthstate.rootname) << ' ' << nseeds
                 << Particles(5);
            if (!restarted)
                InitialiseGrowth();
        }
        text << ' ' << DrawInteger() << ' ' << DrawUniform() << '\n';
    }
    std::filesystem::remove(longpath);
    ExpectGolden("seed_files.txt", text.str());
}
