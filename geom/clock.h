#pragma once

// Wall-clock seconds since the epoch, to the microsecond.
double GetRunTime();
