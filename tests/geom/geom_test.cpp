#include <cmath>
#include <random>

#include <gtest/gtest.h>
#include <mpfr.h>

#include "geom/elementary.h"
#include "geom/vector.h"
#include "golden.h"

TEST(Elementary, GivesTheNearestDouble)
{
    const struct {
        double (*ours)(double);
        int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
        double scale, power; // arguments: u scale, or 10 to that power where it is not 0, u in [-1, 1]
    } cases[] = {{[](double x) { return FindSineCosine(x).sine; }, mpfr_sin, 400, 0},
                 {[](double x) { return FindSineCosine(x).cosine; }, mpfr_cos, 400, 0},
                 {ArcCosine, mpfr_acos, 1.1, 0},
                 {Logarithm, mpfr_log, 0, 300},
                 {Logarithm, mpfr_log, 0, 0.01},
                 {PowerOfTen, mpfr_exp10, 20, 0}};
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> uniform(-1, 1);
    mpfr_t exact;
    mpfr_init2(exact, 200);
    for (const auto &c : cases) {
        for (int i = 0; i < SARKELO_NUMBERS / 20; i++) {
            const double odd[] = {0, 1, -1, HUGE_VAL, NAN}, u = uniform(random);
            const double x = i < 5 ? odd[i] : c.power != 0 ? std::pow(10, c.power * u) : c.scale * u;
            mpfr_set_d(exact, x, MPFR_RNDN);
            c.exact(exact, exact, MPFR_RNDN);
            const double ours = c.ours(x), nearest = mpfr_get_d(exact, MPFR_RNDN);
            ASSERT_TRUE(ours == nearest || (std::isnan(ours) && std::isnan(nearest)))
                << "case " << &c - cases << " of " << x << ": " << ours << ", not " << nearest;
        }
    }
    mpfr_clear(exact);
}

// Every routine on simple and on odd arguments. Outputs that a routine leaves alone stay 7.
TEST(Vector, RoutinesMatchExpectedText)
{
    const Vector points[] = {{1, 2, 3},     {4, 0, 8}, {0, 0, 0},        {2, 0, 0},    {0, 1, 0},
                             {-1, 0.5, -2}, {0, 0, 2}, {1e-6, -1e-6, 0}, {9e-6, 1, 0}, {0.003, 0, 0}};
    std::ostringstream text;
    text.precision(10);
    const auto print = [&](std::initializer_list<Vector> vectors) {
        for (const Vector &v : vectors)
            text << " (" << Plain(v.x) << ' ' << Plain(v.y) << ' ' << Plain(v.z) << ")";
        text << '\n';
    };
    for (const Vector &a : points) {
        for (const Vector &b : points) {
            Vector unit = a, pa = {7, 7, 7}, pb = pa, closest = pa, cut = pa;
            double mua = 7, mub = 7, mu = 7;
            Normalise(&unit);
            print({unit, CrossProduct(a, b), CalcNormal({0, 0, 0}, a, b)});
            print({{DotProduct(a, b), VectorLength(a, b), Modulus(a)}});
            print({RotateX(a, 0.7), RotateY(a, 0.7), RotateZ(a, 0.7), ArbitraryRotate(a, 0.7, b)});
            const double lines = LineLineIntersect({0, 0, 0}, a, {6, -1, 3}, b, &pa, &pb, &mua, &mub);
            const double distance = PointLine3D({3, 4, 0}, a, b, &closest, &mu);
            const double crosses = LineSegmentPlane(a, b, {0, 0, 1}, -2, &cut);
            print({pa, pb, {lines, mua, mub}, closest, cut, {distance, mu, crosses}});
            print({{double(VectorEqual(a, b)), double(LineInBox({1, 1, 1}, {-1, 0, 2}, a, b)),
                    double(LineInBox({0, 0, 0}, {1, 1, 1}, 20 * a, -13.0 * b))}});
        }
    }
    ExpectGolden("vectors.txt", Shortened(text.str(), 40));
}
