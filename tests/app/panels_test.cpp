#include "app/panels.h"

#include <climits>
#include <cmath>

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/growth_step.h"
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
        settingformvisible = stlformvisible = sliceformvisible = 1;
        ForgetCalls();
    }
    void TearDown() override { settingformvisible = stlformvisible = sliceformvisible = 0; }

    static void Work(FL_OBJECT *object)
    {
        fakeworked = object;
        PollPanels();
        fakeworked = nullptr;
    }
    static void Type(FL_OBJECT *input, const char *text)
    {
        fl_set_input(input, text);
        Work(input);
    }
};

TEST_F(Panels, InputsSetTheirParametersWithinLimits)
{
    const struct {
        FL_OBJECT *input;
        const char *text;
        const double *parameter;
        double value;
    } rows[] = {
        {settingform->bias, "0.5", &growthstate.bias, 0.5},
        {settingform->bias, "1.5", &growthstate.bias, 1},
        {settingform->bias, "-0.1", &growthstate.bias, 0},
        {settingform->bias, "nan", &growthstate.bias, 0},
        {settingform->branchlength, "0.009", &growthstate.branchlength, 0.01},
        {settingform->branchlength, "x", &growthstate.branchlength, 0.01},
        {settingform->branchlength, "1e308", &growthstate.branchlength, 1e308},
        {settingform->stickiness, "0", &growthstate.stickiness, 1},
        {settingform->stickiness, "101", &growthstate.stickiness, 100},
        {settingform->stickiness, "", &growthstate.stickiness, 1},
        {settingform->thickto, "-3", &growthstate.thickto, 3},
        {settingform->thickfrom, "-0.25", &growthstate.thickfrom, 0.25},
        {settingform->rotation, "-6", &growthstate.rotation, -5},
        {settingform->rotation, "6", &growthstate.rotation, 5},
        {settingform->rotation, "-4.5", &growthstate.rotation, -4.5},
        {settingform->rootrange, "-1e308", &growthstate.rootrange, -1e308},
        {settingform->intersectrange, "91", &growthstate.intersectrange, 90},
        {settingform->intersectrange, "-1", &growthstate.intersectrange, 0},
        {sliceform->normalx, "-2.5", &options.sliceparam1, -2.5},
        {sliceform->normaly, "7 up", &options.sliceparam2, 7},
        {sliceform->normalz, "none", &options.sliceparam3, 0},
    };
    for (const auto &row : rows) {
        Type(row.input, row.text);
        EXPECT_EQ(*row.parameter, row.value) << row.text;
    }
    const struct {
        FL_OBJECT *input;
        const char *text;
        const int *parameter;
        int value;
    } counts[] = {
        {settingform->seed, "-7.9", &growthstate.seed, 7},
        {settingform->seed, "nan", &growthstate.seed, 0},
        {settingform->seed, "-1e308", &growthstate.seed, INT_MAX},
        {settingform->nroots, "-3", &growthstate.nroots, 3},
        {sliceform->count, "1", &options.slicecount, 2},
        {sliceform->count, "inf", &options.slicecount, 2},
        {sliceform->count, "1e1", &options.slicecount, 2},
        {sliceform->count, "99999999999", &options.slicecount, INT_MAX},
        {sliceform->count, "12.7", &options.slicecount, 12},
    };
    for (const auto &row : counts) {
        Type(row.input, row.text);
        EXPECT_EQ(*row.parameter, row.value) << row.text;
    }
}

TEST_F(Panels, AreFilledWithTheParameters)
{
    double next = 1.5;
    const auto number = [&](double *parameter) {
        char text[32];
        snprintf(text, sizeof text, "%g", *parameter = next++);
        return std::string(text);
    };
    const auto count = [&](int *parameter) { return std::to_string(*parameter = static_cast<int>(next++)); };
    GrowthState &g = growthstate;
    const std::pair<FL_OBJECT *, std::string> inputs[] = {
        {settingform->seed, count(&g.seed)},
        {settingform->rotation, number(&g.rotation)},
        {settingform->bias, number(&g.bias)},
        {settingform->branchlength, number(&g.branchlength)},
        {settingform->stickiness, number(&g.stickiness)},
        {settingform->thickto, number(&g.thickto)},
        {settingform->thickfrom, number(&g.thickfrom)},
        {settingform->nroots, count(&g.nroots)},
        {settingform->rootrange, number(&g.rootrange)},
        {settingform->intersectrange, number(&g.intersectrange)},
        {sliceform->count, count(&options.slicecount)},
        {sliceform->normalx, number(&options.sliceparam1)},
        {sliceform->normaly, number(&options.sliceparam2)},
        {sliceform->normalz, number(&options.sliceparam3)},
        {stlform->scalex, "1.0"},
        {stlform->scaley, "1.0"},
        {stlform->scalez, "1.0"},
        {stlform->shiftx, "0.0"},
        {stlform->shifty, "0.0"},
        {stlform->shiftz, "0.0"},
        {stlform->rotatex, "0.0"},
        {stlform->rotatey, "0.0"},
        {stlform->rotatez, "0.0"},
    };
    for (const auto &[input, text] : inputs)
        fl_set_input(input, "typed");
    UpdateForms();
    for (const auto &[input, text] : inputs)
        EXPECT_EQ(fl_get_input(input), text);
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
