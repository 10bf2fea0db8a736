#include "batch/progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <unistd.h>

#include "growth/state.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"
#include "surface/surface.h"

// Seconds between two lines: on a terminal, and otherwise at the start and at most
constexpr double kTerminalInterval = 0.5;
constexpr double kFirstInterval = 10;
constexpr double kLongestInterval = 600;
// Particles a second below which growth counts as slow, for aggregates of every size
constexpr double kSlow = 10;
// Stickiness in percent below which, and launch radius in branch lengths above which, it is named as a reason for
// slow growth
constexpr double kLowStickiness = 50;
constexpr double kLongWay = 50;

static std::string DescribeTime(double seconds);
static std::string ListWhatSlows();

Progress::Progress(const Recipe &wanted, bool silent)
    : stops(wanted), quiet(silent), terminal(isatty(STDOUT_FILENO) != 0),
      next(terminal ? kTerminalInterval : kFirstInterval), interval(next), firststeps(growthstate.steptotal),
      earlierparticles(ncells), nextlook(kFirstInterval), lookinterval(kFirstInterval),
      particlesatlook(ncells)
{
}

void Progress::Report(double elapsed)
{
    if (quiet || elapsed < next)
        return;
    const std::string line = Describe(elapsed);
    if (terminal)
        printf("\r%s\x1b[K", line.c_str());
    else
        printf("%s\n", line.c_str());
    fflush(stdout);
    if (!terminal)
        interval = std::min(2 * interval, kLongestInterval);
    next = elapsed + interval;
    earlier = elapsed;
    earlierparticles = ncells;
    if (elapsed >= nextlook)
        ReportSlowness(elapsed);
}

void Progress::ReportSlowness(double elapsed)
{
    const int arrived = ncells - particlesatlook;
    const double seconds = elapsed - earlierlook;
    const std::string reasons = ListWhatSlows();
    if (arrived < kSlow * seconds && !reasons.empty()) {
        printf("%s%d particles in the last %s: slow, since %s%s\n", terminal ? "\r" : "", arrived,
               DescribeTime(seconds).c_str(), reasons.c_str(), terminal ? "\x1b[K" : "");
        fflush(stdout);
    }
    lookinterval = std::min(2 * lookinterval, kLongestInterval);
    nextlook = elapsed + lookinterval;
    earlierlook = elapsed;
    particlesatlook = ncells;
}

void Progress::End() const
{
    if (!quiet && terminal && earlier > 0)
        printf("\r\x1b[K");
    fflush(stdout);
}

std::string Progress::Describe(double elapsed) const
{
    const double rate = (ncells - earlierparticles) / (elapsed - earlier);
    // Fraction done and time left, of the stop that will be reached first
    double part = 0;
    double left = HUGE_VAL;
    const auto consider = [&](double done, double seconds) {
        part = std::max(part, done);
        left = std::min(left, seconds);
    };
    if (stops.particles > 0)
        consider(ncells / static_cast<double>(stops.particles),
                 static_cast<double>(stops.particles - ncells) / rate);
    if (stops.steps > 0) {
        const auto all = static_cast<double>(stops.steps);
        const auto taken = static_cast<double>(growthstate.steptotal);
        consider(taken / all, (all - taken) * elapsed / (taken - static_cast<double>(firststeps)));
    }
    if (stops.minutes > 0)
        consider(elapsed / (60 * stops.minutes), 60 * stops.minutes - elapsed);
    char line[160];
    snprintf(line, sizeof line, "%d particles, %.0f %%, %.0f a second, radius %.1f, %s left", ncells,
             std::floor(100 * part), rate, growthstate.radius, DescribeTime(left).c_str());
    return line;
}

static std::string DescribeTime(double seconds)
{
    if (!(seconds < 1e8))
        return "a long time";
    const long whole = std::lround(std::max(seconds, 0.0));
    char text[40];
    if (whole >= 3600)
        snprintf(text, sizeof text, "%ld h %ld min", whole / 3600, whole / 60 % 60);
    else if (whole >= 60)
        snprintf(text, sizeof text, "%ld min %ld s", whole / 60, whole % 60);
    else
        snprintf(text, sizeof text, "%ld s", whole);
    return text;
}

// The settings that may keep walkers from arriving, in words; empty if there are none
static std::string ListWhatSlows()
{
    const GrowthState &state = growthstate;
    std::string list;
    const auto add = [&](bool holds, const std::string &reason) {
        if (holds)
            list.append(list.empty() ? "" : "; ").append(reason);
    };
    const double way = LaunchRadius() / state.branchlength;
    char far[80];
    snprintf(far, sizeof far, "walkers start %.4g branch lengths away", way);
    add(state.association != 0 && state.nroots > 1,
        "with association a particle sticks to one in " + std::to_string(state.nroots) + " only");
    add(way > kLongWay, far + std::string(WalkersMayLeave() ? "" : ", and live 10,000 steps"));
    add(WalkersMayLeave() && state.walk == kWalkSteps, "walkers far away go step by step, without flights");
    add(state.stickiness < kLowStickiness, "few walkers that come near stick");
    add(state.intersectrange > 0, "branches that come near to others are refused");
    add(state.branchlength > kFarthestPartner, "no particle is found that is 1e16 away or farther");
    add(nstltri > 0, "the surface may be in the way");
    add(!list.empty() && state.bias > 0, "the bias drives walkers away from the roots");
    return list;
}
