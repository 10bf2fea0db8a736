// A surface from any bytes: read in both byte orders, saved, and grown against.

#include <cstring>

#include "export/model.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "surface/stl_reader.h"
#include "surface/surface.h"
#include "tools/fuzz/input_file.h"

// A short file may announce ten million faces, which take seconds and gigabytes, as they should; not here.
static bool AnnouncesMany(const std::uint8_t *data, std::size_t size)
{
    std::uint32_t count = 0;
    if (size >= 84)
        memcpy(&count, data + 80, sizeof count);
    const auto ismany = [](std::uint32_t n) { return n > 20000 && n <= 10000000; };
    return ismany(count) || ismany(__builtin_bswap32(count));
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (AnnouncesMany(data, size))
        return 0;
    static const bool initialised = (SetProgramDefaults(), InitialiseGrowth(), true);
    static FILE *const sink = fopen("/dev/null", "w");
    for (const int swap : {0, 1}) {
        options.byteswap = swap;
        const STLResult result = ReadSTLFile(InputPath(data, size).c_str());
        Require(initialised && result != kSTLUnopened && (result == kSTLRead || nstltri == 0));
        for (int i = 0; i < nstltri; i++) // no degenerate face is left
            for (int k = 0; k < 3; k++)
                Require(stltri[i].p[k] != stltri[i].p[(k + 1) % 3]);
        RestartFromRoots();
        for (int i = 0; i < 100; i++)
            IterateSystem();
        Require(ncells >= 1);
        WriteModel(sink, kFormatSTL, kModeSegments);
    }
    return 0;
}
