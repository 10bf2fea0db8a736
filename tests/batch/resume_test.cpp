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
#include "growth/roots.h"
#include "growth/sources.h"
#include "surface/samples.h"
#include "temporary_file.h"

static int Grown(const std::string &arguments)
{
    const std::string command = SARKELO_GROW " --quiet --force " + arguments;
    return WEXITSTATUS(system(command.c_str()));
}

// Any parameters with which something can grow.
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
    text << "[growth]\nseed = " << random() % 2147483648 << "\nbranch_length = " << pick(0.3, 0.5, 1, 1, 2, 5)
         << "\nstickiness = " << pick(100, 100, 50, 5) << "\nbias = " << pick(0, 0.1, 1)
         << "\nrotation = " << (flies ? 0 : pick(0, 0, 5, -0.3)) << "\nwalk = \""
         << (flies ? "flights" : "steps") << '"' << "\nintersection_range = " << pick(0, 0, 0, 2)
         << "\nassociation = " << (association ? "true" : "false")
         << "\nlaunch_scale = " << pick(1, 1, 1.5, 2) << "\nkilling_scale = " << pick(1, 1, 5);
    if (random() % 6 == 0) {
        std::ofstream("seeds.txt") << "1 2 3\n-4 5 6\n0.1 0 -7\n";
        text << "\n[roots]\nfile = \"seeds.txt\"";
    } else {
        text << "\n[roots]\ndistribution = \"" << RootTypeName(distribution)
             << "\"\ncount = " << pick(1, 2, 3, 20) << "\nrange = " << pick(1, 3, 10);
    }
    const auto samples = Samples();
    text << "\n[source]\ntype = \"" << SourceName(1 + static_cast<int>(random() % 17))
         << "\"\n[surface]\nsample = \"" << samples[random() % samples.size()].name << "\"\nscale = ["
         << pick(0.5, 1, 3) << ", 1, " << pick(1, 2) << "]\n";
    return text.str();
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
    int grown = 0;
    for (unsigned seed = 1, histories = 0; histories < SARKELO_HISTORIES; seed++) {
        std::mt19937 random(seed);
        std::ofstream("r.toml") << RandomRecipe(random);
        const auto total = 100000 + random() % 400000;
        const auto first = random() % total + 1;
        const auto second = first + random() % (total - first + 1);
        const auto steps = [](unsigned long count) { return " --steps " + std::to_string(count); };
        const int status = Grown("r.toml -o whole.h5" + steps(total) + " 2>refused");
        if (status == kRequestFault && ReadWhole("refused").find("can never grow") != std::string::npos)
            continue;
        histories++;
        ASSERT_EQ(status, 0) << ReadWhole("r.toml") << ReadWhole("refused");
        ASSERT_EQ(Grown("r.toml -o part.h5" + steps(first)), 0);
        ASSERT_EQ(Grown("--resume part.h5" + steps(second)), 0);
        ASSERT_EQ(Grown("--resume part.h5 -o rest.h5" + steps(total)), 0);
        StoredAggregate whole = ReadStored("whole.h5");
        StoredAggregate rest = ReadStored("rest.h5");
        const auto taken = static_cast<unsigned long>(whole.state.steptotal);
        EXPECT_GE(taken, total);
        EXPECT_LE(taken, ReadWhole("r.toml").find("flights") != std::string::npos
                             ? total + 10000
                             : total); // the last flight may pass it
        EXPECT_GT(rest.run.seconds, 0);
        whole.run.seconds = rest.run.seconds = 0;
        EXPECT_TRUE(Content(std::move(whole)) == Content(std::move(rest))) << "history " << seed << "\n" << ReadWhole("r.toml");
        grown += ncells;
    }
    EXPECT_GT(grown, 40 * SARKELO_HISTORIES) << "too little grew to compare";
}

// Memory is freed when one run takes the place of another.
TEST(Resume, FileAfterFileTakesNoMoreMemory)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(Grown("--particles 2000 --set surface.sample=Sphere -o a.h5"), 0);
    ASSERT_EQ(Grown("--particles 500 --seed 2 -o b.h5"), 0);
    std::size_t inuse = 0;
    for (int k = 0; k < 100; k++) {
        ResumeRun(ReadStored("b.h5"));
        EXPECT_EQ(ncells, 500);
        ResumeRun(ReadStored("a.h5"));
        EXPECT_EQ(ncells, 2000);
        const std::size_t now = mallinfo2().uordblks;
        if (k >= 10)
            EXPECT_LE(now, inuse + 100000) << k; // the library keeps a little; an aggregate takes as much
        else
            inuse = now;
    }
}
