// What the display draws over and beside the aggregate.

#pragma once

// Guide circles of the aggregate's radius, axes, the recorded launch positions, the roots, and the two lights
// of the tubes, where options.showextras is set.
void DrawExtras();

// The parameters and the state of growth as text at the upper left, where options.showinfo is set.
void DrawInfo();

// With frames above 0, arms the statistics text for that many draws. Else draws it once at the top centre
// while it is armed, from white to black; it counts draws, so two eyes make it fade twice as fast (kept).
void DrawStatistics(int frames);

// Whether it is armed.
bool AreStatisticsShown();

// Text at a position in window pixels from the lower left corner; a line feed or a carriage return goes on 13
// pixels lower. Replaces the projection and the view.
void DrawGLText(int x, int y, const char *text);
