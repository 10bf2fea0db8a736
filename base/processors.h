#pragma once

// Number of processors that the program may use, at least 1: those that its affinity allows, or fewer if its control
// group may use less time.
int AvailableProcessors();
