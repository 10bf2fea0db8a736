// Frames, call by call: every drawing mode, stereo mode and overlay.

#include <functional>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/surface.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/display.h"
#include "viewer/overlays.h"
#include "viewer/statistics.h"
#include "viewer/surface_drawing.h"

// Of the calls since the last ForgetCalls those that no frame before had, except the many of bodies and texts; the number of
// all calls, and a hash.
static std::string DescribeCalls()
{
    static const std::set<std::string> details = {
        "glBegin", "glEnd", "glVertex3f", "glNormal3f", "glColor3f", "glTexCoord2f", "glutBitmapCharacter"};
    static std::set<std::string> known;
    std::string all, fresh;
    for (Call &call : calls) {
        for (double &number : call.args)
            number = Plain(number);
        const std::string line = Text(call) + '\n';
        all += line;
        if (!details.contains(call.name) && known.insert(line).second)
            fresh += line;
    }
    std::ostringstream sum;
    sum << calls.size() << " calls, hash " << std::hex << Hash(all.data(), all.size()) << '\n';
    return fresh + sum.str();
}

// A small aggregate on three roots, in a box, seen from home; statistics as they are at first.
static void PrepareFrame()
{
    for (int k = 0; k < 600 && AreStatisticsShown(); k++) // those of the scene before
        DrawStatistics(0);
    StartAfresh();
    std::fill(seeds, seeds + kSeedRing, Vector{0, 0, 0});
    CameraHome();
    camera.stereo = kStereoNone;
    HandleReshape(800, 600);
    growthstate.nroots = 3;
    growthstate.roottype = kRootRingX;
    RestartFromRoots();
    SetBoxSurface(50, false);
    Grow(IterateSystem, 24, 1000000);
    stats = {7, {1, 2, 3, 4, 5, 6, 99}, {10, 6.6666, 4}, {3, 12, 0, -1}};
    DrawSTL(options.surfacemode, 1);
    drawingpart = {};
    drawingstyle = {};
}

// Parameters that differ from their defaults, and more launches than are drawn.
static void SetOddParameters()
{
    double value = 0.125;
    for (const Parameter &parameter : Parameters())
        SetParameter(parameter, value += 0.75);
    growthstate.sourcetype = kSourceAxisMinusZ;
    growthstate.nroots = 2000000;
    snprintf(growthstate.rootname, sizeof growthstate.rootname, "%s", std::string(100, 'r').c_str());
    nseeds = 1500;
}

// Many branches, some of them upright or without length, and nothing besides.
static void GrowManyBranches()
{
    Grow(IterateSystem, 200, 10000000);
    for (const int i : {64, 65, 66})
        cells[i].p = cells[cells[i].parent].p + Vector{0, i - 65.0, 0};
    options.showextras = options.showinfo = options.surfacemode = 0;
    drawingstyle = {.linewidth = 3, .pointsize = 2, .flushafter = 100};
}

static void CountBoxes(int boxes)
{
    Statistics();
    while (options.boxcountrequest && boxes-- > 0)
        CalcBoxCount(0, 0);
}

TEST(Frames, MatchExpectedCalls)
{
    std::vector<std::pair<std::string, std::function<void()>>> scenes = {
        {"roots only", [] { InitialiseGrowth(); }},
        {"association", [] { growthstate.association = 1, growthstate.branchlength = 0; }},
        {"odd parameters", SetOddParameters},
        {"one root, no surface", [] { growthstate.nroots = 1, nstltri = 0; }},
        {"active stereo", [] { camera.stereo = kStereoActive; }},
        {"dual-screen stereo", [] { camera.stereo = kStereoDualScreen; }},
        {"lower window", [] { HandleReshape(300, 301); }},
        {"boxes are counted", [] { CountBoxes(100); }},
        {"the count ends", [] { CountBoxes(1000000); }},
        {"text", [] { DrawGLText(20, 100, "ab\n\rc"); }},
    };
    const auto add = [&](const std::string &name, int number, const std::function<void(int)> &change) {
        scenes.push_back({name + std::to_string(number), [=] { change(number); }});
    };
    for (int mode = 0; mode <= 5; mode++)
        add("200 branches ", mode, [](int value) { GrowManyBranches(), options.dlamode = value; });
    for (int mode = 0; mode <= 6; mode++) // list 0 is replayed but never deleted
        add("surface ", mode, [](int value) {
            fakelist = static_cast<unsigned>(value % 3);
            DrawSTL(value, 1);
            options.surfacemode = value;
        });
    for (const int most : {1, 30, 199, 1000}) // the heaviest, tubes as lines
        add("heaviest branches ", most, [](int value) {
            GrowManyBranches();
            drawingpart.mostbranches = value;
            drawingpart.aslines = true;
            DrawDLA(kAggregateTubes);
        });
    std::string text;
    for (const auto &[name, change] : scenes) {
        PrepareFrame();
        ForgetCalls();
        change();
        HandleDisplay();
        options.boxcountrequest = 0;
        text += "== " + name + '\n' + DescribeCalls();
    }
    PrepareFrame();
    ExpectGolden("frames.txt", text);
}
