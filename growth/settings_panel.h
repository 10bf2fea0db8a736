// The panel of the growth parameters.

#pragma once

#include "toolkit/control_panel.h"

struct FD_settingform {
    FL_FORM *form;
    void *vdata; // this and the next two are for the toolkit
    char *cdata;
    long ldata;
    FL_OBJECT *hide;
    FL_OBJECT *bias;
    FL_OBJECT *branchlength;
    FL_OBJECT *stickiness;
    FL_OBJECT *thickto; // the left one of the two bounds (kept)
    FL_OBJECT *thickfrom;
    FL_OBJECT *seed;
    FL_OBJECT *rotation;
    FL_OBJECT *nroots;
    FL_OBJECT *rootrange;
    FL_OBJECT *association;
    FL_OBJECT *intersectrange;
};
extern FD_settingform *settingform;

// Builds the panel, once.
FD_settingform *create_form_settingform();

// Handles an object of the panel that the user has operated: an input or the button sets its parameter within its
// range, and some restart the run. Does nothing for an object of another panel.
void HandleSettingsPanel(const FL_OBJECT *worked);
