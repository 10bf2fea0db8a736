// What actions of the user change and show, as a text for a golden file.

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "growth/state.h"
#include "panels.h"

// A run of 20 particles as at program start, seen from home, no panel shown.
void PrepareWindow();

// The inputs of all panels.
std::vector<FL_OBJECT *> PanelInputs();

class ActionLog
{
public:
    // Calls `act` with a file selected, and adds a line with its name, the records that it changes, what it shows, and
    // what it prints. Actions with the same outcome, one after the other, share a line.
    void Do(const std::string &name, const std::function<void()> &act, const std::string &file = "");
    std::string Text() const { return text + ':' + last + '\n'; }

private:
    std::string text, last = "?";
};
