#pragma once

// Display callback: draws one frame for the stereo mode camera.stereo and swaps the buffers. Focal length,
// eye separation and clipping planes of the camera follow from its view point here, in every frame.
void HandleDisplay();

// When the last frame was drawn, from the start of HandleDisplay to its end: GetRunTime's seconds.
struct FrameTime {
    double start, end;
};
extern FrameTime lastframe;

// Reshape callback: records the window's new size in pixels.
void HandleReshape(int width, int height);
