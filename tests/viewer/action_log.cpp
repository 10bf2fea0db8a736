#include "viewer/action_log.h"

#include <filesystem>
#include <regex>
#include <sstream>

#include <GL/glut.h>

#include "archive/rescue.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/scenario.h"
#include "surface/surface.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/surface_drawing.h"

using Records = std::vector<std::pair<std::string, std::string>>;

void PrepareWindow()
{
    StartAfresh();
    camera.stereo = kStereoNone;
    camera.screenwidth = 800;
    camera.screenheight = 600;
    CameraHome();
    Grow(IterateSystem, 20, 1000000);
    settingformvisible = stlformvisible = sliceformvisible = options.boxcountrequest = 0;
    fakemodifiers = 0;
    CreatePanelsOnce();
    DrawSTL(kSurfaceWireframe, 1);
    windowfile.clear();
    ShowFileInTitle();
}

std::vector<FL_OBJECT *> PanelInputs()
{
    const FD_settingform &settings = *settingform;
    return {settings.seed,       settings.rotation,       settings.bias,      settings.branchlength,
            settings.stickiness, settings.thickto,        settings.thickfrom, settings.nroots,
            settings.rootrange,  settings.intersectrange, sliceform->count,   sliceform->normalx,
            sliceform->normaly,  sliceform->normalz,      stlform->scalex,    stlform->scaley,
            stlform->scalez,     stlform->shiftx,         stlform->shifty,    stlform->shiftz,
            stlform->rotatex,    stlform->rotatey,        stlform->rotatez};
}

static Records ReadRecords()
{
    Records records;
    const auto add = [&](const std::string &name, const auto &...values) {
        std::ostringstream text;
        text.precision(9);
        ((text << ' ' << values), ...);
        records.emplace_back(name, text.str());
    };
    const auto place = [&](const char *name, Vector v) { add(name, Plain(v.x), Plain(v.y), Plain(v.z)); };
    for (const Parameter &parameter : Parameters())
        add(parameter.key, ParameterValue(parameter));
    place("view point", camera.vp);
    place("direction", camera.vd);
    place("up", camera.vu);
    place("pivot", camera.pr);
    add("lens", camera.aperture, camera.nearclip, camera.farclip);
    add("screen", camera.screenwidth, camera.screenheight, camera.stereo);
    add("pointer", interfacestate.button, interfacestate.shift, interfacestate.mousex, interfacestate.mousey);
    add("spin and captures", options.autospin, options.recordframes, options.dumpnext);
    add("overlays", options.showextras, options.showinfo, options.boxcountrequest);
    add("running", growthstate.running, growthstate.stepcount, nseeds);
    add("particles", ncells, std::hex, HashParticles(ncells), growthstate.rootname);
    add("surface", growthstate.surfacename, nstltri, stlmax.x, stlmax.y);
    add("panels", settingformvisible, stlformvisible, sliceformvisible);
    add("open", windowfile, HasUnsavedParticles());
    for (FL_OBJECT *input : PanelInputs())
        add("shown", fl_get_input(input));
    std::error_code none; // the directory may be gone
    for (const auto &entry : std::filesystem::directory_iterator(".", none)) {
        const bool fixed = entry.is_regular_file() && entry.path().extension() != ".h5";
        add(entry.path().filename().string() + " of", fixed ? entry.file_size() : 0);
    }
    return records;
}

// What the stand-ins have shown; from "[" to "]" with the wait cursor, from "+" to "-" with that of panels.
static std::string Shown()
{
    std::string shown;
    for (const Call &call : calls)
        if (call.name == "glutSetCursor")
            shown += call.args[0] == GLUT_CURSOR_WAIT ? " [" : "]";
        else if (call.name == "fl_set_cursor") { // of each panel in turn
            const char mark = call.args[0] == double{FL_BUSY_CURSOR} ? '+' : '-';
            shown += shown.ends_with(mark) ? "" : std::string(1, mark);
        } else if (call.name.starts_with("fl_show") || call.name.starts_with("glNew") ||
                   call.name == "fl_hide_form" || call.name == "glutSetWindowTitle" ||
                   call.name == "CloseMenu" || call.name == "glutSwapBuffers")
            shown += ' ' + Text(call);
    return shown;
}

void ActionLog::Do(const std::string &name, const std::function<void()> &act, const std::string &file)
{
    const Records before = ReadRecords();
    fakefile = file;
    ForgetCalls();
    testing::internal::CaptureStderr();
    act();
    std::string outcome;
    for (const auto &record : ReadRecords())
        if (std::find(before.begin(), before.end(), record) == before.end())
            outcome += ' ' + record.first + record.second + ';';
    outcome += Shown();
    const std::string printed = testing::internal::GetCapturedStderr();
    outcome += (printed.empty() ? "" : "\n    ") + printed.substr(0, printed.find_last_not_of('\n') + 1);
    outcome = std::regex_replace(outcome, std::regex("[0-9]{4}\\.tga"), "N.tga");
    outcome = std::regex_replace(outcome, std::regex("[0-9-]{10} [0-9:]{5}"), "DATE");
    if (outcome != last && !text.empty())
        text += ':' + last + '\n';
    text += (text.empty() || text.back() == '\n' ? "" : " | ") + name;
    last = outcome;
}
