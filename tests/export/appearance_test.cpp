#include "export/appearance.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/roots.h"
#include "growth/scenario.h"

TEST(Colour, MapsAndParticlesAreColouredAsRightBefore)
{
    std::ostringstream text;
    const auto print = [&](const char *name, Colour c) {
        text << name << ' ' << c.r << ' ' << c.g << ' ' << c.b << '\n';
    };
    for (double v = -0.05; v <= 1.05; v += 0.05) {
        print("map", GetColour(v, 0, 1, 1));
        print("other way", GetColour(v, 1, 0, 1));
    }
    for (const int type : {0, 1, 36})
        print("no range", GetColour(2, 2, 2, type));
    for (const int association : {0, 1}) {
        for (const int nroots : {0, 1, 3, 30}) {
            StartAfresh();
            growthstate.nroots = 30;
            growthstate.roottype = kRootRingX;
            ResetSeeds();
            growthstate.nroots = nroots;
            growthstate.association = association;
            growthstate.maxweight = 9; // a third of it and more is red
            for (int i = 0; i < ncells; i++)
                cells[i].weight = i / 3.0;
            for (int mode = 0; mode <= 5; mode++)
                for (const int i : {0, 1, 2, 5, 9, 20, 21, 29})
                    print("particle", ChooseColour(i, mode));
        }
    }
    ExpectGolden("colours.txt", text.str());
}
