// sarkelo-view: the window of sarkelo with aggregate files and recipes, and pictures without a screen

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <string>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/command_line.h"
#include "app/program.h"
#include "app/view_command.h"
#include "archive/rescue.h"
#include "growth/camera_home.h"
#include "recipe/recipe_reader.h"
#include "recipe/start.h"
#include "toolkit/callback.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/camera.h"
#include "viewer/display.h"

template<typename Work>
static int ReportLackOfMemory(Work work);
static int View(int argc, char **argv);
static void AskAtStart(int);
static Fault Load(const ViewCommand &command);
static Fault MakePictures(ViewCommand *command);
static Fault DrawInChildProcess(const PictureRequest &request);
static std::string FilmCommand(const PictureRequest &request, std::size_t count);
static std::string QuoteForShell(const std::string &word);
static int ReportFault(const Fault &fault);

int main(int argc, char **argv)
{
    return ReportLackOfMemory([&] { return View(argc, argv); });
}

// Returns the status that `work` returns; if memory runs out, reports that without using memory, and returns its
// status.
template<typename Work>
static int ReportLackOfMemory(Work work)
{
    try {
        return work();
    } catch (const std::bad_alloc &) {
        fputs("sarkelo-view: not enough memory\n", stderr);
        return kMemoryFault;
    }
}

static int View(int argc, char **argv)
{
    ViewCommand command;
    Fault fault;
    if (!ReadViewCommand(argc, argv, &command, &fault))
        return ReportFault(fault);
    PrepareRecords();
    std::vector<char *> words = {argv[0]};
    for (std::string &word : command.switches)
        words.push_back(word.data());
    words.push_back(nullptr);
    const int count = static_cast<int>(words.size()) - 1;
    ReadSwitches(count, words.data());
    fault = Load(command);
    if (!fault && command.picture)
        fault = MakePictures(&command);
    if (fault || command.picture)
        return ReportFault(fault);
    ArmRescue(DescribeWindowRun);
    if (!command.whole)
        KeepFramesQuick();
    viewwindow = true;
    windowfile = command.file;
    RunWindow(count, words.data(), command.file.empty() ? Guarded<AskAtStart> : nullptr);
    return 0;
}

// Timer callback for RunWindow: offers to open a rescue file.
static void AskAtStart(int)
{
    OfferRescue();
}

static Fault Load(const ViewCommand &command)
{
    bool fits = command.fits;
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
        fits = fits || (!windowrun.fromwindow && !command.fromhome);
    }
    if (command.mode != 0)
        options.dlamode = command.mode;
    if (command.surfacemode != 0)
        options.surfacemode = command.surfacemode;
    if (command.fromhome)
        CameraHome();
    if (fits)
        FitCamera();
    return {};
}

static Fault MakePictures(ViewCommand *command)
{
    PictureRequest &request = *command->picture;
    const std::filesystem::path file = command->file;
    if (file.extension() == ".toml" && options.dlamode != kAggregateOff) {
        const std::string grown = file.stem().string() + kAggregateExtension;
        return {kRequestFault, command->file + " has not grown yet: sarkelo-grow " +
                                   QuoteForShell(command->file) + " -o " + QuoteForShell(grown) +
                                   " && sarkelo-view " + QuoteForShell(grown) + " --picture " +
                                   QuoteForShell(request.path)};
    }
    const std::vector<std::string> paths = PicturePaths(request);
    for (const std::string &path : paths) {
        struct stat about = {};
        if (!command->overwrites && stat(path.c_str(), &about) == 0 && !S_ISCHR(about.st_mode))
            return {kFileFault, path + ": exists already; --force overwrites it"};
    }
    request.fits = command->fits || (!windowrun.fromwindow && !command->fromhome);
    Fault fault = DrawInChildProcess(request);
    if (!fault && paths.size() > 1)
        printf("%s\n", FilmCommand(request, paths.size()).c_str());
    return fault;
}

// Draws the pictures in a child process, since OpenGL drivers crash when memory runs out. The child ends when this
// process ends. It reports a fault by its exit status and by the fault's line in a pipe.
static Fault DrawInChildProcess(const PictureRequest &request)
{
    const pid_t parent = getpid();
    int ends[2];
    fflush(nullptr);
    const pid_t child = pipe2(ends, O_CLOEXEC) == 0 ? fork() : -1;
    if (child < 0)
        return {kMemoryFault, request.path + ": cannot be drawn: " + strerror(errno)};
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent)
            _exit(kFileFault);
        _exit(ReportLackOfMemory([&] {
            const Fault fault = DrawPictures(request);
            [[maybe_unused]] const ssize_t count = write(ends[1], fault.line.data(), fault.line.size());
            return int{fault.kind};
        }));
    }
    close(ends[1]);
    std::string line;
    char part[4096];
    for (ssize_t count = 1; count > 0;) {
        count = read(ends[0], part, sizeof part);
        line.append(part, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status))
        return {kFileFault, request.path + ": cannot be drawn: the OpenGL driver has crashed (" +
                                strsignal(WTERMSIG(status)) + "), most likely for lack of memory"};
    return {static_cast<FaultKind>(WEXITSTATUS(status)), line};
}

// The command line that makes a film of a series of pictures. It limits the film to these pictures, and pads them to
// an even width and height, which the encoder requires.
static std::string FilmCommand(const PictureRequest &request, std::size_t count)
{
    std::string stem = request.path.substr(0, request.path.rfind('.'));
    if (stem[0] != '/')
        stem = (stem[0] == '-' || stem.find(':') != std::string::npos ? "./" : "") + stem;
    std::string pattern;
    for (const char c : stem)
        pattern += c == '%' ? "%%" : std::string(1, c);
    std::string line = "ffmpeg -framerate 25 -start_number 1 -pattern_type sequence -i " +
                       QuoteForShell(pattern + "-%04d.png") + " -frames:v " + std::to_string(count);
    const int width = request.width + request.width % 2, height = request.height + request.height % 2;
    if (width != request.width || height != request.height)
        line += " -vf pad=" + std::to_string(width) + ":" + std::to_string(height);
    return line + " -pix_fmt yuv420p " + QuoteForShell(stem + ".mp4");
}

// Quotes a word for a shell if necessary.
static std::string QuoteForShell(const std::string &word)
{
    const auto plain = [](unsigned char c) { return isalnum(c) || strchr("_./%=+,:-", c) != nullptr; };
    if (!word.empty() && std::all_of(word.begin(), word.end(), plain))
        return word;
    std::string quoted = "'";
    for (const char c : word)
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
}

// Reports a fault, if there is one, and returns its status.
static int ReportFault(const Fault &fault)
{
    if (fault)
        fprintf(stderr, "sarkelo-view: %s\n", fault.line.c_str());
    return fault.kind;
}
