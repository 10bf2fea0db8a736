#pragma once

// Display callback: draws one frame, captures it where that is asked for, and swaps the buffers. In the view window, a
// frame that has taken over a tenth of a second is broken off where a signal has come or, unless it is to be captured,
// input waits: it is not shown, and another one is wanted.
void HandleDisplay();

// From now on frames stay quick while the camera moves and for half a second after: one that would take over a tenth
// of a second draws the heaviest branches that fit into it, and tubes as lines. Captured frames are drawn whole.
void KeepFramesQuick();

// Whether the view window's last frame no longer shows everything as it is, or all frames are to be recorded.
bool IsFrameWanted();

// When the last frame was drawn, from the start of HandleDisplay to its end: GetRunTime's seconds.
struct FrameTime {
    double start, end;
};
extern FrameTime lastframe;

// Reshape callback: records the window's new size in pixels.
void HandleReshape(int width, int height);
