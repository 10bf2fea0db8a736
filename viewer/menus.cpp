#include "viewer/menus.h"

#include <cstdlib>
#include <vector>

#include <GL/glut.h>
#include <forms.h>

#include "archive/rescue.h"
#include "export/model.h"
#include "export/save_dialog.h"
#include "export/slicing_panel.h"
#include "growth/roots.h"
#include "growth/seed_file_dialog.h"
#include "growth/settings_panel.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "surface/samples.h"
#include "surface/stl_dialog.h"
#include "surface/transform_panel.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/callback.h"
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
    void (*handler)(int); // guarded
    std::vector<Entry> entries;
};
} // namespace

static Menu DescribeMenu(int number);
static std::vector<Entry> SaveEntries();
static std::vector<Entry> SampleEntries();
static std::vector<Entry> SourceEntries();
static std::vector<Entry> RootEntries();

void CreateMenus(bool files)
{
    int created[kMenus];
    for (int number = 0; number < kMenus; number++) {
        Menu menu = DescribeMenu(number);
        if (files && number == kMainMenu)
            menu.entries.insert(menu.entries.end() - 1, {{"Open aggregate", kCommandOpenAggregate},
                                                         {"Save aggregate", kCommandSaveAggregate}});
        created[number] = glutCreateMenu(menu.handler);
        for (const Entry &entry : menu.entries) {
            if (entry.submenu == kNoMenu)
                glutAddMenuEntry(entry.label, entry.id);
            else
                glutAddSubMenu(entry.label, created[entry.submenu]);
        }
    }
    glutAttachMenu(GLUT_RIGHT_BUTTON); // the menu built last
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
        OpenAggregate();
        break;
    case kCommandSaveAggregate:
        SaveAggregate();
        break;
    case kCommandQuit:
        LeaveAggregate();
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
    default:
        return {Guarded<HandleMainMenu>,
                {{"Settings", kCommandSettings},
                 {"Save DLA as", 0, kSaveMenu},
                 {"Save constraint surface to STL file", kCommandSaveSurface},
                 {"Compute/save slices", kCommandSlices},
                 {"Save simulation information", kCommandInformation},
                 {"Read constraint surface from STL file", kCommandReadSurface},
                 {"Read seeds", kCommandReadSeeds},
                 {"-", kCommandSeparator},
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
                 {"Calculate statistics (f5)", kCommandStatistics},
                 {"-", kCommandSeparator},
                 {"Quit (q)", kCommandQuit}}};
    }
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

// Each entry bears the name of the distribution after the one that it selects (kept).
static std::vector<Entry> RootEntries()
{
    std::vector<Entry> entries;
    for (int type = kRootOrigin; type < kRootRingZ; type++)
        entries.push_back({RootTypeName(type + 1), type});
    return entries;
}
