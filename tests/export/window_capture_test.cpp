#include "export/window_capture.h"

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/camera_home.h"
#include "growth/scenario.h"
#include "image/bitmap.h"
#include "temporary_file.h"
#include "viewer/display.h"
#include "viewer/input.h"

TEST(Capture, NumbersSkipExistingFilesAndNamesReplaceThem)
{
    const TemporaryDirectory here;
    StartAfresh();
    WindowDump("", 1, 1, 0, kImageTGA); // the program's number goes on from test to test
    const int first = std::stoi(std::filesystem::directory_iterator(".")->path().stem().string());
    const auto numbered = [=](const char *prefix, int ahead) {
        const std::string number = "000" + std::to_string(first + ahead);
        return prefix + number.substr(number.size() - 4) + ".tga";
    };
    for (const std::string &name : {numbered("", 1), numbered("", 2), std::string("view.tga")})
        std::ofstream(name) << std::string(1000, 'x');
    for (const std::string &name : {std::string(), std::string(), std::string("view"), std::string(40, 'n')})
        EXPECT_EQ(WindowDump(name.c_str(), 4, 2, 0, kImageTGA), 1);
    EXPECT_EQ(std::filesystem::file_size(numbered("", 2)), 1000U);
    for (const std::string &name :
         {numbered("", 3), numbered("", 4), std::string("view.tga"), std::string(31, 'n')})
        EXPECT_EQ(std::filesystem::file_size(name), 18U + 24) << name;

    // Names count as well, so number 7 is next. In stereo each eye has its file; w captures one frame.
    std::ofstream(numbered("R_", 7)) << "old";
    camera.stereo = kStereoActive;
    HandleReshape(8, 6);
    HandleKeyboard('w', 0, 0);
    ForgetCalls();
    HandleDisplay();
    HandleDisplay();
    camera.stereo = kStereoNone;
    EXPECT_EQ(CallsOf("glReadBuffer").at(0).args[0], 1026);
    EXPECT_EQ(CallsOf("glReadBuffer").at(1).args[0], 1027);
    EXPECT_TRUE(std::filesystem::exists(numbered("L_", 7)));
    EXPECT_TRUE(std::filesystem::exists(numbered("R_", 8))); // the numbering moves on with it
    EXPECT_EQ(CountFiles(), 10);
}

TEST(Capture, FaultsAreReportedOnceUntilCapturesEnd)
{
    testing::internal::CaptureStderr();
    for (int k = 0; k < 2; k++)
        EXPECT_EQ(WindowDump("no/such/directory", 4, 2, 0, kImageTGA), 0);
    EndCaptures();
    for (int k = 0; k < 2; k++)
        EXPECT_EQ(WindowDump("", 2000000000, 2000000000, 0, kImageTGA), 0);
    EndCaptures();
    const std::string opened = "Cannot write \"no/such/directory.tga\": No such file or directory\n"
                               "WindowDump - Failed to open file for window dump\n";
    const std::string allocated = "WindowDump - Failed to allocate memory for image\n";
    const std::string text = testing::internal::GetCapturedStderr(); // a sanitizer prints lines as well
    EXPECT_TRUE(text.starts_with(opened) && text.find(allocated) < text.size()) << text;
    EXPECT_EQ(text.find(allocated), text.rfind(allocated)) << text;
}
