// What a saved file keeps of the one that it replaces, and where nothing is replaced

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "temporary_file.h"

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

// Whether this user can save the report under a name
static bool Saves(const char *name, uid_t user = geteuid())
{
    const uid_t self = geteuid();
    EXPECT_EQ(setresuid(user, user, self), 0);
    fakefile = name;
    const bool saved = SaveInformation() && ReadWhole(name).starts_with("Version");
    EXPECT_EQ(setresuid(self, self, self), 0);
    return saved;
}

static struct stat About(const char *name)
{
    struct stat about = {};
    stat(name, &about);
    return about;
}

TEST(SavedFiles, LinksModeAndOwnerAreKept)
{
    const TemporaryDirectory directory;
    StartAfresh();
    for (const char *name : {"plain", "theirs", "readonly"})
        std::ofstream(name) << "old";
    chmod("plain", 0640);
    const struct stat old = About("plain");
    fs::create_symlink("plain", "link");
    EXPECT_TRUE(Saves("link") && fs::is_symlink("link"));
    EXPECT_TRUE(About("plain").st_ino != old.st_ino && About("plain").st_mode == old.st_mode);
    fs::create_hard_link("plain", "second");
    EXPECT_TRUE(Saves("second") && About("second").st_nlink == 2); // in place
    fs::create_symlink("later", "dangling");
    EXPECT_TRUE(Saves("dangling") && fs::exists("later"));
    const mode_t mask = umask(027);
    EXPECT_TRUE(Saves("fresh"));
    umask(mask);
    EXPECT_EQ(About("fresh").st_mode & 0777, 0640U);
    EXPECT_FALSE(Saves("no/such/place") || Saves(".") || Saves("/dev/full"));
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can play another user";
    chmod("theirs", 0666), chmod("readonly", 0444);
    EXPECT_EQ(chown("theirs", kNobody, getegid()) + chown("readonly", kNobody, getegid()), 0);
    EXPECT_TRUE(Saves("theirs") && About("theirs").st_uid == kNobody);
    chmod(".", 0777);
    EXPECT_TRUE(Saves("mine", kNobody));
    EXPECT_FALSE(Saves("readonly", kNobody) || ReadWhole("readonly") != "old");
    chmod(".", 0555); // a file that can be written in a folder that cannot
    EXPECT_TRUE(Saves("theirs", kNobody));
    chmod(".", 0755);
}
