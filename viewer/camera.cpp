#include "viewer/camera.h"

#include "growth/state.h"

static void SwingCamera(double theta, Vector axis, Vector right, double distance);

void RotateCamera(double ix, double iy, double iz)
{
    const double distance = Modulus(camera.vp);
    const Vector right = RightVector();
    if (iz != 0)
        camera.vu = ArbitraryRotate(camera.vu, iz, camera.vd);
    if (ix != 0)
        SwingCamera(ix, camera.vu, right, distance);
    if (iy != 0)
        SwingCamera(iy, right, right, distance);
    Normalise(&camera.vu);
}

Vector RightVector()
{
    return CrossProduct(camera.vd, camera.vu);
}

// Turns the view direction by theta radians about an axis and aims at the origin from a distance; the
// up vector becomes right x vd, not yet of unit length.
static void SwingCamera(double theta, Vector axis, Vector right, double distance)
{
    camera.vd = ArbitraryRotate(camera.vd, theta, axis);
    Normalise(&camera.vd);
    camera.vp = -distance * camera.vd;
    camera.vu = CrossProduct(right, camera.vd);
}
