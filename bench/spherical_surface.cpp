#include "spherical_surface.h"

#include <cmath>
#include <initializer_list>

#include "base/array.h"
#include "surface/surface.h"

void SetSphere(double radius, int n)
{
    nstltri = 0;
    const auto vertex = [=](int j, int k) {
        const double phi = kTwoPi / 2 * j / n - kTwoPi / 4;
        const double theta = kTwoPi * k / (2 * n);
        return radius *
               Vector{std::cos(phi) * std::cos(theta), std::cos(phi) * std::sin(theta), std::sin(phi)};
    };
    for (int k = 0; k < 2 * n; k++)
        for (int j = 0; j < n; j++)
            for (const bool upper : {false, true}) {
                Triangle t = {};
                t.p[0] = upper ? vertex(j + 1, k + 1) : vertex(j, k);
                t.p[1] = upper ? vertex(j + 1, k) : vertex(j, k + 1);
                t.p[2] = upper ? vertex(j, k) : vertex(j + 1, k + 1);
                AppendToArray(&stltri, &nstltri, t);
            }
    UpdateSTL();
}
