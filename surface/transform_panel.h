#pragma once

#include "growth/control_panel.h"

// Builds the panel that scales, shifts and rotates the constraint surface, once.
FD_stlform *create_form_stlform();
