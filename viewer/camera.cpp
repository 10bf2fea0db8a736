#include "viewer/camera.h"

#include <algorithm>

#include "growth/camera_home.h"
#include "growth/state.h"
#include "surface/surface.h"

// Room about what is fitted into the view.
constexpr double kFitMargin = 1.02;

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

void FitCamera()
{
    double radius = growthstate.branchlength;
    for (int i = 0; i < ncells; i++)
        radius = std::max(radius, Modulus(cells[i].p));
    if (options.surfacemode >= kSurfaceWireframe)
        for (int i = 0; i < nstltri; i++)
            for (const Vector corner : stltri[i].p)
                radius = std::max(radius, Modulus(corner));
    // Of the two angles of the view, the narrower one.
    const double ratio = static_cast<double>(camera.screenwidth) / static_cast<double>(camera.screenheight);
    const double vertical = std::tan(camera.aperture * kDegreesToRadians / 2);
    const double half = std::atan(vertical * std::min(ratio, 1.0));
    camera.vp = -(kFitMargin * radius / std::sin(half)) * camera.vd;
    UpdateCameraRange();
}

void TurnCamera(double theta)
{
    for (Vector *v : {&camera.vp, &camera.vd, &camera.vu})
        *v = ArbitraryRotate(*v, theta, {0, 0, 1});
}

void ZoomCamera(double factor)
{
    const double half = std::tan(camera.aperture * kDegreesToRadians / 2) / factor;
    camera.aperture = 2 * std::atan(half) / kDegreesToRadians;
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
