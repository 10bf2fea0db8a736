// Prints the progress of growth on standard output: on a terminal in one line that is rewritten twice a second,
// otherwise in plain lines at growing intervals. If growth is slow, also prints possible reasons at growing
// intervals.

#pragma once

#include <string>

#include "recipe/recipe.h"

class Progress
{
public:
    // Prints nothing if `silent`. `wanted` has the stops of growth.
    Progress(const Recipe &wanted, bool silent);

    // Prints the progress if it is due; `elapsed` is the growth time in seconds.
    void Report(double elapsed);

    // Erases the line on a terminal.
    void End() const;

private:
    [[nodiscard]] std::string Describe(double elapsed) const;
    void ReportSlowness(double elapsed);

    const Recipe &stops;
    bool quiet, terminal;
    double next, interval;
    long firststeps;
    // Time and number of particles at the last report
    double earlier = 0;
    int earlierparticles;
    // For ReportSlowness: time of the next look, interval between looks, and time and number of particles at the last
    double nextlook, lookinterval;
    double earlierlook = 0;
    int particlesatlook;
};
