#include "viewer/camera.h"

#include <algorithm>
#include <cmath>

#include "export/appearance.h"
#include "growth/camera_home.h"
#include "growth/state.h"
#include "surface/surface.h"

// Factor of one zoom or dolly step.
constexpr double kZoomStep = 0.95;
// Degrees. Tested before a step, so that the aperture can end one step beyond (kept).
constexpr double kNarrowest = 1;
constexpr double kWidest = 90;
// Room about what is fitted into the view.
constexpr double kFitMargin = 1.02;
// Of what is fitted into the view, how many times as far as the nearest the farthest may be: the clipping planes'
// ratio is 100.
constexpr double kDeepestView = 80;
// Of the nearest that is fitted into the view, how many times as far the point of rotation may be: the near plane is
// at a tenth of its distance.
constexpr double kFarthestPivot = 9;

// How much of a tangent of the view may be wrong where what is drawn is centred, and steps until then at most: more
// than a few are needed only where the nearest is much nearer than the farthest.
constexpr double kCentred = 0.002;
constexpr int kMostCentringSteps = 40;

namespace
{
enum Side { kRight, kLeft, kTop, kBottom, kNear, kFar, kSides };

// How far what is drawn reaches along six directions, from a point.
struct Reach {
    Vector directions[kSides];
    double of[kSides];
};

// The camera's axes, of unit length, and the tangents of half its angles of view.
struct ViewFrame {
    Vector right, up, ahead;
    double horizontal, vertical;
};
} // namespace

static void MoveToDistance(double distance);
static Vector FromPivot(Vector arm);
static void SwingCamera(double theta, Vector axis, Vector right, double distance);
static Reach PlaceCamera(bool turning);
static ViewFrame FindViewFrame();
static Reach FindReach(const ViewFrame &frame, bool turning);
template<typename Consume>
static void ForEachDrawnBall(Consume consume);

void RotateCamera(double ix, double iy, double iz)
{
    const double distance = CameraDistance();
    const Vector right = RightVector();
    if (iz != 0)
        camera.vu = ArbitraryRotate(camera.vu, iz, camera.vd);
    if (ix != 0)
        SwingCamera(ix, camera.vu, right, distance);
    if (iy != 0)
        SwingCamera(iy, right, right, distance);
    Normalise(&camera.vu);
}

double CameraDistance()
{
    return Modulus(camera.vp - camera.pr);
}

void MoveCloser()
{
    MoveToDistance(CameraDistance() * kZoomStep);
}

void MoveAway()
{
    MoveToDistance(CameraDistance() / kZoomStep);
}

void ZoomIn()
{
    if (camera.aperture > kNarrowest)
        camera.aperture *= kZoomStep;
}

void ZoomOut()
{
    if (camera.aperture < kWidest)
        camera.aperture /= kZoomStep;
}

void FitCamera()
{
    const Vector ahead = camera.vd;
    Reach reach = FindReach(FindViewFrame(), false);
    camera.pr = camera.pr + (reach.of[kFar] - reach.of[kNear]) / 2 * ahead;
    reach = PlaceCamera(false);
    // The point of rotation is on the line of sight, in the middle of what is seen if the clipping planes can be so.
    const double nearest = DotProduct(camera.pr - camera.vp, ahead) - reach.of[kNear];
    const double depth = reach.of[kFar] + reach.of[kNear];
    camera.pr = camera.vp + std::min(nearest + depth / 2, kFarthestPivot * nearest) * ahead;
    UpdateCameraRange();
}

void FitTurningCamera()
{
    FitCamera();
    PlaceCamera(true);
    UpdateCameraRange();
}

void TurnCamera(double theta)
{
    camera.vp = FromPivot(ArbitraryRotate(camera.vp - camera.pr, theta, {0, 0, 1}));
    for (Vector *v : {&camera.vd, &camera.vu})
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

// The place at `arm` from the point of rotation. With that at the origin it is `arm` itself, zeros with their signs.
static Vector FromPivot(Vector arm)
{
    return arm - (Vector{0, 0, 0} - camera.pr);
}

// Moves the view point along its line through the point of rotation.
static void MoveToDistance(double distance)
{
    Vector arm = camera.vp - camera.pr;
    Normalise(&arm);
    camera.vp = FromPivot(distance * arm);
}

// Turns the view direction by theta radians about an axis and aims at the point of rotation from a distance; the
// up vector becomes right x vd, not yet of unit length.
static void SwingCamera(double theta, Vector axis, Vector right, double distance)
{
    camera.vd = ArbitraryRotate(camera.vd, theta, axis);
    Normalise(&camera.vd);
    camera.vp = FromPivot(-distance * camera.vd);
    camera.vu = CrossProduct(right, camera.vd);
}

// A point is in view where, in the camera's axes from the view point, |x| <= tangent z and |y| <= tangent z. So each
// side of the view bounds the view point by how far all points reach beyond the side's plane; two opposite sides
// together bound its depth, and their difference is the middle between them. With `turning`, by how far they reach
// while they turn about the point of rotation. That stays, and should be within what is drawn; returns the reach from
// there.
static Reach PlaceCamera(bool turning)
{
    ViewFrame frame = FindViewFrame();
    Reach reach = FindReach(frame, turning);
    const double *of = reach.of;
    const auto width = [&] { return (of[kRight] + of[kLeft]) / 2; };
    const auto height = [&] { return (of[kTop] + of[kBottom]) / 2; };
    const double nearest = -of[kNear]; // depths from the point of rotation
    const double depth = of[kFar] - nearest;
    double back =
        std::max({width() / frame.horizontal, height() / frame.vertical, depth / kDeepestView - nearest,
                  growthstate.branchlength / 2 - nearest}); // of the view point, from there
    if (turning)
        back = std::max(back, -nearest * kFarthestPivot / (kFarthestPivot - 1));
    // Where there is room to spare, it is made equal on opposite sides: by the view that would have none to spare from so
    // far back.
    for (int step = 0; step < kMostCentringSteps; step++) {
        const double horizontal = width() / back, vertical = height() / back;
        if (std::fabs(horizontal - frame.horizontal) <= kCentred * horizontal &&
            std::fabs(vertical - frame.vertical) <= kCentred * vertical)
            break;
        frame.horizontal = horizontal;
        frame.vertical = vertical;
        reach = FindReach(frame, turning);
    }
    const Vector centre =
        (of[kRight] - of[kLeft]) / 2 * frame.right + (of[kTop] - of[kBottom]) / 2 * frame.up;
    camera.vp = camera.pr + centre - back * frame.ahead;
    return reach;
}

static ViewFrame FindViewFrame()
{
    Vector right = RightVector();
    Normalise(&right);
    double ratio = static_cast<double>(camera.screenwidth) / static_cast<double>(camera.screenheight);
    if (camera.stereo == kStereoDualScreen)
        ratio /= 2;
    const double vertical = std::tan(camera.aperture * kDegreesToRadians / 2) / kFitMargin;
    return {right, CrossProduct(right, camera.vd), camera.vd, vertical * ratio, vertical};
}

// From the point of rotation.
static Reach FindReach(const ViewFrame &frame, bool turning)
{
    const Vector across = frame.horizontal * frame.ahead;
    const Vector upright = frame.vertical * frame.ahead;
    const Vector none = {0, 0, 0};
    Reach reach = {{frame.right - across, none - frame.right - across, frame.up - upright,
                    none - frame.up - upright, none - frame.ahead, frame.ahead},
                   {}};
    double lengths[kSides], flat[kSides];
    for (int side = 0; side < kSides; side++) {
        const Vector d = reach.directions[side];
        lengths[side] = Modulus(d);
        flat[side] = std::hypot(d.x, d.y);
        reach.of[side] = -HUGE_VAL;
    }
    ForEachDrawnBall([&](Vector centre, double radius) {
        const Vector arm = centre - camera.pr;
        const double swept = turning ? std::hypot(arm.x, arm.y) : 0;
        for (int side = 0; side < kSides; side++) {
            const Vector d = reach.directions[side];
            const double along = turning ? flat[side] * swept + d.z * arm.z : DotProduct(d, arm);
            reach.of[side] = std::max(reach.of[side], along + lengths[side] * radius);
        }
    });
    return reach;
}

// All particles, with their thickness where they are tubes, and the corners of the surface where it is drawn.
// Particles that are not drawn count where nothing else is.
template<typename Consume>
static void ForEachDrawnBall(Consume consume)
{
    const bool surface = options.surfacemode >= kSurfaceWireframe && nstltri > 0;
    if (options.dlamode == kAggregateTubes) {
        const BranchThickness thickness;
        for (int i = 0; i < ncells; i++) {
            const double radius = std::fabs(thickness.Of(i));
            consume(cells[i].p, std::isfinite(radius) ? radius : 0);
        }
    } else if (options.dlamode != kAggregateOff || !surface) {
        for (int i = 0; i < ncells; i++)
            consume(cells[i].p, 0);
    }
    if (surface)
        for (int i = 0; i < nstltri; i++)
            for (const Vector corner : stltri[i].p)
                consume(corner, 0);
}
