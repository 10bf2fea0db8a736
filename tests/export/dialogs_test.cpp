// The dialogs that ask for a file: what they return and show.

#include <fstream>

#include <gtest/gtest.h>

#include "export/model.h"
#include "export/save_dialog.h"
#include "golden.h"
#include "growth/seed_file_dialog.h"
#include "surface/stl_dialog.h"
#include "temporary_file.h"
#include "viewer/action_log.h"
#include "viewer/display.h"

static void Slice()
{
    sliceformvisible = 1;
    Work(sliceform->slice);
}

TEST(Dialogs, MatchExpectedMessages)
{
    PrepareWindow();
    const TemporaryDirectory here;
    std::ofstream("two") << "1 2 3\n4 5 6\n";
    std::ofstream("nothing");
    std::ofstream("many") << std::string(84, '\xff');
    std::ofstream("face") << "solid\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n";
    std::ofstream("bad") << "solid\nouter loop\nvertex 0 0 0\nvertex 1 zero 0\n";
    ActionLog log;
    int result = 0;
    for (int (*ask)() : {ReadRoots, ReadSTL})
        for (const std::string file : {"", "/no/such/file", "two", "face", "", "many", "nothing", "bad"}) {
            viewwindow = ask == ReadSTL && (file == "two" || file == "nothing" || file == "bad");
            log.Do(
                '"' + file + '"', [&] { result = ask(); }, file);
            EXPECT_EQ(result, file == "" || (ask == ReadRoots ? file == "two" : file == "face")) << file;
        }
    options.slicecount = 2;
    options.sliceparam3 = 0; // no direction
    log.Do("slices", Slice);
    std::filesystem::remove_all(here.path);
    for (const bool view : {false, true}) {
        viewwindow = view;
        for (const char *file : {"x", "/dev/full"}) {
            log.Do(
                "model", [] { SaveModel(kFormatPOV, kModeChains); }, file);
            log.Do(
                "information", [&] { result = SaveInformation(); }, file);
            EXPECT_EQ(result, 0);
        }
        options.recordframes = 1;
        log.Do("recording", HandleDisplay);
        log.Do("recording", HandleDisplay);
    }
    options.recordframes = 0;
    EXPECT_EXIT((viewwindow = false, Slice()), testing::ExitedWithCode(255), "");
    log.Do("slices", Slice);
    options.slicecount = 10001;
    for (fakebutton = 0; fakebutton < 2; fakebutton++)
        log.Do("many slices", Slice);
    log.Do("out of memory", [] { ReportOutOfMemory(kInputCallback), ReportOutOfMemory(kRepeatedCallback); });
    ExpectGolden("read_dialogs.txt", log.Text());
}
