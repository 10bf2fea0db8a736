// Fractal dimensions: slopes of straight lines through logarithms. docs/box-count.md says what they tell.

#pragma once

#include <span>
#include <vector>

// A straight line y = intercept + slope x by least squares.
struct LineFit {
    int points;         // fewer than two have no line, and fewer than three no error
    double slope;       // not a number without a line
    double slopeerror;  // standard error of the slope; not a number without one
    double first, last; // the range of x
};

LineFit FitLine(std::span<const double> x, std::span<const double> y);

// The radius of gyration of the first particles that were there, about their centre of mass.
struct Gyration {
    int number;
    double radius;
};

// At ten numbers a decade from `least` on, and at all particles. Memory may run out: std::bad_alloc.
std::vector<Gyration> GyrationByNumber(int least);

// Of all particles.
double RadiusOfGyration();
