// The panel for the number and the normal of the slices, with a button that writes them

#pragma once

#include "toolkit/control_panel.h"

struct FD_sliceform {
    FL_FORM *form;
    void *vdata; // vdata, cdata and ldata belong to the toolkit
    char *cdata;
    long ldata;
    FL_OBJECT *normalx;
    FL_OBJECT *normaly;
    FL_OBJECT *normalz;
    FL_OBJECT *count;
    FL_OBJECT *slice;
    FL_OBJECT *hide;
};
extern FD_sliceform *sliceform;

// Builds the panel, once.
FD_sliceform *create_form_sliceform();

// Handles an object of the panel that the user has operated. "Slice" writes the slices, above 10,000 of them after a
// question; if a file cannot be opened, it ends the program (kept), except in the view window. Does nothing for an
// object of another panel.
void HandleSlicingPanel(const FL_OBJECT *worked);
