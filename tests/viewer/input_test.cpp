// Keys, mouse and camera: what each input changes, from the same oblique view.

#include "viewer/input.h"

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "golden.h"
#include "growth/camera_home.h"
#include "growth/scenario.h"
#include "viewer/action_log.h"
#include "viewer/camera.h"

static void LookObliquely()
{
    PrepareWindow();
    RotateCamera(0.4, 0, 0);
    RotateCamera(0, -0.3, 0);
    RotateCamera(0, 0, 0.2);
    interfacestate = {-1, 0, 0, 0};
}

TEST(Input, MatchesExpectedChanges)
{
    ActionLog log;
    for (const bool view : {false, true})
        for (const char key : std::string("+=-_<,>.hH[]aArRwWxyzfF 0\n")) {
            LookObliquely();
            viewwindow = view;
            log.Do(key == '\n' ? "key Return" : std::string("key ") + key,
                   [=] { HandleKeyboard(static_cast<unsigned char>(key), 5, 6); });
        }
    viewwindow = false;
    for (const double aperture : {1.0, 1.01, 89.0, 90.0})
        for (const unsigned char key : {'+', '-'}) {
            LookObliquely();
            camera.aperture = aperture;
            log.Do("limit", [=] { HandleKeyboard(key, 5, 6); });
        }
    for (int key = 1; key <= GLUT_KEY_DOWN + 1; key = key == GLUT_KEY_F6 ? GLUT_KEY_LEFT : key + 1)
        for (const int modifiers : {0, GLUT_ACTIVE_SHIFT, GLUT_ACTIVE_SHIFT | GLUT_ACTIVE_CTRL}) {
            LookObliquely();
            fakemodifiers = modifiers;
            log.Do("special " + std::to_string(key) + '/' + std::to_string(modifiers),
                   [=] { HandleSpecialKeyboard(key, 5, 6); });
        }
    for (int button = 0; button <= 3; button++)
        for (const int modifiers : {0, GLUT_ACTIVE_SHIFT}) {
            LookObliquely();
            fakemodifiers = modifiers;
            log.Do("drag " + std::to_string(button) + '/' + std::to_string(modifiers), [=] {
                HandleMouse(button, GLUT_DOWN, 10, 20);
                HandleMouseMotion(110, -13);
                HandlePassiveMotion(3, 4);
                HandleMouseMotion(4, 4);
                HandleMouse(button, GLUT_UP, 4, 4);
            });
        }
    PrepareWindow();
    ExpectGolden("input.txt", log.Text());
}

TEST(Input, Quits)
{
    StartAfresh(); // nothing is unsaved
    for (const unsigned char key : {'q', 'Q', '\x1b'})
        EXPECT_EXIT(HandleKeyboard(key, 0, 0), testing::ExitedWithCode(0), "") << key;
}
