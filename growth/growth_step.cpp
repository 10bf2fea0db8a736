#include "growth/growth_step.h"

#include <algorithm>
#include <climits>

#include "growth/aggregate.h"
#include "growth/deferred_flows.h"
#include "growth/generators.h"
#include "growth/refusal.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"

// The parts of the growth step, in the order of their execution.
static bool IsLaunchDue();
static void LaunchWalker();
static int WalkFreely(int most);
static void CountSteps(int steps);
static bool MoveWalker(Vector *pos);
static void Rotate(Vector *pos);
static void MeetAggregate(Vector undo);

void IterateSystem()
{
    if (IsLaunchDue())
        LaunchWalker();
    const Vector undo = growthstate.pos;
    CountSteps(1);
    if (MoveWalker(&growthstate.pos))
        MeetAggregate(undo);
}

int IterateUntilStick(int most)
{
    const int count = ncells;
    int taken = 0;
    while (taken < most && ncells == count) {
        taken += WalkFreely(most - taken);
        if (taken < most && ncells == count) {
            IterateSystem();
            taken++;
        }
    }
    return taken;
}

// Takes at most `most` steps from within the free ball that the last search found, up to and including the step that
// leaves it. Returns the number of steps.
static int WalkFreely(int most)
{
    if (WalkersMayLeave())
        return 0;
    const int age = growthstate.stepcount % kWalkerLife;
    const int limit = age == 0 ? 0 : std::min({most, kWalkerLife - age, INT_MAX - growthstate.stepcount});
    const FreeBall ball = CurrentFreeBall();
    Vector pos = growthstate.pos;
    Vector undo = pos;
    bool left = !ball.Contains(pos);
    int taken = 0;
    while (taken < limit && !left) {
        undo = pos;
        taken++;
        if (!MoveWalker(&pos))
            continue;
        left = !ball.Contains(pos);
        if (!left)
            DrawUniform(); // stickiness draw: always made, unused without a partner
    }
    if (taken == 0)
        return 0;
    CountSteps(taken);
    growthstate.pos = pos;
    if (left)
        MeetAggregate(undo);
    return taken;
}

// Moves a walker by a step. Returns false, with the walker unmoved, if the step would leave the launch sphere.
static inline bool MoveWalker(Vector *pos)
{
    RunDraws draws;
    const Vector moved = *pos + DrawStep(&draws);
    if (IsOutside(moved, LaunchRadius()) && !WalkersMayLeave())
        return false;
    *pos = moved;
    DriftBy(DriftLength(), ncells, &draws, pos);
    if (growthstate.rotation != 0)
        Rotate(pos);
    return true;
}

// After a move, the walker sticks, or continues, or is refused and put back to `undo`.
static void MeetAggregate(Vector undo)
{
    const int partner = FindPartner();
    // Drawn with or without a partner: the sequence of draws does not depend on what a walker meets.
    const double r = DrawUniform();
    if (partner < 0 || r > growthstate.stickiness * kPercent)
        return;

    if (IsRefused(growthstate.pos, partner) || !AddParticle(growthstate.pos, partner)) {
        growthstate.pos = undo;
        return;
    }
    AddToNeighbourIndex();
    AddFlowOfNewest();
    UpdateRadius();
    growthstate.stepcount = 0;
}

// Whether the walker's life is over, or none has been launched yet.
static bool IsLaunchDue()
{
    if (WalkersMayLeave())
        return growthstate.stepcount == 0 ||
               Modulus(growthstate.pos) > growthstate.killingscale * LaunchRadius();
    return growthstate.stepcount % kWalkerLife == 0;
}

static void LaunchWalker()
{
    GetNewParticle(&growthstate.pos, growthstate.sourcetype, LaunchRadius());
    RecordLaunch(growthstate.pos);
}

// Counts so many steps of the walker, at most kWalkerLife. Before it overflows, the count is reduced modulo
// kWalkerLife, which does not change when a launch is due.
static void CountSteps(int steps)
{
    if (growthstate.stepcount > INT_MAX - steps)
        growthstate.stepcount %= kWalkerLife;
    growthstate.stepcount += steps;
    growthstate.steptotal += steps;
}

static void Rotate(Vector *pos)
{
    static double known = 0;
    static SineCosine theta = {0, 1};
    if (growthstate.rotation != known) {
        known = growthstate.rotation;
        theta = FindSineCosine(known * kDegreesToRadians);
    }
    *pos = ArbitraryRotate(*pos, theta, Vector{0, 0, 1});
}
