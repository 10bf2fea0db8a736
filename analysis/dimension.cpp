#include "analysis/dimension.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "geom/elementary.h"
#include "growth/state.h"

// Points of the gyration curve per decade of particle numbers.
constexpr double kPerDecade = 10;

namespace
{
// The spread of particles added one by one: their mean and the sum of squares about it, after Welford,
// "Note on a Method for Calculating Corrected Sums of Squares and Products", Technometrics 4 (1962) 419.
class Spread
{
public:
    void Add(Vector p)
    {
        number++;
        const Vector before = p - mean;
        mean = mean + (1.0 / number) * before;
        squares += DotProduct(before, p - mean);
    }
    [[nodiscard]] double Radius() const { return std::sqrt(squares / number); }

private:
    int number = 0;
    Vector mean = {0, 0, 0};
    double squares = 0;
};
} // namespace

LineFit FitLine(std::span<const double> x, std::span<const double> y)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    const auto n = static_cast<double>(x.size());
    LineFit fit = {static_cast<int>(x.size()), none, none, none, none};
    if (x.empty())
        return fit;
    const auto [lowest, highest] = std::minmax_element(x.begin(), x.end());
    fit.first = *lowest;
    fit.last = *highest;
    double meanx = 0, meany = 0;
    for (std::size_t i = 0; i < x.size(); i++) {
        meanx += x[i] / n;
        meany += y[i] / n;
    }
    double sxx = 0, sxy = 0;
    for (std::size_t i = 0; i < x.size(); i++) {
        sxx += (x[i] - meanx) * (x[i] - meanx);
        sxy += (x[i] - meanx) * (y[i] - meany);
    }
    if (!(sxx > 0))
        return fit;
    fit.slope = sxy / sxx;
    double residues = 0;
    for (std::size_t i = 0; i < x.size(); i++) {
        const double residue = y[i] - meany - fit.slope * (x[i] - meanx);
        residues += residue * residue;
    }
    if (x.size() > 2)
        fit.slopeerror = std::sqrt(residues / (n - 2) / sxx);
    return fit;
}

std::vector<Gyration> GyrationByNumber(int least)
{
    std::vector<Gyration> curve;
    Spread spread;
    double next = least;
    int points = 0;
    for (int number = 1; number <= ncells; number++) {
        spread.Add(cells[number - 1].p);
        if (number < next && number < ncells)
            continue;
        curve.push_back({number, spread.Radius()});
        while (next <= number)
            next = std::round(least * PowerOfTen(++points / kPerDecade));
    }
    return curve;
}

double RadiusOfGyration()
{
    Spread spread;
    for (int i = 0; i < ncells; i++)
        spread.Add(cells[i].p);
    return spread.Radius();
}
