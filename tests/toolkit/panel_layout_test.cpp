#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "panels.h"

// What has been built since the last call, one object a line: what it is, its place and its label.
static std::string Layout()
{
    std::ostringstream layout;
    for (const Call &call : calls) {
        const auto at = [&](size_t i) { return call.args.at(i); };
        if (call.name == "fl_bgn_form")
            layout << "form " << at(1) << " " << at(2) << "\n";
        else if (call.name == "fl_set_object_lsize")
            layout << "  size " << at(0) << "\n";
        else if (call.name == "fl_set_object_lalign")
            layout << "  alignment " << at(0) << "\n";
        else if (call.name == "fl_set_object_lstyle")
            layout << "  style " << at(0) << "\n";
        else if (call.name.rfind("fl_add_", 0) == 0)
            layout << call.name.substr(7) << " type " << at(0) << ", " << at(1) << " " << at(2) << " "
                   << at(3) << " " << at(4) << " \"" << call.text << "\"\n";
    }
    ForgetCalls();
    return layout.str();
}

TEST(PanelLayout, EveryObjectAtItsPlace)
{
    ForgetCalls();
    create_form_settingform();
    create_form_stlform();
    create_form_sliceform();
    std::ifstream file(SARKELO_TESTS "/toolkit/panel_layout.txt");
    std::ostringstream expected;
    expected << file.rdbuf();
    EXPECT_EQ(Layout(), expected.str());
}
