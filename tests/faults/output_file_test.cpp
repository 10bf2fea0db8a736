// What a saved file has of the one that it replaces, and where nothing is replaced

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "temporary_file.h"

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

static void Write(const char *path, mode_t mode, uid_t owner)
{
    std::ofstream(path) << "old";
    chmod(path, mode);
    EXPECT_EQ(chown(path, owner, owner), 0);
}

// Saves the report under a name, and returns whether it is there.
static bool Saves(const char *name)
{
    fakefile = name;
    return SaveInformation() && ReadWhole(name).starts_with("Version");
}

static bool SavesAsNobody(const char *name)
{
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        _exit(setgid(kNobody) == 0 && setuid(kNobody) == 0 && Saves(name) ? 0 : 1);
    int status = 1;
    waitpid(child, &status, 0);
    return status == 0;
}

static struct stat About(const char *name)
{
    struct stat about = {};
    stat(name, &about);
    return about;
}

TEST(SavedFiles, LinksModeAndOwnerStay)
{
    const TemporaryDirectory directory;
    StartAfresh();
    Write("plain", 0640, geteuid());
    const struct stat old = About("plain");
    fs::create_symlink("plain", "link");
    EXPECT_TRUE(Saves("link") && fs::is_symlink("link"));
    EXPECT_NE(About("plain").st_ino, old.st_ino);
    EXPECT_EQ(About("plain").st_mode, old.st_mode);
    fs::create_hard_link("plain", "second");
    EXPECT_TRUE(Saves("second") && About("second").st_nlink == 2); // in place
    fs::create_symlink("later", "dangling");
    EXPECT_TRUE(Saves("dangling") && fs::exists("later"));
    const mode_t mask = umask(027);
    EXPECT_TRUE(Saves("fresh"));
    umask(mask);
    EXPECT_EQ(About("fresh").st_mode & 0777, 0640U);

    ForgetCalls();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(Saves("no/such/place") || Saves(".") || Saves("/dev/full"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Cannot write \"no/such/place\": No such file or directory\n"
              "Cannot write \".\": Is a directory\nCannot write \"/dev/full\": No space left on device\n");
    EXPECT_EQ(CallsOf("fl_show_message").at(0).text,
              "File Error|Failed to write simulation information|/dev/full");
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can play another user";
    Write("theirs", 0666, kNobody);
    Write("readonly", 0444, kNobody);
    EXPECT_TRUE(Saves("theirs"));
    EXPECT_EQ(About("theirs").st_uid, kNobody);
    chmod(".", 0777);
    EXPECT_TRUE(SavesAsNobody("mine"));
    EXPECT_FALSE(SavesAsNobody("readonly"));
    EXPECT_EQ(ReadWhole("readonly"), "old");
    chmod(".", 0555); // a file that can be written in a folder that cannot
    EXPECT_TRUE(SavesAsNobody("theirs"));
    chmod(".", 0755);
}
