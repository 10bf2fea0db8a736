#include "growth/sources.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "growth/scenario.h"
#include "surface/surface.h"

constexpr double kLaunchRadius = 12;

static Vector Launch(int source)
{
    Vector p;
    EXPECT_EQ(GetNewParticle(&p, source, kLaunchRadius), &p);
    return p;
}

TEST(Sources, LaunchOnTheLaunchSphereOnTheirSide)
{
    // Bounds of the launch positions per source, as multiples of the launch radius: cap is the least cosine
    // of the angle to the axis (0: the half space), spread the largest lateral coordinate.
    struct Row {
        int source, axis;
        int side; // +1, -1, or 0 for both
        double cap, spread;
    };
    const double plane = 1 / std::sqrt(3.0) - 1e-12;
    const Row rows[] = {
        {2, 0, 1, 0.99, 0.0501},  {3, 0, -1, 0.99, 0.0501}, {4, 0, 0, 0.99, 0.0501}, {5, 1, 1, 0.99, 0.0501},
        {6, 1, -1, 0.99, 0.0501}, {7, 1, 0, 0.99, 0.0501},  {8, 2, 1, 0.99, 0.0501}, {9, 2, -1, 0.99, 0.0501},
        {10, 2, 0, 0.99, 0.0501}, {11, 0, 1, plane, 0.71},  {12, 1, 1, plane, 0.71}, {13, 2, 1, plane, 0.71},
        {14, 0, 1, 0, 1},         {15, 1, 1, 0, 1},         {16, 2, 1, 0, 1},        {1, 0, 0, 0, 1},
        {17, 0, 0, 0, 1},         {0, 0, 0, 0, 1},          {18, 0, 0, 0, 1},
    };
    StartAfresh();
    for (const Row &row : rows) {
        bool plus = false;
        bool minus = false;
        for (int i = 0; i < 1000; i++) {
            const Vector p = Launch(row.source);
            EXPECT_NEAR(Modulus(p), kLaunchRadius, 1e-12) << row.source;
            const double c[] = {p.x / kLaunchRadius, p.y / kLaunchRadius, p.z / kLaunchRadius};
            plus = plus || c[row.axis] > 0;
            minus = minus || c[row.axis] < 0;
            EXPECT_GE(std::fabs(c[row.axis]), row.cap) << row.source;
            EXPECT_LE(std::fabs(c[(row.axis + 1) % 3]), row.spread) << row.source;
            EXPECT_LE(std::fabs(c[(row.axis + 2) % 3]), row.spread) << row.source;
        }
        EXPECT_EQ(plus, row.side >= 0) << row.source;
        EXPECT_EQ(minus, row.side <= 0) << row.source;
    }
}

TEST(Sources, SurfaceLaunchesTowardsTriangleCentres)
{
    StartAfresh();
    SetBoxSurface(2, false);
    nstltri = 1;
    srand(1);
    const int second = (rand(), rand());
    srand(1);
    srand48(7);
    const double untouched = drand48();
    srand48(7);
    Vector centre = stltri[0].midpoint;
    Normalise(&centre);
    const Vector p = Launch(kSourceSurface);
    EXPECT_EQ(p.x, kLaunchRadius * centre.x);
    EXPECT_EQ(p.y, kLaunchRadius * centre.y);
    EXPECT_EQ(p.z, kLaunchRadius * centre.z);
    EXPECT_EQ(drand48(), untouched);
    EXPECT_EQ(rand(), second);
}

TEST(Sources, AreNamed)
{
    EXPECT_STREQ(SourceName(1), "Sphere");
    EXPECT_STREQ(SourceName(9), "Single axis (-z)");
    EXPECT_STREQ(SourceName(17), "STL surface");
    EXPECT_STREQ(SourceName(18), "Unknown");
    EXPECT_STREQ(SourceName(-1), "Unknown");
    HandleSourceMenu(42);
    EXPECT_EQ(growthstate.sourcetype, 42);
}
