#include "geom/elementary.h"

#include <algorithm>
#include <atomic>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <mpfr.h>

// The same bits on every machine depend on these conditions.
static_assert(FLT_EVAL_METHOD == 0,
              "each operation must be rounded to double, which x87 arithmetic does not do");
static_assert(std::numeric_limits<double>::is_iec559 && DBL_MANT_DIG == 53, "double must be IEEE 754's");
#ifdef __FAST_MATH__
#error "-ffast-math changes the order of operations"
#endif

// Assumed error of the C library's long double logarithm, in units of the last place: several times what its manual
// states.
constexpr long double kLogError = 16;
// Bytes for MPFR when malloc fails, since MPFR would end the program; never reused. A call needs a few hundred.
constexpr std::size_t kReserve = std::size_t{1} << 20;

static void *Allocate(std::size_t size);
static void *Reallocate(void *block, std::size_t before, std::size_t size);
static void Free(void *block, std::size_t size);
static double LogarithmOfMPFR(double x);

namespace
{
// An MPFR number with a double's precision, so that functions of it are rounded as a double is. No result here is
// subnormal unless it equals its argument.
class Number
{
public:
    explicit Number(double value = 0)
    {
        static const bool prepared = (mp_set_memory_functions(Allocate, Reallocate, Free), true);
        static_cast<void>(prepared);
        mpfr_init2(number, DBL_MANT_DIG);
        mpfr_set_d(number, value, MPFR_RNDN);
    }
    ~Number() { mpfr_clear(number); }
    Number(const Number &) = delete;
    Number &operator=(const Number &) = delete;
    operator mpfr_ptr() { return number; }
    [[nodiscard]] double Value() const { return mpfr_get_d(number, MPFR_RNDN); }

private:
    mpfr_t number;
};
} // namespace

SineCosine FindSineCosine(double theta)
{
    Number angle(theta), sine, cosine;
    mpfr_sin_cos(sine, cosine, angle, MPFR_RNDN);
    return {sine.Value(), cosine.Value()};
}

double ArcCosine(double x)
{
    Number number(x);
    mpfr_acos(number, number, MPFR_RNDN);
    return number.Value();
}

// If a long double has more digits and both ends of its error interval round to the same double, that is the result.
double Logarithm(double x)
{
    static const bool islong = [] {
        volatile long double one = 1; // some emulators compute with fewer digits than the compiler expects
        return one + LDBL_EPSILON > one && LDBL_MANT_DIG >= DBL_MANT_DIG + 11;
    }();
    if (!islong)
        return LogarithmOfMPFR(x);
    const long double log = std::log(static_cast<long double>(x));
    const long double error = kLogError * LDBL_EPSILON * std::fabs(log);
    const auto low = static_cast<double>(log - error);
    const auto high = static_cast<double>(log + error);
    return low == high ? low : LogarithmOfMPFR(x);
}

double PowerOfTen(double x)
{
    Number number(x);
    mpfr_exp10(number, number, MPFR_RNDN);
    return number.Value();
}

static double LogarithmOfMPFR(double x)
{
    Number number(x);
    mpfr_log(number, number, MPFR_RNDN);
    return number.Value();
}

void FreeElementaryCaches()
{
    mpfr_free_cache2(MPFR_FREE_LOCAL_CACHE);
}

// The memory of MPFR ---------------------------------------------------------------------------------------

alignas(std::max_align_t) static char reserve[kReserve];
static std::atomic<std::size_t> reserved = 0;

static void *Allocate(std::size_t size)
{
    if (void *block = std::malloc(size); block != nullptr)
        return block;
    const std::size_t rounded = (size / alignof(std::max_align_t) + 1) * alignof(std::max_align_t);
    const std::size_t start = reserved.fetch_add(rounded);
    if (start > kReserve - rounded)
        std::abort();
    return reserve + start;
}

static void *Reallocate(void *block, std::size_t before, std::size_t size)
{
    void *larger = Allocate(size);
    std::memcpy(larger, block, std::min(before, size));
    Free(block, before);
    return larger;
}

static void Free(void *block, std::size_t)
{
    if (block < reserve || block >= reserve + kReserve)
        std::free(block);
}
