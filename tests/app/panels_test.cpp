
#include <climits>

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "panels.h"
#include "surface/samples.h"
#include "surface/surface.h"

class Panels : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        SetProgramDefaults();
        CreatePanelsOnce();
        UpdateForms();
        settingformvisible = stlformvisible = sliceformvisible = 1;
        ForgetCalls();
    }
    void TearDown() override { settingformvisible = stlformvisible = sliceformvisible = 0; }
};

// Every input with every kind of text: what all parameters are then, and what all inputs show after an update.
TEST_F(Panels, InputsSetTheirParametersAsRightBefore)
{
    const std::pair<const char *, FL_OBJECT *> inputs[] = {
        {"seed", settingform->seed},
        {"rotation", settingform->rotation},
        {"bias", settingform->bias},
        {"branch length", settingform->branchlength},
        {"stickiness", settingform->stickiness},
        {"left thickness", settingform->thickto},
        {"right thickness", settingform->thickfrom},
        {"roots", settingform->nroots},
        {"root range", settingform->rootrange},
        {"intersection", settingform->intersectrange},
        {"slices", sliceform->count},
        {"x", sliceform->normalx},
        {"y", sliceform->normaly},
        {"z", sliceform->normalz},
        {"scale", stlform->scalex},
        {"scale", stlform->scaley},
        {"scale", stlform->scalez},
        {"shift", stlform->shiftx},
        {"shift", stlform->shifty},
        {"shift", stlform->shiftz},
        {"rotate", stlform->rotatex},
        {"rotate", stlform->rotatey},
        {"rotate", stlform->rotatez},
    };
    std::ostringstream text;
    for (const auto &[name, input] : inputs) {
        for (const char *typed : {"0.5", "1.5", "-0.1", "nan", "0.009", "x", "1e308", "-1e308", "", "101",
                                  "-7.9", "7 up", "1e1", "99999999999", "12.7"}) {
            StartAfresh();
            Type(input, typed);
            text << name << " \"" << typed << "\":";
            for (const Parameter &parameter : Parameters())
                std::visit([&](const auto *field) { text << ' ' << *field; }, parameter.field);
            UpdateForms();
            text << "; shown:";
            for (const auto &[other, shown] : inputs)
                text << ' ' << fl_get_input(shown);
            text << '\n';
        }
    }
    ExpectGolden("panels.txt", text.str());
}

TEST_F(Panels, RootsAndAssociationStartTheRunAnew)
{
    growthstate.roottype = kRootRingZ;
    Type(settingform->nroots, "4");
    EXPECT_EQ(ncells, 4);
    Grow(IterateSystem, 50, 1000000);
    Type(settingform->rootrange, "6");
    EXPECT_EQ(ncells, 4);
    EXPECT_EQ(cells[0].p.x, 6);
    Grow(IterateSystem, 50, 1000000);
    fakebutton = 1;
    Work(settingform->association);
    EXPECT_EQ(growthstate.association, 1);
    EXPECT_EQ(ncells, 4);
    Type(settingform->nroots, "0");
    EXPECT_EQ(ncells, 0);
    for (int i = 0; i < 1000; i++)
        IterateSystem();
    EXPECT_EQ(ncells, 0);
}

TEST_F(Panels, RootsThatMemoryCannotHoldAreRefused)
{
    growthstate.roottype = kRootSpherical;
    Type(settingform->nroots, "3");
    Grow(IterateSystem, 100, 1000000);
    const Outcome before = TakeOutcome();
    Type(settingform->nroots, "1e308");
    EXPECT_EQ(CallsOf("fl_show_message").at(0).text,
              "Memory Error|Not enough memory for this number of roots|");
    EXPECT_EQ(growthstate.nroots, 3);
    EXPECT_EQ(ncells, static_cast<int>(before.cells.size()));
    EXPECT_STREQ(fl_get_input(settingform->nroots), "3");

    // A distribution that places one root whatever their number has room for any.
    growthstate.roottype = kRootOrigin;
    Type(settingform->nroots, "1e308");
    EXPECT_EQ(growthstate.nroots, INT_MAX);
    EXPECT_EQ(ncells, 1);
    EXPECT_EQ(CountCalls("fl_show_message"), 1);
}

TEST_F(Panels, FlightsAreNotTurned)
{
    growthstate.walk = kWalkFlights;
    Type(settingform->rotation, "3");
    EXPECT_EQ(CallsOf("fl_show_message").at(0).text,
              "Particle rotation|This aggregate grows in flights, which cannot be turned|");
    EXPECT_EQ(growthstate.rotation, 0);
    EXPECT_STREQ(fl_get_input(settingform->rotation), "0");
    Type(settingform->bias, "0.5");
    EXPECT_EQ(CountCalls("fl_show_message"), 1);
    growthstate.walk = kWalkSteps;
    Type(settingform->rotation, "3");
    EXPECT_EQ(growthstate.rotation, 3);
}

// What was changed and undone leaves the same aggregate; a restart alone keeps the flow that its root has gathered.
TEST_F(Panels, ARestartRegrowsTheSameAggregate)
{
    Grow(IterateSystem, 500, 10000000);
    const unsigned long long first = HashParticles(500);
    Type(settingform->branchlength, "2");
    Grow(IterateSystem, 600, 10000000);
    Type(settingform->branchlength, "1");
    Type(settingform->nroots, "1");
    Grow(IterateSystem, 500, 10000000);
    EXPECT_EQ(HashParticles(500), first);
    InitialiseGrowth();
    EXPECT_GT(cells[0].weight, 0);
    cells[0].weight = 0;
    Grow(IterateSystem, 500, 10000000);
    EXPECT_EQ(HashParticles(500), first);
}

TEST_F(Panels, ApplyTransformsTheSurfaceAndReturnsToTheIdentity)
{
    BuildSample(11);
    fl_set_input(stlform->scalex, "2");
    fl_set_input(stlform->shifty, "1");
    Work(stlform->apply);
    EXPECT_DOUBLE_EQ(stlmax.x, 2 * 28.284271247461902);
    EXPECT_DOUBLE_EQ(stlmax.y, 1 + 28.284271247461902);
    EXPECT_STREQ(fl_get_input(stlform->scalex), "1.0");
    EXPECT_STREQ(fl_get_input(stlform->shifty), "0.0");
    EXPECT_EQ(CountCalls("glNewList"), 1);
    fl_set_input(stlform->scalex, "2");
    Work(stlform->apply);
    EXPECT_DOUBLE_EQ(stlmax.x, 4 * 28.284271247461902);
    for (FL_OBJECT *scale : {stlform->scalex, stlform->scaley, stlform->scalez})
        fl_set_input(scale, "nothing");
    Work(stlform->apply); // scaled by 0: every face is gone
    EXPECT_EQ(nstltri, 0);
}

TEST_F(Panels, HideAndClose)
{
    Work(settingform->hide);
    Work(stlform->hide);
    Work(sliceform->hide);
    EXPECT_EQ(settingformvisible + stlformvisible + sliceformvisible, 0);
    EXPECT_EQ(CountCalls("fl_hide_form"), 3);
    sliceformvisible = 1;
    EXPECT_EQ(fakeclose(), FL_OK); // by the window manager: the toolkit hides it
    EXPECT_EQ(sliceformvisible, 0);
}
