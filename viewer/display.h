#pragma once

// Display callback: draws one frame, captures it if requested, and swaps the buffers. In the view window, a frame
// that has taken more than a tenth of a second is abandoned if a signal has been noted or, unless it is to be
// captured, if input is waiting. An abandoned frame is not shown, and another frame is requested.
void HandleDisplay();

// From now on frames are quick while the camera moves and for half a second after: a frame that would take more than
// a tenth of a second draws only as many branches, those of the largest flow, as it can draw in that time, and draws
// tubes as lines. Captured frames are always drawn completely.
void KeepFramesQuick();

// Whether the view window's last frame is out of date or incomplete, or all frames are to be recorded
bool IsFrameWanted();

// Start and end of the last HandleDisplay, in the seconds of GetRunTime
struct FrameTime {
    double start, end;
};
extern FrameTime lastframe;

// Reshape callback: records the window's new size in pixels.
void HandleReshape(int width, int height);
