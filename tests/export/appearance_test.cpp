#include "export/appearance.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/scenario.h"

TEST(Colour, MapsAndParticlesMatchExpectedText)
{
    std::ostringstream text;
    const auto print = [&](Colour c) { text << c.r << ' ' << c.g << ' ' << c.b << "; "; };
    for (const auto &[first, last, type] : {std::tuple(0., 1., 1), {1., 0., 1}, {2., 2., 1}, {2., 2., 0}})
        for (double v = -0.05; v <= 2; v += 0.1)
            print(GetColour(v, first, last, type));
    for (const auto &[association, nroots] : {std::pair(0, 30), {1, 0}, {1, 1}, {1, 3}, {1, 30}}) {
        StartWith({{&growthstate.nroots, 30}, {&growthstate.roottype, kRootRingX}});
        growthstate.nroots = nroots;
        growthstate.association = association;
        growthstate.maxweight = 9; // a third of it and more is red
        for (int i = 0; i < ncells; i++)
            cells[i].weight = i / 3.0;
        for (int mode = 0; mode <= 5; mode++) {
            text << '\n';
            for (const int i : {0, 1, 2, 5, 9, 20, 21, 29})
                print(ChooseColour(i, mode));
        }
    }
    ExpectGolden("colours.txt", text.str());
}
