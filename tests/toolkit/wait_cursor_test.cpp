#include "toolkit/wait_cursor.h"

#include <functional>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/scenario.h"
#include "growth/state.h"
#include "panels.h"
#include "surface/samples.h"
#include "temporary_file.h"
#include "viewer/menus.h"

// Whatever takes long, and however it ends: the wait cursor while it works, then the cursor of before, and no
// message while it shows.
TEST(WaitCursor, IsShownDuringWorkAndGivenBack)
{
    StartAfresh();
    SetProgramDefaults();
    CreatePanelsOnce();
    settingformvisible = stlformvisible = sliceformvisible = 1;
    Grow(IterateSystem, 20, 1000000);
    const TemporaryFile nothing("");
    const TemporaryFile onepoint("1 2 3");
    const TemporaryFile face("solid\nouter loop\nv 0 0 9\nv 9 0 9\nv 0 9 9\n");
    const TemporaryDirectory forslices;

    const struct {
        const char *name;
        std::string file;
        std::function<void()> work;
    } rows[] = {
        {"a surface", face.path(), [] { HandleMainMenu(kCommandReadSurface); }},
        {"no surface", "/no/such/file", [] { HandleMainMenu(kCommandReadSurface); }},
        {"roots", onepoint.path(), [] { HandleMainMenu(kCommandReadSeeds); }},
        {"no roots", nothing.path(), [] { HandleMainMenu(kCommandReadSeeds); }},
        {"no file of roots", "/no/such/file", [] { HandleMainMenu(kCommandReadSeeds); }},
        {"an export", nothing.path(), [] { HandleMainMenu(kCommandSaveSurface); }},
        {"an export to a full disk", "/dev/full", [] { HandleMainMenu(kCommandSaveSurface); }},
        {"a transform", "", [] { Work(stlform->apply); }},
        {"slices", "", [] { Work(sliceform->slice); }},
        {"many roots", "", [] { Work(settingform->nroots); }},
    };
    for (const auto &row : rows) {
        fakefile = row.file;
        fakecursor = GLUT_CURSOR_NONE;
        ForgetCalls();
        row.work();
        bool waiting = false;
        for (const Call &call : calls) {
            if (call.name == "glutSetCursor")
                waiting = call.args[0] == GLUT_CURSOR_WAIT;
            EXPECT_FALSE(waiting && call.name == "fl_show_message") << row.name;
        }
        EXPECT_GE(CountCalls("glutSetCursor"), 2) << row.name;
        EXPECT_EQ(CallsOf("glutSetCursor").at(0).args[0], GLUT_CURSOR_WAIT) << row.name;
        EXPECT_EQ(fakecursor, GLUT_CURSOR_NONE) << row.name;
        EXPECT_EQ(CallsOf("fl_set_cursor").at(0).args[0], FL_BUSY_CURSOR) << row.name;
        EXPECT_EQ(CallsOf("fl_set_cursor").back().args[0], FL_DEFAULT_CURSOR) << row.name;
    }
    settingformvisible = stlformvisible = sliceformvisible = 0;
    fakefile = "";
    fakecursor = 0;
}
