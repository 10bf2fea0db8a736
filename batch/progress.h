// How growth goes, told on standard output: on a terminal one line that is written anew twice a second, else plain
// lines at growing intervals.

#pragma once

#include "recipe/recipe.h"

class Progress
{
public:
    // Tells nothing where `silent`. Growth is to stop where the recipe says.
    Progress(const Recipe &wanted, bool silent);

    // `elapsed` seconds of growth, and so many steps in all.
    void Report(double elapsed, std::uint64_t steps);

    // Leaves the line.
    void End() const;

private:
    [[nodiscard]] std::string Describe(double elapsed, std::uint64_t steps) const;

    const Recipe &stops;
    bool quiet, terminal;
    double next, interval;
    // At the report before the last.
    double earlier = 0;
    int earlierparticles;
    std::uint64_t firststeps = 0;
    bool started = false;
};
