// The panels, for tests of what uses them.

#pragma once

#include "export/slicing_panel.h"
#include "growth/control_panel.h"
#include "growth/settings_panel.h"
#include "surface/transform_panel.h"

inline void CreatePanelsOnce()
{
    if (settingform != nullptr)
        return;
    settingform = create_form_settingform();
    stlform = create_form_stlform();
    sliceform = create_form_sliceform();
    UpdateForms();
}
