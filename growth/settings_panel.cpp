#include "growth/settings_panel.h"

#include <cstdlib>

#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "toolkit/control_panel.h"
#include "toolkit/wait_cursor.h"

FD_settingform *settingform = nullptr;

static void Change(const PanelObject &object, const Parameter &parameter);

static FD_settingform panel;

static const PanelObject kObjects[] = {
    {kPanelFrame, 20, 50, 360, 270, ""},
    {kPanelButton, 320, 480, 60, 30, "Hide", &panel.hide},
    {kPanelTitle, 15, 10, 80, 30, "Settings"},
    {kPanelInput, 175, 95, 50, 30, "Bias towards origin", &panel.bias, &growthstate.bias},
    {kPanelInput, 175, 130, 50, 30, "Branch length", &panel.branchlength, &growthstate.branchlength},
    {kPanelInput, 175, 165, 50, 30, "Stickiness", &panel.stickiness, &growthstate.stickiness},
    {kPanelText, 225, 100, 140, 20, "% of branch length"},
    {kPanelText, 235, 170, 40, 20, "%"},
    {kPanelInput, 175, 240, 50, 30, "Branch thickness", &panel.thickto, &growthstate.thickto},
    {kPanelInput, 255, 240, 50, 30, "", &panel.thickfrom, &growthstate.thickfrom},
    {kPanelCentredText, 225, 240, 30, 30, "to"},
    {kPanelInput, 175, 60, 50, 30, "Random number seed", &panel.seed, &growthstate.seed},
    {kPanelInput, 175, 200, 50, 30, "Particle rotation", &panel.rotation, &growthstate.rotation},
    {kPanelText, 230, 200, 130, 30, "About z (degrees)"},
    {kPanelFrame, 20, 340, 360, 120, ""},
    {kPanelInput, 175, 350, 50, 30, "Number of roots", &panel.nroots, &growthstate.nroots, true},
    {kPanelInput, 175, 385, 50, 30, "Root distribution range", &panel.rootrange, &growthstate.rootrange,
     true},
    {kPanelCheckButton, 170, 420, 170, 30, "Associate seeds with roots", &panel.association,
     &growthstate.association, true},
    {kPanelInput, 175, 275, 50, 30, "Intersection range", &panel.intersectrange, &growthstate.intersectrange},
    {kPanelText, 235, 275, 130, 30, "% of branch length"},
};

FD_settingform *create_form_settingform()
{
    panel.form = CreatePanel(FL_UP_BOX, 411, 531, kObjects, &settingformvisible);
    return &panel;
}

void HandleSettingsPanel(const FL_OBJECT *worked)
{
    if (worked == panel.hide)
        HidePanel(panel.form, &settingformvisible);
    else if (const PanelObject *input = FindInput(kObjects, worked))
        Change(*input, ParameterOf(ShownField(*input)));
}

// Sets a parameter from its input or button; changes nothing if that restarts the run and memory does not hold its
// roots.
static void Change(const PanelObject &object, const Parameter &parameter)
{
    const GrowthState old = growthstate;
    const bool button = object.kind == kPanelCheckButton;
    SetParameter(parameter, button ? fl_get_button(*object.handle) : atof(fl_get_input(*object.handle)));
    if (growthstate.walk == kWalkFlights && growthstate.rotation != 0) {
        growthstate.rotation = 0;
        fl_show_message("Particle rotation", "This aggregate grows in flights, which cannot be turned", "");
        UpdateForms();
    }
    if (!object.restarts || (MemoryHoldsRoots() && WithWaitCursor(RestartFromRoots)))
        return;
    growthstate = old;
    fl_show_message("Memory Error", "Not enough memory for this number of roots", "");
    if (button)
        fl_set_button(*object.handle, growthstate.association);
    UpdateForms();
}
