// Opening aggregate files in the window, file after file, with the stand-ins' answers.

#include "viewer/aggregate_dialog.h"

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "panels.h"
#include "temporary_file.h"
#include "viewer/aggregate_drawing.h"

TEST(AggregateDialog, OpensFileAfterFile)
{
    const TemporaryDirectory here;
    CreatePanelsOnce();
    unsigned long long hashes[2];
    for (const int larger : {0, 1}) {
        StartAfresh();
        CameraHome();
        if (larger)
            SetBoxSurface(30, false);
        Grow(IterateSystem, larger ? 4000 : 500, 10000000);
        hashes[larger] = HashParticles(ncells);
        fakefile = larger ? "larger.sarkelo.h5" : "smaller.sarkelo.h5";
        SaveAggregate();
    }
    std::ofstream("broken.sarkelo.h5", std::ios::binary) << ReadWhole("larger.sarkelo.h5").substr(0, 20000);
    for (int k = 0; k < 100; k++) {
        const int larger = k % 2;
        fakefile = larger ? "larger.sarkelo.h5" : "smaller.sarkelo.h5";
        ForgetCalls();
        OpenAggregate();
        EXPECT_EQ(CountCalls("fl_show_message"), 0);
        ASSERT_EQ(ncells, larger ? 4000 : 500);
        ASSERT_EQ(HashParticles(ncells), hashes[larger]);
        DrawDLA(kAggregateTubes);
        Grow(IterateSystem, ncells + 10, 1000000);
        const unsigned long long grown = HashParticles(ncells);
        fakefile = "broken.sarkelo.h5";
        OpenAggregate();
        EXPECT_EQ(CountCalls("fl_show_message"), 1);
        ASSERT_EQ(HashParticles(ncells), grown);
    }
}
