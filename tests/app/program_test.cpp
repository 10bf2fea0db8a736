#include "app/program.h"

#include <clocale>
#include <csignal>
#include <regex>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "app/command_line.h"
#include "golden.h"
#include "temporary_file.h"
#include "viewer/action_log.h"
#include "viewer/display.h"

static std::vector<char *> Words(std::vector<std::string> &arguments)
{
    std::vector<char *> words;
    for (std::string &word : arguments)
        words.push_back(word.data());
    return words;
}

TEST(Program, StartsTheToolkits)
{
    EXPECT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr); // to be put back
    testing::internal::CaptureStderr();
    std::ostringstream text;
    const std::regex panels("fl_add|fl_set_[oi]|glutAdd"); // and menus: they have texts of their own
    for (std::vector<std::string> arguments : {std::vector<std::string>{"path/to/sarkelo", "-s", "-f"},
                                               {"sarkelo", "-d"},
                                               {"sarkelo", "-f", "-s", "-ss"},
                                               {"sarkelo", "-ss", "-s", "x", "", "-sss", "-D", "--help"}}) {
        std::vector<char *> words = Words(arguments);
        camera.stereo = kStereoNone;
        HandleReshape(800, 600);
        ForgetCalls();
        RunProgram(static_cast<int>(words.size()), words.data());
        text << "== debug " << options.debug << ", stereo " << camera.stereo << ", width "
             << camera.screenwidth << '\n';
        for (const Call &call : calls)
            if (!std::regex_search(call.name, panels))
                text << Text(call) << '\n';
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Initialising forms library\nInitialised forms library\n");
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(signal(SIGXFSZ, SIG_IGN), SIG_IGN); // files that grow too large do not end the program
    PrepareWindow();
    ActionLog log;
    log.Do("reshape", [] { registered.reshape(300, 200); });
    log.Do("mouse", [] { registered.mouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 1, 2); });
    log.Do("motion", [] { registered.motion(3, 4); });
    log.Do("passive motion", [] { registered.passivemotion(5, 6); });
    ExpectGolden("start.txt", text.str() + log.Text());
    registered.visibility(GLUT_NOT_VISIBLE); // nothing grows while the window is hidden
    EXPECT_EQ(registered.idle, nullptr);
    registered.visibility(GLUT_VISIBLE);
    EXPECT_NE(registered.idle, nullptr);
    HandleReshape(800, 600);
}

TEST(Program, PrintsItsUsage)
{
    std::vector<std::string> arguments = {"path/to/sarkelo", "-d", "-h", "-f"};
    const std::string usage = ReadWhole(SARKELO_TESTS "/golden/usage.txt");
    EXPECT_EXIT(ReadSwitches(4, Words(arguments).data()), testing::ExitedWithCode(255), testing::Eq(usage));
}
