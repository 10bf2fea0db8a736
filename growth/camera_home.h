// The camera's initial position.

#pragma once

// Puts the camera at (60, 0, 0), looking at the origin with z up. The first call also gives stereo mode and
// window size their defaults; later calls do not change them.
void CameraHome();

// Derives focal length, eye separation and clipping planes from the camera's distance from its point of
// rotation.
void UpdateCameraRange();
