#include "viewer/aggregate_drawing.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include <GL/gl.h>

#include "export/appearance.h"
#include "growth/state.h"
#include "viewer/gl_primitives.h"

constexpr int kTubeFacets = 10;
// The mode that only calls CreateEnvironment and draws nothing; no menu entry selects it.
constexpr int kAggregateNothing = 4;

// Branches that are drawn between two calls of drawingpart.shouldstop: some hundredths of a second as tubes
constexpr int kBranchesAtOnce = 2000;

DrawingPart drawingpart;
DrawingStyle drawingstyle;

namespace
{
// The `most` branches of the largest flow: those with more than the flow `least`, and the first `equals` branches
// with exactly that flow
struct Heaviest {
    explicit Heaviest(int most);
    double least = -HUGE_VAL;
    int equals = 0;
};
} // namespace

static void SetMaterial();
static void SetLights(bool lit);
static void EnableLight(GLenum light, const float position[4]);
static bool IsFlushDue(int index);
static void DrawPoints();
static void DrawLines(int mode);
static void DrawTubes();

void CreateEnvironment(int mode)
{
    const bool lit = mode == kAggregateTubes;
    glClearColor(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDisable(GL_DITHER);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glDisable(GL_DITHER);
    glDisable(GL_LINE_SMOOTH);
    glDisable(GL_POINT_SMOOTH);
    glDisable(GL_POLYGON_SMOOTH);
    glLineWidth(drawingstyle.linewidth);
    glPointSize(drawingstyle.pointsize);
    glFrontFace(GL_CW);
    glDisable(GL_CULL_FACE);
    glPolygonMode(GL_FRONT_AND_BACK, lit ? GL_FILL : GL_LINE);
    glShadeModel(lit ? GL_SMOOTH : GL_FLAT);
    SetMaterial();
    SetLights(lit);
}

void DrawDLA(int mode)
{
    if (mode != kAggregatePoints && mode != kAggregateLines && mode != kAggregateNothing &&
        mode != kAggregateTubes)
        return;
    const bool aslines = mode == kAggregateLines || (mode == kAggregateTubes && drawingpart.aslines);
    CreateEnvironment(aslines ? int{kAggregateLines} : mode);
    if (mode == kAggregatePoints)
        DrawPoints();
    else if (aslines)
        DrawLines(mode);
    else if (mode == kAggregateTubes)
        DrawTubes();
}

static void SetMaterial()
{
    const float specular[] = {1, 1, 1, 1};
    const float emission[] = {0, 0, 0, 1};
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 40);
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
}

static void SetLights(bool lit)
{
    const float dark[] = {0, 0, 0, 1};
    const float bright[] = {1, 1, 1, 1};
    for (GLenum light = GL_LIGHT0; light <= GL_LIGHT7; light++)
        glDisable(light);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, 1);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0);
    if (lit) {
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, dark);
        EnableLight(GL_LIGHT0, options.marker1);
        EnableLight(GL_LIGHT1, options.marker2);
        glEnable(GL_LIGHTING);
    } else {
        glDisable(GL_LIGHTING);
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, bright);
    }
}

static void EnableLight(GLenum light, const float position[4])
{
    const float ambient[] = {0.1F, 0.1F, 0.1F, 1};
    const float diffuse[] = {1, 1, 1, 1};
    const float specular[] = {0, 0, 0, 1};
    glEnable(light);
    glLightfv(light, GL_POSITION, position);
    glLightfv(light, GL_AMBIENT, ambient);
    glLightfv(light, GL_DIFFUSE, diffuse);
    glLightfv(light, GL_SPECULAR, specular);
}

// Whether glFlush is to be called after this particle
static bool IsFlushDue(int index)
{
    return drawingstyle.flushafter > 0 && index % drawingstyle.flushafter == 0;
}

Heaviest::Heaviest(int most)
{
    if (most >= ncells)
        return;
    static std::vector<double> weights;
    weights.clear();
    for (int i = 0; i < ncells; i++)
        if (cells[i].parent >= 0)
            weights.push_back(cells[i].weight);
    if (most >= static_cast<int>(weights.size()))
        return;
    const auto last = weights.begin() + most;
    std::nth_element(weights.begin(), last, weights.end(), std::greater<>());
    least = *last;
    equals =
        most - static_cast<int>(std::count_if(weights.begin(), last, [this](double w) { return w > least; }));
}

// Calls draw(i) for each branch that is to be drawn, with the index of its particle, until drawingpart.shouldstop.
template<typename Draw>
static void ForEachDrawn(const Heaviest &heaviest, Draw draw)
{
    drawingpart.drawn = 0;
    int equals = heaviest.equals;
    for (int i = 0; i < ncells; i++) {
        if (cells[i].parent < 0 || cells[i].weight < heaviest.least)
            continue;
        if (cells[i].weight == heaviest.least && equals-- <= 0)
            continue;
        if (drawingpart.drawn % kBranchesAtOnce == 0 && drawingpart.shouldstop != nullptr &&
            drawingpart.shouldstop()) {
            drawingpart.stopped = true;
            return;
        }
        draw(i);
        drawingpart.drawn++;
    }
}

static void DrawPoints()
{
    const Heaviest heaviest(drawingpart.mostbranches);
    const ParticleColours colours(kAggregatePoints);
    glBegin(GL_POINTS);
    ForEachDrawn(heaviest, [&](int i) {
        SetColour(colours.Of(i));
        SetVertex(cells[i].p);
        if (IsFlushDue(i)) {
            glEnd();
            glFlush();
            glBegin(GL_POINTS);
        }
    });
    glEnd();
}

static void DrawLines(int mode)
{
    const Heaviest heaviest(drawingpart.mostbranches);
    const ParticleColours colours(mode);
    glBegin(GL_LINES);
    ForEachDrawn(heaviest, [&](int i) {
        SetColour(colours.Of(i));
        SetVertex(cells[i].p);
        SetVertex(cells[cells[i].parent].p);
        if (IsFlushDue(i)) {
            glEnd();
            glFlush();
            glBegin(GL_LINES);
        }
    });
    glEnd();
}

static void DrawTubes()
{
    const BranchThickness thickness;
    const Heaviest heaviest(drawingpart.mostbranches);
    const ParticleColours colours(kAggregateTubes);
    ForEachDrawn(heaviest, [&](int i) {
        const int parent = cells[i].parent;
        SetColour(colours.Of(i));
        CreateCone(cells[parent].p, cells[i].p, thickness.Of(parent), thickness.Of(i), 0, kTwoPi,
                   kTubeFacets);
        if (IsFlushDue(i))
            glFlush();
    });
}
