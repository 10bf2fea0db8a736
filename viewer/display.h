#pragma once

// Display callback: draws one frame for the stereo mode camera.stereo and swaps the buffers. Focal length,
// eye separation and clipping planes of the camera follow from its view point here, in every frame.
void HandleDisplay();

// Reshape callback: records the window's new size in pixels.
void HandleReshape(int width, int height);
