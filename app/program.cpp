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
#include "growth/main_window.h"
#include "growth/roots.h"
#include "growth/settings_panel.h"
#include "growth/signal_watch.h"
#include "growth/state.h"
#include "surface/transform_panel.h"
#include "viewer/callback.h"
#include "viewer/display.h"
#include "viewer/input.h"
#include "viewer/menus.h"

static void StartForms(char *path);
static void CreatePanels();
static void OpenWindow(int argc, char **argv);
static void RegisterCallbacks(bool files);

void RunProgram(int argc, char **argv)
{
    PrepareRecords();
    ReadSwitches(argc, argv);
    RunWindow(argc, argv, false);
}

void PrepareRecords()
{
    signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a fault of writing, and told as one
    InitialiseGrowth();
    CameraHome();
    SetProgramDefaults();
}

void RunWindow(int argc, char **argv, bool files)
{
    StartForms(argv[0]);
    CreatePanels();
    OpenWindow(argc, argv);
    RegisterCallbacks(files);
    StartSignalWatch(EndBySignal, LeaveAggregate, KeepAggregate);
    // Numbers in files and panels always use a decimal point.
    setlocale(LC_ALL, "C");
    glutMainLoop();
}

// Starts XForms with the program's path alone, so that it sees none of the switches.
static void StartForms(char *path)
{
    int count = 1;
    char *arguments[] = {path, nullptr};
    if (options.debug)
        fputs("Initialising forms library\n", stderr);
    // By itself the toolkit takes a visual with an alpha channel where there is one; without a compositing
    // manager its windows then lie unpainted over each other.
    FL_IOPT settings = {};
    settings.vclass = FL_DefaultVisual;
    fl_set_defaults(FL_PDVisual, &settings);
    if (fl_initialize(&count, arguments, "Sarkelo", nullptr, 0) == nullptr)
        exit(EXIT_FAILURE); // the library has said why
    if (options.debug)
        fputs("Initialised forms library\n", stderr);
}

static void CreatePanels()
{
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
    glutCreateWindow("Diffusion Limited Aggregation");
    IntroduceMainWindow();
    glutReshapeWindow(camera.screenwidth, camera.screenheight);
    if (options.fullscreen)
        glutFullScreen();
}

static void RegisterCallbacks(bool files)
{
    glutDisplayFunc(Guarded<HandleDisplay, kRepeatedCallback>);
    glutReshapeFunc(Guarded<HandleReshape>);
    CreateMenus(files);
    glutKeyboardFunc(Guarded<HandleKeyboard>);
    glutSpecialFunc(Guarded<HandleSpecialKeyboard>);
    glutMouseFunc(Guarded<HandleMouse>);
    glutMotionFunc(Guarded<HandleMouseMotion>);
    glutPassiveMotionFunc(Guarded<HandlePassiveMotion>);
    glutVisibilityFunc(Guarded<HandleVisibility>);
    if (camera.stereo == kStereoDualScreen)
        glutSetCursor(GLUT_CURSOR_NONE);
    glutIdleFunc(Guarded<HandleIdle, kRepeatedCallback>);
}
