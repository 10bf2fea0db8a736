#include "viewer/aggregate_dialog.h"

#include <ctime>
#include <filesystem>
#include <string>
#include <utility>

#include <GL/glut.h>
#include <forms.h>
#include <sys/stat.h>
#include <unistd.h>

#include "archive/rescue.h"
#include "growth/camera_home.h"
#include "toolkit/control_panel.h"
#include "toolkit/file_selector.h"
#include "toolkit/wait_cursor.h"
#include "viewer/camera.h"
#include "viewer/surface_drawing.h"

// The buttons of a question, numbered from left to right
enum Answer { kSave = 1, kDiscard };

RunRecord windowrun;
std::string windowfile;

static void ReplaceRun(const std::string &path, StoredAggregate stored);
static std::string CountParticles(int count);

RunRecord DescribeWindowRun()
{
    RunRecord run = windowrun;
    run.view = camera;
    run.fromwindow = true;
    return run;
}

void ShowAggregate(StoredAggregate stored)
{
    windowrun = stored.run;
    ResumeRun(std::move(stored));
    MarkAggregateSaved();
    growthstate.running = 0;
    CameraHome();
    if (windowrun.fromwindow) {
        const Camera &kept = windowrun.view;
        camera.vp = kept.vp;
        camera.vd = kept.vd;
        camera.vu = kept.vu;
        camera.pr = kept.pr;
        camera.aperture = kept.aperture;
        UpdateCameraRange();
    } else {
        FitCamera();
    }
}

void ShowFileInTitle()
{
    static std::string shown;
    std::string title = kTitle;
    if (!windowfile.empty())
        title = std::filesystem::path(windowfile).filename().string() +
                (HasUnsavedParticles() ? " (unsaved)" : "") + " - " + title;
    if (title == shown)
        return;
    glutSetWindowTitle(title.c_str());
    shown = title;
}

void OpenAggregate()
{
    const std::string path = AskForFile("Open aggregate", "*.h5");
    if (path.empty())
        return;
    StoredAggregate stored;
    if (const Fault fault = WithWaitCursor([&] { return ReadAggregate(path, &stored); })) {
        fl_show_message("File Error", fault.line.c_str(), "");
        return;
    }
    if (ConfirmDiscardingParticles())
        ReplaceRun(path, std::move(stored));
}

bool SaveAggregate()
{
    std::string path = AskForFile("Save aggregate", "*.h5");
    if (path.empty())
        return false;
    if (std::filesystem::path(path).extension() != ".h5")
        path += kAggregateExtension;
    const std::string question = "Replace " + path + "?";
    if (access(path.c_str(), F_OK) == 0 && !fl_show_question(question.c_str(), 0))
        return false;
    if (const Fault fault = WithWaitCursor([&] { return WriteAggregate(path, DescribeWindowRun()); })) {
        fl_show_message("File Error", fault.line.c_str(), "");
        return false;
    }
    MarkAggregateSaved();
    windowfile = path;
    return true;
}

bool ConfirmDiscardingParticles()
{
    if (!viewwindow || !HasUnsavedParticles())
        return true;
    const std::string question =
        "This run has " + CountParticles(ncells) + ". Not all of them are in a file.";
    const int answer = fl_show_choices(question.c_str(), 3, "Save", "Discard", "Cancel", kSave);
    return answer == kSave ? SaveAggregate() : answer == kDiscard;
}

void AskBeforeClosing()
{
    while (viewwindow && IsRescueArmed() && HasUnsavedParticles()) {
        const std::string question =
            "The window closes. Its run has " + CountParticles(ncells) + ". Not all of them are in a file.";
        if (fl_show_choices(question.c_str(), 2, "Save", "Discard", "", kSave) != kSave || SaveAggregate())
            return;
    }
}

void OfferRescue()
{
    namespace fs = std::filesystem;
    std::string newest;
    fs::file_time_type since;
    std::error_code fault;
    for (const fs::directory_entry &entry : fs::directory_iterator(".", fault)) {
        const std::string name = entry.path().filename().string();
        const fs::file_time_type written = entry.last_write_time(fault);
        if (!fault && name.starts_with(kRescueName) && name.ends_with(kAggregateExtension) &&
            (newest.empty() || written > since)) {
            newest = name;
            since = written;
        }
    }
    StoredAggregate stored;
    if (newest.empty() || ReadAggregate(newest, &stored))
        return;
    struct stat about = {};
    stat(newest.c_str(), &about);
    char time[32];
    strftime(time, sizeof time, "%F %H:%M", localtime(&about.st_mtime));
    const std::string question = newest + "\nof " + time + ", " + CountParticles(stored.count) + ": open it?";
    if (fl_show_question(question.c_str(), 1))
        ReplaceRun(newest, std::move(stored));
}

static void ReplaceRun(const std::string &path, StoredAggregate stored)
{
    ShowAggregate(std::move(stored));
    windowfile = path;
    DrawSTL(options.surfacemode, 1);
    UpdateForms();
}

// A number of particles in words: "81,233 particles"
static std::string CountParticles(int count)
{
    std::string digits = std::to_string(count);
    for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), 1, ',');
    return digits + " particles";
}
