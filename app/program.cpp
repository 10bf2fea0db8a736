#include "app/program.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <GL/glut.h>
#include <forms.h>

#include "app/command_line.h"
#include "app/idle.h"
#include "archive/rescue.h"
#include "export/slicing_panel.h"
#include "growth/camera_home.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/settings_panel.h"
#include "growth/state.h"
#include "surface/transform_panel.h"
#include "toolkit/callback.h"
#include "toolkit/main_loop_timer.h"
#include "toolkit/main_window.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/display.h"
#include "viewer/input.h"
#include "viewer/menus.h"

// Milliseconds after which the window has been drawn on most displays
constexpr int kUntilDrawn = 100;

static void StartForms(char *path);
static void CreatePanels();
static void OpenWindow(int argc, char **argv);
static void RegisterCallbacks();
static void CloseWindow();

void RunProgram(int argc, char **argv)
{
    PrepareRecords();
    ReadSwitches(argc, argv);
    RunWindow(argc, argv, nullptr);
}

void PrepareRecords()
{
    signal(SIGXFSZ, SIG_IGN); // a file that grows too large is reported as a fault of writing
    InitialiseGrowth();
    CameraHome();
    SetProgramDefaults();
}

void RunWindow(int argc, char **argv, void (*askatstart)(int))
{
    StartForms(argv[0]);
    CreatePanels();
    OpenWindow(argc, argv);
    RegisterCallbacks();
    StartMainLoopTimer(HandlePendingSignal, CloseWindow, RescueAggregate);
    // Numbers in files and panels always use a decimal point.
    setlocale(LC_ALL, "C");
    if (askatstart != nullptr)
        glutTimerFunc(kUntilDrawn, askatstart, 0);
    glutMainLoop();
}

// Starts XForms with the program's path alone, so that it sees none of the switches.
static void StartForms(char *path)
{
    int count = 1;
    char *arguments[] = {path, nullptr};
    if (options.debug)
        fputs("Initialising forms library\n", stderr);
    // By default the toolkit chooses a visual with an alpha channel if there is one. Without a compositing manager
    // its windows would then not be painted.
    FL_IOPT settings = {};
    settings.vclass = FL_DefaultVisual;
    fl_set_defaults(FL_PDVisual, &settings);
    if (fl_initialize(&count, arguments, "Sarkelo", nullptr, 0) == nullptr)
        exit(EXIT_FAILURE); // the library has printed the reason
    if (options.debug)
        fputs("Initialised forms library\n", stderr);
}

static void CreatePanels()
{
    if (viewwindow)
        GivePanelsTitles();
    settingform = create_form_settingform();
    stlform = create_form_stlform();
    sliceform = create_form_sliceform();
    UpdateForms();
}

static void OpenWindow(int argc, char **argv)
{
    glutInit(&argc, argv);
    const unsigned int stereo = camera.stereo == kStereoActive ? GLUT_STEREO : 0;
    glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH | stereo);
    if (viewwindow && stereo != 0 && !glutGet(GLUT_DISPLAY_MODE_POSSIBLE)) {
        fputs("sarkelo-view: this display has no active stereo (-s)\n", stderr);
        exit(EXIT_FAILURE);
    }
    glutCreateWindow(kTitle);
    SetWindowProperties();
    glutReshapeWindow(camera.screenwidth, camera.screenheight);
    if (options.fullscreen)
        glutFullScreen();
}

static void RegisterCallbacks()
{
    glutDisplayFunc(Guarded<HandleDisplay, kRepeatedCallback>);
    glutReshapeFunc(Guarded<HandleReshape>);
    CreateMenus();
    glutKeyboardFunc(Guarded<HandleKeyboard>);
    glutSpecialFunc(Guarded<HandleSpecialKeyboard>);
    glutMouseFunc(HandleMouse); // it and passive motion only record where the pointer is
    glutMotionFunc(Guarded<HandleMouseMotion>);
    glutPassiveMotionFunc(HandlePassiveMotion);
    glutVisibilityFunc(Guarded<HandleVisibility>);
    if (camera.stereo == kStereoDualScreen)
        glutSetCursor(GLUT_CURSOR_NONE);
    glutIdleFunc(Guarded<HandleIdle, kRepeatedCallback>);
}

// Called when the main window is closed.
static void CloseWindow()
{
    AskBeforeClosing();
    DisarmRescue();
}
