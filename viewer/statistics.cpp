#include "viewer/statistics.h"

#include <cstdio>
#include <new>

#include <GL/gl.h>
#include <forms.h>

#include "analysis/box_count.h"
#include "growth/state.h"
#include "viewer/gl_primitives.h"
#include "viewer/overlays.h"
#include "viewer/surface_drawing.h"

// Number of draws in which the statistics are shown
constexpr int kShownDraws = 500;

static void DrawBoxes();
static bool CountBox();

void Statistics()
{
    if (!CountBranches())
        fl_show_message("Memory Error", "Not enough memory for the branch distribution", "");
    if (StartBoxCount())
        CalcBoxCount(0, 0);
    else
        fl_show_message("Memory Error", "Not enough memory to count boxes", "");
}

void CalcBoxCount(int initialise, int draw)
{
    if (!options.boxcountrequest)
        return;
    if (initialise && !StartBoxCount())
        return;
    if (draw) {
        DrawBoxes();
    } else if (CountBox()) {
        DrawStatistics(kShownDraws);
        DrawSTL(options.surfacemode, 1); // the surface may have changed while it was hidden
    }
}

// Returns whether the count has ended.
static bool CountBox()
{
    try {
        return CountNextBox() != 0;
    } catch (const std::bad_alloc &) {
        fputs("Not enough memory to go on counting boxes\n", stderr);
        return true;
    }
}

static void DrawBoxes()
{
    glColor3f(0.5F, 1, 0.5F);
    for (int i = 0; i < nboxes; i++)
        CreateBox(boxes[i].lower, boxes[i].upper);
}
