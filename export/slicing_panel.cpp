#include "export/slicing_panel.h"

#include <cstdlib>

#include "export/slices.h"
#include "growth/parameters.h"
#include "growth/state.h"
#include "toolkit/wait_cursor.h"

// More files than this are written only after a question.
constexpr int kManySlices = 10000;
constexpr double kShortestNormal = 1e-5;

FD_sliceform *sliceform = nullptr;

static void Slice();
static void ShowFault(const SliceResult &result);
static void Change(const PanelObject &object, const Parameter &parameter);

static FD_sliceform panel;

static const PanelObject kObjects[] = {
    {kPanelFrame, 20, 60, 380, 120, ""},
    {kPanelTitle, 20, 10, 80, 30, "Slicing"},
    {kPanelText, 30, 80, 100, 30, "Plane normal"},
    {kPanelInput, 150, 80, 60, 30, "", &panel.normalx, &options.sliceparam1},
    {kPanelInput, 235, 80, 60, 30, "", &panel.normaly, &options.sliceparam2},
    {kPanelInput, 320, 80, 60, 30, "", &panel.normalz, &options.sliceparam3},
    {kPanelText, 130, 80, 20, 30, "X"},
    {kPanelText, 215, 80, 20, 30, "Y"},
    {kPanelText, 300, 80, 20, 30, "Z"},
    {kPanelText, 30, 130, 110, 30, "Number of slices"},
    {kPanelInput, 150, 130, 60, 30, "", &panel.count, &options.slicecount},
    {kPanelButton, 230, 200, 60, 30, "Slice", &panel.slice},
    {kPanelButton, 320, 200, 60, 30, "Hide", &panel.hide},
};

FD_sliceform *create_form_sliceform()
{
    panel.form = CreatePanel(FL_FLAT_BOX, 421, 251, kObjects, &sliceformvisible);
    return &panel;
}

void HandleSlicingPanel(const FL_OBJECT *worked)
{
    if (worked == panel.hide)
        HidePanel(panel.form, &sliceformvisible);
    else if (worked == panel.slice)
        Slice();
    else if (const PanelObject *input = FindInput(kObjects, worked))
        Change(*input, ParameterOf(ShownField(*input)));
}

// Sets a parameter to the text of its input. For a whole number only the leading digits count: "1e1" is 1.
static void Change(const PanelObject &object, const Parameter &parameter)
{
    const char *text = fl_get_input(*object.handle);
    const bool whole = std::holds_alternative<int *>(parameter.field);
    SetParameter(parameter, whole ? static_cast<double>(strtol(text, nullptr, 10)) : atof(text));
}

// Writes the slices. A normal too short to have a direction becomes the z axis, and the parameter keeps that value.
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
    const SliceResult result =
        WithWaitCursor([=] { return DoSlice(".", options.slicecount, direction, stderr); });
    if (result.fault)
        ShowFault(result);
}

static void ShowFault(const SliceResult &result)
{
    const std::string &line = result.fault.line;
    if (result.fault.kind == kMemoryFault) {
        fl_show_message("Memory Error", line.c_str(), "");
    } else if (viewwindow) {
        fl_show_message("File Error", line.c_str(), "");
    } else {
        fprintf(stderr, "%s\n", line.c_str());
        if (result.unopened.empty())
            return;
        fprintf(stderr, "Failed to open output slice file \"%s\"\n", result.unopened.c_str());
        exit(-1);
    }
}
