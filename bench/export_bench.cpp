// The exports against their floor, side by side at 100,000 particles: a loop that formats as many numbers,
// with the fastest formatter that gives the same digits, and writes as many bytes. Both write to /dev/null.

#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "aggregate.h"
#include "export/model.h"
#include "export/slices.h"
#include "growth/state.h"
#include "spherical_surface.h"
#include "surface/surface.h"

constexpr int kParticles = 100000;

static void GrowOnce()
{
    if (ncells < kParticles)
        GrowDefault(kParticles);
}

namespace
{
// Numbers that a format writes for each branch (or face, or point of a sweep): coordinates, numbers that a
// single branch repeats or that are short (flow, colour), and whole numbers.
struct Numbers {
    int coordinates, others, whole;
};
} // namespace

// Formats `count` times the numbers and fills up with text to `bytes` in all.
static void WriteFloor(FILE *file, int count, const Numbers &numbers, long bytes)
{
    static char buffer[1 << 16];
    static const std::string text(sizeof buffer, 'x');
    std::size_t length = 0;
    long written = 0;
    const auto room = [&](std::size_t need) {
        if (sizeof buffer - length >= need)
            return;
        fwrite(buffer, 1, length, file);
        written += static_cast<long>(length);
        length = 0;
    };
    const auto number = [&](double value) {
        room(32);
        length = static_cast<std::size_t>(
            std::to_chars(buffer + length, buffer + length + 32, value, std::chars_format::general, 6).ptr -
            buffer);
    };
    long filler = 0; // text that each branch adds
    for (int i = 0; i < count; i++) {
        const Particle &cell = cells[i % ncells];
        const long before = written + static_cast<long>(length);
        for (int k = 0; k < numbers.coordinates; k += 3) {
            number(cell.p.x + 0.01 * k);
            number(cell.p.y);
            number(cell.p.z - 0.01 * k);
        }
        for (int k = 0; k < numbers.others; k++)
            number(k % 2 ? cell.weight : 1.0);
        for (int k = 0; k < numbers.whole; k++) {
            room(32);
            length = static_cast<std::size_t>(
                std::to_chars(buffer + length, buffer + length + 32, i % 1000 + k).ptr - buffer);
        }
        const long own = written + static_cast<long>(length) - before;
        for (filler = std::max(0L, bytes / count - own); filler > 0;) {
            room(1);
            const std::size_t part = std::min(static_cast<std::size_t>(filler), sizeof buffer - length);
            memcpy(buffer + length, text.data(), part);
            length += part;
            filler -= static_cast<long>(part);
        }
    }
    fwrite(buffer, 1, length, file);
}

// Points of all chains of a POV-Ray scene.
static int CountPoints(FILE *file)
{
    int count = 0;
    rewind(file);
    for (int c; (c = fgetc(file)) != EOF;)
        count += c == '<';
    return count;
}

static void Compare(benchmark::State &state, int format, int mode, Numbers numbers, bool faces)
{
    GrowOnce();
    nstltri = 0;
    UpdateSTL();
    if (faces)
        SetSphere(100, 158); // 99,224 faces
    FILE *sized = tmpfile();
    WriteModel(sized, format, mode);
    const long bytes = ftell(sized);
    int count = faces ? nstltri : ncells - 1;
    if (mode == kModeChains && !faces)
        count = CountPoints(sized);
    fclose(sized);

    FILE *null = fopen("/dev/null", "w");
    double exporting = 0;
    double formatting = 0;
    for (auto _ : state) {
        const double start = Now();
        WriteModel(null, format, mode);
        const double middle = Now();
        WriteFloor(null, count, numbers, bytes);
        exporting += middle - start;
        formatting += Now() - middle;
    }
    fclose(null);
    state.counters["ms"] = 1e3 * exporting / static_cast<double>(state.iterations());
    state.counters["ratio"] = exporting / formatting;
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}

// 100,000 particles into 50 slices, in a directory of their own.
static void Slice(benchmark::State &state)
{
    GrowOnce();
    const std::filesystem::path directory = std::filesystem::temp_directory_path() / "sarkelo-bench";
    std::filesystem::create_directory(directory);
    for (auto _ : state)
        DoSlice(directory.string(), 50, {0, 0, 1}, nullptr);
    std::filesystem::remove_all(directory);
}

BENCHMARK_CAPTURE(Compare, pov_sweep, kFormatPOV, kModeChains, Numbers{3, 2, 0}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, pov_cones, kFormatPOV, kModeSegments, Numbers{9, 6, 0}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, geom, kFormatGEOM, kModeSegments, Numbers{9, 11, 2}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, vrml_spheres, kFormatVRML, kModeSegments, Numbers{105, 7, 160}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, vrml_coarse, kFormatVRML, kModeCoarseMesh, Numbers{534, 6, 880}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, vrml_medium, kFormatVRML, kModeMediumMesh, Numbers{1086, 6, 1896}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, vrml_fine, kFormatVRML, kModeFineMesh, Numbers{1134, 6, 1976}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, point_dxf, kFormatPointDXF, kModeSegments, Numbers{30, 0, 0}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, point_geom, kFormatPointGEOM, kModeSegments, Numbers{30, 0, 0}, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compare, stl, kFormatSTL, kModeChains, Numbers{12, 0, 0}, true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Slice)->Unit(benchmark::kMillisecond);
