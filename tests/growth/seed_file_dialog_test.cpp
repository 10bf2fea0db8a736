#include "growth/seed_file_dialog.h"

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "panels.h"
#include "temporary_file.h"

TEST(SeedFileDialog, AnswersAndMessages)
{
    StartAfresh();
    CreatePanelsOnce();
    const TemporaryFile good("1 2 3\n4 5 6\n");
    const TemporaryFile empty("");
    const struct {
        std::string file;
        int result;
        std::string message;
        int nroots;
    } rows[] = {
        {"", 1, "", 1},
        {"/no/such/file", 0, "File Error|Failed to read seed file|/no/such/file", 1},
        {good.path(), 1, "", 2},
        {"", 1, "", 2},
        {empty.path(), 0, "File Error|Failed to read any root positions|Resetting", 1},
    };
    for (const auto &row : rows) {
        ForgetCalls();
        fakefile = row.file;
        EXPECT_EQ(ReadRoots(), row.result) << row.file;
        EXPECT_EQ(CallsOf("fl_show_fselector").at(0).text, "Seed file|||");
        ASSERT_EQ(CountCalls("fl_show_message"), row.message.empty() ? 0 : 1);
        if (!row.message.empty()) {
            EXPECT_EQ(CallsOf("fl_show_message").at(0).text, row.message);
        }
        EXPECT_EQ(growthstate.nroots, row.nroots);
        if (row.nroots == 2) {
            EXPECT_STREQ(fl_get_input(settingform->nroots), "2");
        }
        EXPECT_EQ(ncells, row.nroots);
    }
}
