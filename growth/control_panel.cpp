#include "growth/control_panel.h"

#include <cstdio>

#include "growth/main_window.h"
#include "growth/state.h"

FD_settingform *settingform = nullptr;
FD_stlform *stlform = nullptr;
FD_sliceform *sliceform = nullptr;

static FL_OBJECT *AddObject(const PanelObject &object);
static int CloseWindow(FL_FORM *form, void *visible);
static void SetInput(FL_OBJECT *input, double value);
static void SetInput(FL_OBJECT *input, int value);

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
    // The toolkit's default is to end the program.
    fl_set_form_atclose(form, CloseWindow, visible);
    return form;
}

void ShowPanel(FL_FORM *form, int *visible)
{
    UpdateForms();
    fl_show_form(form, FL_PLACE_CENTER, FL_FULLBORDER, "");
    OwnPanel(form);
    *visible = 1;
}

void HidePanel(FL_FORM *form, int *visible)
{
    fl_hide_form(form);
    *visible = 0;
}

void UpdateForms()
{
    SetInput(sliceform->count, options.slicecount);
    SetInput(sliceform->normalx, options.sliceparam1);
    SetInput(sliceform->normaly, options.sliceparam2);
    SetInput(sliceform->normalz, options.sliceparam3);

    SetInput(settingform->seed, growthstate.seed);
    SetInput(settingform->rotation, growthstate.rotation);
    SetInput(settingform->bias, growthstate.bias);
    SetInput(settingform->branchlength, growthstate.branchlength);
    SetInput(settingform->stickiness, growthstate.stickiness);
    SetInput(settingform->thickto, growthstate.thickto);
    SetInput(settingform->thickfrom, growthstate.thickfrom);
    SetInput(settingform->nroots, growthstate.nroots);
    SetInput(settingform->rootrange, growthstate.rootrange);
    SetInput(settingform->intersectrange, growthstate.intersectrange);

    for (FL_OBJECT *scale : {stlform->scalex, stlform->scaley, stlform->scalez})
        fl_set_input(scale, "1.0");
    for (FL_OBJECT *offset : {stlform->shiftx, stlform->shifty, stlform->shiftz, stlform->rotatex,
                              stlform->rotatey, stlform->rotatez})
        fl_set_input(offset, "0.0");
}

static FL_OBJECT *AddObject(const PanelObject &object)
{
    const auto [kind, x, y, width, height, label, handle] = object;
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

// The window manager closes a panel: the toolkit hides it then.
static int CloseWindow(FL_FORM *, void *visible)
{
    *static_cast<int *>(visible) = 0;
    return FL_OK;
}

static void SetInput(FL_OBJECT *input, double value)
{
    char text[256];
    snprintf(text, sizeof text, "%g", value);
    fl_set_input(input, text);
}

static void SetInput(FL_OBJECT *input, int value)
{
    char text[256];
    snprintf(text, sizeof text, "%d", value);
    fl_set_input(input, text);
}
