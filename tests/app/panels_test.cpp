// The panels: where their objects are, and what inputs and buttons do.

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "viewer/action_log.h"

// One object a line: what it is, its place and its label.
TEST(Panels, EveryObjectIsAtItsPlace)
{
    ForgetCalls();
    create_form_settingform();
    create_form_stlform();
    create_form_sliceform();
    std::ostringstream layout;
    for (const Call &call : calls) {
        const auto &at = call.args;
        if (call.name == "fl_bgn_form")
            layout << "form " << at[1] << ' ' << at[2] << '\n';
        else if (call.name.starts_with("fl_set_object_l"))
            layout << "  " << call.name.substr(15) << ' ' << at[0] << '\n';
        else if (call.name.starts_with("fl_add_"))
            layout << call.name.substr(7) << " type " << at[0] << ", " << at[1] << ' ' << at[2] << ' '
                   << at[3] << ' ' << at[4] << " \"" << call.text << "\"\n";
    }
    ExpectGolden("../toolkit/panel_layout.txt", layout.str());
}

static void ShowPanels()
{
    PrepareWindow();
    settingformvisible = stlformvisible = sliceformvisible = 1;
}

TEST(Panels, MatchExpectedChanges)
{
    ActionLog log;
    CreatePanelsOnce();
    for (FL_OBJECT *input : PanelInputs())
        for (const std::string typed : {"0.5", "-0.1", "nan", "0.009", "x", "1e308", "-1e308", "101", "-7.9",
                                        "7 up", "1e1", "99999999999"}) {
            ShowPanels();
            log.Do('"' + typed + '"', [&] { Type(input, typed.c_str()), UpdateForms(); });
        }
    const auto work = [&](const char *name, FL_OBJECT *object) { log.Do(name, [=] { Work(object); }); };
    ShowPanels();
    growthstate.roottype = kRootRingZ;
    fakebutton = 1;
    work("association", settingform->association);
    log.Do("more roots than memory holds", [] { Type(settingform->nroots, "1e308"); });
    growthstate.walk = kWalkFlights;
    log.Do("rotation", [] { Type(settingform->rotation, "3"); });
    BuildSample(11);
    for (const char *scale : {"2", "2", "nothing"}) { // the inputs return to the identity
        for (FL_OBJECT *input : {stlform->scalex, stlform->scaley, stlform->scalez, stlform->shifty})
            fl_set_input(input, scale);
        work("apply", stlform->apply);
    }
    work("hide settings", settingform->hide);
    work("hide the transform", stlform->hide);
    work("hide slicing", sliceform->hide);
    sliceformvisible = 1;
    log.Do("closed by the window manager", [] { EXPECT_EQ(fakeclose(), FL_OK); });
    ExpectGolden("panels.txt", log.Text());
}
