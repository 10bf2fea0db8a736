// A surface from any bytes: read in both byte orders, saved, moved, and grown against.

#include <cstring>

#include "export/model.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "surface/stl_reader.h"
#include "surface/surface.h"
#include "tools/fuzz/input_file.h"

constexpr int kSteps = 100;
// A short file may announce ten million faces, which take seconds and gigabytes, as they should; not here.
constexpr std::uint32_t kMostFaces = 20000;

static bool AnnouncesMany(const std::uint8_t *data, std::size_t size)
{
    std::uint32_t count = 0;
    if (size < 84)
        return false;
    memcpy(&count, data + 80, sizeof count);
    const auto isbetween = [](std::uint32_t n) { return n > kMostFaces && n <= 10000000; };
    return isbetween(count) || isbetween(__builtin_bswap32(count));
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (AnnouncesMany(data, size))
        return 0;
    static const bool initialised = (SetProgramDefaults(), InitialiseGrowth(), true);
    Require(initialised);
    static FILE *const sink = fopen("/dev/null", "w");
    const InputFile file(data, size);
    for (const int swap : {0, 1}) {
        options.byteswap = swap;
        const STLResult result = ReadSTLFile(file.Path().c_str());
        Require(result != kSTLUnopened && result != kSTLOutOfMemory);
        Require(result == kSTLRead || nstltri == 0);
        const int faces = nstltri;
        for (int i = 0; i < faces; i++) // no degenerate face is left
            for (int k = 0; k < 3; k++)
                Require(stltri[i].p[k] != stltri[i].p[(k + 1) % 3]);
        RestartFromRoots();
        for (int i = 0; i < kSteps; i++)
            IterateSystem();
        Require(ncells >= 1 && nstltri == faces);
        WriteModel(sink, kFormatSTL, kModeSegments);
    }
    return 0;
}
