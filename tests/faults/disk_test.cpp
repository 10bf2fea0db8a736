// Files on a disk that is full after k bytes, for k over the whole file: what stood there before stays, or the
// new file is whole, and standard error names the file and the reason. The kernel plays the full disk: it
// does not let files grow beyond a limit.

#include <csignal>
#include <functional>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/output_file.h"
#include "export/save_dialog.h"
#include "export/slices.h"
#include "export/window_capture.h"
#include "fakes/recorder.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "image/bitmap.h"
#include "surface/samples.h"
#include "temporary_file.h"
#include "viewer/display.h"
#include "viewer/menus.h"

namespace fs = std::filesystem;

static const std::string kBefore = "what was there before";
static const std::string kFull = ": File too large\n";

static void Write(const fs::path &path, const std::string &text = kBefore)
{
    std::ofstream(path, std::ios::binary) << text;
}

// What `work` writes to standard error while files can grow to that many bytes.
static std::string WithRoomFor(rlim_t bytes, const std::function<void()> &work)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    const int errors = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit limit = {bytes, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    work();
    setrlimit(RLIMIT_FSIZE, &old);
    dup2(errors, STDERR_FILENO);
    std::string text(1 << 16, ' ');
    const ssize_t count = read(ends[0], text.data(), text.size());
    for (const int file : {errors, ends[0], ends[1]})
        close(file);
    return text.substr(0, static_cast<size_t>(std::max(count, ssize_t{0})));
}

class FullDisk : public testing::Test
{
protected:
    void SetUp() override
    {
        signal(SIGXFSZ, SIG_IGN); // as the program does
        StartAfresh();
        BuildSample(11);
        Grow(IterateSystem, 150, 1000000);
        fakefile = "saved";
    }
    void TearDown() override
    {
        fakefile.clear();
        EndCaptures();
    }
    TemporaryDirectory directory;
};

TEST_F(FullDisk, WhatIsSavedIsWholeOrLeavesWhatWasThere)
{
    for (int id = 1; id <= 12; id++) {
        const std::function<void()> save = [=] {
            if (id <= 10)
                HandleSaveMenu(id);
            else
                HandleMainMenu(id == 11 ? kCommandSaveSurface : kCommandInformation);
        };
        save();
        const std::string whole = ReadWhole("saved");
        ASSERT_GT(whole.size(), 100U);
        const size_t step = std::max<size_t>(1, whole.size() / 150);
        for (size_t k = 0; k < whole.size() + step; k += step) {
            const size_t room = std::min(k, whole.size());
            for (const bool replaces : {true, false}) {
                if (replaces)
                    Write("saved");
                else
                    fs::remove("saved");
                ForgetCalls();
                const std::string told = WithRoomFor(room, save);
                const bool fits = room == whole.size();
                ASSERT_EQ(told, fits ? "" : "Cannot write \"saved\"" + kFull) << id << ' ' << k;
                ASSERT_EQ(ReadWhole("saved"), fits ? whole : replaces ? kBefore : "") << id << ' ' << k;
                ASSERT_EQ(CountFiles(), fits || replaces ? 1 : 0);
                ASSERT_EQ(CountCalls("fl_show_message"), !fits && id == 12 ? 1 : 0);
            }
        }
    }
}

TEST_F(FullDisk, EachSliceIsWholeOrAsItWas)
{
    WithRoomFor(RLIM_INFINITY, [] { DoSlice(".", 3, {0, 0, 1}, stderr); });
    std::string whole[3], names[3];
    for (int i = 0; i < 3; i++) {
        names[i] = "slice_00" + std::to_string(i) + ".txt";
        whole[i] = ReadWhole(names[i]);
    }
    for (size_t room = 0; room < whole[1].size(); room += 37) {
        for (const std::string &name : names)
            Write(name);
        const std::string told = WithRoomFor(room, [] {
            EXPECT_EQ(DoSlice(".", 3, {0, 0, 1}, stderr), kSliceUnwritten);
        });
        for (int i = 0; i < 3; i++) {
            const bool fits = whole[i].size() <= room;
            EXPECT_EQ(ReadWhole(names[i]), fits ? whole[i] : kBefore);
            EXPECT_EQ(told.find("Cannot write \"" + names[i] + "\"" + kFull) == std::string::npos, fits);
        }
        EXPECT_EQ(CountFiles(), 3);
    }
}

TEST_F(FullDisk, ARecordingTellsOnceAndLeavesNoEmptyPictures)
{
    camera.screenwidth = camera.screenheight = 40;
    options.recordframes = 1;
    const auto record = [] {
        for (int frame = 0; frame < 5; frame++)
            HandleDisplay();
    };
    std::string told = WithRoomFor(20, record);
    EXPECT_TRUE(told.starts_with("Cannot write \"") && told.ends_with(kFull)) << told;
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
    EXPECT_EQ(CountFiles(), 0);
    EXPECT_EQ(WithRoomFor(RLIM_INFINITY, record), "");
    EXPECT_EQ(CountFiles(), 5);
    options.recordframes = 0;
    HandleDisplay();
    options.dumpnext = 1;
    told.replace(told.find("000"), 4, "0005");
    EXPECT_EQ(WithRoomFor(20, HandleDisplay), told);
    EXPECT_EQ(WithRoomFor(20, [] { EXPECT_EQ(WindowDump("named", 9, 9, 0, kImageTGA), 0); }), "");
    EXPECT_EQ(CountFiles(), 5);
}

TEST_F(FullDisk, DevicesAreWrittenAsTheyAre)
{
    fakefile = "/dev/full";
    ForgetCalls();
    const std::string line = "Cannot write \"/dev/full\": No space left on device\n";
    EXPECT_EQ(WithRoomFor(RLIM_INFINITY, [] { EXPECT_EQ(SaveInformation(), 0); }), line);
    EXPECT_EQ(CallsOf("fl_show_message").at(0).text,
              "File Error|Failed to write simulation information|/dev/full");
    EXPECT_EQ(WithRoomFor(RLIM_INFINITY, [] { HandleSaveMenu(2); }), line);
    EXPECT_EQ(CountCalls("fl_show_message"), 1);
}

// What the new file has of the one that it replaces, and where nothing is replaced.
TEST_F(FullDisk, LinksModeAndOwnerStay)
{
    const auto save = [](const char *name) {
        return WithRoomFor(RLIM_INFINITY, [=] {
            OutputFile file(name);
            if (file.Stream() == nullptr)
                return;
            fputs("new", file.Stream());
            EXPECT_TRUE(file.Finish());
        });
    };
    const auto inode = [](const char *name) {
        struct stat s = {};
        stat(name, &s);
        return s;
    };
    Write("plain");
    chmod("plain", 0640);
    const struct stat old = inode("plain");
    fs::create_symlink("plain", "link");
    EXPECT_EQ(save("link"), "");
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_EQ(ReadWhole("plain"), "new");
    EXPECT_NE(inode("plain").st_ino, old.st_ino);
    EXPECT_EQ(inode("plain").st_mode, old.st_mode);

    Write("first");
    fs::create_hard_link("first", "second");
    EXPECT_EQ(save("second"), "");
    EXPECT_EQ(ReadWhole("first"), "new"); // in place

    fs::create_symlink("later", "dangling");
    EXPECT_EQ(save("dangling"), "");
    EXPECT_EQ(ReadWhole("later"), "new");

    const mode_t mask = umask(027);
    EXPECT_EQ(save("fresh"), "");
    umask(mask);
    EXPECT_EQ(inode("fresh").st_mode & 0777, 0640U);
    EXPECT_EQ(save("no/such/place"), "Cannot write \"no/such/place\": No such file or directory\n");
    EXPECT_EQ(save("."), "Cannot write \".\": Is a directory\n");

    if (geteuid() != 0)
        GTEST_SKIP() << "only root can play another user";
    constexpr uid_t nobody = 65534;
    const auto asnobody = [](const std::function<bool()> &work) {
        fflush(nullptr);
        const pid_t child = fork();
        if (child == 0)
            _exit(setgid(nobody) == 0 && setuid(nobody) == 0 && work() ? 0 : 1);
        int status = 1;
        waitpid(child, &status, 0);
        return status == 0;
    };
    for (const char *name : {"theirs", "readonly"}) {
        Write(name);
        ASSERT_EQ(chown(name, nobody, nobody), 0);
    }
    chmod("readonly", 0444);
    EXPECT_EQ(save("theirs"), "");
    EXPECT_EQ(inode("theirs").st_uid, nobody);
    chmod("theirs", 0666);
    chmod(".", 0777);
    EXPECT_TRUE(
        asnobody([&] { return save("readonly") == "Cannot write \"readonly\": Permission denied\n"; }));
    EXPECT_EQ(ReadWhole("readonly"), kBefore);
    EXPECT_TRUE(asnobody([&] { return save("mine").empty() && ReadWhole("mine") == "new"; }));
    chmod(".", 0555); // a file that can be written in a folder that cannot
    Write("theirs");
    EXPECT_TRUE(asnobody([&] { return save("theirs").empty() && ReadWhole("theirs") == "new"; }));
    chmod(".", 0755);
}
