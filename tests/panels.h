// The panels, for tests of what uses them.

#pragma once

#include "app/panels.h"
#include "export/slicing_panel.h"
#include "fakes/recorder.h"
#include "growth/settings_panel.h"
#include "surface/transform_panel.h"
#include "toolkit/callback.h"
#include "toolkit/control_panel.h"

inline void CreatePanelsOnce()
{
    if (settingform == nullptr)
        settingform = create_form_settingform(), stlform = create_form_stlform(),
        sliceform = create_form_sliceform();
    UpdateForms();
}

// Works an object of a panel, or types into an input and leaves it; then the program polls its panels.
inline void Work(FL_OBJECT *object)
{
    fakeworked = object;
    Guarded<PollPanels, kRepeatedCallback>();
    fakeworked = nullptr;
}

inline void Type(FL_OBJECT *input, const char *text)
{
    fl_set_input(input, text);
    Work(input);
}
