#include "viewer/camera.h"

#include "growth/state.h"

static void SwingCamera(double theta, Vector axis, Vector right, double distance);

void CameraHome()
{
    static bool initialised = false;
    if (!initialised) {
        camera.stereo = kStereoNone;
        camera.screenwidth = 800;
        camera.screenheight = 600;
        initialised = true;
    }
    camera.aperture = 60;
    camera.vp = {60, 0, 0};
    UpdateCameraRange();
    camera.vd = {-1, 0, 0};
    camera.vu = {0, 0, 1};
    camera.pr = {0, 0, 0};
    Normalise(&camera.vd);
    Normalise(&camera.vu);
}

void UpdateCameraRange()
{
    camera.focallength = Modulus(camera.vp);
    camera.eyesep = camera.focallength / 30;
    camera.nearclip = camera.focallength / 10;
    camera.farclip = camera.focallength * 10;
}

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
