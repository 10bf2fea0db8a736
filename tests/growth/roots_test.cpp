#include "growth/roots.h"

#include <climits>
#include <cstring>

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"

// What a restart decides, and the first three particles.
static void PrintState(std::ostream &text)
{
    const GrowthState &s = growthstate;
    text << s.nroots << ' ' << s.roottype << ' ' << s.rootname << ' ' << s.radius << ' ' << s.running << ' '
         << s.stepcount << ' ' << s.maxweight << ' ' << s.steptotal << ' ' << nseeds << ' ' << stats.timestep
         << ' ' << ncells;
    for (int i = 0; i < ncells && i < 3; i++)
        text << " (" << Plain(cells[i].p.x) << ' ' << Plain(cells[i].p.y) << ' ' << Plain(cells[i].p.z) << ' '
             << cells[i].weight << ' ' << cells[i].parent << ')';
    text << '\n';
}

// The roots of every type and number, the draws that follow, and the radius that a restart gives them.
TEST(Roots, MatchExpectedText)
{
    std::ostringstream text;
    for (int roottype = -1; roottype <= 10; roottype++) {
        for (const int nroots : {-3, 0, 3}) {
            StartAfresh();
            HandleRootMenu(roottype);
            growthstate.nroots = nroots;
            growthstate.rootrange = 30;
            text << growthstate.rootname << ": ";
            ResetSeeds();
            text << DrawUniform() << ' ' << DrawInteger() << ' ';
            growthstate.rootrange = 5;
            InitialiseGrowth();
            PrintState(text);
        }
    }
    ExpectGolden("roots.txt", text.str());
}

// What is read, and the restart after it, which keeps the roots.
TEST(SeedFile, ReadingMatchesExpectedText)
{
    std::ostringstream text;
    for (const char *content : {"1 2 3\n4 5 6\n7 8\n", "1 2 3\r\n4\t5\n6", "1 2 3\n4 five 6\n7 8 9\n", "",
                                "30 40 0\nnan inf 1\n", "/no/such/file", "/"}) {
        StartWith({{&growthstate.roottype, kRootRingX}, {&growthstate.nroots, 3}});
        Grow(IterateSystem, 30, LONG_MAX);
        const TemporaryFile file(content);
        const char *path = content[0] == '/' ? content : file.path();
        text << '"' << content << "\": " << ReadSeedFile(path) << '\n';
        if (strcmp(growthstate.rootname, path) == 0)
            strcpy(growthstate.rootname, "path");
        PrintState(text);
        stats.timestep = 17;
        growthstate.running = 0;
        InitialiseGrowth();
        PrintState(text);
        text << DrawInteger() << '\n';
    }
    ExpectGolden("seed_files.txt", text.str());
}
