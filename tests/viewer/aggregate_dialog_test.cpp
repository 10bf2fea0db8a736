// Opening aggregate files in the window, file after file, with the stand-ins' answers.

#include "viewer/aggregate_dialog.h"

#include <gtest/gtest.h>

#include "archive/rescue.h"
#include "fakes/recorder.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "panels.h"
#include "temporary_file.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/input.h"
#include "viewer/menus.h"

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

// Whether the choice was shown since the last call.
static bool Asked()
{
    const bool asked = CountCalls("fl_show_choices") > 0;
    ForgetCalls();
    return asked;
}

TEST(AggregateDialog, AsksBeforeUnsavedParticlesAreLost)
{
    const TemporaryDirectory here;
    CreatePanelsOnce();
    viewwindow = true;
    CameraHome();
    const auto startandgrow = [](int count) {
        StartAfresh();
        Grow(IterateSystem, count, 10000000);
    };
    startandgrow(100);
    fakefile = "small.sarkelo.h5";
    SaveAggregate();
    enum { kSave = 1, kDiscard, kCancel };
    for (const int answer : {kSave, kDiscard, kCancel}) {
        startandgrow(200);
        fakechoice = answer;
        fakefile = "small.sarkelo.h5"; // and where to save to: nothing is replaced
        ForgetCalls();
        OpenAggregate();
        EXPECT_TRUE(Asked());
        EXPECT_EQ(ncells, answer == kDiscard ? 100 : 200);
        // Quitting asks where there is still something to lose; the last status is this test's own.
        const auto quit = [] {
            HandleKeyboard('q', 0, 0);
            exit(Asked() ? 7 : 8);
        };
        EXPECT_EXIT(quit(), testing::ExitedWithCode(answer == kDiscard ? 0 : 7), "");
    }
    fakechoice = kSave;
    fakefile = "large";
    EXPECT_EXIT(HandleMainMenu(kCommandQuit), testing::ExitedWithCode(0), "");
    StoredAggregate stored;
    EXPECT_FALSE(ReadAggregate("large.sarkelo.h5", &stored)) << "the ending is added";
    EXPECT_EQ(stored.count, 200);
    // Closing cannot be cancelled: it asks until the particles are saved or discarded.
    fakefile = "closed.h5";
    AskBeforeClosing();
    EXPECT_FALSE(Asked()) << "at the end of the program";
    ArmRescue(DescribeWindowRun);
    AskBeforeClosing();
    DisarmRescue();
    EXPECT_TRUE(Asked());
    EXPECT_FALSE(HasUnsavedParticles() || ReadAggregate("closed.h5", &stored));
    ShowFileInTitle();
    EXPECT_EQ(CallsOf("glutSetWindowTitle").at(0).text, "closed.h5 - Diffusion Limited Aggregation");
    Grow(IterateSystem, 201, 10000000);
    ShowFileInTitle();
    EXPECT_EQ(CallsOf("glutSetWindowTitle").at(1).text,
              "closed.h5 (unsaved) - Diffusion Limited Aggregation");
}

TEST(AggregateDialog, OffersTheNewestRescueFile)
{
    namespace fs = std::filesystem;
    const TemporaryDirectory here;
    CreatePanelsOnce();
    StartAfresh();
    CameraHome();
    OfferRescue();
    int count = 0;
    for (const char *name : {"other", "sarkelo-rescue-b", "sarkelo-rescue-a", "sarkelo-rescue-c"}) {
        count += 600;
        Grow(IterateSystem, count, 100000000);
        fakefile = std::string(name) + ".sarkelo.h5";
        SaveAggregate();

        fs::last_write_time(fakefile,
                            fs::file_time_type::clock::now() - std::chrono::hours(count < 2400 ? 1 : 9));
    }
    fs::last_write_time("other.sarkelo.h5", fs::file_time_type::clock::now());
    StartAfresh();
    ForgetCalls();
    OfferRescue();
    EXPECT_EQ(ncells, 1) << "not wanted";
    const std::string question = CallsOf("fl_show_question").at(0).text;
    EXPECT_TRUE(question.starts_with("sarkelo-rescue-a.sarkelo.h5")) << question;
    EXPECT_NE(question.find("1,800 particles: open it?"), std::string::npos) << question;
    fakebutton = 1;
    OfferRescue();
    EXPECT_EQ(ncells, 1800);
    EXPECT_FALSE(HasUnsavedParticles());
}
