#include "app/command_line.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "growth/camera_home.h"
#include "growth/parameters.h"
#include "growth/state.h"

TEST(CommandLine, SwitchesTakeEffectInOrder)
{
    const struct {
        std::vector<std::string> arguments;
        int debug, fullscreen, stereo, width;
    } rows[] = {
        {{"-d"}, 1, 0, kStereoNone, 800},
        {{"-f"}, 0, 1, kStereoNone, 800},
        {{"-f", "-f"}, 0, 0, kStereoNone, 800},
        {{"-s", "-ss"}, 0, 0, kStereoDualScreen, 1600},
        {{"-ss", "-s"}, 0, 0, kStereoActive, 1600},
        {{"x", "", "-sss", "-D", "--help", "-dd"}, 0, 0, kStereoNone, 800},
        {std::vector<std::string>(50, "-ss"), 0, 0, kStereoDualScreen,
         800 << 21}, // stops before it overflows
    };
    for (const auto &row : rows) {
        SetProgramDefaults();
        CameraHome();
        camera.stereo = kStereoNone;
        camera.screenwidth = 800;
        std::vector<char *> argv = {const_cast<char *>("sarkelo")};
        for (const std::string &argument : row.arguments)
            argv.push_back(const_cast<char *>(argument.c_str()));
        ReadSwitches(static_cast<int>(argv.size()), argv.data());
        EXPECT_EQ(options.debug, row.debug);
        EXPECT_EQ(options.fullscreen, row.fullscreen);
        EXPECT_EQ(camera.stereo, row.stereo);
        EXPECT_EQ(camera.screenwidth, row.width);
    }
}
