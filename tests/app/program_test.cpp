#include "app/program.h"

#include <clocale>
#include <csignal>
#include <fstream>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "app/command_line.h"
#include "golden.h"
#include "viewer/action_log.h"
#include "viewer/display.h"

static std::vector<char *> Words(const std::vector<std::string> &arguments)
{
    static std::vector<std::string> kept;
    kept = arguments;
    kept.insert(kept.begin(), "path/to/sarkelo");
    std::vector<char *> words;
    for (std::string &word : kept)
        words.push_back(word.data());
    camera.stereo = kStereoNone;
    camera.screenwidth = 800;
    camera.screenheight = 600;
    return words;
}

TEST(Program, StartsTheToolkitsAsRightBefore)
{
    EXPECT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr); // to be put back
    testing::internal::CaptureStderr();
    std::ostringstream text;
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"-x"},
                                                      {"-s", "-f"},
                                                      {"-ss"},
                                                      {"-d"},
                                                      {"-f", "-f", "-s", "-ss"},
                                                      {"-ss", "-s"},
                                                      {"x", "", "-sss", "-D", "--help", "-dd"},
                                                      std::vector<std::string>(50, "-ss")}) {
        std::vector<char *> words = Words(arguments);
        ForgetCalls();
        RunProgram(static_cast<int>(words.size()), words.data());
        text << "== " << arguments[0] << ' ' << arguments.size() << ": debug " << options.debug << ", stereo "
             << camera.stereo << ", width " << camera.screenwidth << '\n';
        for (const Call &call : calls)
            if (arguments.size() < 3 && !call.name.starts_with("fl_add") &&
                !call.name.starts_with("fl_set_o") &&
                !call.name.starts_with("glutAdd")) // panels and menus have texts of their own
                text << Text(call) << '\n';
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Initialising forms library\nInitialised forms library\n");
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(signal(SIGXFSZ, SIG_IGN), SIG_IGN); // files that grow too large do not end the program
    PrepareWindow();                              // each callback is the one that its name says
    growthstate.stickiness = 0;
    ActionLog log;
    log.Do("reshape", [] { registered.reshape(300, 200); });
    log.Do("display", registered.display);
    log.Do("special key", [] { registered.special(GLUT_KEY_F2, 0, 0); });
    log.Do("mouse", [] { registered.mouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 1, 2); });
    log.Do("motion", [] { registered.motion(3, 4); });
    log.Do("passive motion", [] { registered.passivemotion(5, 6); });
    log.Do("key", [] { registered.keyboard('h', 0, 0); });
    log.Do("idle", registered.idle);
    ExpectGolden("start.txt", text.str() + log.Text());
    registered.visibility(GLUT_NOT_VISIBLE); // nothing grows while the window is hidden
    EXPECT_EQ(registered.idle, nullptr);
    registered.visibility(GLUT_VISIBLE);
    EXPECT_NE(registered.idle, nullptr);
    HandleReshape(800, 600);
}

TEST(Program, PrintsItsUsage)
{
    std::vector<char *> words = Words({"-d", "-h", "-f"});
    std::ifstream file(SARKELO_TESTS "/golden/usage.txt");
    const std::string usage(std::istreambuf_iterator<char>(file), {});
    EXPECT_EXIT(ReadSwitches(4, words.data()), testing::ExitedWithCode(255), testing::Eq(usage));
}
