// What the display draws besides the aggregate and the surface

#pragma once

// If options.showextras is set, draws guide circles of the aggregate's radius, axes, the recorded launch positions,
// the roots, and the two lights of the tubes.
void DrawExtras();

// If options.showinfo is set, draws the parameters and the state of growth as text at the upper left.
void DrawInfo();

// With `frames` above 0, makes the statistics appear in the next `frames` draws. With 0, draws the statistics once at
// the top centre, fading from white to black, if draws are left. In stereo each frame counts as two draws, so the
// text fades twice as fast (kept).
void DrawStatistics(int frames);

// Whether draws of the statistics are left
bool AreStatisticsShown();

// Draws text at a position in window pixels from the lower left corner; after a line feed or a carriage return the
// text continues 13 pixels lower. Replaces GL's projection and view.
void DrawGLText(int x, int y, const char *text);
