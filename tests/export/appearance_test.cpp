#include "export/appearance.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/scenario.h"

TEST(Colour, MapsAndParticlesAreColouredAsRightBefore)
{
    std::ostringstream text;
    const auto print = [&](Colour c) { text << c.r << ' ' << c.g << ' ' << c.b << "; "; };
    for (const auto &[first, last, type] :
         {std::tuple(0., 1., 1), std::tuple(1., 0., 1), std::tuple(2., 2., 1), std::tuple(2., 2., 0)}) {
        for (double v = -0.05; v <= 2; v += 0.1)
            print(GetColour(v, first, last, type));
        text << '\n';
    }
    for (const auto &[association, nroots] :
         {std::pair(0, 30), std::pair(1, 0), std::pair(1, 1), std::pair(1, 3), std::pair(1, 30)}) {
        StartWith({{&growthstate.nroots, 30}, {&growthstate.roottype, kRootRingX}});
        growthstate.nroots = nroots;
        growthstate.association = association;
        growthstate.maxweight = 9; // a third of it and more is red
        for (int i = 0; i < ncells; i++)
            cells[i].weight = i / 3.0;
        for (int mode = 0; mode <= 5; mode++) {
            for (const int i : {0, 1, 2, 5, 9, 20, 21, 29})
                print(ChooseColour(i, mode));
            text << '\n';
        }
    }
    ExpectGolden("colours.txt", text.str());
}
