#include "viewer/camera.h"

#include <algorithm>
#include <cmath>

#include "export/appearance.h"
#include "growth/camera_home.h"
#include "growth/state.h"
#include "surface/surface.h"

// Factor of one zoom or dolly step.
constexpr double kZoomStep = 0.95;
// Limits of the aperture, degrees. They are tested before a step, so the aperture can end one step beyond (kept).
constexpr double kNarrowest = 1;
constexpr double kWidest = 90;
// Size of the view in relation to what is fitted into it
constexpr double kFitMargin = 1.02;
// Largest depth of what is fitted into the view, in distances to its nearest point. The far clipping plane is 100
// times as far away as the near one.
constexpr double kDeepestView = 80;
// Largest distance to the point of rotation, in distances to the nearest point that is fitted into the view. The near
// clipping plane is at a tenth of the distance to the point of rotation.
constexpr double kFarthestPivot = 9;

// Centring ends when the view's tangents change by less than this fraction, or after so many steps. More than a few
// steps are needed only if the nearest point is much nearer than the farthest.
constexpr double kCentred = 0.002;
constexpr int kMostCentringSteps = 40;

namespace
{
enum Side { kRight, kLeft, kTop, kBottom, kNear, kFar, kSides };

// How far everything that is drawn extends from the point of rotation, along six directions
struct Reach {
    Vector directions[kSides];
    double of[kSides];
};

// The camera's axes, of unit length, and the tangents of half its horizontal and vertical angles of view,
// less a margin
struct ViewFrame {
    Vector right, up, ahead;
    double horizontal, vertical;
};
} // namespace

static void MoveToDistance(double distance);
static Vector PositionFromPivot(Vector arm);
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
    // Put the point of rotation on the line of sight, in the middle of the depth range unless the near clipping plane
    // would then cut something off.
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
    camera.vp = PositionFromPivot(ArbitraryRotate(camera.vp - camera.pr, theta, {0, 0, 1}));
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

// The position at `arm` from the point of rotation. Written so that it is exactly `arm`, including the signs of
// zeros, if the point of rotation is the origin.
static Vector PositionFromPivot(Vector arm)
{
    return arm - (Vector{0, 0, 0} - camera.pr);
}

// Moves the view point along its line through the point of rotation.
static void MoveToDistance(double distance)
{
    Vector arm = camera.vp - camera.pr;
    Normalise(&arm);
    camera.vp = PositionFromPivot(distance * arm);
}

// Turns the view direction by theta radians about an axis, and moves the view point so that the point of rotation is
// straight ahead at `distance`. The up vector becomes right x vd, not of unit length.
static void SwingCamera(double theta, Vector axis, Vector right, double distance)
{
    camera.vd = ArbitraryRotate(camera.vd, theta, axis);
    Normalise(&camera.vd);
    camera.vp = PositionFromPivot(-distance * camera.vd);
    camera.vu = CrossProduct(right, camera.vd);
}

// Moves the view point so that everything drawn is in view; with `turning`, so that it stays in view while it turns
// about the point of rotation. The point of rotation stays, and should be within what is drawn. Returns the reach.
//
// A point (x, y, z) in the camera's axes is in view if |x| <= z times the horizontal tangent, and |y| <= z times the
// vertical one. So the reach along the normal of each side of the view bounds the view point: the sum for two
// opposite sides gives how far back it must be, and their difference the middle between them.
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
                  growthstate.branchlength / 2 - nearest}); // from the point of rotation to the view point
    if (turning)
        back = std::max(back, -nearest * kFarthestPivot / (kFarthestPivot - 1));
    // If the view is larger than necessary in one direction, centre what is drawn: use the narrower view that it
    // would just fill from the distance `back`.
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

// The reach of everything that is drawn; with `turning`, its largest value during a turn about the z axis
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

// Calls consume(centre, radius) for all particles, with their thickness as the radius if they are drawn as tubes,
// else 0, and for the corners of the surface if it is drawn. Skips particles that are not drawn, unless the surface
// is not drawn either.
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
