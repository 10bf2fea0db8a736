#include "surface/stl_dialog.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "surface/surface.h"
#include "temporary_file.h"

static const char *kFace = "solid\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n";

// What ReadSTL shows where it ends the program, on standard error before it does.
static void ReadAndReport()
{
    atexit([] {
        for (const Call &call : CallsOf("fl_show_message"))
            fprintf(stderr, "%s\n", call.text.c_str());
    });
    ReadSTL();
}

TEST(STLDialog, AnswersAndMessages)
{
    StartAfresh();
    const TemporaryFile good(kFace);
    const TemporaryFile many(std::string(84, '\xff'));
    const struct {
        std::string file;
        int result;
        std::string message;
        int faces;
    } rows[] = {
        {"", 1, "", 0},
        {good.path(), 1, "", 1},
        {"", 1, "", 1},
        {"/no/such/file", 0, "File Error|Failed to read STL file|/no/such/file", 1},
        {many.path(), 0, "File Error|Read an unexpected number of faces in STL header|", 0},
    };
    for (const auto &row : rows) {
        ForgetCalls();
        fakefile = row.file;
        EXPECT_EQ(ReadSTL(), row.result) << row.file;
        EXPECT_EQ(CallsOf("fl_show_fselector").at(0).text, "STL file|||");
        ASSERT_EQ(CountCalls("fl_show_message"), row.message.empty() ? 0 : 1);
        if (!row.message.empty()) {
            EXPECT_EQ(CallsOf("fl_show_message").at(0).text, row.message);
        }
        EXPECT_EQ(nstltri, row.faces);
    }
}

TEST(STLDialog, TwoFaultsEndTheProgram)
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
