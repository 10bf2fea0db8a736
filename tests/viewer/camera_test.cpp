#include "viewer/camera.h"

#include <random>

#include <gtest/gtest.h>

#include "growth/state.h"

static void ExpectVector(Vector v, double x, double y, double z)
{
    EXPECT_NEAR(v.x, x, 1e-12);
    EXPECT_NEAR(v.y, y, 1e-12);
    EXPECT_NEAR(v.z, z, 1e-12);
}

TEST(CameraHome, KeepsStereoAndWindowSize)
{
    CameraHome();
    camera.stereo = kStereoDualScreen;
    camera.screenwidth = 123;
    camera.vp = {1, 2, 3};
    camera.aperture = 5;
    CameraHome();
    EXPECT_EQ(camera.stereo, kStereoDualScreen);
    EXPECT_EQ(camera.screenwidth, 123);
    ExpectVector(camera.vp, 60, 0, 0);
    ExpectVector(camera.vd, -1, 0, 0);
    ExpectVector(camera.vu, 0, 0, 1);
    EXPECT_EQ(camera.aperture, 60);
    EXPECT_EQ(camera.eyesep, 2);
    EXPECT_EQ(camera.nearclip, 6);
    EXPECT_EQ(camera.farclip, 600);
}

TEST(RotateCamera, TurnsAboutOneAxis)
{
    CameraHome();
    RotateCamera(0.1, 0, 0);
    ExpectVector(camera.vd, -std::cos(0.1), -std::sin(0.1), 0);
    ExpectVector(camera.vp, 60 * std::cos(0.1), 60 * std::sin(0.1), 0);
    ExpectVector(camera.vu, 0, 0, 1);

    CameraHome(); // the right vector is +y: a positive turn about it lowers the view point
    RotateCamera(0, 0.1, 0);
    ExpectVector(camera.vd, -std::cos(0.1), 0, std::sin(0.1));
    ExpectVector(camera.vp, 60 * std::cos(0.1), 0, -60 * std::sin(0.1));
    ExpectVector(camera.vu, std::sin(0.1), 0, std::cos(0.1));

    CameraHome();
    camera.vp = {30, 40,
                 0}; // a roll leaves the view point, a turn snaps it back onto the line through the origin
    RotateCamera(0, 0, 0.1);
    ExpectVector(camera.vp, 30, 40, 0);
    ExpectVector(camera.vu, 0, std::sin(0.1), std::cos(0.1));
    RotateCamera(0, 0, -0.1);
    RotateCamera(1e-300, 0, 0);
    ExpectVector(camera.vp, 50, 0, 0);
}

TEST(RotateCamera, KeepsItsFrameOverManyTurns)
{
    CameraHome();
    std::mt19937 random(5);
    std::uniform_real_distribution<double> u(-0.3, 0.3);
    for (int i = 0; i < 3000; i++) {
        const double turn = u(random);
        RotateCamera(i % 3 == 0 ? turn : 0, i % 3 == 1 ? turn : 0, i % 3 == 2 ? turn : 0);
        EXPECT_NEAR(Modulus(camera.vd), 1, 1e-12);
        EXPECT_NEAR(Modulus(camera.vu), 1, 1e-12);
        EXPECT_NEAR(DotProduct(camera.vd, camera.vu), 0, 1e-9);
        EXPECT_NEAR(Modulus(camera.vp), 60, 1e-9);
    }
}

TEST(RotateCamera, OddAngles)
{
    CameraHome();
    camera.vu = {0, 0, 5};
    RotateCamera(0, 0, 0);
    ExpectVector(camera.vu, 0, 0, 1);
    RotateCamera(kTwoPi / 4, 0, 0); // the right vector is then parallel to the view direction
    EXPECT_LT(std::fabs(camera.vu.z), 1e-9 + 1);
    CameraHome();
    RotateCamera(NAN, 0, 0); // counts as a turn
    EXPECT_TRUE(std::isnan(camera.vd.x));
    CameraHome();
}
