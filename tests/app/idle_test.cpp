#include "app/idle.h"

#include <unistd.h>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "geom/clock.h"
#include "growth/scenario.h"
#include "viewer/camera.h"
#include "viewer/display.h"

class Idle : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        CameraHome();
        growthstate.stickiness = 0; // every step counts up stepcount
        settingformvisible = stlformvisible = sliceformvisible = 0;
        HandleIdle();
        ForgetCalls();
    }
};

TEST_F(Idle, OneCallTakesAHundredSteps)
{
    growthstate.stepcount = 0;
    HandleIdle();
    EXPECT_EQ(growthstate.stepcount, 100);
    growthstate.running = 0;
    HandleIdle();
    EXPECT_EQ(growthstate.stepcount, 100);
    growthstate.running = 1;
    options.boxcountrequest = 1;
    HandleIdle();
    EXPECT_EQ(growthstate.stepcount, 100);
}

TEST_F(Idle, PanelsArePolledWhileOneIsVisibleOnceTheDelayHasPassed)
{
    options.framerate = 1e-9; // no redisplay moves the time stamp
    usleep(30000);
    HandleIdle();
    EXPECT_EQ(CountCalls("fl_check_forms"), 0);
    for (int *visible : {&settingformvisible, &stlformvisible, &sliceformvisible}) {
        *visible = 1;
        ForgetCalls();
        HandleIdle();
        HandleIdle();
        EXPECT_EQ(CountCalls("fl_check_forms"), 2);
        *visible = 0;
    }
    settingformvisible = 1;
    int polled = 1;
    for (int attempt = 0; attempt < 10 && polled > 0;
         attempt++) { // one at least without the machine stalling
        options.framerate = 1e9;
        HandleIdle();
        ForgetCalls();
        options.framerate = 1e-9;
        HandleIdle(); // right after a redisplay
        polled = CountCalls("fl_check_forms");
    }
    EXPECT_EQ(polled, 0);
}

TEST_F(Idle, RedisplaysAtTheFrameRateAndTurnsTheCamera)
{
    options.autospin = 20;
    growthstate.running = 0;
    int redisplays = 0;
    const int frames = 10;
    for (int i = 0; i < frames; i++) {
        usleep(40000); // longer than 1/30 s: each first call redisplays, and the second, at once, does not
        HandleIdle();
        HandleIdle();
        redisplays = CountCalls("glutPostRedisplay");
        EXPECT_GE(redisplays, i + 1);
    }
    EXPECT_LE(redisplays, frames + 3); // a slow machine may have stalled between the two
    const double turned = redisplays * 0.1;
    EXPECT_NEAR(camera.vd.x, -std::cos(turned), 1e-9);
    EXPECT_NEAR(camera.vd.y, -std::sin(turned), 1e-9);
}

// What happens after a frame that took a fifth of a second, and ended right now.
TEST_F(Idle, ASlowFrameIsFollowedByAsMuchWork)
{
    settingformvisible = 1;
    for (const bool works : {true, false}) {
        growthstate.running = works;
        usleep(250000);
        HandleIdle(); // asks for the frame
        ForgetCalls();
        const double start = GetRunTime();
        usleep(200000);
        lastframe = {start, GetRunTime()};
        HandleIdle();
        EXPECT_EQ(CountCalls("glutPostRedisplay"), works ? 0 : 1);
        EXPECT_EQ(CountCalls("fl_check_forms"), works ? 0 : 1);
        while (works && GetRunTime() < lastframe.end + 0.15)
            HandleIdle();
        EXPECT_EQ(CountCalls("glutPostRedisplay"), works ? 0 : 1);
        EXPECT_GT(CountCalls("fl_check_forms"), 0);
        usleep(60000);
        HandleIdle();
        EXPECT_EQ(CountCalls("glutPostRedisplay"), works ? 1 : 2);
        ForgetCalls();
        usleep(40000);
        HandleIdle(); // no frame was drawn meanwhile: the next is due at the frame rate
        EXPECT_EQ(CountCalls("glutPostRedisplay"), 1);
    }
    settingformvisible = 0;
}

TEST_F(Idle, NothingGrowsWhileTheWindowIsHidden)
{
    HandleVisibility(GLUT_NOT_VISIBLE);
    EXPECT_EQ(registered.idle, nullptr);
    HandleVisibility(GLUT_VISIBLE);
    EXPECT_NE(registered.idle, nullptr);
}
