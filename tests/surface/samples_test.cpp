#include "surface/samples.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "surface/surface.h"

// Names, faces and bounds; and a sum over all corners in their order.
TEST(Samples, AreAsRightBefore)
{
    StartAfresh();
    options.debug = 1;
    std::ostringstream text;
    for (const int id : {1, 2, 3, 11, 12, 13, 21, 22, 23, 31, 100, 7}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(BuildSample(id), 1);
        text << id << ' ' << growthstate.surfacename << ": " << nstltri << " faces\n"
             << testing::internal::GetCapturedStderr();
        Vector sum = {0, 0, 0};
        for (int i = 0; i < nstltri; i++)
            for (int k = 0; k < 3; k++)
                sum = sum + (1 + i % 7 + 0.1 * k) * stltri[i].p[k] + (1.0 + i % 5) * stltri[i].n;
        text << std::fixed << sum.x << ' ' << sum.y << ' ' << sum.z << std::defaultfloat << '\n';
    }
    options.debug = 0;
    ExpectGolden("samples.txt", text.str());
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
