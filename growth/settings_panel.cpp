#include "growth/settings_panel.h"

#include "growth/state.h"

static FD_settingform panel;

static const PanelObject kObjects[] = {
    {kPanelFrame, 20, 50, 360, 270, ""},
    {kPanelButton, 320, 480, 60, 30, "Hide", &panel.hide},
    {kPanelTitle, 15, 10, 80, 30, "Settings"},
    {kPanelInput, 175, 95, 50, 30, "Bias towards origin", &panel.bias},
    {kPanelInput, 175, 130, 50, 30, "Branch length", &panel.branchlength},
    {kPanelInput, 175, 165, 50, 30, "Stickiness", &panel.stickiness},
    {kPanelText, 225, 100, 140, 20, "% of branch length"},
    {kPanelText, 235, 170, 40, 20, "%"},
    {kPanelInput, 175, 240, 50, 30, "Branch thickness", &panel.thickto},
    {kPanelInput, 255, 240, 50, 30, "", &panel.thickfrom},
    {kPanelCentredText, 225, 240, 30, 30, "to"},
    {kPanelInput, 175, 60, 50, 30, "Random number seed", &panel.seed},
    {kPanelInput, 175, 200, 50, 30, "Particle rotation", &panel.rotation},
    {kPanelText, 230, 200, 130, 30, "About z (degrees)"},
    {kPanelFrame, 20, 340, 360, 120, ""},
    {kPanelInput, 175, 350, 50, 30, "Number of roots", &panel.nroots},
    {kPanelInput, 175, 385, 50, 30, "Root distribution range", &panel.rootrange},
    {kPanelCheckButton, 170, 420, 170, 30, "Associate seeds with roots", &panel.association},
    {kPanelInput, 175, 275, 50, 30, "Intersection range", &panel.intersectrange},
    {kPanelText, 235, 275, 130, 30, "% of branch length"},
};

FD_settingform *create_form_settingform()
{
    panel.form = CreatePanel(FL_UP_BOX, 411, 531, kObjects, &settingformvisible);
    return &panel;
}
