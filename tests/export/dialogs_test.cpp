// The dialogs that ask for a file to read: what they answer and show, file by file.

#include <cstdlib>
#include <functional>

#include <gtest/gtest.h>

#include "export/model.h"
#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "golden.h"
#include "growth/scenario.h"
#include "growth/seed_file_dialog.h"
#include "panels.h"
#include "surface/stl_dialog.h"
#include "surface/surface.h"
#include "temporary_file.h"
#include "viewer/display.h"
#include "viewer/input.h"

TEST(ReadDialogs, AnswersAndMessages)
{
    StartAfresh();
    CreatePanelsOnce();
    UpdateForms();
    const TemporaryFile two("1 2 3\n4 5 6\n"), nothing("");
    const TemporaryFile face("solid\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n");
    const TemporaryFile many(std::string(84, '\xff'));
    const std::string none = "/no/such/file";
    std::ostringstream text;
    for (int (*ask)() : {ReadRoots, ReadSTL}) {
        for (const std::string &file :
             {std::string(), none, std::string(two.path()), std::string(face.path()), std::string(),
              std::string(many.path()), std::string(nothing.path())}) {
            if (ask == ReadSTL && (file == two.path() || file == nothing.path()))
                continue; // these end the program
            ForgetCalls();
            fakefile = file;
            text << ask() << ' ' << ncells << " roots, " << nstltri << " faces, "
                 << fl_get_input(settingform->nroots);
            for (const char *name : {"fl_show_fselector", "fl_show_message"})
                for (const Call &call : CallsOf(name))
                    text << ' ' << Text(call);
            text << '\n';
        }
    }
    ExpectGolden("read_dialogs.txt", text.str());
}

// What ReadSTL shows where it ends the program, on standard error before it does.
static void ReadAndReport()
{
    atexit([] {
        for (const Call &call : CallsOf("fl_show_message"))
            fprintf(stderr, "%s\n", call.text.c_str());
    });
    ReadSTL();
}

TEST(ReadDialogs, TwoFaultsEndTheProgram)
{
    const TemporaryFile bad("solid\nouter loop\nvertex 0 0 0\nvertex 1 zero 0\n");
    const TemporaryFile brief("not 80 bytes");
    fakefile = bad.path();
    EXPECT_EXIT(ReadAndReport(), testing::ExitedWithCode(255),
                "File Error\\|Error reading vertices in ascii STL file\\|");
    fakefile = brief.path();
    EXPECT_EXIT(ReadAndReport(), testing::ExitedWithCode(255),
                "File Error\\|Failed to read an expected STL header\\|");
    viewwindow = true;
    for (const TemporaryFile *file : {&bad, &brief}) {
        fakefile = file->path();
        EXPECT_EQ(ReadSTL(), 0) << "in the view window they do not";
    }
}

TEST(SaveDialogs, TheViewWindowShowsWhatCannotBeWritten)
{
    StartAfresh();
    CreatePanelsOnce();
    const TemporaryDirectory here;
    std::filesystem::remove(here.path);
    viewwindow = true;
    const struct {
        const char *file;
        std::function<void()> save;
        const char *message;
    } cases[] = {
        {"x.pov", [] { SaveModel(kFormatPOV, kModeChains); }, "Cannot write x.pov|No such file or directory"},
        {"/dev/full", [] { SaveModel(kFormatPOV, kModeChains); }, "/dev/full|No space left on device"},
        {"x.txt", [] { SaveInformation(); }, "Cannot write x.txt|No such file or directory"},
        {"/dev/full", [] { SaveInformation(); }, "/dev/full|No space left on device"},
        {"", [] { sliceformvisible = 1, Work(sliceform->slice); }, "A slice could not be written"},
        {"", [] { HandleKeyboard('r', 0, 0), HandleDisplay(); }, "picture could not be saved|No such file"},
    };
    for (const auto &[file, save, message] : cases) {
        fakefile = file;
        ForgetCalls();
        save();
        ASSERT_EQ(CountCalls("fl_show_message"), 1) << message;
        EXPECT_NE(CallsOf("fl_show_message")[0].text.find(message), std::string::npos)
            << CallsOf("fl_show_message")[0].text;
    }
    EXPECT_FALSE(options.recordframes);
}
