#include "growth/parameters.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "growth/root_distributions.h"
#include "growth/sources.h"
#include "growth/state.h"

constexpr double kInfinity = HUGE_VAL;

static const char *WalkName(int walk);
static const char *AggregateModeName(int mode);
static const char *SurfaceModeName(int mode);
static int Truncate(double value);
static double ApplyRule(const Parameter &parameter, double value);

static const ParameterGroup kGroups[] = {
    {"growth", true, true},   {"roots", true, true}, {"source", true, true},   {"surface", true, true},
    {"drawing", false, true}, {"stop", false, true}, {"slices", false, false},
};

static const Parameter kParameters[] = {
    {"growth", "seed", &growthstate.seed, 12345, 0, INT_MAX, kSignDropped, "",
     "All random numbers follow from it; a restart starts them anew."},
    {"growth", "bias", &growthstate.bias, 0.1, 0, 1, kLimited, "% of the branch length",
     "How far a walker drifts away from a root at each step."},
    {"growth", "branch_length", &growthstate.branchlength, 1, 0.01, kInfinity, kLimited, "length",
     "The length of a walker's step, and the distance within which it sticks."},
    {"growth", "stickiness", &growthstate.stickiness, 100, 1, 100, kLimited, "%",
     "The probability that a walker which has come near sticks."},
    {"growth", "rotation", &growthstate.rotation, 0, -5, 5, kLimited, "degrees a step",
     "By how much a walker is turned about the z axis at each step."},
    {"growth", "intersection_range", &growthstate.intersectrange, 0, 0, 90, kLimited,
     "% of the branch length",
     "How near the line of a new branch may come to that of another; 0: as near as it likes."},
    {"growth", "association", &growthstate.association, 0, 0, 1, kSignDropped, "",
     "A particle attaches only to particles whose number has the same remainder by the number of roots.",
     SwitchName},
    {"growth", "walk", &growthstate.walk, kWalkSteps, kWalkSteps, kWalkFlights, kLimited, "",
     "How walkers move: step by step, or through empty space in flights.", WalkName},
    {"growth", "launch_scale", &growthstate.launchscale, 1, 1, 1000, kLimited,
     "radii of the aggregate and two branch lengths", "The radius of the sphere on which walkers start."},
    {"growth", "killing_scale", &growthstate.killingscale, 1, 1, 1000, kLimited, "launch radii",
     "Where walkers are abandoned; 1: they stay within the launch sphere, and live 10,000 steps."},
    {"roots", "count", &growthstate.nroots, 1, 0, INT_MAX, kSignDropped, "", "How many roots there are."},
    {"roots", "range", &growthstate.rootrange, 10, -kInfinity, kInfinity, kAnyNumber, "length",
     "The space over which several roots are placed."},
    {"roots", "distribution", &growthstate.roottype, kRootOrigin, kRootOrigin, kRootRingZ, kLimited, "",
     "How several roots are placed.", RootTypeName},
    {"source", "type", &growthstate.sourcetype, kSourceSphere, kSourceSphere, kSourceInfinity, kLimited, "",
     "Where walkers start.", SourceName},
    {"drawing", "thickness_tip", &growthstate.thickto, 0.01, 0, kInfinity, kSignDropped, "length",
     "The radius of a branch through which nothing flows."},
    {"drawing", "thickness_trunk", &growthstate.thickfrom, 0.4, 0, kInfinity, kSignDropped, "length",
     "The radius of the branch with the largest flow."},
    {"drawing", "mode", &options.dlamode, kAggregateLines, kAggregateOff, kAggregateTubes, kLimited, "",
     "How the aggregate is drawn.", AggregateModeName},
    {"drawing", "surface", &options.surfacemode, kSurfaceWireframe, kSurfaceOff, kSurfaceSolid, kLimited, "",
     "How the constraint surface is drawn; it is saved with the aggregate unless this is off.",
     SurfaceModeName},
    {"drawing", "scale", &options.printscale, 1, 1e-6, 1e6, kLimited, "mm a unit of length",
     "The size of the aggregate as a body to print."},
    {"slices", "count", &options.slicecount, 50, 2, INT_MAX, kLimited, "",
     "How many slabs the aggregate is cut into."},
    {"slices", "x", &options.sliceparam1, 0, -kInfinity, kInfinity, kAnyNumber, "",
     "The normal of the planes that cut."},
    {"slices", "y", &options.sliceparam2, 0, -kInfinity, kInfinity, kAnyNumber, "",
     "The normal of the planes that cut."},
    {"slices", "z", &options.sliceparam3, 1, -kInfinity, kInfinity, kAnyNumber, "",
     "The normal of the planes that cut."},
};

std::span<const ParameterGroup> ParameterGroups()
{
    return kGroups;
}

const ParameterGroup &FindGroup(const char *name)
{
    return *std::find_if(std::begin(kGroups), std::end(kGroups),
                         [=](const ParameterGroup &group) { return strcmp(group.name, name) == 0; });
}

std::span<const Parameter> Parameters()
{
    return kParameters;
}

std::size_t ParameterIndex(const void *field)
{
    std::size_t row = 0;
    while (!std::visit([=](const void *own) { return own == field; }, kParameters[row].field))
        row++;
    return row;
}

const Parameter &ParameterOf(const void *field)
{
    return kParameters[ParameterIndex(field)];
}

double ParameterValue(const Parameter &parameter)
{
    return std::visit([](const auto *field) -> double { return *field; }, parameter.field);
}

bool IsAllowed(const Parameter &parameter, double value)
{
    const double ruled = ApplyRule(parameter, value);
    return ruled == value || (std::isnan(ruled) && std::isnan(value));
}

std::optional<Contradiction> FindContradiction(std::span<const double> values)
{
    const auto value = [values](const void *field) { return values[ParameterIndex(field)]; };
    const bool flies = value(&growthstate.walk) == int{kWalkFlights};
    if (flies && value(&growthstate.rotation) != 0)
        return Contradiction{
            "growth.rotation",
            "growth.rotation is not 0, and flights cannot be turned; growth.walk \"steps\" can"};
    if (value(&growthstate.sourcetype) != int{kSourceInfinity})
        return std::nullopt;
    if (!flies)
        return Contradiction{
            "source.type",
            "source.type is \"Infinity\", from where only flights come; growth.walk must be \"flights\""};
    if (value(&growthstate.bias) != 0)
        return Contradiction{
            "source.type",
            "source.type is \"Infinity\", from where walkers cannot drift; growth.bias must be 0"};
    for (const double *scale : {&growthstate.launchscale, &growthstate.killingscale})
        if (value(scale) != 1)
            return Contradiction{
                "source.type",
                "source.type is \"Infinity\"; growth.launch_scale and growth.killing_scale must be 1"};
    return std::nullopt;
}

void SetParameter(const Parameter &parameter, double value)
{
    if (double *const *number = std::get_if<double *>(&parameter.field))
        **number = ApplyRule(parameter, value);
    else
        *std::get<int *>(parameter.field) = static_cast<int>(ApplyRule(parameter, Truncate(value)));
}

void SetDefault(const void *field)
{
    const Parameter &parameter = ParameterOf(field);
    SetParameter(parameter, parameter.standard);
}

void SetDefaults(const char *group)
{
    for (const Parameter &parameter : kParameters)
        if (strcmp(parameter.group, group) == 0)
            SetParameter(parameter, parameter.standard);
}

void SetProgramDefaults()
{
    options = {};
    options.framerate = 30.0;
    options.showextras = 1;
    options.showinfo = 1;
    options.marker1[0] = 10;
    options.marker2[2] = 10;
    SetDefault(&options.dlamode);
    SetDefault(&options.surfacemode);
    SetDefault(&options.printscale);
    SetDefaults("slices");
    interfacestate = {-1, 0, 0, 0};
}

std::optional<int> FindNamed(const Parameter &parameter, std::string_view name)
{
    if (parameter.name == nullptr)
        return std::nullopt;
    for (int code = static_cast<int>(parameter.low); code <= static_cast<int>(parameter.high); code++)
        if (const char *known = parameter.name(code); known != nullptr && name == known)
            return code;
    return std::nullopt;
}

const char *SwitchName(int value)
{
    return value == 0 ? "false" : "true";
}

static const char *WalkName(int walk)
{
    static const char *const names[] = {"steps", "flights"};
    return walk >= kWalkSteps && walk <= kWalkFlights ? names[walk - kWalkSteps] : nullptr;
}

static const char *AggregateModeName(int mode)
{
    switch (mode) {
    case kAggregateOff:
        return "off";
    case kAggregatePoints:
        return "points";
    case kAggregateLines:
        return "lines";
    case kAggregateTubes:
        return "tubes";
    default:
        return nullptr;
    }
}

static const char *SurfaceModeName(int mode)
{
    static const char *const names[] = {"off", "wireframe", "midpoints", "vertices", "solid"};
    return mode >= kSurfaceOff && mode <= kSurfaceSolid ? names[mode - kSurfaceOff] : nullptr;
}

static double ApplyRule(const Parameter &parameter, double value)
{
    switch (parameter.rule) {
    case kLimited:
        return value > parameter.low ? std::min(value, parameter.high) : parameter.low;
    case kSignDropped:
        return std::fabs(value);
    case kAnyNumber:
        break;
    }
    return value;
}

// Truncates toward zero and limits to -INT_MAX..INT_MAX; NaN becomes 0.
static int Truncate(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<int>(std::clamp(value, -double{INT_MAX}, double{INT_MAX}));
}
