// How growth goes, told on standard output: on a terminal one line that is written anew twice a second, else plain
// lines at growing intervals. Where few particles arrive, a line at growing intervals says what may be the reason.

#pragma once

#include <string>

#include "recipe/recipe.h"

class Progress
{
public:
    // Tells nothing where `silent`. Growth is to stop where the recipe says.
    Progress(const Recipe &wanted, bool silent);

    // After so many seconds of growth.
    void Report(double elapsed);

    // Leaves the line.
    void End() const;

private:
    [[nodiscard]] std::string Describe(double elapsed) const;
    void ReportSlowness(double elapsed);

    const Recipe &stops;
    bool quiet, terminal;
    double next, interval;
    long firststeps;
    // At the report before the last.
    double earlier = 0;
    int earlierparticles;
    // Of slowness.
    double nextlook, lookinterval;
    double earlierlook = 0;
    int particlesatlook;
};
