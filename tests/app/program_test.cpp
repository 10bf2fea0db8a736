#include "app/program.h"

#include <clocale>
#include <vector>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "app/idle.h"
#include "fakes/recorder.h"
#include "growth/state.h"
#include "viewer/callback.h"
#include "viewer/camera.h"
#include "viewer/display.h"
#include "viewer/input.h"

static std::string Start(std::vector<const char *> arguments)
{
    ForgetCalls();
    registered = {};
    fakemenus.clear();
    std::vector<char *> argv = {const_cast<char *>("path/to/sarkelo")};
    for (const char *argument : arguments)
        argv.push_back(const_cast<char *>(argument));
    CameraHome();
    camera.stereo = kStereoNone;
    camera.screenwidth = 800;
    RunProgram(static_cast<int>(argv.size()), argv.data());
    // What builds the panels and menus has tests of its own; here it is one call each.
    std::string transcript;
    for (const Call &call : calls)
        if (call.name == "fl_bgn_form" || call.name == "glutAttachMenu" ||
            (call.name.rfind("fl_add_", 0) != 0 && call.name.rfind("fl_set_object", 0) != 0 &&
             call.name.rfind("glutAdd", 0) != 0))
            transcript += Text(call) + " ";
    return transcript;
}

TEST(Program, StartsTheToolkitsInOrder)
{
    EXPECT_EQ(
        Start({"-x"}),
        "fl_set_defaults(2048,10) fl_initialize(1path/to/sarkelo|Sarkelo) fl_bgn_form(0,411,531) "
        "fl_bgn_form(0,351,291) fl_bgn_form(0,421,251) glutInit(2-x) glutInitDisplayMode(18) "
        "glutCreateWindow(Diffusion Limited Aggregation) IntroduceMainWindow() glutReshapeWindow(800,600) "
        "glutDisplayFunc(1) glutReshapeFunc(1) glutAttachMenu(7,2) glutKeyboardFunc(1) glutSpecialFunc(1) "
        "glutMouseFunc(1) glutMotionFunc(1) glutPassiveMotionFunc(1) glutVisibilityFunc(1) "
        "glutIdleFunc(1) glutMainLoop() ");
    EXPECT_EQ(registered.display, (Guarded<HandleDisplay, kRepeatedCallback>));
    EXPECT_EQ(registered.reshape, Guarded<HandleReshape>);
    EXPECT_EQ(registered.keyboard, Guarded<HandleKeyboard>);
    EXPECT_EQ(registered.special, Guarded<HandleSpecialKeyboard>);
    EXPECT_EQ(registered.mouse, Guarded<HandleMouse>);
    EXPECT_EQ(registered.motion, Guarded<HandleMouseMotion>);
    EXPECT_EQ(registered.passivemotion, Guarded<HandlePassiveMotion>);
    EXPECT_EQ(registered.visibility, Guarded<HandleVisibility>);
    EXPECT_EQ(registered.idle, (Guarded<HandleIdle, kRepeatedCallback>));
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
}

TEST(Program, SwitchesReachTheWindow)
{
    const std::string active = Start({"-s", "-f"});
    EXPECT_NE(
        active.find("glutInitDisplayMode(" + std::to_string(GLUT_DOUBLE | GLUT_DEPTH | GLUT_STEREO) + ")"),
        std::string::npos);
    EXPECT_NE(active.find("glutReshapeWindow(800,600) glutFullScreen()"), std::string::npos);
    EXPECT_EQ(active.find("glutSetCursor"), std::string::npos);

    const std::string dual = Start({"-ss"});
    EXPECT_NE(dual.find("glutInitDisplayMode(18)"), std::string::npos);
    EXPECT_NE(dual.find("glutReshapeWindow(1600,600)"), std::string::npos);
    EXPECT_NE(dual.find("glutSetCursor(" + std::to_string(GLUT_CURSOR_NONE) + ")"), std::string::npos);

    testing::internal::CaptureStderr();
    Start({"-d"});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Initialising forms library\nInitialised forms library\n");
}
