#include "export/slicing_panel.h"

#include "growth/state.h"

static FD_sliceform panel;

static const PanelObject kObjects[] = {
    {kPanelFrame, 20, 60, 380, 120, ""},
    {kPanelTitle, 20, 10, 80, 30, "Slicing"},
    {kPanelText, 30, 80, 100, 30, "Plane normal"},
    {kPanelInput, 150, 80, 60, 30, "", &panel.normalx},
    {kPanelInput, 235, 80, 60, 30, "", &panel.normaly},
    {kPanelInput, 320, 80, 60, 30, "", &panel.normalz},
    {kPanelText, 130, 80, 20, 30, "X"},
    {kPanelText, 215, 80, 20, 30, "Y"},
    {kPanelText, 300, 80, 20, 30, "Z"},
    {kPanelText, 30, 130, 110, 30, "Number of slices"},
    {kPanelInput, 150, 130, 60, 30, "", &panel.count},
    {kPanelButton, 230, 200, 60, 30, "Slice", &panel.slice},
    {kPanelButton, 320, 200, 60, 30, "Hide", &panel.hide},
};

FD_sliceform *create_form_sliceform()
{
    panel.form = CreatePanel(FL_FLAT_BOX, 421, 251, kObjects, &sliceformvisible);
    return &panel;
}
