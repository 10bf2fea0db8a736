// The camera's turns. The camera looks along vd with vu up; its distance from its point of rotation is its
// only range, from which the display derives focal length and clipping planes in every frame. The point of
// rotation is the origin until something is fitted into the view.

#pragma once

#include "geom/vector.h"

// Turns the view by iz radians about the view direction, then ix about the up vector, then iy about the right
// vector as it was on entry (kept: callers turn about one axis per call). A turn by ix or iy aims the camera
// at the point of rotation from its old distance; a roll alone leaves view point and direction.
void RotateCamera(double ix, double iy, double iz);

// Distance of the view point from the point of rotation.
double CameraDistance();

// One step of the view point along its line through the point of rotation, by a twentieth of the distance.
void MoveCloser();
void MoveAway();

// One step of the angle of view, by a twentieth, from 1 to 90 degrees.
void ZoomIn();
void ZoomOut();

// Moves the camera to where all particles and the surface, as they are drawn, just fill the view, and its point of
// rotation into the middle of them. Its direction and aperture stay. Clipping planes cut nothing off.
void FitCamera();

// The same for a camera that will be turned: whatever TurnCamera does, all stays in view.
void FitTurningCamera();

// Turns the camera by theta radians about the line through its point of rotation parallel to the z axis.
void TurnCamera(double theta);

// Narrows the angle of the view so that what stands in the middle is drawn so many times as large.
void ZoomCamera(double factor);

// vd x vu, not normalised.
Vector RightVector();
