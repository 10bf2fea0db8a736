#include "export/points.h"

#include "growth/state.h"

// Points along each branch.
constexpr int kCloudPoints = 10;

static void WriteCloud(TextWriter &out, const char *record);

void WritePointDXF(TextWriter &out)
{
    out.Print("0\nSECTION\n2\nENTITIES\n");
    WriteCloud(out, "0\nPOINT\n8\nLAYER1\n10\n%g\n20\n%g\n30\n%g\n");
    out.Print(" 0\nENDSEC\n 0\nEOF\n"); // blanks, unlike in the head (kept)
}

void WritePointGEOM(TextWriter &out)
{
    WriteCloud(out, "p %g %g %g 1 1 1\n");
}

static void WriteCloud(TextWriter &out, const char *record)
{
    for (int i = 0; i < ncells; i++) {
        if (cells[i].parent < 0)
            continue;
        const Vector from = cells[cells[i].parent].p;
        const Vector along = cells[i].p - from;
        for (int s = 0; s < kCloudPoints; s++)
            out.Print(record, Vector{from.x + along.x * s / kCloudPoints, from.y + along.y * s / kCloudPoints,
                                     from.z + along.z * s / kCloudPoints});
    }
}
