// The camera's turns. The camera looks along vd with vu up; its distance from the origin is its
// only range, from which the display derives focal length and clipping planes in every frame.

#pragma once

#include "geom/vector.h"

// Turns the view by iz radians about the view direction, then ix about the up vector, then iy about the right
// vector as it was on entry (kept: callers turn about one axis per call). A turn by ix or iy aims the camera
// at the origin from its old distance; a roll alone leaves view point and direction.
void RotateCamera(double ix, double iy, double iz);

// Puts the camera at the distance from which all particles, and the surface where it is drawn, are in view; its
// direction stays, and it looks at the origin.
void FitCamera();

// Turns the camera by theta radians about the z axis through the origin.
void TurnCamera(double theta);

// Narrows the angle of the view so that what stands in the middle is drawn so many times as large.
void ZoomCamera(double factor);

// vd x vu, not normalised.
Vector RightVector();
