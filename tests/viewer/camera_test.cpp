// The camera fits what is drawn into its view, and turns about the middle of it.

#include "viewer/camera.h"

#include <gtest/gtest.h>

#include "export/appearance.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "growth/state.h"
#include "surface/surface.h"

// How much of the view what is drawn takes, 1 for all of it: the larger of width and height. -1 where a clipping plane cuts
// something off. How far its middle is from that of the view, of half of that.
static double FilledPart(double *offcentre = nullptr)
{
    const double vertical = std::tan(camera.aperture * kDegreesToRadians / 2);
    const double ratio = static_cast<double>(camera.screenwidth) / camera.screenheight;
    Vector right = RightVector();
    Normalise(&right);
    double part = 0;
    Vector lower = {1, 1, 1}, upper = {-1, -1, -1};
    const auto look = [&](Vector p) {
        const Vector arm = p - camera.vp;
        const double z = DotProduct(arm, camera.vd);
        const bool cut = z < camera.nearclip || z > camera.farclip;
        const Vector place = {DotProduct(arm, right) / (vertical * ratio * z),
                              DotProduct(arm, camera.vu) / (vertical * z), 0};
        MinMaxXYZ(&lower, &upper, place);
        part = cut || part < 0 ? -1 : std::max({part, std::fabs(place.x), std::fabs(place.y)});
    };
    const BranchThickness thickness;
    for (int i = 0; i < ncells; i++)
        for (int side = 0; side < 6; side++) { // of its thickness
            Vector off = {0, 0, 0};
            (side < 2 ? off.x : side < 4 ? off.y : off.z) = side % 2 != 0 ? 1 : -1;
            look(cells[i].p + (options.dlamode == kAggregateTubes ? thickness.Of(i) : 0) * off);
        }
    if (options.surfacemode != kSurfaceOff)
        for (int i = 0; i < nstltri; i++)
            for (const Vector corner : stltri[i].p)
                look(corner);
    if (offcentre != nullptr)
        *offcentre = std::max(std::fabs(lower.x + upper.x), std::fabs(lower.y + upper.y)) / 2;
    return part;
}

// An aggregate whose particles all lie on one arm, or have grown; far from the origin.
static void PrepareAggregate(bool arm)
{
    StartAfresh();
    CameraHome();
    Grow(IterateSystem, 300, 10000000);
    for (int i = 0; i < ncells; i++)
        cells[i].p = arm ? Vector{0.3 * i, -200 + 0.1 * i, 0.7 * i} : cells[i].p + Vector{50, 70, -20};
}

TEST(Camera, FitsExactlyWhatIsDrawn)
{
    for (int k = 0; k < 72; k++) {
        const bool surface = k / 4 % 2 != 0;
        PrepareAggregate(k % 2 != 0);
        options.dlamode = k / 2 % 2 != 0 ? kAggregateTubes : kAggregateLines;
        if (surface)
            SetBoxSurface(100, false);
        options.surfacemode = surface ? kSurfaceWireframe : kSurfaceOff;
        camera.screenwidth = k % 3 != 0 ? 1920 : 500;
        camera.screenheight = 600;
        TurnCamera(0.6 * (k / 8 % 3));
        RotateCamera(0, 0.6 * (k / 24), 0.3 * k);
        const Vector direction = camera.vd;
        FitCamera();
        double offcentre = 1;
        EXPECT_NEAR(FilledPart(&offcentre), 0.98, 0.012) << k;
        EXPECT_LT(offcentre, 0.01) << k;
        // It turns about what it sees.
        RotateCamera(0.5, 0, 0);
        RotateCamera(-0.5, 0, 0);
        EXPECT_NEAR(FilledPart(), 0.98, 0.012) << k;
        EXPECT_NEAR(DotProduct(camera.vd, direction), 1, 1e-12);
        FitTurningCamera();
        double least = 1, most = 0;
        for (int turn = 0; turn < 90; turn++) {
            least = std::min(least, FilledPart());
            most = std::max(most, FilledPart());
            TurnCamera(kTwoPi / 90);
        }
        EXPECT_GT(least, 0) << k;
        EXPECT_NEAR(most, 0.98, 0.012) << k;
    }
    // Seen from its end, an arm fills little, and nothing of it is cut off.
    PrepareAggregate(true);
    options.surfacemode = kSurfaceOff;
    camera.vd = cells[1].p - cells[0].p;
    Normalise(&camera.vd);
    camera.vu = CrossProduct(camera.vd, {0, 0, 1});
    Normalise(&camera.vu);
    FitCamera();
    EXPECT_GT(FilledPart(), 0);
    // Nor of one that turns through a wide view, close by.
    for (int i = 0; i < ncells; i++)
        cells[i].p.z = 0;
    CameraHome();
    camera.screenwidth = 6000;
    FitTurningCamera();
    for (int turn = 0; turn < 90; turn++) {
        EXPECT_GT(FilledPart(), 0) << turn;
        TurnCamera(kTwoPi / 90);
    }
    CameraHome();
    camera.screenwidth = 800;
}
