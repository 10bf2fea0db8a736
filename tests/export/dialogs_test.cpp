// The dialogs that ask for a file to read: what they answer and show, file by file.

#include <cstdlib>

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "growth/seed_file_dialog.h"
#include "panels.h"
#include "surface/stl_dialog.h"
#include "surface/surface.h"
#include "temporary_file.h"

TEST(ReadDialogs, AnswersAndMessages)
{
    StartAfresh();
    CreatePanelsOnce();
    const TemporaryFile two("1 2 3\n4 5 6\n"), nothing("");
    const TemporaryFile face("solid\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n");
    const TemporaryFile many(std::string(84, '\xff'));
    const std::string none = "/no/such/file";
    const struct {
        int (*ask)();
        std::string title, file;
        int result;
        std::string message;
        int count; // of roots or faces
    } rows[] = {
        {ReadRoots, "Seed file|||", "", 1, "", 1},
        {ReadRoots, "Seed file|||", none, 0, "File Error|Failed to read seed file|" + none, 1},
        {ReadRoots, "Seed file|||", two.path(), 1, "", 2},
        {ReadRoots, "Seed file|||", "", 1, "", 2},
        {ReadRoots, "Seed file|||", nothing.path(), 0,
         "File Error|Failed to read any root positions|Resetting", 1},
        {ReadSTL, "STL file|||", "", 1, "", 0},
        {ReadSTL, "STL file|||", face.path(), 1, "", 1},
        {ReadSTL, "STL file|||", "", 1, "", 1},
        {ReadSTL, "STL file|||", none, 0, "File Error|Failed to read STL file|" + none, 1},
        {ReadSTL, "STL file|||", many.path(), 0,
         "File Error|Read an unexpected number of faces in STL header|", 0},
    };
    for (const auto &row : rows) {
        ForgetCalls();
        fakefile = row.file;
        EXPECT_EQ(row.ask(), row.result) << row.file;
        EXPECT_EQ(CallsOf("fl_show_fselector").at(0).text, row.title);
        const auto messages = CallsOf("fl_show_message");
        EXPECT_EQ(messages.empty() ? "" : messages[0].text, row.message);
        EXPECT_EQ(row.ask == ReadSTL ? nstltri : ncells, row.count) << row.file;
        EXPECT_TRUE(growthstate.nroots != 2 || std::string(fl_get_input(settingform->nroots)) == "2");
    }
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
}
