#include "viewer/overlays.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include <GL/glut.h>

#include "export/appearance.h"
#include "export/description.h"
#include "growth/state.h"
#include "viewer/gl_primitives.h"

constexpr int kLineHeight = 13;
// Pixels from the window's left edge to the information.
constexpr int kInfoLeft = 10;
// Most characters in a line of text, and in a line of the information
constexpr int kLongestLine = 127;
constexpr int kLongestInfo = 63;
constexpr int kCircleStep = 5; // degrees
// Length of the axes, in radii of the aggregate.
constexpr double kAxisLength = 1.2;
constexpr int kMarkerFacets = 16;

namespace
{
// Prints lines of text from the window's top down, each cut at `longest` characters.
class TextColumn
{
public:
    TextColumn(int left, int longest)
        : x(left), y(camera.screenheight - kLineHeight), size(static_cast<std::size_t>(longest) + 1)
    {
    }
    void Skip() { y -= kLineHeight; }
    [[gnu::format(printf, 2, 3)]] void Print(const char *format, ...)
    {
        char text[kLongestLine + 1];
        va_list arguments;
        va_start(arguments, format);
        vsnprintf(text, size, format, arguments);
        va_end(arguments);
        Skip();
        DrawGLText(x, y, text);
    }

private:
    int x, y;
    std::size_t size;
};
} // namespace

// Number of draws of the statistics that was requested, and number that is left; below 0: none
static int maxduration = 0;
static int decay = 0;

static void BeginFlatDrawing();
static void DrawCircles(double r);
static void DrawAxes(double length);
static void DrawLaunches();
static void DrawRoots();
static void DrawLights();

void DrawExtras()
{
    if (!options.showextras)
        return;
    BeginFlatDrawing();
    DrawCircles(growthstate.radius);
    DrawAxes(kAxisLength * growthstate.radius);
    DrawLaunches();
    DrawRoots();
    DrawLights();
}

void DrawInfo()
{
    if (!options.showinfo)
        return;
    BeginFlatDrawing();
    glColor3f(1, 1, 1);
    TextColumn column(kInfoLeft, kLongestInfo);
    DescribeParameters(column, growthstate.sourcetype);
    DescribeSurface(column);
    column.Skip();
    DescribeSize(column);
    column.Print("Particle life span: %d", growthstate.stepcount);
}

void DrawStatistics(int frames)
{
    if (frames > 0) {
        maxduration = decay = frames;
        return;
    }
    if (decay < 0)
        return;
    const float grey = maxduration > 0 ? static_cast<float>(decay) / static_cast<float>(maxduration) : 0;
    BeginFlatDrawing();
    glColor3f(grey, grey, grey);
    TextColumn column(camera.screenwidth / 2, kLongestLine);
    column.Print("Statistics");
    column.Print("Branch distribution");
    DescribeBranchDistribution(column);
    column.Print("Box counting");
    for (int level = 0; level < kBoxLevels; level++)
        if (stats.boxcount[level] > 0)
            column.Print("   %8.3f : %d\n", stats.boxsize[level], stats.boxcount[level]);
    decay--;
}

bool AreStatisticsShown()
{
    return decay >= 0;
}

void DrawGLText(int x, int y, const char *text)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, glutGet(GLUT_WINDOW_WIDTH), 0, glutGet(GLUT_WINDOW_HEIGHT), -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRasterPos2i(x, y);
    for (; *text != '\0'; text++) {
        if (*text == '\n' || *text == '\r') {
            y -= kLineHeight;
            glRasterPos2i(x, y);
        } else {
            glutBitmapCharacter(GLUT_BITMAP_8_BY_13, static_cast<unsigned char>(*text));
        }
    }
    // No matrix has been pushed, so GL ignores these calls (kept).
    glPopMatrix();
    glPopMatrix();
}

static void BeginFlatDrawing()
{
    glDisable(GL_LIGHTING);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
}

// Extras --------------------------------------------------------------------------------------------------

static void DrawCircles(double r)
{
    glColor3f(0.5F, 1, 0.5F);
    for (int plane = 0; plane < 3; plane++) {
        glBegin(GL_LINE_STRIP);
        for (int degrees = 0; degrees <= 360; degrees += kCircleStep) {
            const double a = r * std::cos(degrees * kDegreesToRadians);
            const double b = r * std::sin(degrees * kDegreesToRadians);
            const Vector points[] = {{a, b, 0}, {a, 0, b}, {0, a, b}};
            SetVertex(points[plane]);
        }
        glEnd();
    }
}

static void DrawAxes(double length)
{
    const Vector axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    glBegin(GL_LINES);
    for (const Vector &axis : axes) {
        glColor3f(static_cast<float>(axis.x), static_cast<float>(axis.y), static_cast<float>(axis.z));
        SetVertex({0, 0, 0});
        SetVertex(length * axis);
    }
    glEnd();
}

static void DrawLaunches()
{
    glColor3f(1, 0.5F, 0.5F);
    glBegin(GL_POINTS);
    for (int i = 0; i < std::min(nseeds, kSeedRing); i++)
        SetVertex(seeds[i]);
    glEnd();
}

static void DrawRoots()
{
    for (int i = 0; i < std::min(growthstate.nroots, ncells); i++) {
        SetColour(ChooseColour(i, 1));
        CreateSimpleSphere(cells[i].p, growthstate.branchlength / 5, kMarkerFacets);
    }
}

static void DrawLights()
{
    glColor3f(1, 1, 1);
    for (const float *marker : {options.marker1, options.marker2})
        CreateSimpleSphere({marker[0], marker[1], marker[2]}, growthstate.branchlength / 5, kMarkerFacets);
}
