#include "geom/elementary.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

#include <gtest/gtest.h>
#include <mpfr.h>

namespace
{
using Function = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

struct Case {
    const char *name;
    double (*ours)(double);
    Function exact;
    double low, high; // arguments; their exponents are uniform where low is above 0
};
} // namespace

static const Case kCases[] = {
    {"sine", [](double x) { return FindSineCosine(x).sine; }, mpfr_sin, -400, 400},
    {"cosine", [](double x) { return FindSineCosine(x).cosine; }, mpfr_cos, -400, 400},
    {"arc cosine", ArcCosine, mpfr_acos, -1, 1},
    {"logarithm", Logarithm, mpfr_log, 1e-300, 1e300},
    {"logarithm near 1", Logarithm, mpfr_log, 0.99, 1.01},
    {"power of ten", PowerOfTen, mpfr_exp10, -20, 20},
};

// The double nearest to the function's value, by way of 200 bits.
static double Nearest(Function function, double x)
{
    mpfr_t wide;
    mpfr_init2(wide, 200);
    mpfr_set_d(wide, x, MPFR_RNDN);
    function(wide, wide, MPFR_RNDN);
    const double nearest = mpfr_get_d(wide, MPFR_RNDN);
    mpfr_clear(wide);
    return nearest;
}

TEST(Elementary, ResultsAreTheNearestDoubles)
{
    std::mt19937_64 random(1);
    for (const Case &c : kCases) {
        for (int i = 0; i < SARKELO_NUMBERS / 10; i++) {
            const bool logarithmic = c.low > 0;
            std::uniform_real_distribution<double> u(logarithmic ? std::log(c.low) : c.low,
                                                     logarithmic ? std::log(c.high) : c.high);
            const double x = logarithmic ? std::exp(u(random)) : u(random);
            ASSERT_EQ(c.ours(x), Nearest(c.exact, x)) << c.name << " of " << x;
        }
    }
}

TEST(Elementary, EdgesOfTheDomains)
{
    EXPECT_EQ(Logarithm(1), 0);
    EXPECT_EQ(Logarithm(0), -HUGE_VAL);
    EXPECT_EQ(Logarithm(HUGE_VAL), HUGE_VAL);
    EXPECT_EQ(ArcCosine(1), 0);
    for (const double none : {Logarithm(-1), Logarithm(NAN), ArcCosine(1.0000000000000002), ArcCosine(NAN),
                              FindSineCosine(HUGE_VAL).sine, FindSineCosine(NAN).cosine})
        EXPECT_TRUE(std::isnan(none));
    const auto [sine, cosine] = FindSineCosine(0);
    EXPECT_TRUE(sine == 0 && cosine == 1);
}
