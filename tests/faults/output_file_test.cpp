// What a saved file has of the one that it replaces, and where nothing is replaced: links, mode and owner stay.

#include <functional>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "temporary_file.h"
#include "toolkit/callback.h"

namespace fs = std::filesystem;

static void Write(const fs::path &path)
{
    std::ofstream(path) << "old";
}

// Saves the report under a name. Returns whether it is there, and nothing else.
static bool Saves(const std::string &name)
{
    fakefile = name;
    ForgetCalls();
    const int whole = SaveInformation();
    return whole && ReadWhole(name).ends_with("\n") && ReadWhole(name).find("old") == std::string::npos;
}

static bool SavesAsNobody(const std::string &name)
{
    constexpr uid_t nobody = 65534;
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        _exit(setgid(nobody) == 0 && setuid(nobody) == 0 && Saves(name) ? 0 : 1);
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
    Write("plain");
    chmod("plain", 0640);
    const struct stat old = About("plain");
    fs::create_symlink("plain", "link");
    EXPECT_TRUE(Saves("link"));
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_NE(About("plain").st_ino, old.st_ino);
    EXPECT_EQ(About("plain").st_mode, old.st_mode);

    Write("first");
    fs::create_hard_link("first", "second");
    EXPECT_TRUE(Saves("second"));
    EXPECT_EQ(ReadWhole("first"), ReadWhole("second")); // in place
    fs::create_symlink("later", "dangling");
    EXPECT_TRUE(Saves("dangling"));
    EXPECT_TRUE(fs::exists("later"));

    const mode_t mask = umask(027);
    EXPECT_TRUE(Saves("fresh"));
    umask(mask);
    EXPECT_EQ(About("fresh").st_mode & 0777, 0640U);
    testing::internal::CaptureStderr();
    for (const char *name : {"no/such/place", ".", "/dev/full"})
        EXPECT_FALSE(Saves(name));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Cannot write \"no/such/place\": No such file or directory\n"
              "Cannot write \".\": Is a directory\nCannot write \"/dev/full\": No space left on device\n");
    EXPECT_EQ(CallsOf("fl_show_message").at(0).text,
              "File Error|Failed to write simulation information|/dev/full");
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can play another user";
    chmod(".", 0777);
    for (const char *name : {"theirs", "readonly"}) {
        Write(name);
        ASSERT_EQ(chown(name, 65534, 65534), 0);
    }
    EXPECT_TRUE(Saves("theirs"));
    EXPECT_EQ(About("theirs").st_uid, 65534U);
    chmod("readonly", 0444);
    EXPECT_FALSE(SavesAsNobody("readonly"));
    EXPECT_EQ(ReadWhole("readonly"), "old");
    EXPECT_TRUE(SavesAsNobody("mine"));
    chmod(".", 0555); // a file that can be written in a folder that cannot
    EXPECT_TRUE(SavesAsNobody("theirs"));
    chmod(".", 0755);
}
