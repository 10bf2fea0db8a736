#include "growth/roots.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

// The roots of every type and number, and the draws that follow.
TEST(Roots, ArePlacedAsRightBefore)
{
    std::ostringstream text;
    text.precision(12);
    for (int roottype = -4; roottype <= 10; roottype++) {
        for (const int nroots : {0, 1, 4, 7}) {
            StartAfresh();
            HandleRootMenu(roottype);
            growthstate.nroots = nroots;
            growthstate.rootrange = 30;
            SeedGenerators(99);
            text << "type " << growthstate.roottype << " " << growthstate.rootname << ", ";
            ResetSeeds();
            text << growthstate.rootname << ":\n";
            for (int i = 0; i < ncells; i++)
                text << ' ' << Plain(cells[i].p.x) << ' ' << Plain(cells[i].p.y) << ' ' << Plain(cells[i].p.z)
                     << ' ' << cells[i].parent << ' ' << cells[i].weight << '\n';
            text << DrawUniform() << ' ' << DrawInteger() << '\n';
        }
    }
    ExpectGolden("roots.txt", text.str());
}

TEST(Roots, NothingGrowsWithoutThem)
{
    StartAfresh();
    growthstate.roottype = kRootRingX;
    for (const int count : {0, -3}) {
        growthstate.nroots = count;
        ResetSeeds();
        InitialiseGrowth();
        for (int i = 0; i < 100; i++)
            IterateSystem(); // nothing to stick to, nothing to drift from
        EXPECT_EQ(ncells, 0);
    }
}

TEST(Roots, RestartFallsBackToThePlacedRoots)
{
    StartAfresh();
    growthstate.nroots = 5; // kRootOrigin places one of them
    Grow(IterateSystem, 100, LONG_MAX);
    const double flow = cells[0].weight;
    stats.timestep = 17;
    stats.branchcount[3] = 4;
    InitialiseGrowth();
    EXPECT_EQ(ncells, 1);
    EXPECT_EQ(cells[0].weight, flow);
    EXPECT_EQ(growthstate.running, 1);
    EXPECT_EQ(growthstate.stepcount, 0);
    EXPECT_EQ(growthstate.maxweight, 0);
    EXPECT_EQ(nseeds, 0);
    EXPECT_EQ(stats.timestep, 0);
    EXPECT_EQ(stats.branchcount[3], 4);
    EXPECT_EQ(growthstate.radius, 20); // five roots are counted: the range of 10 and a margin of 10

    growthstate.roottype = kRootRingX;
    growthstate.rootrange = 50;
    ResetSeeds();
    growthstate.rootrange = 5;
    InitialiseGrowth();
    EXPECT_EQ(ncells, 5);
    EXPECT_NEAR(growthstate.radius, 50, 1e-12); // the farthest root
}

// Good files, odd files and files that are none: the roots, and the run that starts from them.
TEST(SeedFile, GivesWhatItGaveRightBefore)
{
    std::ostringstream text;
    for (const char *content : {"1 2 3\n4 5 6\n", "1 2 3\n4 5 6\n7 8\n", "1 2 3\r\n4\t5\n6", "1 2 3 4 5 6",
                                "1 2 3\n4 five 6\n7 8 9\n", "", "1 2\n", "# 1 2 3\n", "nonsense",
                                "30 40 0\nnan inf 1\n", "unopened"}) {
        StartAfresh();
        growthstate.roottype = kRootRingX;
        growthstate.nroots = 3;
        ResetSeeds();
        Grow(IterateSystem, 30, LONG_MAX);
        const TemporaryFile file(content);
        const bool unopened = strcmp(content, "unopened") == 0;
        text << '"' << content << "\": " << ReadSeedFile(unopened ? "/no/such/file" : file.path());
        for (const int restarted : {0, 1}) { // a restart keeps the roots
            text << "; " << growthstate.nroots << ' ' << growthstate.roottype << ' ' << growthstate.radius
                 << ' ' << (strcmp(growthstate.rootname, file.path()) == 0 ? "path" : growthstate.rootname)
                 << ' ' << nseeds;
            for (int i = 0; i < ncells && i < 5; i++)
                text << " (" << cells[i].p.x << ' ' << cells[i].p.y << ' ' << cells[i].p.z << ' '
                     << cells[i].parent << ')';
            if (!restarted)
                InitialiseGrowth();
        }
        text << ' ' << DrawInteger() << ' ' << DrawUniform() << '\n';
    }
    ExpectGolden("seed_files.txt", text.str());
    EXPECT_EQ(ReadSeedFile("/"), kSeedFileEmpty); // a directory opens, and holds no record
}

TEST(SeedFile, KeepsWhatFitsOfALongPath)
{
    StartAfresh();
    const std::string directory = "/tmp/" + std::string(100, 'd');
    const std::string path = directory + "/" + std::string(100, 'f');
    ASSERT_EQ(system(("mkdir -p " + directory + " && echo 1 2 3 > " + path).c_str()), 0);
    EXPECT_EQ(ReadSeedFile(path.c_str()), kSeedFileRead);
    EXPECT_EQ(std::string(growthstate.rootname), path.substr(0, 127));
    ASSERT_EQ(system(("rm -r " + directory).c_str()), 0);
}
