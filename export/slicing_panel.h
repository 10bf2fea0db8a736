#pragma once

#include "growth/control_panel.h"

// Builds the panel that takes the number and the normal of the slices, once.
FD_sliceform *create_form_sliceform();
