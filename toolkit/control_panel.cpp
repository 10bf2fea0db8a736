#include "toolkit/control_panel.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "toolkit/main_window.h"

namespace
{
struct Panel {
    FL_FORM *form;
    std::span<const PanelObject> objects;
    int *visible;
};
} // namespace

// All panels, in the order in which they were built
static std::vector<Panel> panels;
static bool titled = false;

static FL_OBJECT *AddObject(const PanelObject &object);
static int CloseWindow(FL_FORM *form, void *visible);
static void FillInput(const PanelObject &object);
static const char *FindTitle(const FL_FORM *form);

FL_FORM *CreatePanel(int boxtype, int width, int height, std::span<const PanelObject> objects, int *visible)
{
    FL_FORM *form = fl_bgn_form(FL_NO_BOX, width, height);
    fl_add_box(boxtype, 0, 0, width, height, "");
    for (const PanelObject &object : objects) {
        FL_OBJECT *added = AddObject(object);
        if (object.handle != nullptr)
            *object.handle = added;
    }
    fl_end_form();
    // By default, the toolkit ends the program when a form's window is closed.
    fl_set_form_atclose(form, CloseWindow, visible);
    panels.push_back({form, objects, visible});
    return form;
}

void ShowPanel(FL_FORM *form, int *visible)
{
    UpdateForms();
    fl_show_form(form, FL_PLACE_CENTER, FL_FULLBORDER, titled ? FindTitle(form) : "");
    OwnPanel(form);
    *visible = 1;
}

void HidePanel(FL_FORM *form, int *visible)
{
    fl_hide_form(form);
    *visible = 0;
}

const PanelObject *FindInput(std::span<const PanelObject> objects, const FL_OBJECT *worked)
{
    for (const PanelObject &object : objects)
        if (object.handle != nullptr && *object.handle == worked &&
            (std::holds_alternative<double *>(object.value) || std::holds_alternative<int *>(object.value)))
            return &object;
    return nullptr;
}

const void *ShownField(const PanelObject &object)
{
    if (double *const *number = std::get_if<double *>(&object.value))
        return *number;
    return std::get<int *>(object.value);
}

void GivePanelsTitles()
{
    titled = true;
}

bool IsPanelShown()
{
    return std::any_of(panels.begin(), panels.end(), [](const Panel &panel) { return *panel.visible != 0; });
}

void SetPanelCursors(int cursor)
{
    for (const Panel &panel : panels)
        if (*panel.visible)
            fl_set_cursor(panel.form->window, cursor);
}

void UpdateForms()
{
    for (const Panel &panel : panels)
        for (const PanelObject &object : panel.objects)
            if (object.kind == kPanelInput)
                FillInput(object);
}

static FL_OBJECT *AddObject(const PanelObject &object)
{
    const auto &[kind, x, y, width, height, label, handle, value, restarts] = object;
    FL_OBJECT *added = nullptr;
    switch (kind) {
    case kPanelFrame:
        return fl_add_frame(FL_ENGRAVED_FRAME, x, y, width, height, label);
    case kPanelButton:
        added = fl_add_button(FL_NORMAL_BUTTON, x, y, width, height, label);
        fl_set_object_lsize(added, FL_NORMAL_SIZE);
        return added;
    case kPanelCheckButton:
        return fl_add_checkbutton(FL_PUSH_BUTTON, x, y, width, height, label);
    case kPanelTitle:
        added = fl_add_text(FL_NORMAL_TEXT, x, y, width, height, label);
        fl_set_object_lsize(added, FL_NORMAL_SIZE);
        fl_set_object_lalign(added, FL_ALIGN_LEFT | FL_ALIGN_INSIDE);
        fl_set_object_lstyle(added, FL_BOLD_STYLE);
        return added;
    case kPanelText:
        added = fl_add_text(FL_NORMAL_TEXT, x, y, width, height, label);
        fl_set_object_lalign(added, FL_ALIGN_LEFT | FL_ALIGN_INSIDE);
        return added;
    case kPanelCentredText:
        added = fl_add_text(FL_NORMAL_TEXT, x, y, width, height, label);
        fl_set_object_lalign(added, FL_ALIGN_CENTER | FL_ALIGN_INSIDE);
        return added;
    case kPanelInput:
        return fl_add_input(FL_NORMAL_INPUT, x, y, width, height, label);
    }
    return added;
}

// Called when a panel's window is closed; the toolkit hides it on FL_OK.
static int CloseWindow(FL_FORM *, void *visible)
{
    *static_cast<int *>(visible) = 0;
    return FL_OK;
}

// The text of a panel's first title; empty if it has none
static const char *FindTitle(const FL_FORM *form)
{
    for (const Panel &panel : panels)
        if (panel.form == form)
            for (const PanelObject &object : panel.objects)
                if (object.kind == kPanelTitle)
                    return object.label;
    return "";
}

static void FillInput(const PanelObject &object)
{
    char text[256] = "";
    if (double *const *number = std::get_if<double *>(&object.value))
        snprintf(text, sizeof text, "%g", **number);
    else if (int *const *count = std::get_if<int *>(&object.value))
        snprintf(text, sizeof text, "%d", **count);
    else if (const char *const *same = std::get_if<const char *>(&object.value))
        snprintf(text, sizeof text, "%s", *same);
    fl_set_input(*object.handle, text);
}
