#pragma once

#include "growth/control_panel.h"

// Builds the panel of the growth parameters, once.
FD_settingform *create_form_settingform();
