// Flights: what one does, that it follows from the run's records alone, and that what they grow is what steps grow.

#include "growth/flights.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

#include <gtest/gtest.h>

#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"

namespace
{
struct Setting {
    const char *name;
    double bias = 0.1, branchlength = 1, stickiness = 100;
    int association = 0, sourcetype = kSourceSphere;
    double killingscale = 1;
};
} // namespace

static void Start(const Setting &setting, int seed)
{
    StartAfresh();
    growthstate.seed = seed;
    growthstate.bias = setting.bias;
    growthstate.branchlength = setting.branchlength;
    growthstate.stickiness = setting.stickiness;
    growthstate.sourcetype = setting.sourcetype;
    growthstate.association = setting.association;
    growthstate.killingscale = setting.killingscale;
    growthstate.launchscale = setting.killingscale > 1 ? 2 : 1;
    growthstate.nroots = setting.association ? 3 : 1;
    growthstate.roottype = setting.association ? kRootRingX : kRootOrigin;
    RestartFromRoots();
}

static double NearestPartner()
{
    double nearest = HUGE_VAL;
    const int classes = growthstate.association ? growthstate.nroots : 1;
    for (int i = ncells % classes; i < ncells; i += classes)
        nearest = std::min(nearest, VectorLength(cells[i].p, growthstate.pos));
    return nearest;
}

// Walkers fly within free balls, and growth does not depend on when the neighbour search was built.
TEST(Flights, FollowFromTheRecordsAlone)
{
    const Setting settings[] = {{"default"},
                                {"bias 0", 0},
                                {"bias 1", 1},
                                {"short branches", 0.1, 0.3},
                                {"stickiness 5", 0.1, 1, 5},
                                {"three associated roots", 0.1, 1, 100, 1},
                                {"an axis", 0.1, 1, 100, 0, kSourceAxisPlusX},
                                {"far away", 0.1, 1, 100, 0, kSourceSphere, 10}};
    for (const Setting &setting : settings) {
        Outcome outcomes[2];
        for (const bool interrupted : {false, true}) {
            std::mt19937 random(1);
            Start(setting, 1);
            double reached = 0;
            int asked = 0;
            for (long move = 0; ncells < 2500; move++) {
                if (interrupted && random() % 3000 == 0)
                    FreeNeighbourIndex();
                if (!interrupted && move % 500 == 0) {
                    const double nearest = NearestPartner(), b = growthstate.branchlength;
                    const double free = FreeRadius();
                    ASSERT_LE(free, nearest - b) << setting.name;
                    if (nearest > 5 * b && Modulus(growthstate.pos) < AggregateReach()) {
                        reached += (free + b) / nearest;
                        asked++;
                    }
                }
                const Vector before = growthstate.pos;
                IterateFlights();
                const double b = growthstate.branchlength;
                if (!interrupted && move % 10 == 0 && VectorLength(before, growthstate.pos) > 1.9 * b) {
                    ASSERT_GE(NearestPartner(), b * (1 - 1e-9)) << setting.name;
                }
            }
            if (!interrupted) { // of the distance to the nearest particle
                EXPECT_GT(reached / asked, 0.5) << setting.name;
            }
            outcomes[interrupted] = TakeOutcome();
        }
        EXPECT_EQ(Difference(outcomes[0], outcomes[1]), "") << setting.name;
    }
}

// A radius that does not reach all particles, which no run leaves: the next particle puts it right.
TEST(Flights, KeepClearOfParticlesBeyondTheRadius)
{
    Start({"default"}, 1);
    Grow(IterateFlights, 10000, 10000000);
    FreeNeighbourIndex();
    growthstate.radius = 5;
    Grow(IterateFlights, 10001, 10000000);
    ASSERT_GT(growthstate.radius, 30);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> offset(-2, 2);
    for (int k = 0; k < 1000; k++) {
        const Vector p = cells[random() % static_cast<unsigned>(ncells)].p;
        growthstate.pos = p + Vector{offset(random), offset(random), offset(random)};
        ASSERT_LE(FreeRadius(), std::max(NearestPartner() - growthstate.branchlength, -1.0));
    }
}

TEST(Flights, PinnedRun)
{
    for (const bool held : {false, true}) {
        Start({"default"}, 12345);
        std::optional<DeferredFlows> flows;
        if (held)
            flows.emplace();
        Grow(IterateFlights, 20000, 100000000);
        flows.reset();
        EXPECT_EQ(HashParticles(20000), 15076729422143229395ULL) << held;
    }
}

// From one place again and again: onto a sphere that is shifted by the drift, uniformly; and inwards at the launch sphere.
TEST(Flights, LeaveTheBallAsAWalkDoes)
{
    constexpr int kFlights = 100000;
    for (const double bias : {0.0, 0.1, 1.0}) {
        Start({"", bias}, 1);
        growthstate.radius = 1000;
        ForgetAggregate();
        Vector mean = {0, 0, 0}, squares = {0, 0, 0};
        int steps = 0;
        double radius = 0;
        for (int k = 0; k < kFlights; k++) {
            growthstate.pos = {100, 0, 0};
            growthstate.stepcount = 1;
            IterateFlights();
            steps = growthstate.stepcount - 1;
            const Vector d = growthstate.pos - Vector{100, 0, 0};
            const double drift = steps * bias / 100;
            const Vector onsphere = d - Vector{drift, 0, 0};
            radius = Modulus(onsphere);
            ASSERT_NEAR(radius * radius, steps, 0.5 + 1e-9);
            mean = mean + onsphere;
            squares =
                squares + Vector{onsphere.x * onsphere.x, onsphere.y * onsphere.y, onsphere.z * onsphere.z};
        }
        EXPECT_GT(radius, bias == 1 ? 4.9 : 40);
        EXPECT_LE(steps * bias / 100, 0.05 * radius * 1.01);
        // Four standard errors of the mean of a coordinate, and of its square.
        const double error = 4 * radius / std::sqrt(3.0 * kFlights);
        const double squareerror = 4 * radius * radius * std::sqrt(4.0 / 45 / kFlights);
        for (const double sum : {mean.x, mean.y, mean.z})
            EXPECT_NEAR(sum / kFlights, 0, error) << bias;
        for (const double sum : {squares.x, squares.y, squares.z})
            EXPECT_NEAR(sum / kFlights, radius * radius / 3, squareerror) << bias;
    }
    for (int k = 0; k < 1000; k++) {
        growthstate.pos = {1001.9, 0, 0};
        growthstate.stepcount = 1;
        IterateFlights();
        ASSERT_LE(Modulus(growthstate.pos), LaunchRadius());
    }
    // A flight beyond the end of the walker's life ends there, and the next move launches another.
    growthstate.pos = {100, 0, 0};
    growthstate.stepcount = kWalkerLife - 1;
    IterateFlights();
    EXPECT_EQ(growthstate.stepcount, kWalkerLife);
    const int launches = nseeds;
    IterateFlights();
    EXPECT_EQ(nseeds, launches + 1);
}

// The chance that a walker comes near before it is abandoned is that of Brownian motion between two spheres. Walkers that
// leave are launched anew, on the launch sphere.
TEST(Flights, WalkersThatLeaveAreAbandoned)
{
    constexpr double kRadius = 200;
    constexpr int kWalkers = 4000;
    for (const double launchscale : {1.5, 3.0}) {
        Start({"", 0}, 1);
        growthstate.launchscale = launchscale;
        growthstate.killingscale = 4;
        growthstate.radius = kRadius;
        ForgetAggregate();
        const double inner = AggregateReach() + growthstate.branchlength;
        const double start = LaunchRadius(), outer = 4 * start;
        int arrived = 0;
        for (int k = 0; k < kWalkers; k++) {
            growthstate.stepcount = 0;
            IterateFlights();
            ASSERT_NEAR(Modulus(growthstate.pos), start, growthstate.branchlength);
            const int launches = nseeds;
            while (!IsLaunchDue() && Modulus(growthstate.pos) > inner)
                IterateFlights();
            const bool left = IsLaunchDue();
            ASSERT_EQ(left, Modulus(growthstate.pos) > outer);
            arrived += left ? 0 : 1;
            ASSERT_EQ(nseeds, launches);
            if (left)
                IterateFlights();
            ASSERT_EQ(nseeds, launches + (left ? 1 : 0));
        }
        const double chance = (1 / start - 1 / outer) / (1 / inner - 1 / outer);
        EXPECT_NEAR(arrived / double{kWalkers}, chance, 4 * std::sqrt(chance * (1 - chance) / kWalkers));
    }
}

namespace
{
// Of an ensemble: mean and squared standard error.
struct Estimate {
    double mean, error2;
};
} // namespace

static Estimate EstimateOf(const std::vector<double> &values)
{
    double mean = 0, variance = 0;
    const auto count = static_cast<double>(values.size());
    for (const double value : values)
        mean += value / count;
    for (const double value : values)
        variance += (value - mean) * (value - mean) / (count - 1);
    return {mean, variance / count};
}

static double Gyration()
{
    Vector middle = {0, 0, 0};
    double sum = 0;
    for (int i = 0; i < ncells; i++)
        middle = middle + (1.0 / ncells) * cells[i].p;
    for (int i = 0; i < ncells; i++)
        sum += DotProduct(cells[i].p - middle, cells[i].p - middle);
    return std::sqrt(sum / ncells);
}

static double TipShare()
{
    std::vector<int> isparent(static_cast<std::size_t>(ncells));
    for (int i = 0; i < ncells; i++)
        if (cells[i].parent >= 0)
            isparent[cells[i].parent] = 1;
    return 1 - static_cast<double>(std::count(isparent.begin(), isparent.end(), 1)) / ncells;
}

// Twenty aggregates of each walk, fewer under the sanitizers; docs/flights.md has the large comparison.
TEST(Flights, GrowWhatStepsGrow)
{
    constexpr int kAggregates = std::max(SARKELO_HISTORIES / 3, 6);
    for (const Setting &setting :
         {Setting{"bias 0", 0}, Setting{"bias 1", 1}, Setting{"stickiness 5", 0.1, 1, 5}}) {
        std::vector<double> gyration[2], tips[2];
        for (const bool flies : {false, true}) {
            for (int seed = 1; seed <= kAggregates; seed++) {
                Start(setting, seed + 1000 * flies);
                Grow(flies ? IterateFlights : IterateSystem, 1000, 100000000);
                gyration[flies].push_back(Gyration());
                tips[flies].push_back(TipShare());
            }
        }
        for (const auto &values : {gyration, tips}) {
            const Estimate steps = EstimateOf(values[0]), flights = EstimateOf(values[1]);
            EXPECT_LT(std::fabs(flights.mean - steps.mean), 4 * std::sqrt(steps.error2 + flights.error2))
                << setting.name << ": " << steps.mean << ", " << flights.mean;
        }
    }
}
