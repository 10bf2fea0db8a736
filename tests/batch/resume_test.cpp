// Runs of sarkelo-grow that stop anywhere and go on in a new process leave what they leave without a stop, to the
// last bit.

#include <cstdlib>
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/wait.h>

#include "archive/content.h"
#include "growth/root_distributions.h"
#include "growth/sources.h"
#include "surface/samples.h"

// Any parameters with which something can grow
static std::string RandomRecipe(std::mt19937 &random)
{
    const auto pick = [&](auto... values) {
        const double all[] = {static_cast<double>(values)...};
        return all[random() % std::size(all)];
    };
    const int distribution = kRootOrigin + static_cast<int>(random() % 8);
    const bool flies = random() % 2 == 0;
    const bool association = distribution != kRootOrigin && random() % 2 == 0;
    std::ostringstream text;
    text << "growth.seed = " << random() % 2147483648
         << "\ngrowth.branch_length = " << pick(0.3, 0.5, 1, 1, 2, 5)
         << "\ngrowth.stickiness = " << pick(100, 100, 50, 5) << "\ngrowth.bias = " << pick(0, 0.1, 1)
         << "\ngrowth.walk = \"" << (flies ? "flights" : "steps")
         << "\"\ngrowth.rotation = " << (flies ? 0 : pick(0, 0, 5, -0.3))
         << "\ngrowth.intersection_range = " << pick(0, 0, 0, 2)
         << "\ngrowth.association = " << (association ? "true" : "false")
         << "\ngrowth.launch_scale = " << pick(1, 1, 1.5, 2) << "\ngrowth.killing_scale = " << pick(1, 1, 5);
    if (random() % 6 == 0)
        text << "\nroots.file = \"seeds\"";
    else
        text << "\nroots.distribution = \"" << RootTypeName(distribution)
             << "\"\nroots.count = " << pick(1, 2, 3, 20) << "\nroots.range = " << pick(1, 3, 10);
    const auto samples = Samples();
    text << "\nsource.type = \"" << SourceName(1 + static_cast<int>(random() % 17))
         << "\"\nsurface.sample = \"" << samples[random() % samples.size()].name << "\"\nsurface.scale = ["
         << pick(0.5, 1, 3) << ", 1, " << pick(1, 2) << "]\n";
    return text.str();
}

static int Grown(const std::string &arguments, unsigned long steps)
{
    const std::string command = SARKELO_GROW " --quiet --force 2>refused --steps " + std::to_string(steps);
    return WEXITSTATUS(system((command + " " + arguments).c_str()));
}

static StoredAggregate ReadStored(const std::string &path)
{
    StoredAggregate stored;
    EXPECT_EQ(ReadAggregate(path, &stored).line, "");
    return stored;
}

TEST(Resume, GoesOnInANewProcessAsIfNeverStopped)
{
    const TemporaryDirectory directory;
    std::ofstream("seeds") << "1 2 3\n-4 5 6\n0.1 0 -7\n";
    int grown = 0;
    for (unsigned seed = 1, histories = 0; histories < SARKELO_HISTORIES; seed++) {
        std::mt19937 random(seed);
        const std::string recipe = RandomRecipe(random);
        std::ofstream("r.toml") << recipe;
        const auto total = 100000 + random() % 400000;
        const auto first = random() % total + 1;
        const auto second = first + random() % (total - first + 1);
        if (Grown("r.toml -o whole.h5", total) == kRequestFault &&
            ReadWhole("refused").find("can never grow") != std::string::npos)
            continue;
        histories++;
        ASSERT_EQ(ReadWhole("refused"), "") << recipe;
        ASSERT_EQ(Grown("r.toml -o part.h5", first), 0);
        ASSERT_EQ(Grown("--resume part.h5", second), 0);
        ASSERT_EQ(Grown("--resume part.h5 -o rest.h5", total), 0);
        StoredAggregate whole = ReadStored("whole.h5");
        StoredAggregate rest = ReadStored("rest.h5");
        const auto taken = static_cast<unsigned long>(whole.state.steptotal);
        const bool flies = recipe.find("flights") != std::string::npos; // the last flight may pass the stop
        EXPECT_TRUE(taken >= total && taken <= total + (flies ? 10000 : 0)) << taken << " of " << total;
        EXPECT_GT(rest.run.seconds, 0);
        whole.run.seconds = rest.run.seconds = 0;
        EXPECT_TRUE(Content(std::move(whole)) == Content(std::move(rest))) << seed << "\n" << recipe;
        grown += ncells;
    }
    EXPECT_GT(grown, 40 * SARKELO_HISTORIES) << "too little grew to compare";
}

// Memory is freed when one run takes the place of another; the library keeps a little.
TEST(Resume, FileAfterFileTakesNoMoreMemory)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(Grown("--particles 2000 --set surface.sample=Sphere -o a.h5", 1000000000), 0);
    std::size_t inuse = 0;
    for (int k = 0; k < 50; k++) {
        ResumeRun(ReadStored("a.h5"));
        inuse = k == 10 ? mallinfo2().uordblks : inuse;
    }
    EXPECT_LE(mallinfo2().uordblks, inuse + 100000);
}
