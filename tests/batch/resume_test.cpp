// Runs of sarkelo-grow that stop anywhere and go on in a new process leave what they leave without a stop, to the
// last bit.

#include <cstdlib>
#include <random>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "archive/content.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"

static int Grown(const std::string &arguments, unsigned long steps)
{
    const std::string command = SARKELO_GROW " --quiet --force --steps " + std::to_string(steps) + " ";
    return WEXITSTATUS(system((command + arguments).c_str()));
}

static StoredAggregate ReadStored(const std::string &path)
{
    StoredAggregate stored;
    EXPECT_EQ(ReadAggregate(path, &stored).line, "");
    return stored;
}

TEST(Resume, GoesOnInANewProcessAsIfNeverStopped)
{
    const std::string flights = "growth.walk = 'flights'\n", plane = "source.type = 'Plane (z)'\n";
    const std::string ring = "roots = {distribution = 'Ring: x axis plane', count = 6, range = 5}\n";
    const std::string cylinder = "surface = {sample = 'Cylinder', scale = [20, 20, 21]}\n";
    const std::string recipes[] = {
        "",
        flights,
        "growth.stickiness = 50\ngrowth.rotation = 5\ngrowth.bias = 1\nroots.file = 'seeds'\n",
        "growth.branch_length = 0.3\ngrowth.intersection_range = 2\n" + plane,
        "growth.launch_scale = 1.5\ngrowth.killing_scale = 5\n" + flights + plane + ring,
        "growth.association = true\n" + ring + "drawing = {thickness_tip = 0.1, mode = 'tubes'}\n",
        "growth.association = true\n" + flights + ring + "surface = {sample = 'Box', shift = [0, 0, 1]}\n",
        "growth.killing_scale = 5\nsource.type = 'STL surface'\n" + cylinder,
        "growth.branch_length = 5\n" + flights + "source.type = 'STL surface'\n" + cylinder,
    };
    const TemporaryDirectory directory;
    std::ofstream("seeds") << "1 2 3\n-4 5 6\n0.1 0 -7\n";
    std::mt19937 random(1);
    int grown = 0;
    for (int history = 0; history < SARKELO_HISTORIES; history++) {
        const std::string &recipe = recipes[history % std::size(recipes)];
        std::ofstream("r.toml") << "growth.seed = " << history << "\n" << recipe;
        const auto total = 200000 + random() % 200000;
        const auto first = random() % total + 1;
        const auto second = first + random() % (total - first + 1);
        ASSERT_EQ(Grown("r.toml -o whole.h5", total), 0) << recipe;
        ASSERT_EQ(Grown("r.toml -o part.h5", first), 0);
        ASSERT_EQ(Grown("--resume part.h5", second), 0);
        ASSERT_EQ(Grown("--resume part.h5 -o rest.h5", total), 0);
        StoredAggregate whole = ReadStored("whole.h5");
        StoredAggregate rest = ReadStored("rest.h5");
        const auto taken = static_cast<unsigned long>(whole.state.steptotal);
        const bool flies = recipe.find(flights) != std::string::npos; // the last flight may pass the stop
        EXPECT_TRUE(taken >= total && taken <= total + (flies ? 10000 : 0)) << taken << " of " << total;
        EXPECT_GT(rest.run.seconds, 0);
        whole.run.seconds = rest.run.seconds = 0;
        EXPECT_TRUE(Content(std::move(whole)) == Content(std::move(rest))) << history << "\n" << recipe;
        EXPECT_TRUE(Content(ReadStored("rest.h5")) == ReadWhole("rest.h5")) << "another run is left";
        grown += ncells;
    }
    EXPECT_GT(grown, 40 * SARKELO_HISTORIES) << "too little grew to compare";
}
