#include <algorithm>
#include <array>
#include <climits>
#include <cmath>

#include "base/array.h"
#include "geom/elementary.h"
#include "growth/generators.h"
#include "growth/scenario.h"
#include "growth/state.h"
#include "surface/surface.h"

namespace
{

using Triple = std::array<double, 3>;

Triple From(const Vector &v)
{
    return {v.x, v.y, v.z};
}

Vector To(const Triple &t)
{
    return {t[0], t[1], t[2]};
}

double Dot(const Triple &a, const Triple &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Triple Minus(const Triple &a, const Triple &b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double Length(const Triple &a)
{
    return std::sqrt(Dot(a, a));
}

// a + mu d
Triple Along(const Triple &a, double mu, const Triple &d)
{
    return {a[0] + mu * d[0], a[1] + mu * d[1], a[2] + mu * d[2]};
}

Triple Unit(Triple a)
{
    const double length = Length(a);
    for (double &c : a)
        c = length == 0 ? 0 : c / length;
    return a;
}

Triple Launch()
{
    const int type = growthstate.sourcetype;
    const double s = 0.1 * growthstate.branchlength;
    Triple d;
    if (type == 17 && nstltri >= 1) {
        const int k = DrawInteger() % nstltri;
        d = From(stltri[k].midpoint);
    } else if (type >= 2 && type <= 10) {
        const int axis = (type - 2) / 3;
        const int kind = (type - 2) % 3;
        for (int c = 0; c < 3; c++) {
            if (c != axis)
                d[c] = (DrawUniform() - 0.5) * s;
            else if (kind == 0)
                d[c] = 1;
            else if (kind == 1)
                d[c] = -1;
            else
                d[c] = DrawUniform() < 0.5 ? -1.0 : 1.0;
        }
    } else if (type >= 11 && type <= 13) {
        for (int c = 0; c < 3; c++)
            d[c] = c == type - 11 ? 1 : 2 * DrawUniform() - 1;
    } else if (type >= 14 && type <= 16) {
        for (int c = 0; c < 3; c++)
            d[c] = c == type - 14 ? 0.5 * DrawUniform() : DrawUniform() - 0.5;
    } else {
        for (int c = 0; c < 3; c++)
            d[c] = DrawUniform() - 0.5;
    }
    d = Unit(d);
    for (double &c : d)
        c = (2 * growthstate.branchlength + growthstate.radius) * c;
    return d;
}

// Distance of the closest points of two infinite lines, or -1.
double LineDistance(const Triple &p1, const Triple &p2, const Triple &p3, const Triple &p4)
{
    const Triple p43 = Minus(p4, p3);
    const Triple p21 = Minus(p2, p1);
    const auto isshort = [](const Triple &d) {
        return std::fabs(d[0]) < 1e-5 && std::fabs(d[1]) < 1e-5 && std::fabs(d[2]) < 1e-5;
    };
    if (isshort(p43) || isshort(p21))
        return -1;
    const Triple p13 = Minus(p1, p3);
    const double denom = Dot(p21, p21) * Dot(p43, p43) - Dot(p43, p21) * Dot(p43, p21);
    if (std::fabs(denom) < 1e-5)
        return -1;
    const double mua = (Dot(p13, p43) * Dot(p43, p21) - Dot(p13, p21) * Dot(p43, p43)) / denom;
    const double mub = (Dot(p13, p43) + Dot(p43, p21) * mua) / Dot(p43, p43);
    return Length(Minus(Along(p3, mub, p43), Along(p1, mua, p21)));
}

bool Crosses(const Triangle &t, const Triple &p1, const Triple &p2)
{
    const Triple n = From(t.n);
    const Triple along = Minus(p2, p1);
    const double denom = Dot(n, along);
    if (std::fabs(denom) < 1e-5)
        return false;
    const double mu = -(t.D + Dot(n, p1)) / denom;
    if (mu < 0 || mu > 1)
        return false;
    const Triple hit = Along(p1, mu, along);
    Triple u[3];
    for (int k = 0; k < 3; k++)
        u[k] = Unit(Minus(From(t.p[k]), hit));
    const double sum =
        (ArcCosine(Dot(u[0], u[1])) + ArcCosine(Dot(u[1], u[2])) + ArcCosine(Dot(u[0], u[2]))) *
        57.29577951308232;
    return std::fabs(sum - 360) <= 1e-5;
}

bool PokesThrough(const Triangle &t, const Triple &pos)
{
    for (int edge = 0; edge < 3; edge++) {
        const Triple a = From(t.p[edge]);
        const Triple d = Minus(From(t.p[edge == 2 ? 0 : edge + 1]), a);
        double mu = 0;
        Triple closest = a;
        if (!(Dot(d, d) < 1e-5)) {
            mu = Dot(Minus(pos, a), d) / Dot(d, d);
            closest = Along(a, mu, d);
        }
        if (mu >= 0 && mu <= 1 && Length(Minus(pos, closest)) < growthstate.branchlength)
            return Dot(Minus(pos, From(t.midpoint)), From(t.n)) > 0;
    }
    return false;
}

} // namespace

void ReferenceStep()
{
    const double b = growthstate.branchlength;
    const double launchradius = 2 * b + growthstate.radius;
    if (growthstate.stepcount % 10000 == 0) {
        growthstate.pos = To(Launch());
        seeds[nseeds % 1000] = growthstate.pos;
        nseeds = (nseeds == INT_MAX ? 1000 + INT_MAX % 1000 : nseeds) + 1;
    }
    const Vector before = growthstate.pos;
    growthstate.stepcount =
        growthstate.stepcount == INT_MAX ? INT_MAX % 10000 + 1 : growthstate.stepcount + 1;

    Triple d;
    for (double &c : d)
        c = DrawUniform() - 0.5;
    Triple pos = Along(From(before), b, Unit(d));
    if (Length(pos) > launchradius)
        return;

    const int placed = ncells < growthstate.nroots ? ncells : growthstate.nroots;
    if (growthstate.bias > 0 && placed >= 1) {
        Triple target;
        bool drifts = true;
        if (growthstate.association) {
            const int root = ncells % growthstate.nroots;
            drifts = root < placed;
            if (drifts)
                target = From(cells[root].p);
        } else {
            for (int c = 0; c < 3; c++)
                target[c] = From(cells[DrawInteger() % placed].p)[c];
        }
        if (drifts)
            pos = Along(pos, -(b * growthstate.bias * 0.01), Unit(Minus(target, pos)));
    }
    if (growthstate.rotation != 0) {
        const double angle = growthstate.rotation * 0.017453292519943295;
        const auto [s, c] = FindSineCosine(angle);
        // The zeros of the z axis stay in the sums: they matter where a coordinate is infinite.
        const double x = c * pos[0] + (0 - s) * pos[1] + 0 * pos[2];
        const double y = s * pos[0] + c * pos[1] + 0 * pos[2];
        const double z = 0 * pos[0] + 0 * pos[1] + (c + (1 - c)) * pos[2];
        pos = {x, y, z};
    }
    growthstate.pos = To(pos);

    int partner = -1;
    double dmin = 1e32;
    for (int i = ncells - 1; i >= 0 && !(dmin < b * b); i--) {
        if (growthstate.association && growthstate.nroots > 0 &&
            i % growthstate.nroots != ncells % growthstate.nroots)
            continue;
        const Triple away = Minus(From(cells[i].p), pos);
        if (away[0] > dmin || away[1] > dmin || away[2] > dmin)
            continue;
        const double d2 = Dot(away, away);
        if (d2 < dmin) {
            dmin = d2;
            partner = i;
        }
    }
    if (!(dmin < b * b))
        partner = -1;
    const double r = DrawUniform();
    if (partner < 0 || r > growthstate.stickiness * 0.01)
        return;

    const Triple end = From(cells[partner].p);
    bool refused = false;
    if (growthstate.intersectrange > 0) {
        const double tolerance = growthstate.intersectrange * 0.01 * b;
        for (int i = 0; i < ncells && !refused; i++) {
            if (i == partner || cells[i].parent == -1)
                continue;
            const double apart = LineDistance(pos, end, From(cells[i].p), From(cells[cells[i].parent].p));
            refused = apart >= 0 && apart < tolerance;
        }
    }
    for (int i = 0; i < nstltri; i++)
        refused = refused || Crosses(stltri[i], pos, end) || PokesThrough(stltri[i], pos);
    if (refused) {
        growthstate.pos = before;
        return;
    }

    AppendToArray(&cells, &ncells, Particle{growthstate.pos, 0, partner, 0});

    double n = 2;
    for (int i = cells[partner].parent; i > 0; i = cells[i].parent)
        n = n + 1;
    for (int i = partner; i != -1; i = cells[i].parent)
        cells[i].weight = cells[i].weight + 1 / n;
    for (int i = 0; i < ncells; i++) {
        growthstate.maxweight = std::max(growthstate.maxweight, cells[i].weight);
        growthstate.radius = std::max(growthstate.radius, Length(From(cells[i].p)));
    }
    growthstate.stepcount = 0;
}
