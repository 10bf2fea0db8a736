// Roots from any bytes, and growth from them.

#include <cmath>

#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "tools/fuzz/input_file.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool initialised = (SetProgramDefaults(), InitialiseGrowth(), true);
    const SeedFileResult result = ReadSeedFile(InputPath(data, size).c_str());
    Require(initialised && growthstate.nroots >= 1 && ncells == growthstate.nroots);
    Require(result == kSeedFileRead || (result == kSeedFileEmpty && ncells == 1 && Modulus(cells[0].p) == 0));
    for (int i = 0; i < ncells; i++)
        Require(cells[i].parent == -1 && !(Modulus(cells[i].p) > growthstate.radius));
    for (int i = 0; i < 100; i++)
        IterateSystem();
    Require(ncells >= growthstate.nroots);
    RestartFromRoots();
    return 0;
}
