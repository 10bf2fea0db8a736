#include "surface/surface.h"

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/scenario.h"
#include "surface/samples.h"

static void AddFace(Vector a, Vector b, Vector c)
{
    AppendToArray(&stltri, &nstltri, Triangle{{a, b, c}, {}, {}, 0, 0, 0, 0});
}

// Everything that follows from the corners, of bad faces, of good ones and after transforms.
TEST(Surface, FaceDataAreAsRightBefore)
{
    StartAfresh();
    std::ostringstream text;
    text.precision(10);
    const auto print = [&](const std::string &reported) {
        text << reported;
        for (int i = 0; i < nstltri; i++) {
            const Triangle &t = stltri[i];
            for (const Vector &v : {t.p[0], t.p[1], t.p[2], t.n, t.midpoint})
                text << '(' << Plain(v.x) << ' ' << Plain(v.y) << ' ' << Plain(v.z) << ") ";
            text << Plain(t.A) << ' ' << Plain(t.B) << ' ' << Plain(t.C) << ' ' << Plain(t.D) << ' '
                 << PointPlaneDist(i, {7, 5, 3}) << '\n';
        }
    };
    options.debug = 1;
    const Vector a = {0, 0, 0}, b = {1, 0, 0}, c = {0, 1, 0};
    AddFace(a, a, b); // bad
    AddFace({1, 2, 3}, {4, 6, 5}, {9, 7, 8});
    AddFace(a, b, {1, 1e-7, 0}); // bad
    AddFace(a, b, {3, 0, 0});    // collinear, kept
    AddFace(c, b, c);            // bad
    AddFace({0, 0, 3}, {3, 0, 3}, {0, 3, 3});
    AddFace(c, c, c); // bad, at the end
    testing::internal::CaptureStderr();
    UpdateSTL();
    print(testing::internal::GetCapturedStderr());
    for (const Vector scale :
         {Vector{1, 2, 3}, Vector{0, 0, 0}}) { // about x, then y, then z; scaled, then shifted
        testing::internal::CaptureStderr();
        TransformSTL(scale, {0, 0.5, -7}, {10, 20, 30});
        print(testing::internal::GetCapturedStderr());
    }
    options.debug = 0;
    for (const int id : {1, 2, 3, 11, 12, 13, 21, 22, 23, 31, 100, 7}) {
        text << id << ' ' << BuildSample(id) << ' ' << growthstate.surfacename << ": " << nstltri
             << " faces\n";
    }
    ExpectGolden("faces.txt", text.str());
}
