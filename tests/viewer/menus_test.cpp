// The menus: the tree, and what every entry of it does.

#include "viewer/menus.h"

#include <fstream>
#include <sstream>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "export/model.h"
#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/sources.h"
#include "panels.h"
#include "surface/surface.h"
#include "temporary_file.h"
#include "toolkit/callback.h"

// The whole tree as the user finds it, menu by menu in the order of building: "menu id label", and "menu > id
// label" for an entry that opens a menu.
static void ExpectTree(const char *file, const std::vector<void (*)(int)> &handlers)
{
    fakemenus.clear();
    ForgetCalls();
    CreateMenus();
    std::ostringstream tree;
    for (const Call &call : calls) {
        const bool opens = call.name == "glutAddSubMenu";
        if (opens || call.name == "glutAddMenuEntry")
            tree << call.args[0] << (opens ? " > " : " ") << call.args[1] << " " << call.text << "\n";
    }
    ExpectGolden(file, tree.str());
    EXPECT_EQ(fakemenus, handlers);
}

TEST(Menus, TheTrees)
{
    std::vector<void (*)(int)> handlers = {
        Guarded<HandleSTLMenu>,    Guarded<HandleSaveMenu>, Guarded<HandleDLAMenu>, Guarded<HandleSampleMenu>,
        Guarded<HandleSourceMenu>, Guarded<HandleRootMenu>, Guarded<HandleMainMenu>};
    ExpectTree("../viewer/menu_tree.txt", handlers);
    viewwindow = true;
    handlers.push_back(Guarded<HandleMainMenu>);
    ExpectTree("../viewer/view_menu_tree.txt", handlers);
}

// What a menu's handler leaves and calls, with a file selected or, where it is empty, the selector cancelled.
static std::string Choose(void (*handler)(int), int id, const std::string &file)
{
    StartAfresh();
    CameraHome();
    CreatePanelsOnce();
    Grow(IterateSystem, 20, 1000000);
    UpdateForms();
    growthstate.seed = 77;
    options.surfacemode = kSurfaceOff;
    settingformvisible = stlformvisible = sliceformvisible = 0;
    fakefile = file;
    ForgetCalls();
    handler(id);
    std::ostringstream text;
    text << id << ": " << options.dlamode << ' ' << options.surfacemode << ' ' << options.showextras
         << options.showinfo << ' ' << growthstate.running << ' ' << options.boxcountrequest << ' ' << ncells
         << ' ' << nseeds << ' ' << growthstate.sourcetype << ' ' << growthstate.roottype << ' '
         << growthstate.rootname << ", " << growthstate.surfacename << ' ' << nstltri << "; "
         << settingformvisible << stlformvisible << sliceformvisible << ' '
         << fl_get_input(settingform->seed);
    for (const Call &call : calls)
        if (call.name.starts_with("fl_show") || call.name == "glNewList")
            text << ' ' << Text(call);
    text << '\n';
    options.boxcountrequest = 0;
    fakefile.clear();
    return text.str();
}

TEST(Menus, EveryEntryDoesWhatItDidRightBefore)
{
    std::string text;
    for (void (*handler)(int) : {HandleSTLMenu, HandleSaveMenu, HandleDLAMenu, HandleSampleMenu,
                                 HandleSourceMenu, HandleRootMenu, HandleMainMenu}) {
        for (int id = -1; id <= 23; id++)
            text += Choose(handler, id, "");
        for (const int id : {50, 60, 101})
            text += Choose(handler, id, "");
    }
    const TemporaryDirectory directory;
    for (int id = 1; id <= 10; id++) {
        text += Choose(HandleSaveMenu, id, "saved");
        text += std::to_string(std::filesystem::file_size("saved")) + " bytes\n";
    }
    std::ofstream("face.stl") << "solid s\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n";
    text += Choose(HandleMainMenu, kCommandReadSurface, "face.stl");
    text += Choose(HandleMainMenu, kCommandInformation, "saved");
    text += ReadWhole("saved");
    // Names that are refused.
    for (const std::string &name : {std::string(256, 'x'), std::string("no/such/place"), std::string(".")})
        for (const int id : {kCommandSaveSurface, kCommandInformation})
            text += Choose(HandleMainMenu, id, name);
    ExpectGolden("menus.txt", text);
    EXPECT_EQ(CountFiles(), 2);
    ForgetCalls();
    SaveModel(99, 1); // no such formats
    SaveModel(-1, 1);
    SaveModel(kFormatVTP, kModeSegments); // a command's
    EXPECT_TRUE(calls.empty());
    EXPECT_EXIT(HandleMainMenu(kCommandQuit), testing::ExitedWithCode(0), "");
}
