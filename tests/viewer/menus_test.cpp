// The menus: the trees, and what every entry does.

#include "viewer/menus.h"

#include <fstream>

#include <gtest/gtest.h>

#include "export/model.h"
#include "export/save_dialog.h"
#include "golden.h"
#include "growth/roots.h"
#include "growth/sources.h"
#include "temporary_file.h"
#include "viewer/action_log.h"

// The menus in the order of building: "menu id label", and "menu > id label" for an entry that opens a menu.
static void ExpectTree(const char *file)
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
}

TEST(Menus, MatchExpectedTreesAndChanges)
{
    ActionLog log;
    const TemporaryDirectory directory;
    std::ofstream("face.stl") << "solid s\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n";
    for (const bool view : {false, true}) {
        viewwindow = view;
        ExpectTree(view ? "../viewer/view_menu_tree.txt" : "../viewer/menu_tree.txt");
        const int menus = static_cast<int>(fakemenus.size());
        for (int menu = view ? menus - 1 : 0; menu < menus; menu++)
            for (int id = -1; id <= 101; id++) {
                if ((id > 23 && id != 31 && id < 100) || (menu == menus - 1 && id == 100))
                    continue; // no entries, and the one that quits
                PrepareWindow();
                growthstate.seed = 77;
                options.surfacemode = kSurfaceOff;
                settingformvisible = id % 2; // to be filled if another is shown
                log.Do(std::to_string(menu + 1) + '/' + std::to_string(id),
                       [=] { fakemenus[static_cast<size_t>(menu)](id); });
            }
    }
    viewwindow = false;
    const auto choose = [&](void (*handler)(int), int id, const std::string &file) {
        PrepareWindow();
        log.Do(
            "with a file, " + std::to_string(id), [=] { handler(id); }, file);
    };
    for (int id = 1; id <= 10; id++)
        choose(HandleSaveMenu, id, "saved" + std::to_string(id));
    choose(HandleMainMenu, kCommandReadSurface, "face.stl");
    for (const std::string &refused : {std::string(256, 'x'), std::string("no/such/place")})
        for (const int id : {kCommandSaveSurface, kCommandInformation})
            choose(HandleMainMenu, id, refused);
    ExpectGolden("menus.txt", log.Text());
}
