#include "geom/vector.h"

#include <gtest/gtest.h>

#include "golden.h"

// Every routine on simple and on odd arguments. Outputs that a routine leaves alone stay 7.
TEST(Vector, RoutinesGiveWhatTheyGaveRightBefore)
{
    const Vector points[] = {{0, 0, 0}, {2, 0, 0}, {0, 1, 0},        {1, 2, 3},    {-1, 0.5, -2},
                             {4, 0, 8}, {0, 0, 2}, {1e-6, -1e-6, 0}, {9e-6, 1, 0}, {0.003, 0, 0}};
    std::ostringstream text;
    text.precision(10);
    const auto print = [&](const char *name, std::initializer_list<Vector> vectors,
                           std::initializer_list<double> numbers) {
        text << name;
        for (const Vector &v : vectors)
            text << " (" << Plain(v.x) << ' ' << Plain(v.y) << ' ' << Plain(v.z) << ")";
        for (const double number : numbers)
            text << ' ' << Plain(number);
        text << '\n';
    };
    for (const Vector &a : points) {
        for (const Vector &b : points) {
            Vector unit = a;
            Normalise(&unit);
            print("one and two", {unit, CrossProduct(a, b)},
                  {double(VectorEqual(a, b)), DotProduct(a, b), VectorLength(a, b), Modulus(a)});
            const double theta = 0.7;
            print("rotations",
                  {RotateX(a, theta), RotateY(a, theta), RotateZ(a, theta), ArbitraryRotate(a, theta, b)},
                  {});
            Vector pa = {7, 7, 7}, pb = pa, closest = pa, cut = pa;
            double mua = 7, mub = 7, mu = 7;
            const int lines = LineLineIntersect({0, 0, 0}, a, {6, -1, 3}, b, &pa, &pb, &mua, &mub);
            const double distance = PointLine3D({3, 4, 0}, a, b, &closest, &mu);
            const int crosses = LineSegmentPlane(a, b, {0, 0, 1}, -2, &cut);
            print("lines", {CalcNormal({0, 0, 0}, a, b), pa, pb, closest, cut},
                  {double(lines), mua, mub, distance, mu, double(crosses)});
            print("box", {},
                  {double(LineInBox({1, 1, 1}, {-1, 0, 2}, a, b)),
                   double(LineInBox({0, 0, 0}, {1, 1, 1}, 20 * a, -13.0 * b))});
        }
    }
    ExpectGolden("vectors.txt", text.str());
}
