// Flights: their streams, the free space about a walker, returns from outside, and the same bits on any number of threads.

#include "growth/flights.h"

#include <climits>
#include <optional>
#include <random>

#include <gtest/gtest.h>

#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/parallel_growth.h"
#include "growth/scenario.h"
#include "growth/sources.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"
#include "surface/samples.h"
#include "surface/surface.h"

// The first words of streams, from the published test vectors of Philox4x32-10 (counter 0, key 0), and that streams differ.
TEST(Stream, IsPhilox)
{
    Stream zero(0, 0);
    for (const double word : {0x6627e8d5p0, 0xe169c58dp0, 0xbc57ac4cp0, 0x9b00dbd8p0})
        EXPECT_EQ(zero.Uniform(), word * 0x1p-32);
    Stream integers(0, 0);
    EXPECT_EQ(integers.Integer(), 0x6627e8d5 >> 1);
    EXPECT_NE(Stream(1, 0).Uniform(), Stream(0, 1).Uniform());
}

constexpr int kScales = 3;

// Lower bound on the distance to the nearest particle of the next particle's class, by the definition of the map's first
// scales.
static double PlainClearance(Vector p, int classes, double edge)
{
    double clearance = 0;
    for (int scale = 0; scale < kScales; scale++, edge *= 2)
        for (const int reach2 : {scale == 0 ? 1 : 5, 9}) {
            const auto gap2 = [edge](double a, double b) {
                const double gap = std::fabs(std::floor(a / edge) - std::floor(b / edge));
                return gap == 0 ? 0 : (gap - 1) * (gap - 1);
            };
            bool isclear = true;
            for (int i = ncells % classes; i < ncells && isclear; i += classes) {
                const Vector q = cells[i].p;
                isclear = gap2(p.x, q.x) + gap2(p.y, q.y) + gap2(p.z, q.z) >= reach2;
            }
            if (isclear)
                clearance = std::sqrt(reach2) * edge / 1.01;
        }
    return clearance;
}

TEST(Flights, KnowTheFreeSpace)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> u(-1, 1);
    GrowthState &g = growthstate;
    const std::vector<Setting> variants[] = {
        {}, {{&g.branchlength, 0.3}}, {{&g.association, 1}, {&g.nroots, 3}, {&g.roottype, kRootRingX}}};
    for (const auto &variant : variants) {
        StartWith(variant);
        Grow(IterateSystem, 400, LONG_MAX);
        const int classes = g.association ? g.nroots : 1;
        ASSERT_TRUE(PrepareSearch());
        Searcher searcher = {ncells, ncells};
        int known = 0;
        for (int k = 0; k < 3000; k++) {
            const Vector p = g.radius * Vector{u(random), u(random), u(random)};
            const double edge = 1.03 * g.branchlength, most = 3 * 4 * edge / 1.01;
            const double clearance = FreeRadius(p, &searcher) + g.branchlength;
            ASSERT_DOUBLE_EQ(std::min(clearance, most), PlainClearance(p, classes, edge))
                << "variant " << &variant - variants;
            known += clearance > 0;
        }
        EXPECT_GT(known, 1000);
    }
}

// Walkers that leave return as Brownian motion does: the mean of the l-th Legendre polynomial of the angle to where they
// were, over all walkers, those that escape counted as 0, is (R/r)^(l+1).
TEST(Flights, ReturnFromOutside)
{
    StartWith({{&growthstate.walk, kWalkFlights},
               {&growthstate.bias, 0},
               {&growthstate.sourcetype, kSourceInfinity}});
    ASSERT_TRUE(PrepareSearch());
    const double reach = AggregateReach();
    for (const double ratio : {1.2, 3.0}) {
        constexpr int kWalkers = 200000;
        Walk walk;
        StartWalk(1, 1, reach, nullptr, &walk);
        double means[3] = {};
        for (int k = 0; k < kWalkers; k++) {
            walk.pos = {0, 0, ratio * reach};
            walk.free = -1; // a step, then the return
            walk.left = 1;
            ContinueWalk(1, &walk);
            if (walk.left == 0)
                continue;
            ASSERT_NEAR(Modulus(walk.pos), reach, 1e-9);
            const double cosine = walk.pos.z / reach;
            const double polynomials[] = {1, cosine, (3 * cosine * cosine - 1) / 2};
            for (int l = 0; l < 3; l++)
                means[l] += polynomials[l] / kWalkers;
        }
        for (int l = 0; l < 3; l++)
            EXPECT_NEAR(means[l], std::pow(ratio, -(l + 1)), 5 / std::sqrt(kWalkers))
                << l << ", from " << ratio;
    }
}

// Everything that a run leaves
static Outcome TakeAll()
{
    Outcome outcome = TakeOutcome();
    outcome.push_back(static_cast<double>(growthstate.steptotal));
    return outcome;
}

// Grows to `particles` particles, with pauses, on the given number of threads.
static void GrowInPieces(int threads, int particles, unsigned seed)
{
    std::mt19937 random(seed);
    std::optional<DeferredFlows> flows;
    if (seed % 2 == 0)
        flows.emplace();
    while (ncells < particles) {
        const long more = 1 + static_cast<long>(random() % 100000000);
        const int before = ncells;
        ASSERT_NE(GrowFlights({.particles = particles,
                               .steps = growthstate.steptotal + more,
                               .seconds = 1e-3 * static_cast<double>(random() % 4)},
                              threads),
                  GrowthStop::kNoMemory);
        if (ncells > before && random() % 4 == 0)
            FreeNeighbourIndex(); // drops walks: a long one would never end if this came every time
    }
}

// Settings from a seed, and the aggregate's start.
static void StartRandomly(unsigned seed)
{
    std::mt19937 random(seed);
    const auto pick = [&](auto... values) {
        const double all[] = {static_cast<double>(values)...};
        return all[random() % std::size(all)];
    };
    GrowthState &g = growthstate;
    std::vector<Setting> settings = {{&g.walk, kWalkFlights},
                                     {&g.seed, double(seed)},
                                     {&g.branchlength, pick(1, 1, 1, 0.3, 2.5)},
                                     {&g.stickiness, pick(100, 100, 50, 5)},
                                     {&g.nroots, pick(1, 1, 3, 20)},
                                     {&g.roottype, pick(1, 2, 6)},
                                     {&g.rootrange, pick(5, 20)}};
    if (seed % 3 == 0) {
        settings.insert(settings.end(), {{&g.sourcetype, kSourceInfinity}, {&g.bias, 0}});
    } else {
        settings.insert(settings.end(),
                        {{&g.sourcetype, double(1 + random() % 17)}, {&g.bias, pick(0, 0.1, 1)}});
        if (seed % 3 == 1)
            settings.insert(settings.end(),
                            {{&g.launchscale, pick(1, 1.5)}, {&g.killingscale, pick(1, 1, 5)}});
    }
    if (seed % 5 == 0)
        settings.push_back({&g.association, 1});
    if (seed % 11 == 0)
        settings.push_back({&g.intersectrange, 1});
    StartWith(settings);
    if (seed % 4 == 0) {
        BuildSample(static_cast<int>(pick(2, 3, 31)));
        TransformSTL({3, 3, 3}, {0, 0, 0}, {pick(0, 30), 10, 0});
    }
}

TEST(ParallelGrowth, IsTheSameOnAnyNumberOfThreads)
{
    fewparticles = 5;
    int compared = 0;
    for (unsigned seed = 1; seed <= SARKELO_HISTORIES; seed++) {
        StartRandomly(seed);
        const GrowthLimits limits = {.particles = 900, .steps = 1000000};
        GrowFlights(limits, 1);
        const int particles = ncells;
        const Outcome expected = TakeAll();
        compared += particles;
        for (const int threads : {1, 2, 3, 8}) {
            StartRandomly(seed);
            repeatedwalks = threads == 3 ? 3 : 0;
            if (threads % 2 == 0)
                GrowInPieces(threads, particles, seed);
            else
                GrowFlights(limits, threads);
            EXPECT_EQ(Difference(expected, TakeAll()), "") << threads << " threads, setting " << seed;
        }
    }
    EXPECT_GT(compared, 400 * SARKELO_HISTORIES) << "too little grew to compare";
    repeatedwalks = 0;
    fewparticles = 5000;
}
