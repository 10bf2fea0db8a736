// The three control panels: what each holds, and what is common to building and filling them.

#pragma once

#include <span>

#include <forms.h>

struct FD_settingform {
    FL_FORM *form;
    void *vdata; // the toolkit's own
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

struct FD_stlform {
    FL_FORM *form;
    void *vdata;
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

struct FD_sliceform {
    FL_FORM *form;
    void *vdata;
    char *cdata;
    long ldata;
    FL_OBJECT *normalx;
    FL_OBJECT *normaly;
    FL_OBJECT *normalz;
    FL_OBJECT *count;
    FL_OBJECT *slice;
    FL_OBJECT *hide;
};

// Created once at program start, by the functions create_form_... of each panel.
extern FD_settingform *settingform;
extern FD_stlform *stlform;
extern FD_sliceform *sliceform;

enum PanelObjectKind {
    kPanelFrame,
    kPanelButton,
    kPanelCheckButton,
    kPanelTitle,
    kPanelText,
    kPanelCentredText,
    kPanelInput
};

// One object of a panel: geometry in pixels from the form's upper left corner, and where its handle is kept.
struct PanelObject {
    PanelObjectKind kind;
    int x, y, width, height;
    const char *label;
    FL_OBJECT **handle = nullptr;
};

// Builds a form of the given size, filled by a box of a type of the toolkit (FL_UP_BOX), with its objects in
// order. Closing its window hides it and clears *visible.
FL_FORM *CreatePanel(int boxtype, int width, int height, std::span<const PanelObject> objects, int *visible);

// Fills the panels with the current parameters, and shows one of them.
void ShowPanel(FL_FORM *form, int *visible);

// Hides a panel.
void HidePanel(FL_FORM *form, int *visible);

// Writes the current parameters into the inputs of the settings and slicing panels, and the identity into
// those of the transform panel. The button for association is not set (kept).
void UpdateForms();
