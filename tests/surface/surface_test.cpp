#include "surface/surface.h"

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/scenario.h"
#include "surface/samples.h"

// Everything that follows from the corners, of bad faces, of good ones and after transforms.
TEST(Surface, FacesMatchExpectedText)
{
    StartAfresh();
    std::ostringstream text;
    text.precision(10);
    const auto print = [&] {
        text << testing::internal::GetCapturedStderr();
        for (int i = 0; i < nstltri; i++) {
            const Triangle &t = stltri[i];
            for (const Vector &v : {t.p[0], t.p[1], t.p[2], t.n, t.midpoint})
                text << " (" << Plain(v.x) << ' ' << Plain(v.y) << ' ' << Plain(v.z) << ')';
            for (const double number : {t.A, t.B, t.C, t.D, PointPlaneDist(i, {7, 5, 3})})
                text << ' ' << Plain(number);
            text << '\n';
        }
        testing::internal::CaptureStderr();
    };
    const Vector a = {0, 0, 0}, b = {1, 0, 0}, c = {0, 1, 0};
    const Vector faces[][3] = {{a, a, b}, // bad
                               {{1, 2, 3}, {4, 6, 5}, {9, 7, 8}},
                               {a, b, {1, 1e-7, 0}}, // bad
                               {a, b, {3, 0, 0}},    // collinear, kept
                               {c, b, c},            // bad
                               {{0, 0, 3}, {3, 0, 3}, {0, 3, 3}},
                               {c, c, c}}; // bad, at the end
    for (const auto &face : faces)
        AppendToArray(&stltri, &nstltri, Triangle{{face[0], face[1], face[2]}, {}, {}, 0, 0, 0, 0});
    options.debug = 1;
    testing::internal::CaptureStderr();
    UpdateSTL();
    print();
    TransformSTL({1, 2, 3}, {0, 0.5, -7}, {10, 20, 30}); // about x, then y, then z; scaled, then shifted
    print();
    TransformSTL({0, 0, 0}, {0, 0.5, -7}, {10, 20, 30});
    print();
    options.debug = 0;
    testing::internal::GetCapturedStderr();
    for (const int id : {1, 2, 3, 11, 12, 13, 21, 22, 23, 31, 100, 7})
        text << id << ' ' << BuildSample(id) << ' ' << growthstate.surfacename << ": " << nstltri << '\n';
    ExpectGolden("faces.txt", text.str());
}
