// The control panels: what is common to building, filling and showing them. Each has a file of its own with
// its layout and its effect.

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

// What an input shows: a number that it sets, or always the same text at first.
using PanelValue = std::variant<std::monostate, double *, int *, const char *>;

// One object of a panel: geometry in pixels from the form's upper left corner, and where its handle is kept.
struct PanelObject {
    PanelObjectKind kind;
    int x, y, width, height;
    const char *label;
    FL_OBJECT **handle = nullptr;
    PanelValue value = {};
    bool restarts = false; // a change of the number starts the run anew
};

// Builds a form of the given size, filled by a box of a type of the toolkit (FL_UP_BOX), with its objects in
// order. Closing its window hides it and clears *visible. The objects stay with the panel.
FL_FORM *CreatePanel(int boxtype, int width, int height, std::span<const PanelObject> objects, int *visible);

// The object that was worked, where it shows a number; else nullptr.
const PanelObject *FindInput(std::span<const PanelObject> objects, const FL_OBJECT *worked);

// The number that such an object shows.
const void *ShownField(const PanelObject &object);

// From now on the windows of panels have titles: their first title object's text.
void GivePanelsTitles();

// Fills the panels with the current numbers, and shows one of them.
void ShowPanel(FL_FORM *form, int *visible);

// Hides a panel.
void HidePanel(FL_FORM *form, int *visible);

// Whether one of them is shown.
bool IsPanelShown();

// Gives the panels that are shown a cursor of the toolkit.
void SetPanelCursors(int cursor);

// Writes the current numbers into all inputs; those of the transform panel go back to the identity. Buttons
// are not set (kept).
void UpdateForms();
