// Takes the measures of analysis/box_count.h in a window, and shows them.

#pragma once

// Counts the aggregate's branches and starts a box count.
void Statistics();

// Does nothing unless options.boxcountrequest is set. If `initialise` is nonzero, starts the box count. Then tests
// one box or, if `draw` is nonzero, draws the occupied boxes of the current level instead. After the last box, the
// statistics are shown for a while.
void CalcBoxCount(int initialise, int draw);
