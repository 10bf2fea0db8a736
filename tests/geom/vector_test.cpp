#include "geom/vector.h"

#include <random>

#include <gtest/gtest.h>

static void ExpectVector(Vector v, double x, double y, double z)
{
    EXPECT_NEAR(v.x, x, 1e-12);
    EXPECT_NEAR(v.y, y, 1e-12);
    EXPECT_NEAR(v.z, z, 1e-12);
}

TEST(Vector, NormaliseDividesByTheLength)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> u(-2, 2);
    for (int i = 0; i < 1000; i++) {
        const Vector v = {u(random), u(random), u(random)};
        Vector unit = v;
        Normalise(&unit);
        const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
        EXPECT_EQ(unit.x, v.x / length);
        EXPECT_EQ(unit.y, v.y / length);
        EXPECT_EQ(unit.z, v.z / length);
    }
    Vector zero = {0, 0, 0};
    Normalise(&zero);
    EXPECT_EQ(Modulus(zero), 0);
}

TEST(Vector, EqualWithinAMillionth)
{
    EXPECT_TRUE(VectorEqual({0, 0, 0}, {1e-6, 0, 0}));
    EXPECT_TRUE(VectorEqual({0, 0, 0}, {0, -1e-6, 1e-6}));
    EXPECT_FALSE(VectorEqual({0, 0, 0}, {0, 0, 1.001e-6}));
    EXPECT_FALSE(VectorEqual({0, 0, 0}, {0, NAN, 0}));
}

TEST(Vector, RotationsAboutAxesAndArbitraryRotationTurnOppositeWays)
{
    const double quarter = kTwoPi / 4;
    ExpectVector(RotateX({0, 1, 0}, quarter), 0, 0, -1);
    ExpectVector(RotateY({0, 0, 1}, quarter), -1, 0, 0);
    ExpectVector(RotateZ({1, 0, 0}, quarter), 0, -1, 0);
    ExpectVector(ArbitraryRotate({0, 1, 0}, quarter, {3, 0, 0}), 0, 0, 1);
    ExpectVector(ArbitraryRotate({0, 0, 1}, quarter, {0, 0.1, 0}), 1, 0, 0);
    ExpectVector(ArbitraryRotate({1, 0, 0}, quarter, {0, 0, 1}), 0, 1, 0);
    // A third of a turn about the diagonal permutes the axes.
    ExpectVector(ArbitraryRotate({1, 2, 3}, kTwoPi / 3, {1, 1, 1}), 3, 1, 2);
    ExpectVector(ArbitraryRotate({1, 2, 3}, kTwoPi / 6, {0, 0, 0}), 0.5, 1, 1.5);
}

TEST(Vector, CalcNormalFollowsTheCorners)
{
    ExpectVector(CalcNormal({0, 0, 0}, {5, 0, 0}, {0, 5, 0}), 0, 0, 1);
    ExpectVector(CalcNormal({0, 0, 0}, {1, 1, 1}, {2, 2, 2}), 0, 0, 0);
}

TEST(Vector, LineLineIntersectFindsTheShortestSegment)
{
    Vector pa, pb;
    double mua, mub;
    ASSERT_TRUE(LineLineIntersect({0, 0, 0}, {2, 0, 0}, {6, -1, 3}, {6, 1, 3}, &pa, &pb, &mua, &mub));
    ExpectVector(pa, 6, 0, 0);
    ExpectVector(pb, 6, 0, 3);
    EXPECT_DOUBLE_EQ(mua, 3); // beyond the end of the segment: lines are infinite
    EXPECT_DOUBLE_EQ(mub, 0.5);

    pa = pb = {7, 7, 7};
    mua = mub = 7;
    EXPECT_FALSE(LineLineIntersect({0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {4, 1, 0}, &pa, &pb, &mua, &mub));
    EXPECT_FALSE(LineLineIntersect({0, 0, 0}, {0, 0, 0}, {0, 1, 0}, {4, 2, 0}, &pa, &pb, &mua, &mub));
    EXPECT_FALSE(LineLineIntersect({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {9e-6, 1, 0}, &pa, &pb, &mua, &mub));
    ExpectVector(pa, 7, 7, 7);
    ExpectVector(pb, 7, 7, 7);
    EXPECT_EQ(mua, 7);
    EXPECT_EQ(mub, 7);
}

TEST(Vector, PointLine3DMeasuresToTheInfiniteLine)
{
    Vector closest;
    double mu;
    EXPECT_DOUBLE_EQ(PointLine3D({3, 4, 0}, {0, 0, 0}, {2, 0, 0}, &closest, &mu), 4);
    EXPECT_DOUBLE_EQ(mu, 1.5);
    ExpectVector(closest, 3, 0, 0);
    EXPECT_DOUBLE_EQ(PointLine3D({3, 4, 0}, {0, 0, 0}, {0.003, 0, 0}, &closest, &mu), 5);
    EXPECT_EQ(mu, 0);
    ExpectVector(closest, 0, 0, 0);
}

TEST(Vector, LineSegmentPlaneStopsAtTheEnds)
{
    Vector p = {9, 9, 9};
    ASSERT_TRUE(LineSegmentPlane({0, 0, 0}, {4, 0, 8}, {0, 0, 1}, -2, &p));
    ExpectVector(p, 1, 0, 2);
    EXPECT_TRUE(LineSegmentPlane({0, 0, 2}, {0, 0, 3}, {0, 0, 1}, -2, &p)); // touching counts
    p = {9, 9, 9};
    EXPECT_FALSE(LineSegmentPlane({0, 0, 2.1}, {0, 0, 3}, {0, 0, 1}, -2, &p));
    EXPECT_FALSE(LineSegmentPlane({0, 0, 2}, {5, 0, 2}, {0, 0, 1}, -2, &p));
    ExpectVector(p, 9, 9, 9);
}

TEST(Vector, LineInBoxLooksAtEndsAndNinePointsBetween)
{
    const Vector a = {1, 1, 1}, b = {0, 0, 0}; // corners in any order
    EXPECT_TRUE(LineInBox(a, b, {0.5, 0.5, 0.5}, {9, 9, 9}));
    EXPECT_TRUE(LineInBox(b, a, {9, 9, 9}, {1, 1, 1})); // bounds are inside
    EXPECT_TRUE(LineInBox(a, b, {-1, 0.5, 0.5}, {2, 0.5, 0.5}));
    EXPECT_FALSE(LineInBox(a, b, {1.1, 0, 0}, {2, 1, 1}));
    EXPECT_FALSE(LineInBox(a, b, {0, -0.1, 0}, {1, -2, 1}));
    // Crosses the box between two samples only: reported as missing it.
    EXPECT_FALSE(LineInBox(a, b, {-50, 0.5, 0.5}, {57, 0.5, 0.5}));
    EXPECT_TRUE(LineInBox(a, b, {-50, 0.5, 0.5}, {50.5, 0.5, 0.5})); // the fifth sample
}
