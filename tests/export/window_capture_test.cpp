#include "export/window_capture.h"

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/camera_home.h"
#include "growth/parameters.h"
#include "growth/scenario.h"
#include "image/bitmap.h"
#include "temporary_file.h"
#include "viewer/display.h"
#include "viewer/input.h"

namespace fs = std::filesystem;

// A directory of its own for the captures of a test. The program's number goes on from test to test.
class Capture : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        SetProgramDefaults();
        CameraHome();
        EXPECT_EQ(WindowDump("", 1, 1, 0, kImageTGA), 1);
        const fs::path last = fs::directory_iterator(".")->path();
        first = std::stoi(last.stem().string()) + 1;
        fs::remove(last);
    }
    void TearDown() override { camera.stereo = kStereoNone; }
    static std::string Numbered(const char *prefix, int number)
    {
        char name[32];
        snprintf(name, sizeof name, "%s%04d.tga", prefix, number);
        return name;
    }
    int first = 0; // the number that the program gives next
    TemporaryDirectory directory;
};

TEST_F(Capture, NumbersSkipExistingFilesAndNamesReplaceThem)
{
    for (const std::string &name : {Numbered("", first), Numbered("", first + 1), std::string("view.tga")})
        std::ofstream(name) << std::string(1000, 'x');
    for (const char *name : {"", "", "view", "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"})
        EXPECT_EQ(WindowDump(name, 4, 2, 0, kImageTGA), 1);
    EXPECT_EQ(fs::file_size(Numbered("", first + 1)), 1000U);
    for (const std::string &name :
         {Numbered("", first + 2), Numbered("", first + 3), std::string("view.tga"), std::string(31, 'n')})
        EXPECT_EQ(fs::file_size(name), 18U + 24) << name;
    EXPECT_EQ(CountFiles(), 6);
}

TEST_F(Capture, EachEyeHasItsFile)
{
    camera.stereo = kStereoActive;
    HandleReshape(8, 6);
    std::ofstream(Numbered("R_", first)) << "old";
    ForgetCalls();
    HandleKeyboard('w', 0, 0);
    HandleDisplay();
    HandleDisplay(); // one capture only
    EXPECT_EQ(Transcript({"glReadBuffer", "glutSwapBuffers"}),
              "glReadBuffer(1026)\nglReadBuffer(1027)\nglutSwapBuffers()\nglutSwapBuffers()\n");
    EXPECT_TRUE(fs::exists(Numbered("L_", first)));
    EXPECT_TRUE(fs::exists(Numbered("R_", first + 1))); // the numbering moves on with it
    EXPECT_EQ(CountFiles(), 3);
}

TEST_F(Capture, AFileThatCannotBeOpenedGivesItsMessage)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(WindowDump("no/such/directory", 4, 2, 0, kImageTGA), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Cannot write \"no/such/directory.tga\": No such file or directory\n"
              "WindowDump - Failed to open file for window dump\n");
    EndCaptures();
    testing::internal::CaptureStderr();
    EXPECT_EQ(WindowDump("", 2000000000, 2000000000, 0, kImageTGA), 0);
    // A sanitizer reports the allocation first.
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with(
        "WindowDump - Failed to allocate memory for image\n"));
    EXPECT_EQ(CountFiles(), 0);
}
