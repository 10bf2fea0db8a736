// The camera fits what is drawn into its view, and turns about the middle of it.

#include "viewer/camera.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "surface/surface.h"

// How much of the view the particles' and the surface's points fill, 1 for all of it.
static std::string Filled()
{
    const double vertical = std::tan(camera.aperture * kDegreesToRadians / 2);
    const double horizontal = vertical * camera.screenwidth / camera.screenheight;
    double filled = 0;
    const auto look = [&](Vector p) {
        const double z = DotProduct(p - camera.vp, camera.vd);
        const double x = std::fabs(DotProduct(p - camera.vp, RightVector())),
                     y = DotProduct(p - camera.vp, camera.vu);
        filled = std::max({filled, x / (horizontal * z), std::fabs(y) / (vertical * z)});
        EXPECT_TRUE(z >= camera.nearclip && z <= camera.farclip) << "cut off";
    };
    for (int i = 0; i < ncells; i++)
        look(cells[i].p);
    for (int i = 0; options.surfacemode != kSurfaceOff && i < nstltri; i++)
        for (const Vector corner : stltri[i].p)
            look(corner);
    return "filled " + std::to_string(filled) + '\n';
}

TEST(Camera, FitsWhatIsDrawnIntoItsView)
{
    std::string text;
    for (int k = 0; k < 9; k++) {
        StartAfresh();
        CameraHome();
        Grow(IterateSystem, 300, 10000000);
        for (int i = 0; i < ncells; i++) // all in one arm, or far from the origin
            cells[i].p = k % 2 == 0 ? Vector{0.3 * i, -200 + 0.1 * i, k < 8 ? 0.7 * i : 0}
                                    : cells[i].p + Vector{50, 70, -20};
        options.dlamode = k / 2 % 2 != 0 ? kAggregateTubes : kAggregateLines;
        growthstate.thickto = k == 7 ? HUGE_VAL : 0.01; // such tubes count as lines
        options.surfacemode = k / 4 == 1 ? kSurfaceWireframe : kSurfaceOff;
        SetBoxSurface(100, false);
        camera.screenwidth = k % 3 != 0 ? 1920 : 500;
        camera.screenheight = 600;
        RotateCamera(0, 0.3 * (k / 4), 0.3 * k);
        if (k == 8) // along a flat arm
            camera.vd = {-0.3 / std::sqrt(0.1), -0.1 / std::sqrt(0.1), 0};
        FitCamera();
        text += "fitted: " + Filled();
        RotateCamera(0.5, 0, 0);
        text += "rotated: " + Filled();
        FitTurningCamera();
        for (int turn = 0; turn < 3; turn++, TurnCamera(kTwoPi / 3))
            text += "turned: " + Filled();
        ZoomCamera(2);
        text += "zoomed " + std::to_string(camera.aperture) + '\n';
    }
    camera.screenwidth = 800;
    ExpectGolden("camera.txt", text);
}
