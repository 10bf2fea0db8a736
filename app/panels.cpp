#include "app/panels.h"

#include "export/slicing_panel.h"
#include "growth/settings_panel.h"
#include "growth/state.h"
#include "surface/transform_panel.h"
#include "toolkit/callback.h"
#include "viewer/display.h"
#include "viewer/surface_drawing.h"

void PollPanels()
{
    if (!IsPanelShown())
        return;
    const FL_OBJECT *worked = fl_check_forms();
    if (worked == nullptr)
        return;
    if (sliceformvisible)
        HandleSlicingPanel(worked);
    if (settingformvisible)
        HandleSettingsPanel(worked);
    if (stlformvisible && HandleTransformPanel(worked)) {
        DrawSTL(options.surfacemode, 1);
        UpdateForms();
    }
    framerequested = true;
}
