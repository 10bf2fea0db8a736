#include "surface/surface.h"

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/scenario.h"

static void AddFace(Vector a, Vector b, Vector c)
{
    Triangle t = {};
    t.p[0] = a;
    t.p[1] = b;
    t.p[2] = c;
    ASSERT_TRUE(AppendToArray(&stltri, &nstltri, t));
}

TEST(Surface, BadFacesAreReplacedByTheLast)
{
    StartAfresh();
    const Vector a = {0, 0, 0}, b = {1, 0, 0}, c = {0, 1, 0};
    AddFace(a, a, b);            // 0: bad
    AddFace(a, b, c);            // 1
    AddFace(a, b, {1, 1e-7, 0}); // 2: bad
    AddFace(a, b, {3, 0, 0});    // 3: collinear, kept
    AddFace(c, b, c);            // 4: bad
    AddFace(a, b, {0, 0, 2});    // 5
    AddFace(c, c, c);            // 6: bad, at the end
    options.debug = 1;
    testing::internal::CaptureStderr();
    UpdateSTL();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Removed 4 bad faces\n"
                                                      "Bounds: 0 <= x <= 3\n"
                                                      "        0 <= y <= 1\n"
                                                      "        0 <= z <= 2\n"
                                                      "Midpoint: 1.5 0.5 1\n");
    ASSERT_EQ(nstltri, 3);
    EXPECT_EQ(stltri[0].p[2].z, 2);
    EXPECT_EQ(stltri[1].p[2].y, 1);
    EXPECT_EQ(stltri[2].p[2].x, 3);
    EXPECT_EQ(Modulus(stltri[2].n), 0); // collinear: no plane
    EXPECT_EQ(stltri[2].D, 0);
}

// Everything that follows from the corners, also after transforms.
TEST(Surface, FaceDataAreAsRightBefore)
{
    StartAfresh();
    std::ostringstream text;
    text.precision(10);
    testing::internal::CaptureStderr();
    const auto print = [&] {
        for (int i = 0; i < nstltri; i++) {
            const Triangle &t = stltri[i];
            for (const Vector &v : {t.p[0], t.p[1], t.p[2], t.n, t.midpoint})
                text << '(' << Plain(v.x) << ' ' << Plain(v.y) << ' ' << Plain(v.z) << ") ";
            text << Plain(t.A) << ' ' << Plain(t.B) << ' ' << Plain(t.C) << ' ' << Plain(t.D) << ' '
                 << PointPlaneDist(i, {7, 5, 3}) << '\n';
        }
        text << testing::internal::GetCapturedStderr() << stlmid.x << ' ' << stlmin.y << ' ' << stlmax.z
             << '\n';
        testing::internal::CaptureStderr();
    };
    options.debug = 1;
    AddFace({0, 0, 3}, {3, 0, 3}, {0, 3, 3});
    AddFace({1, 2, 3}, {4, 6, 5}, {9, 7, 8});
    UpdateSTL();
    print();
    TransformSTL({2, 2, 2}, {1, 0, 0}, {0, 0, 90});
    print();
    TransformSTL({1, 2, 3}, {0, 0.5, -7}, {10, 20, 30}); // about x, then y, then z; scaled, then shifted
    print();
    TransformSTL({0, 0, 0}, {0, 0, 0}, {0, 0, 0}); // nothing is left
    print();
    options.debug = 0;
    testing::internal::GetCapturedStderr();
    AddFace({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
    UpdateSTL();
    for (const Vector p :
         {Vector{1, 1, -1}, Vector{3, 3, -1}, Vector{-1, 1, -1}, Vector{1, 1, 0.5}, Vector{1, 1, 0}}) {
        for (const Vector along : {Vector{0, 0, 2}, Vector{0.5, 0.25, 1}, Vector{1, 0, 0}}) {
            Vector hit = {9, 9, 9}; // left alone where the segment is parallel
            text << LinePlaneIntersect(0, &hit, p, p + along) << ' ' << hit.x << ' ' << hit.y << ' ' << hit.z
                 << '\n';
        }
    }
    ExpectGolden("faces.txt", text.str());
}
