#pragma once

// Display callback: draws one frame, captures it where that is asked for, and swaps the buffers.
void HandleDisplay();

// From now on frames stay quick while the camera moves and for half a second after: one that would take over a tenth
// of a second draws an evenly spread part of the branches that fits into it.
void KeepFramesQuick();

// Draws surface and aggregate as one eye sees them, without what lies over them, into the back buffer. Focal length, eye
// separation and clipping planes of the camera follow from its view point here, in every frame.
void DrawBareFrame();

// When the last frame was drawn, from the start of HandleDisplay to its end: GetRunTime's seconds.
struct FrameTime {
    double start, end;
};
extern FrameTime lastframe;

// Reshape callback: records the window's new size in pixels.
void HandleReshape(int width, int height);
