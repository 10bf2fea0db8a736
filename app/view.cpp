// sarkelo-view: the window of sarkelo, with files; and pictures without a screen.

#include <cstdio>
#include <filesystem>
#include <new>

#include <sys/stat.h>

#include "app/command_line.h"
#include "app/program.h"
#include "app/view_command.h"
#include "archive/rescue.h"
#include "growth/camera_home.h"
#include "recipe/recipe.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/camera.h"
#include "viewer/display.h"

static int View(int argc, char **argv);
static Fault Load(const ViewCommand &command);
static Fault MakePictures(const ViewCommand &command);
static int Tell(const Fault &fault);

int main(int argc, char **argv)
{
    try {
        return View(argc, argv);
    } catch (const std::bad_alloc &) {
        return Tell({kMemoryFault, "not enough memory"});
    }
}

static int View(int argc, char **argv)
{
    ViewCommand command;
    Fault fault;
    if (!ReadViewCommand(argc, argv, &command, &fault))
        return Tell(fault);
    PrepareRecords();
    std::vector<char *> words = {argv[0]};
    for (std::string &word : command.switches)
        words.push_back(word.data());
    words.push_back(nullptr);
    const int count = static_cast<int>(words.size()) - 1;
    ReadSwitches(count, words.data());
    fault = Load(command);
    if (!fault && command.picture)
        fault = MakePictures(command);
    if (fault || command.picture)
        return Tell(fault);
    PrepareRescue(DescribeWindowRun);
    if (!command.whole)
        KeepFramesQuick();
    RunWindow(count, words.data(), true);
    return 0;
}

static Fault Load(const ViewCommand &command)
{
    if (std::filesystem::path(command.file).extension() == ".toml") {
        Recipe recipe;
        Fault fault = ReadRecipe(command.file, &recipe);
        if (!fault)
            fault = StartRun(recipe);
        if (fault)
            return fault;
    } else if (!command.file.empty()) {
        StoredAggregate stored;
        if (Fault fault = ReadAggregate(command.file, &stored))
            return fault;
        ShowAggregate(std::move(stored));
    }
    if (command.mode != 0)
        options.dlamode = command.mode;
    if (command.surfacemode != 0)
        options.surfacemode = command.surfacemode;
    if (command.fromhome)
        CameraHome();
    return {};
}

static Fault MakePictures(const ViewCommand &command)
{
    const PictureRequest &request = *command.picture;
    const std::vector<std::string> paths = PicturePaths(request);
    for (const std::string &path : paths) {
        struct stat about = {};
        if (!command.overwrites && stat(path.c_str(), &about) == 0 && !S_ISCHR(about.st_mode))
            return {kFileFault, path + ": exists already; --force overwrites it"};
    }
    camera.screenwidth = request.width;
    camera.screenheight = request.height;
    if (command.fits || (!windowrun.fromwindow && !command.fromhome))
        FitCamera();
    if (Fault fault = DrawPictures(request))
        return fault;
    if (paths.size() > 1) {
        const std::string stem = request.path.substr(0, request.path.rfind('.'));
        printf("ffmpeg -framerate 25 -i %s-%%04d.png -pix_fmt yuv420p %s.mp4\n", stem.c_str(), stem.c_str());
    }
    return {};
}

// A fault without a line has been told already.
static int Tell(const Fault &fault)
{
    if (!fault.line.empty())
        fprintf(stderr, "sarkelo-view: %s\n", fault.line.c_str());
    return fault.kind;
}
