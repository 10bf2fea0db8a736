// The control panels: the code that builds, fills and shows them. Each panel has a file of its own with its layout
// and the handling of its objects.

#pragma once

#include <span>
#include <variant>

#include <forms.h>

enum PanelObjectKind {
    kPanelFrame,
    kPanelButton,
    kPanelCheckButton,
    kPanelTitle,
    kPanelText,
    kPanelCentredText,
    kPanelInput
};

// What an input shows: a number that it sets, or a text that is the same whenever the panel is filled
using PanelValue = std::variant<std::monostate, double *, int *, const char *>;

// One object of a panel: geometry in pixels from the form's upper left corner, and where its handle is kept.
struct PanelObject {
    PanelObjectKind kind;
    int x, y, width, height;
    const char *label;
    FL_OBJECT **handle = nullptr;
    PanelValue value = {};
    bool restarts = false; // a change of the number restarts the run
};

// Builds a form of the given size with a background box of one of the toolkit's types (FL_UP_BOX), and its objects in
// order. Closing its window hides it and clears *visible. The panel goes on using `objects`.
FL_FORM *CreatePanel(int boxtype, int width, int height, std::span<const PanelObject> objects, int *visible);

// The object that the user has operated, if it shows a number; else nullptr
const PanelObject *FindInput(std::span<const PanelObject> objects, const FL_OBJECT *worked);

// The address of the number that an object shows; the object must be one that FindInput returns.
const void *ShownField(const PanelObject &object);

// From now on the windows of panels have titles: the text of the panel's first kPanelTitle.
void GivePanelsTitles();

// Fills all panels with the current numbers, and shows this one.
void ShowPanel(FL_FORM *form, int *visible);

// Hides a panel.
void HidePanel(FL_FORM *form, int *visible);

// Whether any panel is shown
bool IsPanelShown();

// Gives the panels that are shown one of the toolkit's cursors (FL_BUSY_CURSOR).
void SetPanelCursors(int cursor);

// Writes the current numbers into the inputs of all panels; the inputs of the transform panel return to the identity.
// Buttons are not set (kept).
void UpdateForms();
