#include "surface/transform_panel.h"

#include <cstdlib>

#include "growth/state.h"
#include "surface/surface.h"
#include "toolkit/wait_cursor.h"

FD_stlform *stlform = nullptr;

static Vector ReadInputs(FL_OBJECT *x, FL_OBJECT *y, FL_OBJECT *z);

static FD_stlform panel;

static const PanelObject kObjects[] = {
    {kPanelFrame, 20, 50, 310, 180, ""},
    {kPanelButton, 260, 245, 60, 30, "Hide", &panel.hide},
    {kPanelTitle, 20, 10, 170, 30, "Constraint surface"},
    {kPanelInput, 90, 85, 60, 30, "", &panel.scalex, "1.0"},
    {kPanelButton, 170, 245, 60, 30, "Apply", &panel.apply},
    {kPanelInput, 170, 85, 60, 30, "", &panel.scaley, "1.0"},
    {kPanelInput, 250, 85, 60, 30, "", &panel.scalez, "1.0"},
    {kPanelText, 40, 90, 50, 20, "Scale"},
    {kPanelInput, 90, 135, 60, 30, "", &panel.shiftx, "0.0"},
    {kPanelInput, 170, 135, 60, 30, "", &panel.shifty, "0.0"},
    {kPanelInput, 250, 135, 60, 30, "", &panel.shiftz, "0.0"},
    {kPanelText, 40, 140, 40, 20, "Shift"},
    {kPanelInput, 90, 185, 60, 30, "", &panel.rotatex, "0.0"},
    {kPanelInput, 170, 185, 60, 30, "", &panel.rotatey, "0.0"},
    {kPanelInput, 250, 185, 60, 30, "", &panel.rotatez, "0.0"},
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

bool HandleTransformPanel(const FL_OBJECT *worked)
{
    if (worked == panel.hide)
        HidePanel(panel.form, &stlformvisible);
    if (worked != panel.apply)
        return false;
    const WaitCursor wait;
    TransformSTL(ReadInputs(panel.scalex, panel.scaley, panel.scalez),
                 ReadInputs(panel.shiftx, panel.shifty, panel.shiftz),
                 ReadInputs(panel.rotatex, panel.rotatey, panel.rotatez));
    UpdateSTL();
    return true;
}

static Vector ReadInputs(FL_OBJECT *x, FL_OBJECT *y, FL_OBJECT *z)
{
    return {atof(fl_get_input(x)), atof(fl_get_input(y)), atof(fl_get_input(z))};
}
