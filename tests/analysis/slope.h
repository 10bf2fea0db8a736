// What a finished box count says of the dimension.

#pragma once

#include <cmath>

#include "growth/state.h"

// The slope of log N against log(1/size), by least squares over the levels from `first` on that were counted.
inline double BoxCountSlope(int first)
{
    double n = 0, sx = 0, sy = 0, sxx = 0, sxy = 0;
    for (int level = first; level < 10 && stats.boxcount[level] > 0; level++) {
        const double x = std::log(1 / stats.boxsize[level]);
        const double y = std::log(stats.boxcount[level]);
        n++;
        sx += x;
        sy += y;
        sxx += x * x;
        sxy += x * y;
    }
    return (n * sxy - sx * sy) / (n * sxx - sx * sx);
}
