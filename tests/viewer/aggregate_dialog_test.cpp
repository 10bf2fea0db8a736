// Opening and saving aggregate files in the window, by the stand-ins.

#include "viewer/aggregate_dialog.h"

#include <fstream>

#include <gtest/gtest.h>

#include "archive/rescue.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"
#include "viewer/action_log.h"
#include "viewer/input.h"

// Starts a run as large as that; a view of its own.
static void GrowAnew(int particles)
{
    PrepareWindow();
    camera.vp = {particles / 100.0, 9, 9};
    Grow(IterateSystem, particles, 100000000);
}

TEST(AggregateDialog, OpensSavesAndAsksBeforeParticlesAreLost)
{
    const TemporaryDirectory here;
    ActionLog log;
    viewwindow = true;
    GrowAnew(100);
    log.Do("save", SaveAggregate, "small.sarkelo.h5");
    std::ofstream("broken.h5") << ReadWhole("small.sarkelo.h5").substr(0, 5000);
    for (fakechoice = 1; fakechoice <= 3; fakechoice++) { // save, discard, cancel
        GrowAnew(1200);
        log.Do("open a broken file", OpenAggregate, "broken.h5");
        log.Do("open with choice " + std::to_string(fakechoice), OpenAggregate, "small.sarkelo.h5");
        const bool ends = fakechoice == 2;
        EXPECT_EXIT((HandleKeyboard('q', 0, 0), exit(7)), testing::ExitedWithCode(ends ? 0 : 7), "");
    }
    fakechoice = fakebutton = 1;
    EXPECT_EXIT((fakefile = "quit", HandleKeyboard('q', 0, 0)), testing::ExitedWithCode(0), "");
    StoredAggregate stored;
    EXPECT_FALSE(ReadAggregate("quit.sarkelo.h5", &stored));
    log.Do("close, without a rescue", AskBeforeClosing, "closed.h5");
    ArmRescue(DescribeWindowRun);
    log.Do("close", AskBeforeClosing, "closed.h5");
    DisarmRescue();
    Grow(IterateSystem, 1201, 10000000);
    log.Do("title of more", ShowFileInTitle);
    log.Do("replace", SaveAggregate, "closed.h5");

    namespace fs = std::filesystem;
    log.Do("no rescue file", OfferRescue);
    const auto now = fs::file_time_type::clock::now();
    for (const auto &[name, hours] :
         {std::pair{"other", 0}, {"sarkelo-rescue-b", 2}, {"sarkelo-rescue-a", 1}, {"sarkelo-rescue-c", 9}}) {
        GrowAnew(100 + hours);
        fakefile = std::string(name) + ".sarkelo.h5";
        SaveAggregate();
        fs::last_write_time(fakefile, now - std::chrono::hours(hours));
    }
    for (fakebutton = 0; fakebutton < 2; fakebutton++)
        log.Do("offered", OfferRescue);
    ExpectGolden("aggregate_dialog.txt", log.Text());
}
