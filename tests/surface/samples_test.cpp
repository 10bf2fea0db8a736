#include "surface/samples.h"

#include <gtest/gtest.h>

#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "surface/surface.h"

TEST(Samples, CountsBoundsAndNames)
{
    StartAfresh();
    const double corner = 28.284271247461902;
    const struct {
        int id;
        const char *name;
        int faces;
        Vector min, max;
        double area; // of all faces, from the shapes' geometry; -1: not compared
    } rows[] = {
        {1, "Cylinder", 288, {-20, -20, -20}, {20, 20, 20}, -1},
        {2, "Open (single) cylinder", 216, {-20, -20, -20}, {20, 20, 20}, -1},
        {3, "Open (double) cylinder", 144, {-20, -20, -20}, {20, 20, 20}, -1},
        {11, "Box", 16, {-corner, -corner, -20}, {corner, corner, 20}, 6 * 1600},
        {12, "Open (single) Box", 12, {-corner, -corner, -20}, {corner, corner, 20}, 5 * 1600},
        {13, "Open (double) Box", 8, {-corner, -corner, -20}, {corner, corner, 20}, 4 * 1600},
        {21, "Sphere", 5040, {-20, -20, -20}, {20, 20, 20}, -1},
        {22, "Hemisphere", 2520, {-20, -20, -20}, {20, 20, 0}, -1},
        {23, "Closed hemisphere", 5040, {-20, -20, -20}, {20, 20, 0}, -1},
        {31, "Plane", 800, {-200, -200, -20}, {200, 200, -20}, 400 * 400},
        {100, "None", 0, {1e32, 1e32, 1e32}, {-1e32, -1e32, -1e32}, 0},
        {7, "None", 0, {1e32, 1e32, 1e32}, {-1e32, -1e32, -1e32}, 0},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(BuildSample(row.id), 1);
        EXPECT_STREQ(growthstate.surfacename, row.name);
        EXPECT_EQ(nstltri, row.faces) << row.name;
        EXPECT_TRUE(VectorEqual(stlmin, row.min) && VectorEqual(stlmax, row.max)) << row.name;
        double area = 0;
        for (int i = 0; i < nstltri; i++) {
            const Triangle &t = stltri[i];
            area += Modulus(CrossProduct(t.p[1] - t.p[0], t.p[2] - t.p[0])) / 2;
        }
        if (row.area >= 0) {
            EXPECT_NEAR(area, row.area, 1e-6) << row.name;
        }
    }
}

TEST(Samples, CornersInTheOrderThatGivesTheNormals)
{
    StartAfresh();
    const auto corner = [](int face, int i) { return stltri[face].p[i]; };
    BuildSample(1);
    EXPECT_TRUE(VectorEqual(corner(0, 0), {20, 0, 20}));
    EXPECT_TRUE(VectorEqual(corner(0, 1), {20, 0, -20}));
    EXPECT_NEAR(corner(0, 2).y, 20 * std::sin(kTwoPi / 72), 1e-12);
    EXPECT_EQ(corner(1, 1).z, -20);
    EXPECT_EQ(corner(143, 2).y, 0); // the last segment closes on angle 0 itself
    for (int i = 144; i < 288; i++) {
        EXPECT_DOUBLE_EQ(stltri[i].n.z, 1) << i; // both ends
        EXPECT_EQ(corner(i, 0).z, i < 216 ? -20 : 20);
    }
    BuildSample(21);
    options.debug = 1;
    testing::internal::CaptureStderr();
    BuildSample(21);
    EXPECT_EQ(testing::internal::GetCapturedStderr().substr(0, 22), "Removed 144 bad faces\n");
    options.debug = 0;
    for (int i = 0; i < nstltri; i++)
        EXPECT_NEAR(Modulus(corner(i, 0)), 20, 1e-9);
    BuildSample(23);
    int lid = 0;
    for (int i = 0; i < nstltri; i++)
        lid += std::fabs(corner(i, 0).z) + std::fabs(corner(i, 1).z) + std::fabs(corner(i, 2).z) < 1e-9;
    EXPECT_EQ(lid, 2520);
    BuildSample(31);
    EXPECT_TRUE(VectorEqual(corner(0, 0), {-200, -200, -20}));
    EXPECT_TRUE(VectorEqual(corner(0, 1), {-200, -180, -20}));
    EXPECT_TRUE(VectorEqual(corner(3, 2), {-200, -180, -20}));
}

// The cylinder is convex: no branch crosses its wall or an end while every particle lies within.
TEST(Samples, GrowthStaysInsideTheCylinder)
{
    StartAfresh();
    BuildSample(1);
    growthstate.branchlength = 0.8;
    Grow(IterateSystem, 5000, 400000000);
    ASSERT_EQ(ncells, 5000);
    const double inner = 20 * std::cos(kTwoPi / 144); // from the axis to the middle of a segment
    double outermost = 0;
    for (int i = 0; i < ncells; i++) {
        const double r = std::hypot(cells[i].p.x, cells[i].p.y);
        const double sector = std::fmod(std::atan2(cells[i].p.y, cells[i].p.x) + kTwoPi, kTwoPi / 72);
        ASSERT_LT(r * std::cos(sector - kTwoPi / 144), inner) << i;
        ASSERT_LT(std::fabs(cells[i].p.z), 20) << i;
        outermost = std::max(outermost, r);
    }
    EXPECT_GT(outermost, 18); // the wall was reached
}
