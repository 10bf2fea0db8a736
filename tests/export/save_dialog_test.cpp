#include "export/save_dialog.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "export/model.h"
#include "fakes/recorder.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

static std::uintmax_t Size(const char *path)
{
    return std::filesystem::file_size(path);
}

TEST(SaveDialog, EachEntryAsksForItsFormat)
{
    StartAfresh();
    Grow(IterateSystem, 20, 1000000);
    const char *titles[] = {"PovRay file",    "PovRay file",     "GEOM file", "VRML file", "VRML file",
                            "POINT DXF file", "POINT GEOM file", "VRML file", "VRML file", "VRML file"};
    std::vector<std::uintmax_t> sizes;
    for (int id = 1; id <= 10; id++) {
        const TemporaryFile file("");
        fakefile = file.path();
        ForgetCalls();
        HandleSaveMenu(id);
        ASSERT_EQ(CallsOf("fl_show_fselector").at(0).text, std::string(titles[id - 1]) + "|||") << id;
        sizes.push_back(Size(file.path()));
        EXPECT_GT(sizes.back(), 500U) << id;
    }
    EXPECT_NE(sizes[0], sizes[1]);
    EXPECT_EQ(sizes[3], sizes[4]); // written alike
    EXPECT_LT(sizes[3], sizes[7]);
    EXPECT_LT(sizes[7], sizes[8]);
    EXPECT_LT(sizes[8], sizes[9]);
    ForgetCalls();
    for (const int id : {0, -1, 11, 100})
        HandleSaveMenu(id);
    SaveModel(6, 1);
    SaveModel(-1, 1);
    EXPECT_TRUE(calls.empty());
}

TEST(SaveDialog, RefusedNamesWriteNothing)
{
    StartAfresh();
    const TemporaryFile good("");
    const std::string longname = "/tmp/" + std::string(251, 'x'); // 256 characters: one too many
    for (const std::string &name :
         {std::string(), longname, std::string("/no/such/directory/file"), std::string("/tmp")}) {
        ForgetCalls();
        fakefile = name;
        EXPECT_EQ(SaveInformation(), 0) << name;
        SaveModel(kFormatGEOM, 1);
        EXPECT_EQ(CountCalls("fl_show_fselector"), 2);
        EXPECT_EQ(CountCalls("fl_show_message"), 0);
    }
    EXPECT_FALSE(std::filesystem::exists(longname.substr(0, 255)));
    fakefile = good.path();
    EXPECT_EQ(SaveInformation(), 1);
    EXPECT_EQ(CallsOf("fl_show_fselector").at(2).text, "Text file|||");
    EXPECT_GT(Size(good.path()), 100U);
    fakefile.clear();
}
