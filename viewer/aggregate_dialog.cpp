#include "viewer/aggregate_dialog.h"

#include <string>
#include <utility>

#include <forms.h>
#include <unistd.h>

#include "archive/rescue.h"
#include "growth/camera_home.h"
#include "growth/control_panel.h"
#include "growth/wait_cursor.h"
#include "viewer/camera.h"
#include "viewer/surface_drawing.h"

RunRecord windowrun;

static const char *AskForAggregate(const char *title);

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

void OpenAggregate()
{
    const char *name = AskForAggregate("Open aggregate");
    if (name == nullptr)
        return;
    const std::string path = name;
    StoredAggregate stored;
    if (const Fault fault = WithWaitCursor([&] { return ReadAggregate(path, &stored); })) {
        fl_show_message("File Error", fault.line.c_str(), "");
        return;
    }
    ShowAggregate(std::move(stored));
    DrawSTL(options.surfacemode, 1);
    UpdateForms();
}

void SaveAggregate()
{
    const char *name = AskForAggregate("Save aggregate");
    if (name == nullptr)
        return;
    const std::string path = name;
    const std::string question = "Replace " + path + "?";
    if (access(path.c_str(), F_OK) == 0 && !fl_show_question(question.c_str(), 0))
        return;
    if (const Fault fault = WithWaitCursor([&] { return WriteAggregate(path, DescribeWindowRun()); }))
        fl_show_message("File Error", fault.line.c_str(), "");
    else
        MarkAggregateSaved();
}

// Returns nullptr where the user cancels; else it is valid until the next question.
static const char *AskForAggregate(const char *title)
{
    const char *name = fl_show_fselector(title, "", "*.h5", "");
    return name == nullptr || *name == '\0' ? nullptr : name;
}
