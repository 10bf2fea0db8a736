#include "viewer/menus.h"

#include <fstream>
#include <sstream>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/sources.h"
#include "panels.h"
#include "surface/surface.h"
#include "temporary_file.h"
#include "viewer/callback.h"

class Menus : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        CreatePanelsOnce();
        SetProgramDefaults();
        fakemenus.clear();
        fakefile.clear();
        ForgetCalls();
    }
};

// The whole tree as the user finds it, menu by menu in the order of building: "menu id label", and "menu > id
// label" for an entry that opens a menu.
TEST_F(Menus, TheTree)
{
    CreateMenus();
    std::ostringstream tree;
    for (const Call &call : calls) {
        const bool opens = call.name == "glutAddSubMenu";
        if (opens || call.name == "glutAddMenuEntry")
            tree << call.args[0] << (opens ? " > " : " ") << call.args[1] << " " << call.text << "\n";
    }
    std::ifstream file(SARKELO_TESTS "/viewer/menu_tree.txt");
    std::ostringstream expected;
    expected << file.rdbuf();
    EXPECT_EQ(tree.str(), expected.str());
    EXPECT_EQ(fakemenus, (std::vector<void (*)(int)>{Guarded<HandleSTLMenu>, Guarded<HandleSaveMenu>,
                                                     Guarded<HandleDLAMenu>, Guarded<HandleSampleMenu>,
                                                     Guarded<HandleSourceMenu>, Guarded<HandleRootMenu>,
                                                     Guarded<HandleMainMenu>}));
}

TEST_F(Menus, SeparatorsAndUnknownIdsChangeNothing)
{
    const GrowthState before = growthstate;
    const Options optionsbefore = options;
    for (const int id : {0, -1, 8, 15, 50, 60, 99, 101, INT_MAX})
        HandleMainMenu(id);
    EXPECT_EQ(memcmp(&before, &growthstate, sizeof before), 0);
    EXPECT_EQ(memcmp(&optionsbefore, &options, sizeof options), 0);
    EXPECT_TRUE(calls.empty());
}

TEST_F(Menus, PanelsAreFilledAndShown)
{
    growthstate.seed = 77;
    const struct {
        int id;
        int *visible;
    } rows[] = {{2, &settingformvisible}, {3, &stlformvisible}, {7, &sliceformvisible}};
    for (const auto &row : rows) {
        HandleMainMenu(row.id);
        EXPECT_EQ(*row.visible, 1);
        *row.visible = 0;
    }
    EXPECT_EQ(CountCalls("fl_show_form"), 3);
    EXPECT_EQ(CallsOf("fl_show_form").at(0).args, (std::vector<double>{FL_PLACE_CENTER, FL_FULLBORDER}));
    EXPECT_STREQ(fl_get_input(settingform->seed), "77");
}

TEST_F(Menus, AReadSurfaceBecomesVisible)
{
    const TemporaryFile file("solid s\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n");
    fakefile = file.path();
    options.surfacemode = kSurfaceOff;
    HandleMainMenu(1);
    EXPECT_EQ(nstltri, 1);
    EXPECT_EQ(options.surfacemode, kSurfaceWireframe);
    EXPECT_EQ(CountCalls("glNewList"), 1);
    options.surfacemode = kSurfaceSolid;
    fakefile.clear(); // cancelled: drawn anew all the same
    HandleMainMenu(1);
    EXPECT_EQ(nstltri, 1);
    EXPECT_EQ(options.surfacemode, kSurfaceSolid);
    EXPECT_EQ(CountCalls("glNewList"), 2);
}

TEST_F(Menus, ModesAndSamples)
{
    HandleDLAMenu(kAggregateOff);
    EXPECT_EQ(options.dlamode, kAggregateOff);
    EXPECT_EQ(CountCalls("glNewList"), 0);
    HandleSTLMenu(kSurfaceVertices);
    EXPECT_EQ(options.surfacemode, kSurfaceVertices);
    HandleSourceMenu(42); // recorded without a look
    EXPECT_EQ(growthstate.sourcetype, 42);
    HandleSampleMenu(13);
    EXPECT_STREQ(growthstate.surfacename, "Open (double) Box");
    EXPECT_EQ(CountCalls("glNewList"), 2);
    EXPECT_EQ(CountCalls("glVertex3f"), 8 * 3);
}
