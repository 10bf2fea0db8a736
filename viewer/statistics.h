// The measures of analysis/box_count.h as the program takes and shows them.

#pragma once

// Adds to the branch distribution and starts a box count.
void Statistics();

// While a box count is requested: starts it where `initialise` is nonzero; then tests one box, or with `draw`
// nonzero draws the occupied boxes of the current level instead. The end of the count shows the statistics
// for a while.
void CalcBoxCount(int initialise, int draw);
