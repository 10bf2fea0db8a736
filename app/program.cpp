#include "app/program.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include <GL/glut.h>
#include <forms.h>

#include "app/command_line.h"
#include "app/idle.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "viewer/camera.h"
#include "viewer/display.h"
#include "viewer/input.h"

static void StartForms(char *path);
static void OpenWindow(int argc, char **argv);
static void RegisterCallbacks();

void RunProgram(int argc, char **argv)
{
    InitialiseGrowth();
    CameraHome();
    SetProgramDefaults();
    ReadSwitches(argc, argv);
    StartForms(argv[0]);
    OpenWindow(argc, argv);
    RegisterCallbacks();
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
    if (fl_initialize(&count, arguments, "Sarkelo", nullptr, 0) == nullptr)
        exit(EXIT_FAILURE); // the library has said why
    if (options.debug)
        fputs("Initialised forms library\n", stderr);
}

static void OpenWindow(int argc, char **argv)
{
    glutInit(&argc, argv);
    const unsigned int stereo = camera.stereo == kStereoActive ? GLUT_STEREO : 0;
    glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH | stereo);
    glutCreateWindow("Diffusion Limited Aggregation");
    glutReshapeWindow(camera.screenwidth, camera.screenheight);
    if (options.fullscreen)
        glutFullScreen();
}

static void RegisterCallbacks()
{
    glutDisplayFunc(HandleDisplay);
    glutReshapeFunc(HandleReshape);
    glutKeyboardFunc(HandleKeyboard);
    glutSpecialFunc(HandleSpecialKeyboard);
    glutMouseFunc(HandleMouse);
    glutMotionFunc(HandleMouseMotion);
    glutPassiveMotionFunc(HandlePassiveMotion);
    glutVisibilityFunc(HandleVisibility);
    if (camera.stereo == kStereoDualScreen)
        glutSetCursor(GLUT_CURSOR_NONE);
    glutIdleFunc(HandleIdle);
}
