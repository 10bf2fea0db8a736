// The program, with its records to look at: on SIGUSR1 the next frame writes them to the file "records", one
// name and value a line, and the particles to the file "particles.csv".

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <malloc.h>

#include "app/program.h"
#include "archive/rescue.h"
#include "export/csv.h"
#include "geom/clock.h"
#include "growth/parameters.h"
#include "growth/state.h"
#include "surface/surface.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/display.h"

static volatile sig_atomic_t wanted = 0;
// Seconds that frames have taken so far, and their number.
static double drawing = 0;
static int frames = 0;
static double started = 0; // the time of the first frame

// There with the sanitizers alone.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));
extern "C" void __lsan_do_leak_check() __attribute__((weak));

// Bytes allocated and not freed.
static std::size_t HeapInUse()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return __sanitizer_get_current_allocated_bytes();
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

static void WriteParticles(FILE *file)
{
    TextWriter out(file);
    WriteCSV(out);
}

static void WriteRecords(FILE *file)
{
    for (const Parameter &parameter : Parameters())
        fprintf(file, "%s.%s %.10g\n", parameter.group, parameter.key, ParameterValue(parameter));
    const auto isroot = [](const Particle &p) { return p.parent < 0; };
    const std::pair<const char *, double> numbers[] = {
        {"ncells", ncells},
        {"placed", double(std::count_if(cells, cells + ncells, isroot))},
        {"heap", double(HeapInUse())},
        {"time", GetRunTime() - started},
        {"drawing", drawing},
        {"frames", frames},
        {"boxcount", options.boxcountrequest},
        {"faces", nstltri},
        {"largestx", stlmax.x},
        {"running", growthstate.running},
        {"extras", options.showextras},
        {"info", options.showinfo},
        {"panels", settingformvisible + 2 * stlformvisible + 4 * sliceformvisible},
        {"spin", options.autospin},
        {"recording", options.recordframes},
        {"aperture", camera.aperture},
        {"distance", Modulus(camera.vp)},
        {"turned", camera.vd.y},
        {"tilted", camera.vd.z},
        {"rolled", camera.vu.y},
    };
    for (const auto &[name, value] : numbers)
        fprintf(file, "%s %.10g\n", name, value);
    fprintf(file, "surface %s\nroots %s\n", growthstate.surfacename, growthstate.rootname);
}

static void WriteFile(const char *name, void (*write)(FILE *))
{
    FILE *file = fopen("unfinished", "w");
    if (file == nullptr)
        return;
    write(file);
    fclose(file);
    rename("unfinished", name);
}

extern "C" void __real_glutSwapBuffers();
extern "C" void __wrap_glutSwapBuffers()
{
    __real_glutSwapBuffers();
    // Registered later than what the toolkits have to do at the end, leaks are looked for before that, while
    // a library that is to blame for one is still there to be named.
    if (frames == 0 && __lsan_do_leak_check != nullptr)
        atexit(__lsan_do_leak_check);
    if (frames == 0)
        started = GetRunTime();
    drawing += lastframe.end - lastframe.start; // the frame before this one
    frames++;
    if (!wanted)
        return;
    wanted = 0;
    WriteFile("particles.csv", WriteParticles);
    WriteFile("records", WriteRecords);
}

int main(int argc, char **argv)
{
    ArmRescue(DescribeWindowRun);
    signal(SIGUSR1, [](int) { wanted = 1; }); // in place of its end
    RunProgram(argc, argv);
    return 0;
}
