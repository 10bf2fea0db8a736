#include "export/vtp.h"

#include <cstdint>
#include <string>
#include <vector>

#include "growth/state.h"

namespace
{
// An array in the appended data of the file
struct DataArray {
    const char *type, *name;
    int components;
    std::uint64_t bytes;
    void (*write)(TextWriter &out);
};
} // namespace

static std::vector<int> CountBranchesFromRoot();

static void WritePositions(TextWriter &out)
{
    for (int i = 0; i < ncells; i++)
        for (const double coordinate : {cells[i].p.x, cells[i].p.y, cells[i].p.z})
            out.PutBinary(coordinate);
}

static void WriteFlows(TextWriter &out)
{
    for (int i = 0; i < ncells; i++)
        out.PutBinary(cells[i].weight);
}

static void WriteParents(TextWriter &out)
{
    for (int i = 0; i < ncells; i++)
        out.PutBinary(cells[i].parent);
}

static void WriteDistances(TextWriter &out)
{
    for (const int distance : CountBranchesFromRoot())
        out.PutBinary(distance);
}

static void WriteArrivals(TextWriter &out)
{
    for (int i = 0; i < ncells; i++)
        out.PutBinary(i);
}

// Each line goes from the parent to the particle.
static void WriteConnectivity(TextWriter &out)
{
    for (int i = 0; i < ncells; i++) {
        if (cells[i].parent < 0)
            continue;
        out.PutBinary(std::int64_t{cells[i].parent});
        out.PutBinary(std::int64_t{i});
    }
}

static void WriteOffsets(TextWriter &out)
{
    std::int64_t end = 0;
    for (int i = 0; i < ncells; i++)
        if (cells[i].parent >= 0)
            out.PutBinary(end += 2);
}

// Writes the element for an array whose data are at *offset, and moves *offset behind the data.
static void Describe(TextWriter &out, const DataArray &array, std::uint64_t *offset)
{
    out.Print("<DataArray type=\"%s\" Name=\"%s\" NumberOfComponents=\"%d\" format=\"appended\" offset=\"",
              array.type, array.name, array.components);
    out.Print("%s\"/>\n", std::to_string(*offset).c_str());
    *offset += sizeof(std::uint64_t) + array.bytes;
}

void WriteVTP(TextWriter &out)
{
    const auto points = static_cast<std::uint64_t>(ncells);
    int lines = 0;
    for (int i = 0; i < ncells; i++)
        lines += cells[i].parent >= 0;
    const auto ends = static_cast<std::uint64_t>(lines);
    const DataArray ofpoints[] = {
        {"Float64", "flow", 1, 8 * points, WriteFlows},
        {"Int32", "parent", 1, 4 * points, WriteParents},
        {"Int32", "branches_from_root", 1, 4 * points, WriteDistances},
        {"Int32", "arrival", 1, 4 * points, WriteArrivals},
    };
    const DataArray positions = {"Float64", "Points", 3, 24 * points, WritePositions};
    const DataArray oflines[] = {
        {"Int64", "connectivity", 1, 16 * ends, WriteConnectivity},
        {"Int64", "offsets", 1, 8 * ends, WriteOffsets},
    };

    out.Print(
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"PolyData\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt64\">\n"
        "<PolyData>\n<Piece NumberOfPoints=\"%d\" NumberOfVerts=\"0\" NumberOfLines=\"%d\" "
        "NumberOfStrips=\"0\" NumberOfPolys=\"0\">\n<PointData Scalars=\"flow\">\n",
        ncells, lines);
    std::uint64_t offset = 0;
    for (const DataArray &array : ofpoints)
        Describe(out, array, &offset);
    out.Print("</PointData>\n<Points>\n");
    Describe(out, positions, &offset);
    out.Print("</Points>\n<Lines>\n");
    for (const DataArray &array : oflines)
        Describe(out, array, &offset);
    out.Print("</Lines>\n</Piece>\n</PolyData>\n<AppendedData encoding=\"raw\">\n_");
    const auto append = [&](const DataArray &array) {
        out.PutBinary(array.bytes);
        array.write(out);
    };
    for (const DataArray &array : ofpoints)
        append(array);
    append(positions);
    for (const DataArray &array : oflines)
        append(array);
    out.Print("\n</AppendedData>\n</VTKFile>\n");
}

static std::vector<int> CountBranchesFromRoot()
{
    std::vector<int> distances(static_cast<std::size_t>(ncells));
    for (int i = 0; i < ncells; i++)
        distances[i] = cells[i].parent < 0 ? 0 : distances[cells[i].parent] + 1;
    return distances;
}
