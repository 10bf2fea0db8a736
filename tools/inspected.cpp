// The program for tests: the second frame after SIGUSR1, when earlier input has been handled, writes the global records to the
// file "records", one name and value a line, and the particles to "particles.csv".

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <malloc.h>

#include "app/program.h"
#include "archive/rescue.h"
#include "export/csv.h"
#include "growth/parameters.h"
#include "growth/state.h"
#include "surface/surface.h"
#include "viewer/aggregate_dialog.h"

static std::atomic<int> framesleft = 0; // until the records are written

extern "C" void __lsan_do_leak_check() __attribute__((weak)); // defined under the sanitizers only

static void WriteRecords(FILE *file)
{
    for (const Parameter &parameter : Parameters())
        fprintf(file, "%s.%s %.10g\n", parameter.group, parameter.key, ParameterValue(parameter));
    const auto isroot = [](const Particle &p) { return p.parent < 0; };
    const std::pair<const char *, double> numbers[] = {
        {"ncells", ncells},
        {"placed", double(std::count_if(cells, cells + ncells, isroot))},
        {"heap", double(mallinfo2().uordblks + mallinfo2().hblkhd)},
        {"boxcount", options.boxcountrequest},
        {"faces", nstltri},
        {"largestx", stlmax.x},
        {"running", growthstate.running},
        {"extras", options.showextras},
        {"info", options.showinfo},
        {"panels", settingformvisible + 2 * stlformvisible + 4 * sliceformvisible},
        {"recording", options.recordframes},
        {"aperture", camera.aperture},
        {"turned", camera.vd.y},
        {"tilted", camera.vd.z},
    };
    for (const auto &[name, value] : numbers)
        fprintf(file, "%s %.10g\n", name, value);
    fprintf(file, "surface %s\nroots %s\n", growthstate.surfacename, growthstate.rootname);
}

static void WriteFile(const char *name, void (*write)(FILE *))
{
    FILE *file = fopen("unfinished", "w");
    write(file);
    fclose(file);
    rename("unfinished", name);
}

extern "C" void __real_glutSwapBuffers();
extern "C" void __wrap_glutSwapBuffers()
{
    static bool first = true;
    __real_glutSwapBuffers();
    // Registered after the toolkits' own functions, this one runs while their libraries are still loaded.
    if (std::exchange(first, false) && __lsan_do_leak_check != nullptr)
        atexit(__lsan_do_leak_check);
    if (framesleft > 0 && --framesleft == 0) {
        WriteFile("particles.csv", [](FILE *file) {
            TextWriter out(file);
            WriteCSV(out);
        });
        WriteFile("records", WriteRecords);
    }
}

int main(int argc, char **argv)
{
    ArmRescue(DescribeWindowRun);
    signal(SIGUSR1, [](int) { framesleft = 2; });
    RunProgram(argc, argv);
    return 0;
}
