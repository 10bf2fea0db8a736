// The program's part of a frame: drawing the aggregate with OpenGL calls that do nothing, against a loop that
// makes as many calls with constant arguments. Both run in turn, frame by frame, and the processor's time counts: others at
// work on the machine take theirs at any moment.

#include <GL/gl.h>
#include <benchmark/benchmark.h>

#include "aggregate.h"
#include "base/array.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "viewer/aggregate_drawing.h"

constexpr int kGrown = 100000;
constexpr int kTubeEdges = 11;

// As many calls as the aggregate's branches take in a mode.
static void DrawConstants(int mode)
{
    CreateEnvironment(mode);
    if (mode != kAggregateTubes)
        glBegin(GL_POINTS);
    for (int i = 1; i < ncells; i++) {
        glColor3f(0, 0.5F, 1);
        if (mode == kAggregateTubes) {
            glBegin(GL_QUAD_STRIP);
            for (int k = 0; k < kTubeEdges; k++) {
                glNormal3f(0, 0, 1);
                glTexCoord2f(0, 0);
                glVertex3f(1, 2, 3);
                glNormal3f(0, 0, 1);
                glTexCoord2f(0, 1);
                glVertex3f(1, 2, 3);
            }
            glEnd();
        } else {
            glVertex3f(1, 2, 3);
            if (mode == kAggregateLines)
                glVertex3f(1, 2, 3);
        }
    }
    if (mode != kAggregateTubes)
        glEnd();
}

// A grown aggregate of 100,000 particles, and as many copies of it beside it as make up the count.
static bool HasAggregate(int count)
{
    if (ncells == 0)
        GrowDefault(kGrown);
    if (!ResizeArray(&cells, static_cast<std::size_t>(count)))
        return false;
    for (int i = ncells; i < count; i++) {
        cells[i] = cells[i - kGrown];
        cells[i].p.x += 2 * growthstate.radius;
        if (cells[i].parent >= 0)
            cells[i].parent += kGrown;
    }
    ncells = count;
    return true;
}

static void DrawFrame(benchmark::State &state)
{
    const int mode = static_cast<int>(state.range(0));
    if (!HasAggregate(static_cast<int>(state.range(1)))) {
        state.SkipWithError("not enough memory");
        return;
    }
    double drawing = 0, constant = 0;
    for (auto _ : state) {
        const double start = ProcessorSeconds();
        DrawDLA(mode);
        const double middle = ProcessorSeconds();
        DrawConstants(mode);
        drawing += middle - start;
        constant += ProcessorSeconds() - middle;
    }
    const double branches = static_cast<double>(state.iterations()) * (ncells - 1);
    state.counters["ns a branch"] = 1e9 * drawing / branches;
    state.counters["constant"] = 1e9 * constant / branches;
    state.counters["ratio"] = drawing / constant;
}

BENCHMARK(DrawFrame)
    ->ArgsProduct({{kAggregatePoints, kAggregateLines, kAggregateTubes}, {100000}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(DrawFrame)
    ->ArgsProduct({{kAggregatePoints, kAggregateLines, kAggregateTubes}, {1000000}})
    ->Unit(benchmark::kMillisecond);
