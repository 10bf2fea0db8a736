// The panel that scales, shifts and rotates the constraint surface.

#pragma once

#include "toolkit/control_panel.h"

struct FD_stlform {
    FL_FORM *form;
    void *vdata; // this and the next two are for the toolkit
    char *cdata;
    long ldata;
    FL_OBJECT *hide;
    FL_OBJECT *scalex;
    FL_OBJECT *apply;
    FL_OBJECT *scaley;
    FL_OBJECT *scalez;
    FL_OBJECT *shiftx;
    FL_OBJECT *shifty;
    FL_OBJECT *shiftz;
    FL_OBJECT *rotatex;
    FL_OBJECT *rotatey;
    FL_OBJECT *rotatez;
};
extern FD_stlform *stlform;

// Builds the panel, once.
FD_stlform *create_form_stlform();

// Handles an object of the panel that the user has operated: "Apply" transforms the surface by the values of the
// inputs. Does nothing for an object of another panel. Returns whether the surface has changed; the caller then
// redraws it and updates the panels.
bool HandleTransformPanel(const FL_OBJECT *worked);
