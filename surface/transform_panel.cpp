#include "surface/transform_panel.h"

#include "growth/state.h"

static FD_stlform panel;

static const PanelObject kObjects[] = {
    {kPanelFrame, 20, 50, 310, 180, ""},
    {kPanelButton, 260, 245, 60, 30, "Hide", &panel.hide},
    {kPanelTitle, 20, 10, 170, 30, "Constraint surface"},
    {kPanelInput, 90, 85, 60, 30, "", &panel.scalex},
    {kPanelButton, 170, 245, 60, 30, "Apply", &panel.apply},
    {kPanelInput, 170, 85, 60, 30, "", &panel.scaley},
    {kPanelInput, 250, 85, 60, 30, "", &panel.scalez},
    {kPanelText, 40, 90, 50, 20, "Scale"},
    {kPanelInput, 90, 135, 60, 30, "", &panel.shiftx},
    {kPanelInput, 170, 135, 60, 30, "", &panel.shifty},
    {kPanelInput, 250, 135, 60, 30, "", &panel.shiftz},
    {kPanelText, 40, 140, 40, 20, "Shift"},
    {kPanelInput, 90, 185, 60, 30, "", &panel.rotatex},
    {kPanelInput, 170, 185, 60, 30, "", &panel.rotatey},
    {kPanelInput, 250, 185, 60, 30, "", &panel.rotatez},
    {kPanelText, 30, 190, 50, 20, "Rotate"},
    {kPanelText, 110, 55, 20, 30, "X"},
    {kPanelText, 190, 55, 20, 30, "Y"},
    {kPanelText, 270, 55, 20, 30, "Z"},
};

FD_stlform *create_form_stlform()
{
    panel.form = CreatePanel(FL_UP_BOX, 351, 291, kObjects, &stlformvisible);
    return &panel;
}
