#include "app/program.h"

#include <clocale>
#include <csignal>
#include <vector>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/state.h"

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
    camera.screenheight = 600;
    RunProgram(static_cast<int>(argv.size()), argv.data());
    std::string transcript;
    for (const Call &call : calls)
        transcript += Text(call) + "\n";
    return transcript;
}

TEST(Program, StartsTheToolkitsAsRightBefore)
{
    testing::internal::CaptureStderr();
    std::string text;
    for (const auto &arguments : {std::vector<const char *>{"-x"}, {"-s", "-f"}, {"-ss"}, {"-d"}})
        text += std::string("== ") + arguments[0] + "\n" + Start(arguments);
    ExpectGolden("start.txt", text);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Initialising forms library\nInitialised forms library\n");
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(signal(SIGXFSZ, SIG_IGN), SIG_IGN); // files that grow too large do not end the program
    growthstate.stepcount = 1;                    // each callback is the one that its name says
    registered.keyboard('h', 0, 0);
    registered.reshape(300, 200);
    EXPECT_EQ(camera.screenheight, 200);
    registered.mouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 1, 2);
    EXPECT_EQ(interfacestate.button, 0);
    registered.motion(3, 4);
    registered.passivemotion(5, 6);
    EXPECT_EQ(interfacestate.mousex, 5);
    ForgetCalls();
    registered.display();
    EXPECT_EQ(CountCalls("glutSwapBuffers"), 1);
    registered.special(GLUT_KEY_F2, 0, 0);
    EXPECT_EQ(options.showinfo, 0);
    growthstate.stickiness = 0;
    registered.idle();
    EXPECT_EQ(growthstate.stepcount, 101);
    registered.visibility(GLUT_NOT_VISIBLE);
    EXPECT_EQ(registered.idle, nullptr);
}
