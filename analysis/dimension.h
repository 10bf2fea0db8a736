// Fractal dimensions: slopes of straight lines through logarithms. docs/box-count.md explains what they mean.

#pragma once

#include <span>
#include <vector>

// A straight line y = intercept + slope x by least squares.
struct LineFit {
    int points;         // with fewer than two there is no line, with fewer than three no error
    double slope;       // NaN without a line
    double slopeerror;  // standard error of the slope; NaN if there is none
    double first, last; // the range of x
};

LineFit FitLine(std::span<const double> x, std::span<const double> y);

// The radius of gyration of the first `number` particles, about their centre of mass.
struct Gyration {
    int number;
    double radius;
};

// Radii of gyration at ten particle numbers a decade from `least` on, and of all particles. May throw std::bad_alloc.
std::vector<Gyration> GyrationByNumber(int least);

// Radius of gyration of all particles.
double RadiusOfGyration();
