// Gives any bytes to the readers of surfaces and of seed files, and grows with what they have read. The fuzzer of
// tools/fuzz.sh, or a program that takes folders of files that it has found.

#include <cstdint>
#include <cstring>
#include <iostream>

#include "export/model.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "surface/stl_reader.h"
#include "surface/surface.h"
#include "tests/temporary_file.h"

// Ends the program where a state that must hold does not.
static void Require(bool holds)
{
    if (!holds)
        __builtin_trap();
}

static void GrowFromRoots()
{
    for (int i = 0; i < 100; i++)
        IterateSystem();
    Require(ncells >= 1);
    RestartFromRoots();
}

static void ReadSeeds(const char *path)
{
    const SeedFileResult result = ReadSeedFile(path);
    Require(result == kSeedFileRead || (result == kSeedFileEmpty && ncells == 1 && Modulus(cells[0].p) == 0));
    Require(ncells == growthstate.nroots);
    for (int i = 0; i < ncells; i++)
        Require(cells[i].parent == -1 && !(Modulus(cells[i].p) > growthstate.radius));
    GrowFromRoots();
}

static void ReadSurface(const char *path)
{
    const STLResult result = ReadSTLFile(path);
    Require(result != kSTLUnopened && (result == kSTLRead || nstltri == 0));
    for (int i = 0; i < nstltri; i++) // no degenerate face is left
        for (int k = 0; k < 3; k++)
            Require(stltri[i].p[k] != stltri[i].p[(k + 1) % 3]);
    GrowFromRoots();
    Written([](FILE *file) { WriteModel(file, kFormatSTL, kModeSegments); });
}

// A short file may announce ten million faces, which rightly take seconds and gigabytes.
static bool AnnouncesMany(const std::uint8_t *data, std::size_t size)
{
    std::uint32_t count = 0;
    if (size >= 84)
        memcpy(&count, data + 80, sizeof count);
    const auto ismany = [](std::uint32_t n) { return n > 20000 && n <= 10000000; };
    return ismany(count) || ismany(__builtin_bswap32(count));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const TemporaryFile file({data, data + size});
    SetProgramDefaults();
    InitialiseGrowth();
    nstltri = 0;
    UpdateSTL();
    ReadSeeds(file.path());
    for (options.byteswap = 0; options.byteswap < 2 && !AnnouncesMany(data, size); options.byteswap++)
        ReadSurface(file.path());
    return 0;
}

#ifndef SARKELO_FUZZ
int main(int, char **argv)
{
    for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[1])) {
        std::cout << entry.path() << std::endl; // the last one printed is the one that failed
        const std::string bytes = entry.is_regular_file() ? ReadWhole(entry.path()) : "";
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    }
}
#endif
