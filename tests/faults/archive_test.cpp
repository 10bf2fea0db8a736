// Aggregate files while memory fails, one allocation after the other: what stands stays, and the fault is told.

#include <gtest/gtest.h>

#include "archive/content.h"
#include "batch/growth.h"
#include "faults/failing_memory.h"
#include "growth/scenario.h"
#include "temporary_file.h"

// Calls act with allocation k failing, alone or with all that follow, until none fails any more, and check with the
// fault.
template<typename Act, typename Check>
static void FailEach(Act act, Check check)
{
    for (const bool on : {false, true}) {
        long k = 0;
        for (long calls = 1; k <= calls;) {
            k++;
            FailAllocations(k, on);
            const Fault fault = act();
            calls = EndOfFailures();
            EXPECT_EQ(static_cast<bool>(fault), !fault.line.empty());
            check(fault);
        }
        EXPECT_GT(k, 20);
    }
}

TEST(FailingMemory, AggregateFilesStayOrAreWhole)
{
    const TemporaryDirectory directory;
    StartAfresh();
    Recipe stops;
    stops.particles = 200;
    RunRecord run;
    run.view.aperture = 60;
    ASSERT_EQ(Grow({stops, {}, 0, true}, &run), kStopReached);
    ASSERT_FALSE(WriteAggregate("new.h5", run));
    const std::string after = ReadWhole("new.h5");
    const std::string before = "what was there before";
    std::ofstream("a.h5") << before;
    FailEach([&] { return WriteAggregate("a.h5", run); },
             [&](const Fault &fault) {
                 EXPECT_TRUE(ReadWhole("a.h5") == (fault ? before : after));
                 std::ofstream("a.h5") << before;
             });
    EXPECT_EQ(CountFiles(), 2);

    StoredAggregate whole, stored;
    ASSERT_EQ(ReadAggregate("new.h5", &whole).line, "");
    FailEach(
        [&] {
            stored = StoredAggregate();
            return ReadAggregate("new.h5", &stored);
        },
        [&](const Fault &fault) { EXPECT_TRUE(fault || Content(stored) == Content(whole)); });
}

// Growth that runs out of memory ends in order, and can be kept.
TEST(FailingMemory, GrowthStopsAndIsKept)
{
    const TemporaryDirectory directory;
    StartAfresh();
    Recipe stops;
    stops.particles = 1000;
    RunRecord run;
    run.view.aperture = 60;
    FailAllocations(500, true);
    const GrowthEnd end = Grow({stops, {}, 0, true}, &run);
    EndOfFailures();
    EXPECT_EQ(end, kOutOfMemory);
    EXPECT_GT(ncells, 10);
    EXPECT_LT(ncells, 1000);
    ASSERT_EQ(WriteAggregate("a.h5", run).line, "");
    StoredAggregate stored;
    ASSERT_FALSE(ReadAggregate("a.h5", &stored));
    EXPECT_EQ(stored.count, ncells);
}
