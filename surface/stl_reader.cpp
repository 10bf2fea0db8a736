#include "surface/stl_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/array.h"
#include "growth/state.h"
#include "surface/surface.h"

constexpr int kFirstLineLimit = 80;
constexpr int kLineLimit = 1000;
constexpr int kMagicLength = 6;   // characters of the first line in which "solid" makes a file ASCII
constexpr int kHeaderLength = 80; // bytes before the face count of a binary file
constexpr uint32_t kMostFaces = 10000000;

static bool IsASCII(FILE *file);
static STLResult ReadASCIIFaces(FILE *file);
static STLResult ReadBinaryFaces(FILE *file);
static bool ReadLoop(FILE *file, Triangle *t);
static bool RepeatFace(const Triangle &face, int count);
static int ReadFourBytes(FILE *file, void *buf, int swap);
static void Report(const char *progress);

STLResult ReadSTLFile(const char *path)
{
    FILE *file = fopen(path, "r");
    if (file == nullptr)
        return kSTLUnopened;

    SurfaceTransaction old;
    const STLResult result = IsASCII(file) ? ReadASCIIFaces(file) : ReadBinaryFaces(file);
    fclose(file);
    if (result == kSTLOutOfMemory)
        return result;
    old.Commit();
    snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "None");
    if (result != kSTLRead) {
        nstltri = 0;
        return result;
    }

    if (options.debug)
        fprintf(stderr, "Read %d triangle faces\n", nstltri);
    UpdateSTL();
    if (options.debug)
        fprintf(stderr, "%s\n", path);
    return result;
}

int ReadLine(FILE *f, char *buf, int n)
{
    int length = 0;
    buf[0] = '\0';
    while (length < n) {
        const int c = getc(f);
        if (c == EOF)
            return 0;
        if (c == '\n' || c == '\r')
            return 1;
        buf[length++] = static_cast<char>(c);
        buf[length] = '\0';
    }
    return 1;
}

int ReadInt(FILE *f, void *buf, int swap)
{
    return ReadFourBytes(f, buf, swap);
}

int ReadFloat(FILE *f, void *buf, int swap)
{
    return ReadFourBytes(f, buf, swap);
}

static bool IsASCII(FILE *file)
{
    char line[kFirstLineLimit + 1];
    ReadLine(file, line, kFirstLineLimit);
    line[kMagicLength] = '\0';
    return strstr(line, "solid") != nullptr;
}

static STLResult ReadASCIIFaces(FILE *file)
{
    Report("ASCII stl file\n");
    rewind(file);
    Report("Parsing ascii stl file\n");
    char line[kLineLimit + 1];
    while (ReadLine(file, line, kLineLimit)) {
        if (strstr(line, "outer loop") == nullptr && strstr(line, "outerloop") == nullptr)
            continue;
        Triangle t = {};
        if (!ReadLoop(file, &t))
            return kSTLBadVertices;
        if (!AppendToArray(&stltri, &nstltri, t))
            return kSTLOutOfMemory;
    }
    return kSTLRead;
}

// Reads three corners, each an arbitrary keyword followed by x y z.
static bool ReadLoop(FILE *file, Triangle *t)
{
    for (Vector &corner : t->p)
        if (fscanf(file, "%*s %lf %lf %lf", &corner.x, &corner.y, &corner.z) != 3)
            return false;
    return true;
}

// After 80 bytes of header and the count, each face takes 50 bytes: normal and three corners as 12 floats,
// and a 16-bit attribute.
static STLResult ReadBinaryFaces(FILE *file)
{
    Report("Binary stl file\n");
    rewind(file);
    Report("Parsing binary stl file\n");
    char header[kHeaderLength];
    if (fread(header, 1, sizeof header, file) < sizeof header)
        return kSTLShortHeader;
    int32_t count = 0;
    ReadInt(file, &count, options.byteswap);
    if (options.debug)
        fprintf(stderr, "Expecting %d facets\n", count);
    if (static_cast<uint32_t>(count) > kMostFaces)
        return kSTLBadCount;

    Triangle t = {};
    float normal[3] = {};
    float corners[3][3] = {};
    for (int i = 0; i < count; i++) {
        for (float &value : normal)
            ReadFloat(file, &value, options.byteswap);
        for (int k = 0; k < 3; k++) {
            for (float &value : corners[k])
                ReadFloat(file, &value, options.byteswap);
            t.p[k] = {corners[k][0], corners[k][1], corners[k][2]};
        }
        getc(file);
        getc(file);
        if (!AppendToArray(&stltri, &nstltri, t))
            return kSTLOutOfMemory;
        if (feof(file) || ferror(file))
            return RepeatFace(t, count - nstltri) ? kSTLRead : kSTLOutOfMemory;
    }
    return kSTLRead;
}

// Appends `count` copies of a face, for the faces that are missing at the end of a truncated file.
static bool RepeatFace(const Triangle &face, int count)
{
    if (!ResizeArray(&stltri, static_cast<std::size_t>(nstltri) + static_cast<std::size_t>(count)))
        return false;
    std::fill_n(stltri + nstltri, count, face);
    nstltri += count;
    return true;
}

static int ReadFourBytes(FILE *file, void *buf, int swap)
{
    unsigned char bytes[4];
    if (fread(bytes, 1, sizeof bytes, file) < sizeof bytes)
        return 0;
    if (swap)
        std::reverse(bytes, bytes + sizeof bytes);
    memcpy(buf, bytes, sizeof bytes);
    return 1;
}

static void Report(const char *progress)
{
    if (options.debug)
        fputs(progress, stderr);
}
