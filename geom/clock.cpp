#include "geom/clock.h"

#include <sys/time.h>

double GetRunTime()
{
    timeval now;
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) / 1e6;
}
