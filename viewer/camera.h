// Movements of the camera. The camera looks along vd with vu up. In every frame, its focal length and clipping planes
// follow from its distance to its point of rotation pr. That point is the origin until FitCamera or an opened file
// moves it.

#pragma once

#include "geom/vector.h"

// Turns the view by iz radians about the view direction, then ix about the up vector, then iy about the right
// vector as it was on entry (kept: callers turn about one axis per call). A turn by ix or iy makes the camera look
// at the point of rotation, from the same distance as before; a turn by iz alone keeps view point and direction.
void RotateCamera(double ix, double iy, double iz);

// Distance of the view point from the point of rotation.
double CameraDistance();

// Each moves the view point one step towards or away from the point of rotation, by a twentieth of the distance.
void MoveCloser();
void MoveAway();

// Each changes the angle of view by one step, a twentieth, unless it is beyond 1 or 90 degrees already (kept).
void ZoomIn();
void ZoomOut();

// Moves the camera so that all particles and the surface, as they are drawn, just fill the view, uncut by the
// clipping planes, and moves its point of rotation into the middle of them. Direction and aperture stay.
void FitCamera();

// As FitCamera, but from so far away that everything stays in view when TurnCamera turns the camera by any angle.
void FitTurningCamera();

// Turns the camera by theta radians about the line through its point of rotation parallel to the z axis.
void TurnCamera(double theta);

// Changes the angle of view so that the middle of the view is drawn `factor` times as large.
void ZoomCamera(double factor);

// vd x vu, not normalised.
Vector RightVector();
