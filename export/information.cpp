#include "export/information.h"

#include <cstdarg>

#include "export/description.h"
#include "geom/elementary.h"

namespace
{
// Prints lines to a file, for export/description.h.
class LinePrinter
{
public:
    explicit LinePrinter(FILE *output) : file(output) {}
    [[gnu::format(printf, 2, 3)]] void Print(const char *format, ...)
    {
        va_list arguments;
        va_start(arguments, format);
        vfprintf(file, format, arguments);
        va_end(arguments);
        fputc('\n', file);
    }

private:
    FILE *file;
};
} // namespace

static int ReportedSource();
static void WriteStatistics(LinePrinter &out);

void WriteInformation(FILE *file)
{
    LinePrinter out(file);
    DescribeParameters(out, ReportedSource());
    DescribeSurface(out);
    DescribeSize(out);
    if (stats.timestep > 0)
        WriteStatistics(out);
}

// The source on the negative z axis is reported as that on the negative x axis (kept).
static int ReportedSource()
{
    return growthstate.sourcetype == kSourceAxisMinusZ ? kSourceAxisMinusX : growthstate.sourcetype;
}

static void WriteStatistics(LinePrinter &out)
{
    out.Print("\nStatistics at time step: %d", stats.timestep);
    out.Print("   Branch distribution");
    DescribeBranchDistribution(out);
    out.Print("   Box counting [ size, N, log(1/size), log(N) ]");
    for (int level = 0; level < kBoxLevels; level++) {
        const double size = stats.boxsize[level];
        const int count = stats.boxcount[level];
        if (count > 0 && size > 0)
            out.Print("   %lf %d %lf %lf", size, count, Logarithm(1 / size), Logarithm(count));
    }
}
