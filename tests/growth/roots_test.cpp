#include "growth/roots.h"

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

// What a restart decides, and the first particles.
static std::string State(int most)
{
    const GrowthState &s = growthstate;
    std::ostringstream text;
    text.precision(8);
    text << s.nroots << ' ' << s.roottype << ' ' << s.rootname << ' ' << s.radius << ' ' << s.running;
    for (const double number : {double(s.stepcount), s.maxweight, double(s.steptotal), double(nseeds)})
        text << ' ' << number;
    text << ' ' << stats.timestep << ' ' << ncells;
    for (int i = 0; i < ncells && i < most; i++)
        text << " (" << Plain(cells[i].p.x) << ' ' << Plain(cells[i].p.y) << ' ' << Plain(cells[i].p.z) << ' '
             << cells[i].weight << ' ' << cells[i].parent << ')';
    return text.str();
}

// The roots of every type and number, and the draws that follow.
TEST(Roots, ArePlacedAsRightBefore)
{
    std::ostringstream text;
    for (int roottype = -1; roottype <= 10; roottype++) {
        for (const int nroots : {-3, 0, 3}) {
            StartAfresh();
            HandleRootMenu(roottype);
            growthstate.nroots = nroots;
            growthstate.rootrange = 30;
            text << growthstate.rootname << ", ";
            ResetSeeds();
            text << State(3) << ' ' << DrawUniform() << ' ' << DrawInteger() << '\n';
        }
    }
    ExpectGolden("roots.txt", text.str());
}

// Good files, odd files and files that are none: the roots, and the run that starts from them.
TEST(SeedFile, GivesWhatItGaveRightBefore)
{
    const std::string longpath = "/tmp/" + std::string(150, 'd');
    std::ofstream(longpath) << "1 2 3";
    std::ostringstream text;
    for (const std::string &content : std::vector<std::string>{
             "1 2 3\n4 5 6\n7 8\n", "1 2 3\r\n4\t5\n6", "1 2 3\n4 five 6\n7 8 9\n", "", "1 2\n", "# 1 2 3\n",
             "30 40 0\nnan inf 1\n", "/no/such/file", "/", longpath}) {
        StartWith({{&growthstate.roottype, kRootRingX}, {&growthstate.nroots, 3}});
        Grow(IterateSystem, 30, LONG_MAX);
        const TemporaryFile file(content);
        const std::string path = content[0] == '/' ? content : file.path();
        text << '"' << content << "\": " << ReadSeedFile(path.c_str());
        for (const bool restarted : {false, true}) { // a restart keeps the roots
            if (path == growthstate.rootname)
                strcpy(growthstate.rootname, "path");
            text << "; " << State(5);
            stats.timestep = 17;
            growthstate.running = restarted;
            if (!restarted)
                InitialiseGrowth();
        }
        text << ' ' << DrawInteger() << ' ' << DrawUniform() << '\n';
    }
    std::filesystem::remove(longpath);
    // Of five roots at the origin one is placed; the farthest of a ring decides the radius.
    for (const double roottype : {double{kRootOrigin}, double{kRootRingX}}) {
        StartWith(
            {{&growthstate.nroots, 5}, {&growthstate.roottype, roottype}, {&growthstate.rootrange, 50}});
        Grow(IterateSystem, 10, LONG_MAX);
        stats.branchcount[3] = 4;
        growthstate.rootrange = 5;
        InitialiseGrowth();
        text << State(1) << ' ' << stats.branchcount[3] << '\n';
    }
    ExpectGolden("seed_files.txt", text.str());
}
