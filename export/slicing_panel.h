// The panel that takes the number and the normal of the slices, and cuts them.

#pragma once

#include "toolkit/control_panel.h"

struct FD_sliceform {
    FL_FORM *form;
    void *vdata; // the toolkit's own
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

// Carries out what a worked object stands for: "Slice" writes the slices, after a question where there are very
// many, and ends the program where a file cannot be opened (kept). Does nothing for an object of another panel.
void HandleSlicingPanel(const FL_OBJECT *worked);
