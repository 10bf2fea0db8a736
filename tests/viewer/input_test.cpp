// Keys, mouse and camera: what each input leaves, from the same oblique view.

#include "viewer/input.h"

#include <cmath>
#include <functional>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/scenario.h"
#include "viewer/camera.h"
#include "viewer/menus.h"

static std::string Vectors()
{
    std::string text;
    for (const Vector v : {camera.vp, camera.vd, camera.vu, camera.pr}) {
        char line[100];
        snprintf(line, sizeof line, " (%.9g, %.9g, %.9g)", Plain(v.x), Plain(v.y), Plain(v.z));
        text += line;
    }
    return text;
}

// The camera and all that input changes, in a line; a change of growth shows in its flags.
static std::string State()
{
    char line[200];
    snprintf(line, sizeof line,
             " %.9g; spin %d, record %d, dump %d, extras %d, info %d, running %d, launches %d; "
             "button %d, shift %d, %d %d\n",
             camera.aperture, options.autospin, options.recordframes, options.dumpnext, options.showextras,
             options.showinfo, growthstate.running, nseeds, interfacestate.button, interfacestate.shift,
             interfacestate.mousex, interfacestate.mousey);
    return Vectors() + line;
}

static void LookObliquely()
{
    StartAfresh();
    CameraHome();
    RotateCamera(0.4, 0, 0);
    RotateCamera(0, -0.3, 0);
    RotateCamera(0, 0, 0.2);
    nseeds = 5;
    fakemodifiers = 0;
}

TEST(Input, LeavesWhatItDidRightBefore)
{
    std::string text;
    const auto add = [&](const std::string &name, const std::function<void()> &input) {
        LookObliquely();
        input();
        text += name + State();
    };
    for (const char key : std::string("+=-_<,>.hH[]aArRwWxyz 0\n"))
        for (const double aperture : {60.0, 1.0, 1.01, 89.0, 90.0})
            add(std::string("key ") + key, [=] {
                camera.aperture = aperture;
                HandleKeyboard(static_cast<unsigned char>(key), 5, 6);
            });
    for (int key = 0; key <= 120; key++)
        for (const int modifiers : {0, GLUT_ACTIVE_SHIFT, GLUT_ACTIVE_SHIFT | GLUT_ACTIVE_CTRL})
            if (key <= GLUT_KEY_F6 || key >= GLUT_KEY_LEFT)
                if (key != GLUT_KEY_F5) // counts boxes
                    add("special " + std::to_string(key), [=] {
                        fakemodifiers = modifiers;
                        HandleSpecialKeyboard(key, 5, 6);
                    });
    for (int button = 0; button <= 3; button++)
        for (const int state : {GLUT_DOWN, GLUT_UP})
            for (const int modifiers : {0, GLUT_ACTIVE_SHIFT})
                for (const int recorded : {-1, 0, 1})
                    add("drag " + std::to_string(button), [=] {
                        interfacestate.button = recorded;
                        fakemodifiers = modifiers;
                        HandleMouse(button, state, 10, 20);
                        HandleMouseMotion(110, -13);
                        HandlePassiveMotion(3, 4);
                        HandleMouseMotion(4, 4);
                    });
    for (const Vector turn : {Vector{0, 0, 0}, Vector{0.1, 0, 0}, Vector{0, 0.1, 0}, Vector{0, 0, 0.1},
                              Vector{0.1, 0.2, 0.3}, Vector{kTwoPi / 4, 0, 0}, Vector{std::nan(""), 0, 0}})
        add("turn", [=] {
            camera.vp = {30, 40,
                         5}; // aside: a turn goes back to the line through the origin, a roll does not
            camera.vu = {0, 0, 5};
            RotateCamera(turn.x, turn.y, turn.z);
        });
    add("home", [] {
        camera.stereo = kStereoDualScreen;
        camera.screenwidth = 123;
        camera.vp = {1, 2, 3};
        CameraHome();
        EXPECT_EQ(camera.stereo, kStereoDualScreen); // these stay
        EXPECT_EQ(camera.screenwidth, 123);
        camera.stereo = kStereoNone;
    });
    ExpectGolden("input.txt", text);
}

TEST(Input, QuitsAtOnce)
{
    for (const unsigned char key : {'q', 'Q', '\x1b'})
        EXPECT_EXIT(HandleKeyboard(key, 0, 0), testing::ExitedWithCode(0), "");
}

TEST(Input, EscapeClosesTheMenuOfTheViewWindow)
{
    viewwindow = true;
    CreateMenus();
    registered.menustatus(GLUT_MENU_IN_USE, 0, 0);
    const auto press = [] {
        HandleKeyboard('\x1b', 0, 0);
        exit(CountCalls("CloseMenu") == 1 ? 7 : 8); // statuses of this test's own
    };
    EXPECT_EXIT(press(), testing::ExitedWithCode(7), "");
    registered.menustatus(GLUT_MENU_NOT_IN_USE, 0, 0);
    EXPECT_EXIT(HandleKeyboard('\x1b', 0, 0), testing::ExitedWithCode(0), "");
}

TEST(Input, FFitsTheViewWindow)
{
    for (const bool view : {false, true}) {
        viewwindow = view;
        LookObliquely();
        const double distance = Modulus(camera.vp);
        HandleKeyboard('f', 0, 0);
        EXPECT_EQ(Modulus(camera.vp) < distance / 2, view);
    }
}
