#include "viewer/input.h"

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/state.h"
#include "viewer/camera.h"

class Input : public testing::Test
{
protected:
    void SetUp() override
    {
        SetProgramDefaults();
        CameraHome();
        fakemodifiers = 0;
    }

    static void Press(const char *keys)
    {
        for (; *keys != '\0'; keys++)
            HandleKeyboard(static_cast<unsigned char>(*keys), 5, 5);
    }
};

TEST_F(Input, ZoomStopsOneStepBeyondItsBounds)
{
    const struct {
        const char *keys;
        double before, after;
    } rows[] = {
        {"+", 60, 57}, {"=", 60, 57}, {"+", 1, 1},   {"+", 1.01, 0.9595},   {"++", 1.01, 0.9595},
        {"-", 57, 60}, {"_", 57, 60}, {"-", 90, 90}, {"--", 89, 89 / 0.95},
    };
    for (const auto &row : rows) {
        camera.aperture = row.before;
        Press(row.keys);
        EXPECT_DOUBLE_EQ(camera.aperture, row.after) << row.keys << row.before;
    }
}

TEST_F(Input, DollyMovesTheViewPointAlongItsLine)
{
    camera.vp = {30, 0, 40};
    Press(">.");
    EXPECT_NEAR(camera.vp.x, 30 * 0.95 * 0.95, 1e-12);
    EXPECT_NEAR(camera.vp.z, 40 * 0.95 * 0.95, 1e-12);
    EXPECT_EQ(camera.vd.x, -1);
    Press("<,");
    EXPECT_NEAR(Modulus(camera.vp), 50, 1e-12);
    CameraHome();
    Press(">>>>>>>>>>>>>>>>>>>>");
    EXPECT_NEAR(camera.vp.x, 60 * std::pow(0.95, 20), 1e-12);
}

TEST_F(Input, KeysTurnAndSwitch)
{
    Press("[");
    EXPECT_NEAR(camera.vu.y, -std::sin(0.02), 1e-12);
    Press("]]");
    EXPECT_NEAR(camera.vu.y, std::sin(0.02), 1e-12);
    Press("h");
    EXPECT_EQ(camera.vu.y, 0);
    Press("aaaA");
    EXPECT_EQ(options.autospin, 2);
    Press("rRr");
    EXPECT_EQ(options.recordframes, 1);
    Press("w");
    EXPECT_EQ(options.dumpnext, 1);
    Press("W");
    EXPECT_EQ(options.dumpnext, 0);
    const Camera before = camera;
    Press("xyz 0123\n");
    EXPECT_EQ(before.vp.x, camera.vp.x);
    EXPECT_EQ(before.vu.z, camera.vu.z);
    for (const char *key : {"q", "Q", "\x1b"})
        EXPECT_EXIT(Press(key), testing::ExitedWithCode(0), "");
}

TEST_F(Input, ArrowsTurnTheCameraUnlessShiftIsHeld)
{
    const struct {
        int key;
        double ix, iy;
    } rows[] = {{GLUT_KEY_LEFT, -0.02, 0},
                {GLUT_KEY_RIGHT, 0.02, 0},
                {GLUT_KEY_UP, 0, 0.02},
                {GLUT_KEY_DOWN, 0, -0.02}};
    for (const auto &row : rows) {
        CameraHome();
        RotateCamera(row.ix, row.iy, 0);
        const Camera expected = camera;
        CameraHome();
        fakemodifiers = GLUT_ACTIVE_SHIFT;
        HandleSpecialKeyboard(row.key, 0, 0);
        EXPECT_EQ(camera.vp.x, 60);
        fakemodifiers = GLUT_ACTIVE_SHIFT | GLUT_ACTIVE_CTRL; // is not shift
        HandleSpecialKeyboard(row.key, 0, 0);
        EXPECT_EQ(camera.vp.y, expected.vp.y);
        EXPECT_EQ(camera.vp.z, expected.vp.z);
        EXPECT_EQ(camera.vu.x, expected.vu.x);
    }
}

TEST_F(Input, DragsFollowTheRecordedButton)
{
    HandleMouseMotion(50, 50); // no button yet
    EXPECT_EQ(camera.vp.x, 60);
    HandleMouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 10, 10);
    HandleMouseMotion(110, 10); // a drag to the right by 100 pixels turns by -1 radian
    EXPECT_NEAR(camera.vd.x, -std::cos(1), 1e-12);
    EXPECT_NEAR(camera.vd.y, std::sin(1), 1e-12);

    CameraHome();
    HandleMouse(GLUT_LEFT_BUTTON, GLUT_UP, 110, 10);
    HandleMouse(GLUT_RIGHT_BUTTON, GLUT_DOWN, 0, 0);
    HandleMouseMotion(0, 10); // still the left button's
    EXPECT_NEAR(camera.vd.z, -std::sin(0.1), 1e-12);

    CameraHome();
    HandleMouse(GLUT_MIDDLE_BUTTON, GLUT_DOWN, 0, 0);
    HandleMouseMotion(20, 300);
    EXPECT_NEAR(camera.vu.y, std::sin(0.1), 1e-12);
    EXPECT_EQ(camera.vp.x, 60);

    CameraHome();
    fakemodifiers = GLUT_ACTIVE_SHIFT;
    HandleMouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    HandleMouseMotion(70, 80);
    EXPECT_EQ(camera.vp.x, 60);
    EXPECT_EQ(interfacestate.mousex, 70);
    HandlePassiveMotion(3, 4);
    EXPECT_EQ(interfacestate.mousex, 3);
    EXPECT_EQ(interfacestate.mousey, 4);
}
