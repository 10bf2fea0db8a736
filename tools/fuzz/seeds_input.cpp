// Roots from any bytes, and growth from them.

#include <cmath>

#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "tools/fuzz/input_file.h"

constexpr int kSteps = 100;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool initialised = (SetProgramDefaults(), InitialiseGrowth(), true);
    Require(initialised);
    const InputFile file(data, size);
    const SeedFileResult result = ReadSeedFile(file.Path().c_str());
    Require(result == kSeedFileRead || result == kSeedFileEmpty);
    Require(growthstate.nroots >= 1 && ncells == growthstate.nroots);
    Require(result == kSeedFileRead || (ncells == 1 && Modulus(cells[0].p) == 0));
    for (int i = 0; i < ncells; i++) {
        Require(cells[i].parent == -1);
        const double distance = Modulus(cells[i].p);
        Require(std::isnan(distance) || distance <= growthstate.radius);
    }
    const int placed = ncells;
    for (int i = 0; i < kSteps; i++)
        IterateSystem();
    Require(ncells >= placed);
    RestartFromRoots();
    return 0;
}
