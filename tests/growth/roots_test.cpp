#include "growth/roots.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

static void ExpectRoot(int i, double x, double y, double z)
{
    EXPECT_NEAR(cells[i].p.x, x, 1e-12) << i;
    EXPECT_NEAR(cells[i].p.y, y, 1e-12) << i;
    EXPECT_NEAR(cells[i].p.z, z, 1e-12) << i;
    EXPECT_EQ(cells[i].parent, -1);
    EXPECT_EQ(cells[i].weight, 0);
}

TEST(Roots, RandomDistributionsDrawInOrder)
{
    // Which coordinates are drawn.
    const struct {
        int roottype;
        const char *name;
        bool x, y, z;
    } rows[] = {
        {2, "Spherical", true, true, true},
        {9, "Spherical", true, true, true},
        {0, "Spherical", true, true, true},
        {-4, "Spherical", true, true, true},
        {3, "Random: x axis plane", false, true, true},
        {4, "Random: y axis plane", true, false, true},
        {5, "Random: z axis plane", true, true, false},
    };
    for (const auto &row : rows) {
        StartAfresh();
        growthstate.roottype = row.roottype;
        growthstate.nroots = 7;
        growthstate.rootrange = 30;
        srand48(99);
        Vector expected[7];
        for (Vector &p : expected) {
            p.x = row.x ? (drand48() - 0.5) * 30 : 0;
            p.y = row.y ? (drand48() - 0.5) * 30 : 0;
            p.z = row.z ? (drand48() - 0.5) * 30 : 0;
        }
        srand48(99);
        ResetSeeds();
        EXPECT_STREQ(growthstate.rootname, row.name);
        ASSERT_EQ(ncells, 7);
        for (int i = 0; i < 7; i++)
            EXPECT_EQ(memcmp(&cells[i].p, &expected[i], sizeof(Vector)), 0) << row.roottype << " " << i;
        srand48(12345); // placing ends with the generators seeded
        const double first = drand48();
        srand48(12345);
        ResetSeeds();
        EXPECT_EQ(drand48(), first);
    }
}

TEST(Roots, RingsStartOnTheFirstAxisInTheirPlane)
{
    StartAfresh();
    growthstate.nroots = 4;
    const char *names[] = {"Ring: x axis plane", "Ring: y axis plane", "Ring: z axis plane"};
    for (int axis = 0; axis < 3; axis++) {
        growthstate.roottype = kRootRingX + axis;
        ResetSeeds();
        EXPECT_STREQ(growthstate.rootname, names[axis]);
        ASSERT_EQ(ncells, 4);
        const double c[] = {10, 0, -10, 0};
        const double s[] = {0, 10, 0, -10};
        for (int i = 0; i < 4; i++) {
            if (axis == 0)
                ExpectRoot(i, 0, c[i], s[i]);
            else if (axis == 1)
                ExpectRoot(i, c[i], 0, s[i]);
            else
                ExpectRoot(i, c[i], s[i], 0);
        }
    }
}

TEST(Roots, OddCountsAndTypes)
{
    StartAfresh();
    growthstate.nroots = 5;
    ResetSeeds();
    EXPECT_EQ(ncells, 1);
    ExpectRoot(0, 0, 0, 0);
    growthstate.roottype = 10;
    ResetSeeds();
    EXPECT_EQ(ncells, 0);
    growthstate.roottype = kRootRingX;
    for (const int count : {0, -3}) {
        growthstate.nroots = count;
        ResetSeeds();
        EXPECT_EQ(ncells, 0);
        InitialiseGrowth();
        EXPECT_EQ(ncells, 0);
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

TEST(Roots, MenuLabelsStandOnePlaceAheadOfWhatIsPlaced)
{
    const char *names[] = {"Origin",
                           "Spherical",
                           "Random: x axis plane",
                           "Random: y axis plane",
                           "Random: z axis plane",
                           "Ring: x axis plane",
                           "Ring: y axis plane",
                           "Ring: z axis plane"};
    StartAfresh();
    for (int id = 1; id <= 8; id++) {
        HandleRootMenu(id);
        EXPECT_EQ(growthstate.roottype, id);
        EXPECT_STREQ(growthstate.rootname, names[id - 1]);
    }
    HandleRootMenu(9);
    EXPECT_EQ(growthstate.roottype, 9);
    EXPECT_STREQ(growthstate.rootname, "Ring: z axis plane");
}

TEST(SeedFile, GivesTheRoots)
{
    const struct {
        const char *text;
        int count;
    } rows[] = {
        {"1 2 3\n4 5 6\n", 2}, {"1 2 3\n4 5 6\n7 8\n", 2},      {"1 2 3\r\n4\t5\n6", 2},
        {"1 2 3 4 5 6", 2},    {"1 2 3\n4 five 6\n7 8 9\n", 1},
    };
    for (const auto &row : rows) {
        StartAfresh();
        growthstate.roottype = kRootRingX;
        Grow(IterateSystem, 30, LONG_MAX);
        const TemporaryFile file(row.text);
        EXPECT_EQ(ReadSeedFile(file.path()), kSeedFileRead) << row.text;
        EXPECT_EQ(growthstate.nroots, row.count);
        ASSERT_EQ(ncells, row.count);
        ExpectRoot(0, 1, 2, 3);
        EXPECT_EQ(roots[0].z, 3);
        if (row.count == 2) {
            ExpectRoot(1, 4, 5, 6);
        }
        EXPECT_EQ(growthstate.radius, 10);
        EXPECT_EQ(growthstate.roottype, kRootRingX);
        EXPECT_STREQ(growthstate.rootname, file.path());
    }
    growthstate.branchlength = 0.01;
    const TemporaryFile file("1 2 3\n4 5 6\n");
    ReadSeedFile(file.path());
    EXPECT_EQ(growthstate.radius, std::sqrt(77.0));
    InitialiseGrowth();
    EXPECT_EQ(ncells, 2); // a restart keeps them
}

TEST(SeedFile, WithoutRootsFallsBackToTheOrigin)
{
    for (const char *text : {"", "1 2\n", "# 1 2 3\n", "nonsense"}) {
        StartAfresh();
        growthstate.roottype = kRootRingX;
        growthstate.nroots = 3;
        const TemporaryFile file(text);
        EXPECT_EQ(ReadSeedFile(file.path()), kSeedFileEmpty) << text;
        EXPECT_EQ(growthstate.nroots, 1);
        EXPECT_EQ(growthstate.roottype, kRootOrigin);
        EXPECT_STREQ(growthstate.rootname, "Origin");
        ASSERT_EQ(ncells, 1);
        ExpectRoot(0, 0, 0, 0);
    }
    EXPECT_EQ(ReadSeedFile("/"), kSeedFileEmpty); // a directory opens, and holds no record
}

TEST(SeedFile, UnopenedChangesNothing)
{
    StartAfresh();
    Grow(IterateSystem, 30, LONG_MAX);
    const unsigned long long hash = HashParticles(30);
    EXPECT_EQ(ReadSeedFile("/no/such/file"), kSeedFileUnopened);
    EXPECT_EQ(ncells, 30);
    EXPECT_EQ(HashParticles(30), hash);
    EXPECT_EQ(growthstate.nroots, 1);
    EXPECT_STREQ(growthstate.rootname, "Origin");
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
