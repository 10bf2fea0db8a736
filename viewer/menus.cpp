#include "viewer/menus.h"

#include <cstdlib>
#include <vector>

#include <GL/glut.h>
#include <forms.h>

#include "archive/rescue.h"
#include "export/model.h"
#include "export/save_dialog.h"
#include "export/slicing_panel.h"
#include "growth/root_distributions.h"
#include "growth/roots.h"
#include "growth/seed_file_dialog.h"
#include "growth/settings_panel.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "surface/samples.h"
#include "surface/stl_dialog.h"
#include "surface/transform_panel.h"
#include "toolkit/callback.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/camera.h"
#include "viewer/statistics.h"
#include "viewer/surface_drawing.h"

namespace
{
// The menus in the order in which they are built.
enum MenuNumber {
    kNoMenu = -1,
    kSurfaceModeMenu,
    kSaveMenu,
    kAggregateModeMenu,
    kSampleMenu,
    kSourceMenu,
    kRootMenu,
    kFileMenu,
    kMainMenu,
    kMenus
};

// An entry that sends its id to the menu's handler, or that opens another menu.
struct Entry {
    const char *label;
    int id;
    MenuNumber submenu = kNoMenu;
};

struct Menu {
    void (*handler)(int); // made by Guarded
    std::vector<Entry> entries;
};
} // namespace

static bool menuopen = false;

static void NoteMenuStatus(int status, int x, int y);
static Menu DescribeMenu(int number);
static std::vector<Entry> MainEntries();
static std::vector<Entry> FileEntries();
static std::vector<Entry> SaveEntries();
static std::vector<Entry> SampleEntries();
static std::vector<Entry> SourceEntries();
static std::vector<Entry> RootEntries();

void CreateMenus()
{
    int created[kMenus];
    for (int number = 0; number < kMenus; number++) {
        if (number == kFileMenu && !viewwindow)
            continue;
        const Menu menu = DescribeMenu(number);
        created[number] = glutCreateMenu(menu.handler);
        for (const Entry &entry : menu.entries) {
            if (entry.submenu == kNoMenu)
                glutAddMenuEntry(entry.label, entry.id);
            else
                glutAddSubMenu(entry.label, created[entry.submenu]);
        }
    }
    glutAttachMenu(GLUT_RIGHT_BUTTON); // the menu built last
    if (viewwindow)
        glutMenuStatusFunc(NoteMenuStatus);
}

bool IsMenuOpen()
{
    return menuopen;
}

void HandleMainMenu(int id)
{
    switch (id) {
    case kCommandReadSurface:
        ReadSTL();
        if (options.surfacemode < kSurfaceWireframe)
            options.surfacemode = kSurfaceWireframe;
        DrawSTL(options.surfacemode, 1);
        break;
    case kCommandSettings:
        ShowPanel(settingform->form, &settingformvisible);
        break;
    case kCommandTransform:
        ShowPanel(stlform->form, &stlformvisible);
        break;
    case kCommandSaveSurface:
        SaveModel(kFormatSTL, kModeChains);
        break;
    case kCommandReadSeeds:
        ReadRoots();
        break;
    case kCommandInformation:
        SaveInformation();
        break;
    case kCommandSlices:
        ShowPanel(sliceform->form, &sliceformvisible);
        break;
    case kCommandExtras:
        options.showextras = !options.showextras;
        break;
    case kCommandInfo:
        options.showinfo = !options.showinfo;
        break;
    case kCommandPause:
        growthstate.running = !growthstate.running;
        break;
    case kCommandRestart:
        InitialiseGrowth();
        break;
    case kCommandStatistics:
        Statistics();
        break;
    case kCommandOpenAggregate:
        if (viewwindow)
            OpenAggregate();
        break;
    case kCommandSaveAggregate:
        if (viewwindow)
            SaveAggregate();
        break;
    case kCommandFit:
        if (viewwindow)
            FitCamera();
        break;
    case kCommandQuit:
        if (!ConfirmDiscardingParticles())
            break;
        DisarmRescue();
        exit(0);
    default:
        break;
    }
}

void HandleDLAMenu(int mode)
{
    options.dlamode = mode;
}

void HandleSTLMenu(int mode)
{
    options.surfacemode = mode;
    DrawSTL(mode, 1);
}

void HandleSampleMenu(int id)
{
    if (!BuildSample(id))
        fl_show_message("Memory Error", "Not enough memory for this surface", "");
    DrawSTL(options.surfacemode, 1);
}

static void NoteMenuStatus(int status, int, int)
{
    menuopen = status == GLUT_MENU_IN_USE;
}

static Menu DescribeMenu(int number)
{
    switch (number) {
    case kSurfaceModeMenu:
        return {Guarded<HandleSTLMenu>,
                {{"Off", kSurfaceOff},
                 {"Faces, wireframe", kSurfaceWireframe},
                 {"Mid points of faces", kSurfaceMidpoints},
                 {"Face vertices", kSurfaceVertices},
                 {"Faces, solid", kSurfaceSolid}}};
    case kSaveMenu:
        return {Guarded<HandleSaveMenu>, SaveEntries()};
    case kAggregateModeMenu:
        return {Guarded<HandleDLAMenu>,
                {{"Off", kAggregateOff},
                 {"Points", kAggregatePoints},
                 {"Lines", kAggregateLines},
                 {"Tubes (Slow)", kAggregateTubes}}};
    case kSampleMenu:
        return {Guarded<HandleSampleMenu>, SampleEntries()};
    case kSourceMenu:
        return {Guarded<HandleSourceMenu>, SourceEntries()};
    case kRootMenu:
        return {Guarded<HandleRootMenu>, RootEntries()};
    case kFileMenu:
        return {Guarded<HandleMainMenu>, FileEntries()};
    default:
        return {Guarded<HandleMainMenu>, MainEntries()};
    }
}

static std::vector<Entry> MainEntries()
{
    std::vector<Entry> entries = {{"Settings", kCommandSettings}};
    const auto add = [&](const std::vector<Entry> &more) {
        entries.insert(entries.end(), more.begin(), more.end());
    };
    add(viewwindow ? std::vector<Entry>{{"Files", 0, kFileMenu}} : FileEntries());
    add({{"-", kCommandSeparator},
         {"DLA drawing mode", 0, kAggregateModeMenu},
         {"Constraint surface drawing mode", 0, kSurfaceModeMenu},
         {"-", kCommandSeparator},
         {"New particle distribution", 0, kSourceMenu},
         {"Sample constraint surfaces", 0, kSampleMenu},
         {"Transform constraint surface", kCommandTransform},
         {"Initial root distribution", 0, kRootMenu},
         {"-", kCommandLastSeparator},
         {"Toggle extras (f1)", kCommandExtras},
         {"Toggle info (f2)", kCommandInfo},
         {"Pause / Continue (f3)", kCommandPause},
         {"Restart simulation (f4)", kCommandRestart},
         {"Calculate statistics (f5)", kCommandStatistics}});
    if (viewwindow)
        add({{"All in view (f)", kCommandFit}});
    add({{"-", kCommandSeparator}, {"Quit (q)", kCommandQuit}});
    return entries;
}

static std::vector<Entry> FileEntries()
{
    std::vector<Entry> entries = {{"Save DLA as", 0, kSaveMenu},
                                  {"Save constraint surface to STL file", kCommandSaveSurface},
                                  {"Compute/save slices", kCommandSlices},
                                  {"Save simulation information", kCommandInformation},
                                  {"Read constraint surface from STL file", kCommandReadSurface},
                                  {"Read seeds", kCommandReadSeeds}};
    if (viewwindow)
        entries.insert(entries.begin(), {{"Open aggregate", kCommandOpenAggregate},
                                         {"Save aggregate", kCommandSaveAggregate},
                                         {"-", kCommandSeparator}});
    return entries;
}

static std::vector<Entry> SaveEntries()
{
    std::vector<Entry> entries;
    for (const ModelKind &kind : ModelKinds())
        if (kind.menuid > 0)
            entries.push_back({kind.label, kind.menuid});
    return entries;
}

static std::vector<Entry> SampleEntries()
{
    std::vector<Entry> entries;
    for (const Sample &sample : Samples())
        entries.push_back({sample.name, sample.id});
    return entries;
}

static std::vector<Entry> SourceEntries()
{
    std::vector<Entry> entries;
    for (int source = kSourceSphere; source <= kSourceSurface; source++)
        entries.push_back({SourceName(source), source});
    return entries;
}

// Each entry has the name of the distribution that follows the one it selects (kept).
static std::vector<Entry> RootEntries()
{
    std::vector<Entry> entries;
    for (int type = kRootOrigin; type < kRootRingZ; type++)
        entries.push_back({RootTypeName(type + 1), type});
    return entries;
}
