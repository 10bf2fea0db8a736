#include "viewer/input.h"

#include <GL/glut.h>

#include "growth/camera_home.h"
#include "growth/state.h"
#include "toolkit/main_window.h"
#include "viewer/camera.h"
#include "viewer/menus.h"

constexpr unsigned char kEscape = 27;
// Radians of one key press.
constexpr double kKeyTurn = 0.02;
// Pixels of a drag per radian.
constexpr double kDragTurn = 100;
constexpr double kDragRoll = 200;

namespace
{
enum MouseButton { kNoButton = -1, kLeftButton = 0, kMiddleButton = 1 };
} // namespace

static void RecordShift();
static void RecordPosition(int x, int y);
static void Turn(double theta, bool aboutup);

void HandleKeyboard(unsigned char key, int, int)
{
    RecordShift();
    switch (key) {
    case kEscape:
    case 'q':
    case 'Q':
        if (key == kEscape && IsMenuOpen())
            CloseMenu();
        else
            HandleMainMenu(kCommandQuit);
        break;
    case '+':
    case '=':
        ZoomIn();
        break;
    case '-':
    case '_':
        ZoomOut();
        break;
    case '<':
    case ',':
        MoveAway();
        break;
    case '>':
    case '.':
        MoveCloser();
        break;
    case 'h':
    case 'H':
        CameraHome();
        break;
    case '[':
        RotateCamera(0, 0, -kKeyTurn);
        break;
    case ']':
        RotateCamera(0, 0, kKeyTurn);
        break;
    case 'a':
        options.autospin++;
        break;
    case 'A':
        options.autospin--;
        break;
    case 'r':
    case 'R':
        options.recordframes = !options.recordframes;
        break;
    case 'w':
    case 'W':
        options.dumpnext = !options.dumpnext;
        break;
    case 'f':
    case 'F':
        HandleMainMenu(kCommandFit);
        break;
    default:
        break;
    }
}

void HandleSpecialKeyboard(int key, int, int)
{
    RecordShift();
    switch (key) {
    case GLUT_KEY_F1:
        HandleMainMenu(kCommandExtras);
        break;
    case GLUT_KEY_F2:
        HandleMainMenu(kCommandInfo);
        break;
    case GLUT_KEY_F3:
        HandleMainMenu(kCommandPause);
        break;
    case GLUT_KEY_F4:
        HandleMainMenu(kCommandRestart);
        break;
    case GLUT_KEY_F5:
        HandleMainMenu(kCommandStatistics);
        break;
    case GLUT_KEY_LEFT:
        Turn(-kKeyTurn, true);
        break;
    case GLUT_KEY_RIGHT:
        Turn(kKeyTurn, true);
        break;
    case GLUT_KEY_UP:
        Turn(kKeyTurn, false);
        break;
    case GLUT_KEY_DOWN:
        Turn(-kKeyTurn, false);
        break;
    default:
        break;
    }
}

void HandleMouse(int button, int state, int x, int y)
{
    RecordShift();
    if (state == GLUT_DOWN && button == GLUT_LEFT_BUTTON)
        interfacestate.button = kLeftButton;
    else if (state == GLUT_DOWN && button == GLUT_MIDDLE_BUTTON)
        interfacestate.button = kMiddleButton;
    RecordPosition(x, y);
}

// Releasing a button does not clear interfacestate.button, so a drag with the right button acts like the last drag
// with another button (kept).
void HandleMouseMotion(int x, int y)
{
    const int dx = x - interfacestate.mousex;
    const int dy = y - interfacestate.mousey;
    RecordPosition(x, y);
    if (interfacestate.shift)
        return;
    if (interfacestate.button == kLeftButton)
        RotateCamera(-dx / kDragTurn, -dy / kDragTurn, 0);
    else if (interfacestate.button == kMiddleButton)
        RotateCamera(0, 0, dx / kDragRoll);
}

void HandlePassiveMotion(int x, int y)
{
    RecordPosition(x, y);
}

static void RecordShift()
{
    interfacestate.shift = glutGetModifiers() == GLUT_ACTIVE_SHIFT;
}

static void RecordPosition(int x, int y)
{
    interfacestate.mousex = x;
    interfacestate.mousey = y;
}

// Handles an arrow key: turns the camera about the up vector or about the right vector, unless shift is held.
static void Turn(double theta, bool aboutup)
{
    if (interfacestate.shift)
        return;
    if (aboutup)
        RotateCamera(theta, 0, 0);
    else
        RotateCamera(0, theta, 0);
}
