// Frames, call by call: every drawing mode, stereo mode and overlay, and the bodies that no frame shows.

#include <algorithm>
#include <functional>
#include <set>
#include <sstream>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "analysis/box_count.h"
#include "export/appearance.h"
#include "fakes/recorder.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "surface/surface.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/display.h"
#include "viewer/gl_primitives.h"
#include "viewer/overlays.h"
#include "viewer/statistics.h"
#include "viewer/surface_drawing.h"

static unsigned long long Hash(const std::string &text)
{
    unsigned long long hash = 14695981039346656037ULL;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    return hash;
}

// The calls that `draw` makes, a line each. Of those between glBegin and glEnd: how many, the first, and a sum
// of all; characters stand together as text.
static std::string Drawn(const std::function<void()> &draw)
{
    ForgetCalls();
    draw();
    std::ostringstream lines;
    std::string body;
    int count = 0;
    bool inside = false, text = false;
    for (Call &call : calls) {
        for (double &number : call.args)
            number = Plain(number);
        if (text && call.name != "glutBitmapCharacter")
            lines << "\"\n";
        if (call.name == "glutBitmapCharacter")
            lines << (text ? "" : "\"") << static_cast<char>(call.args[0]);
        text = call.name == "glutBitmapCharacter";
        if (text)
            continue;
        const std::string line = Text(call);
        if (call.name == "glBegin") {
            inside = true;
            count = 0;
            body.clear();
            lines << line << " ";
        } else if (call.name == "glEnd") {
            inside = false;
            lines << count << " calls, " << body.substr(0, body.find('\n')) << ", sum " << Hash(body) << "\n";
        } else if (inside) {
            body += line + "\n";
            count++;
        } else {
            lines << line << "\n";
        }
    }
    return lines.str() + (text ? "\"\n" : "");
}

// A small aggregate on three roots, in a box, seen from home; statistics as they are at first.
static void PrepareFrame()
{
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
}

TEST(Frames, EveryModeAndOverlay)
{
    const struct {
        const char *name;
        std::function<void()> change;
    } scenes[] = {
        {"lines", [] {}},
        {"points", [] { options.dlamode = kAggregatePoints; }},
        {"tubes", [] { options.dlamode = kAggregateTubes; }},
        {"mode 4", [] { options.dlamode = 4; }},
        {"off", [] { options.dlamode = kAggregateOff; }},
        {"roots only", [] { InitialiseGrowth(); }},
        {"association", [] { growthstate.association = 1; }},
        {"association, tubes",
         [] {
             growthstate.association = 1;
             options.dlamode = kAggregateTubes;
         }},
        {"no extras, no information", [] { options.showextras = options.showinfo = 0; }},
        {"odd parameters",
         [] {
             double value = 0.125;
             const Parameter *unseen[] = {&ParameterOf(&growthstate.walk),
                                          &ParameterOf(&growthstate.launchscale),
                                          &ParameterOf(&growthstate.killingscale)}; // no window shows them
             for (const Parameter &parameter : Parameters())
                 if (std::find(std::begin(unseen), std::end(unseen), &parameter) == std::end(unseen))
                     SetParameter(parameter, value += 0.75);
             growthstate.sourcetype = kSourceAxisMinusZ;
             growthstate.nroots = 2000000;
             growthstate.seed = -3;
             growthstate.stepcount = 17;
             snprintf(growthstate.rootname, sizeof growthstate.rootname, "%s", std::string(100, 'r').c_str());
             snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "Box");
             nseeds = 1500;
         }},
        {"one root, no surface",
         [] {
             growthstate.nroots = 1;
             nstltri = 0;
         }},
        {"active stereo", [] { camera.stereo = kStereoActive; }},
        {"dual-screen stereo", [] { camera.stereo = kStereoDualScreen; }},
        {"elsewhere",
         [] {
             camera.vp = {0, 30, 0};
             camera.vd = {0, -1, 0};
             camera.aperture = 40;
             HandleReshape(300, 301);
         }},
        {"statistics", [] { DrawStatistics(2); }},
        {"their second draw",
         [] {
             DrawStatistics(2);
             DrawStatistics(0);
         }},
        {"counting boxes",
         [] {
             Statistics();
             for (int i = 0; i < 100; i++)
                 CalcBoxCount(0, 0);
         }},
    };
    // The first frame is written whole; of the others, the lines that no frame before had, their number and a sum.
    std::set<std::string> known;
    std::ostringstream text;
    for (const auto &scene : scenes) {
        PrepareFrame();
        while (Drawn([] { DrawStatistics(0); }) != "") // whatever is armed from before runs out
            ;
        scene.change();
        const std::string frame = Drawn(HandleDisplay);
        options.boxcountrequest = 0;
        text << "== " << scene.name << '\n';
        const bool isfirst = known.empty();
        std::istringstream lines(frame);
        int count = 0;
        for (std::string line; std::getline(lines, line); count++)
            if (known.insert(line).second || isfirst)
                text << line << '\n';
        text << count << " lines, sum " << Hash(frame) << '\n';
    }
    ExpectGolden("frames.txt", text.str());
}

TEST(Frames, ManyTubesAreDrawnAsEachAlone)
{
    PrepareFrame();
    Grow(IterateSystem, 3 * kConesAtOnce, 10000000);
    cells[kConesAtOnce].p = cells[cells[kConesAtOnce].parent].p;
    cells[kConesAtOnce + 1].p = cells[cells[kConesAtOnce + 1].parent].p + Vector{0, 1, 0};
    std::string alone = Drawn([] { CreateEnvironment(kAggregateTubes); });
    const BranchThickness thickness;
    for (int i = 0; i < ncells; i++) {
        const int parent = cells[i].parent;
        if (parent < 0)
            continue;
        const Cone cone = {cells[parent].p, cells[i].p, thickness.Of(parent), thickness.Of(i)};
        alone += Drawn([=] {
            SetColour(ChooseColour(i, kAggregateTubes));
            CreateCone(cone.p1, cone.p2, cone.r1, cone.r2, 0, kTwoPi, 10);
        });
    }
    EXPECT_EQ(Drawn([] { DrawDLA(kAggregateTubes); }), alone);
}

TEST(Frames, OfTooManyTubesTheHeaviestAreDrawnAsLines)
{
    PrepareFrame();
    Grow(IterateSystem, 500, 10000000);
    std::vector<double> weights;
    for (int i = 0; i < ncells; i++)
        if (cells[i].parent >= 0)
            weights.push_back(cells[i].weight);
    const int all = static_cast<int>(weights.size());
    std::sort(weights.rbegin(), weights.rend());
    drawingpart.aslines = true;
    for (const int most : {1, 30, 300, all, all + 1}) {
        drawingpart.most = most;
        ForgetCalls();
        DrawDLA(kAggregateTubes);
        const std::vector<Call> ends = CallsOf("glVertex3f"); // of lines, the particle's first
        EXPECT_EQ(CallsOf("glBegin").at(0).args[0], GL_LINES);
        ASSERT_EQ(static_cast<int>(ends.size()), 2 * std::min(most, all));
        std::vector<double> drawn;
        for (std::size_t k = 0; k < ends.size(); k += 2)
            drawn.push_back(std::find_if(cells, cells + ncells, [&](const Particle &particle) {
                                return static_cast<float>(particle.p.x) == ends[k].args[0] &&
                                       static_cast<float>(particle.p.y) == ends[k].args[1];
                            })->weight);
        std::sort(drawn.rbegin(), drawn.rend());
        EXPECT_TRUE(std::equal(drawn.begin(), drawn.end(), weights.begin())) << most;
    }
    drawingpart = {};
}

// What is drawn is the same, and the driver need not keep more than a part.
TEST(Frames, PicturesAreDrawnInParts)
{
    PrepareFrame();
    Grow(IterateSystem, 500, 10000000);
    for (const int mode : {kAggregatePoints, kAggregateLines, kAggregateTubes}) {
        const auto draw = [=](int flushafter) {
            drawingstyle.flushafter = flushafter;
            Drawn([=] { DrawDLA(mode); });
            drawingstyle = {};
            return Transcript({"glColor3f", "glVertex3f"});
        };
        const std::string whole = draw(0);
        EXPECT_EQ(CountCalls("glFlush"), 0);
        EXPECT_EQ(draw(100), whole);
        EXPECT_EQ(CountCalls("glFlush"), 4) << mode; // after particles 100 to 400
        EXPECT_EQ(CountCalls("glBegin"), CountCalls("glEnd"));
    }
}

TEST(Frames, StatisticsFadeToBlackAndEnd)
{
    PrepareFrame();
    EXPECT_EQ(Drawn([] { DrawStatistics(500); }), "");
    for (int i = 500; i >= 0; i--) {
        Drawn([] { DrawStatistics(0); });
        ASSERT_EQ(CallsOf("glColor3f").at(0).args[0], double(static_cast<float>(i) / 500));
    }
    EXPECT_EQ(Drawn([] {
                  DrawStatistics(0);
                  DrawStatistics(-1);
              }),
              "");
}

TEST(Frames, TheSurfaceIsAList)
{
    PrepareFrame();
    std::ostringstream text;
    for (int mode = 0; mode <= 6; mode++) {
        fakelist = static_cast<unsigned>(mode % 3); // list 0 is replayed but never deleted
        for (const int rebuild : {1, 0})
            text << "== mode " << mode << ", rebuild " << rebuild << "\n"
                 << Drawn([=] { DrawSTL(mode, rebuild); });
    }
    fakelist = 7;
    ExpectGolden("surface_lists.txt", text.str());
}

TEST(Frames, BodiesAndText)
{
    std::string text;
    const auto add = [&](const std::function<void()> &draw) { text += "==\n" + Drawn(draw); };
    for (int mode = 0; mode <= 3; mode++)
        add([=] { CreateBox({0, 0, 0}, {1, 2, 4}, mode); });
    for (const int n : {16, 17, -16, 3})
        for (int method = 0; method <= 3; method++)
            add([=] { CreateSimpleSphere({1, 2, 3}, 0.2, n, method); });
    add([] { CreateSimpleSphere({1, 2, 3}, 0, 16, 0); });
    for (const Vector tip : {Vector{1, 2, 3}, Vector{0, 5, 0}, Vector{0, -5, 0}, Vector{0, 0, 0}})
        add([=] { CreateCone({0, 0, 0}, tip, 0.5, 0.25, 0, kTwoPi, 10); });
    add([] { CreateCone({0, 0, 0}, {1, 0, 0}, 1, 2, 0.5, 2, 3); });
    add([] { DrawGLText(20, 100, "ab\n\rc"); });
    ExpectGolden("bodies.txt", text);
}
