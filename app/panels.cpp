#include "app/panels.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <forms.h>

#include "export/slices.h"
#include "growth/control_panel.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "growth/wait_cursor.h"
#include "surface/surface.h"
#include "viewer/surface_drawing.h"

constexpr double kShortestBranch = 0.01;
// Degrees per step, either way.
constexpr double kFastestRotation = 5;
constexpr int kFewestSlices = 2;
// More files than this are written only after a question.
constexpr int kManySlices = 10000;
constexpr double kShortestNormal = 1e-5;

namespace
{
// An input of the settings panel, and what its number does.
struct SettingInput {
    FL_OBJECT *FD_settingform::*input;
    void (*apply)(double value);
};
} // namespace

static void WorkSlicingPanel(const FL_OBJECT *worked);
static void Slice();
static void WorkSettingsPanel(const FL_OBJECT *worked);
static void WorkTransformPanel(const FL_OBJECT *worked);
template<typename T>
static void RestartWith(T *parameter, T value);
static int ParseCount(const char *text);
static double ReadInput(FL_OBJECT *input);
static Vector ReadInputs(FL_OBJECT *x, FL_OBJECT *y, FL_OBJECT *z);
static double Limit(double value, double low, double high);
static int Truncate(double value);

static const SettingInput kSettingInputs[] = {
    {&FD_settingform::bias, [](double value) { growthstate.bias = Limit(value, 0, 1); }},
    {&FD_settingform::branchlength,
     [](double value) { growthstate.branchlength = Limit(value, kShortestBranch, INFINITY); }},
    {&FD_settingform::stickiness, [](double value) { growthstate.stickiness = Limit(value, 1, 100); }},
    {&FD_settingform::thickto, [](double value) { growthstate.thickto = std::fabs(value); }},
    {&FD_settingform::thickfrom, [](double value) { growthstate.thickfrom = std::fabs(value); }},
    {&FD_settingform::seed, [](double value) { growthstate.seed = std::abs(Truncate(value)); }},
    {&FD_settingform::rotation,
     [](double value) { growthstate.rotation = Limit(value, -kFastestRotation, kFastestRotation); }},
    {&FD_settingform::nroots,
     [](double value) { RestartWith(&growthstate.nroots, std::abs(Truncate(value))); }},
    {&FD_settingform::rootrange, [](double value) { RestartWith(&growthstate.rootrange, value); }},
    {&FD_settingform::intersectrange, [](double value) { growthstate.intersectrange = Limit(value, 0, 90); }},
};

void PollPanels()
{
    if (!settingformvisible && !stlformvisible && !sliceformvisible)
        return;
    const FL_OBJECT *worked = fl_check_forms();
    if (worked == nullptr)
        return;
    if (sliceformvisible)
        WorkSlicingPanel(worked);
    if (settingformvisible)
        WorkSettingsPanel(worked);
    if (stlformvisible)
        WorkTransformPanel(worked);
}

static void WorkSlicingPanel(const FL_OBJECT *worked)
{
    if (worked == sliceform->hide)
        HidePanel(sliceform->form, &sliceformvisible);
    else if (worked == sliceform->normalx)
        options.sliceparam1 = ReadInput(sliceform->normalx);
    else if (worked == sliceform->normaly)
        options.sliceparam2 = ReadInput(sliceform->normaly);
    else if (worked == sliceform->normalz)
        options.sliceparam3 = ReadInput(sliceform->normalz);
    else if (worked == sliceform->count)
        options.slicecount = std::max(ParseCount(fl_get_input(sliceform->count)), kFewestSlices);
    else if (worked == sliceform->slice)
        Slice();
}

// A normal that is too short to have a direction becomes the z axis, and stays so.
static void Slice()
{
    char question[64];
    snprintf(question, sizeof question, "Write %d slice files?", options.slicecount);
    if (options.slicecount > kManySlices && !fl_show_question(question, 0))
        return;
    if (Modulus({options.sliceparam1, options.sliceparam2, options.sliceparam3}) < kShortestNormal)
        options.sliceparam3 = 1;
    Vector direction = {options.sliceparam1, options.sliceparam2, options.sliceparam3};
    Normalise(&direction);
    switch (WithWaitCursor([=] { return DoSlice(options.slicecount, direction); })) {
    case kSlicesDone:
        break;
    case kSliceUnopened:
        exit(-1);
    case kSlicesOutOfMemory:
        fl_show_message("Memory Error", "Not enough memory to slice the aggregate", "");
        break;
    }
}

static void WorkSettingsPanel(const FL_OBJECT *worked)
{
    if (worked == settingform->hide)
        HidePanel(settingform->form, &settingformvisible);
    if (worked == settingform->association) {
        RestartWith(&growthstate.association, fl_get_button(settingform->association));
        fl_set_button(settingform->association, growthstate.association);
    }
    for (const SettingInput &setting : kSettingInputs)
        if (worked == settingform->*setting.input)
            setting.apply(ReadInput(settingform->*setting.input));
}

static void WorkTransformPanel(const FL_OBJECT *worked)
{
    if (worked == stlform->hide) {
        HidePanel(stlform->form, &stlformvisible);
    } else if (worked == stlform->apply) {
        const WaitCursor wait;
        TransformSTL(ReadInputs(stlform->scalex, stlform->scaley, stlform->scalez),
                     ReadInputs(stlform->shiftx, stlform->shifty, stlform->shiftz),
                     ReadInputs(stlform->rotatex, stlform->rotatey, stlform->rotatez));
        UpdateSTL();
        DrawSTL(options.surfacemode, 1);
        UpdateForms();
    }
}

// Starts the run anew with a parameter changed; where memory does not hold its roots, nothing changes.
template<typename T>
static void RestartWith(T *parameter, T value)
{
    const T old = *parameter;
    *parameter = value;
    if (MemoryHoldsRoots() && WithWaitCursor(RestartFromRoots))
        return;
    *parameter = old;
    fl_show_message("Memory Error", "Not enough memory for this number of roots", "");
    UpdateForms();
}

static double ReadInput(FL_OBJECT *input)
{
    return atof(fl_get_input(input));
}

static Vector ReadInputs(FL_OBJECT *x, FL_OBJECT *y, FL_OBJECT *z)
{
    return {ReadInput(x), ReadInput(y), ReadInput(z)};
}

// What is not a number counts as low.
static double Limit(double value, double low, double high)
{
    return value > low ? std::min(value, high) : low;
}

// The whole number at the start of a text, as atoi reads it, or the largest int where it is larger; 0 where
// there is none.
static int ParseCount(const char *text)
{
    return static_cast<int>(std::clamp(strtol(text, nullptr, 10), -long{INT_MAX}, long{INT_MAX}));
}

// Toward zero, and to the largest int in size; what is not a number gives 0.
static int Truncate(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<int>(std::clamp(value, -double{INT_MAX}, double{INT_MAX}));
}
