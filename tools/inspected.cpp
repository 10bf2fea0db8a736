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

static void WriteParticles()
{
    FILE *file = fopen("particles.csv", "w");
    if (file == nullptr)
        return;
    {
        TextWriter out(file);
        WriteCSV(out);
    }
    fclose(file);
}

static void WriteRecords()
{
    WriteParticles();
    FILE *file = fopen("records.new", "w");
    if (file == nullptr)
        return;
    const struct {
        const char *name;
        double value;
    } numbers[] = {
        {"placed",
         double(std::count_if(cells, cells + ncells, [](const Particle &p) { return p.parent < 0; }))},
        {"ncells", double(ncells)},
        {"heap", double(HeapInUse())},
        {"time", GetRunTime() - started},
        {"drawing", drawing},
        {"frames", double(frames)},
        {"boxcountrequest", double(options.boxcountrequest)},
        {"nstltri", double(nstltri)},
        {"stlmaxx", stlmax.x},
        {"sourcetype", double(growthstate.sourcetype)},
        {"running", double(growthstate.running)},
        {"branchlength", growthstate.branchlength},
        {"bias", growthstate.bias},
        {"stickiness", growthstate.stickiness},
        {"thickfrom", growthstate.thickfrom},
        {"thickto", growthstate.thickto},
        {"seed", double(growthstate.seed)},
        {"rotation", growthstate.rotation},
        {"nroots", double(growthstate.nroots)},
        {"rootrange", growthstate.rootrange},
        {"roottype", double(growthstate.roottype)},
        {"association", double(growthstate.association)},
        {"intersectrange", growthstate.intersectrange},
        {"showextras", double(options.showextras)},
        {"showinfo", double(options.showinfo)},
        {"surfacemode", double(options.surfacemode)},
        {"dlamode", double(options.dlamode)},
        {"slicecount", double(options.slicecount)},
        {"sliceparam1", options.sliceparam1},
        {"settingformvisible", double(settingformvisible)},
        {"stlformvisible", double(stlformvisible)},
        {"sliceformvisible", double(sliceformvisible)},
    };
    for (const auto &number : numbers)
        fprintf(file, "%s %.10g\n", number.name, number.value);
    fprintf(file, "surfacename %s\n", growthstate.surfacename);
    fprintf(file, "rootname %s\n", growthstate.rootname);
    fclose(file);
    rename("records.new", "records");
}

extern "C" void __real_glutSwapBuffers();
extern "C" void __wrap_glutSwapBuffers()
{
    __real_glutSwapBuffers();
    if (frames == 0)
        started = GetRunTime();
    drawing += lastframe.end - lastframe.start; // the frame before this one
    frames++;
    // Registered later than what the toolkits have to do at the end, leaks are looked for before that, while
    // a library that is to blame for one is still there to be named.
    static bool registered = false;
    if (!registered && __lsan_do_leak_check != nullptr)
        atexit(__lsan_do_leak_check);
    registered = true;
    if (!wanted)
        return;
    wanted = 0;
    WriteRecords();
}

int main(int argc, char **argv)
{
    ArmRescue(DescribeWindowRun);
    signal(SIGUSR1, [](int) { wanted = 1; }); // in place of its end
    RunProgram(argc, argv);
    return 0;
}
