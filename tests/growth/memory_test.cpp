// Growth and readers when memory runs out. realloc is wrapped at link time.

#include <climits>
#include <cstdlib>

#include <gtest/gtest.h>

#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/stl_reader.h"
#include "surface/surface.h"
#include "temporary_file.h"

// Calls of realloc that still succeed; negative: all.
static int granted = -1;

extern "C" void *__real_realloc(void *old, size_t size);
extern "C" void *__wrap_realloc(void *old, size_t size);

extern "C" void *__wrap_realloc(void *old, size_t size)
{
    if (granted == 0)
        return nullptr;
    if (granted > 0)
        granted--;
    return __real_realloc(old, size);
}

class Memory : public testing::Test
{
protected:
    void SetUp() override { StartAfresh(); }
    void TearDown() override { granted = -1; }
};

TEST_F(Memory, GrowthStopsAndKeepsWhatHasGrown)
{
    Grow(IterateSystem, 50, LONG_MAX);
    const unsigned long long hash = HashParticles(50);
    granted = 0;
    testing::internal::CaptureStderr();
    for (long i = 0; growthstate.running && i < 1000000; i++)
        IterateSystem();
    for (int i = 0; i < 20000; i++)
        IterateSystem(); // whoever goes on calling hears nothing more
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Out of memory: growth stopped at 50 particles\n");
    EXPECT_EQ(growthstate.running, 0);
    EXPECT_EQ(ncells, 50);
    EXPECT_EQ(HashParticles(50), hash);

    granted = -1;
    growthstate.running = 1;
    Grow(IterateSystem, 60, 1000000);
    EXPECT_EQ(ncells, 60);
}

TEST_F(Memory, RootsThatDoNotFitLeaveTheOldOnes)
{
    Grow(IterateSystem, 20, LONG_MAX);
    const Outcome before = TakeOutcome();
    growthstate.nroots = 1000;
    growthstate.roottype = kRootRingX;
    granted = 0;
    EXPECT_EQ(ResetSeeds(), 0);
    EXPECT_EQ(ncells, 20);
    EXPECT_EQ(cells[19].parent, before.cells[19].parent);
    EXPECT_STREQ(growthstate.rootname, "Origin");
}

TEST_F(Memory, SeedFileKeepsTheRootsThatFit)
{
    const TemporaryFile file("1 2 3\n4 5 6\n7 8 9\n");
    granted = 1 + 2 + 1; // ResetSeeds, the first root in both arrays, the second in one
    EXPECT_EQ(ReadSeedFile(file.path()), kSeedFileOutOfMemory);
    EXPECT_EQ(growthstate.nroots, 1);
    EXPECT_EQ(ncells, 1);
}

TEST_F(Memory, SurfaceThatDoesNotFitIsEmpty)
{
    const TemporaryFile ascii("solid\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nouter loop\n"
                              "vertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n");
    granted = 1;
    EXPECT_EQ(ReadSTLFile(ascii.path()), kSTLOutOfMemory);
    EXPECT_EQ(nstltri, 0);

    const TemporaryFile binary(std::string(80, ' ') + std::string("\x03\0\0\0", 4) + std::string(60, '\1'));
    for (const int grants : {0, 1}) { // for no face; for the one read, not for those that repeat it
        granted = grants;
        EXPECT_EQ(ReadSTLFile(binary.path()), kSTLOutOfMemory) << grants;
        EXPECT_EQ(nstltri, 0);
    }
}
