#include "surface/stl_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "growth/scenario.h"
#include "surface/surface.h"
#include "temporary_file.h"

// A binary STL file of `count` announced faces and `faces` present ones: face k spans (k,0,0), (k+1,0,0),
// (k,1,0).
static std::string BinarySTL(uint32_t count, int faces, bool swap = false)
{
    std::string text(80, '\0');
    const auto add = [&](const void *data) {
        std::string bytes(static_cast<const char *>(data), 4);
        if (swap)
            std::reverse(bytes.begin(), bytes.end());
        text += bytes;
    };
    add(&count);
    for (int k = 0; k < faces; k++) {
        const auto x = static_cast<float>(k);
        const float values[12] = {9, 9, 9, x, 0, 0, x + 1, 0, 0, x, 1, 0};
        for (const float &value : values)
            add(&value);
        text += "ab";
    }
    return text;
}

static std::string Facet(const char *loop, const char *end, const std::string &z = "0")
{
    const std::string e = end;
    return "facet normal 0 0 -1" + e + "  " + loop + e + "    vertex 0 0 " + z + e + "    vertex 1 0 " + z +
           e + "    vertex 0 1 " + z + e + "  endloop" + e + "endfacet" + e;
}

static STLResult Read(const std::string &content)
{
    const TemporaryFile file(content);
    return ReadSTLFile(file.path());
}

class STLReader : public testing::Test
{
protected:
    void SetUp() override { StartAfresh(); }
};

TEST_F(STLReader, ReadsASCIIAsOtherProgramsWriteIt)
{
    const struct {
        std::string text;
        int faces;
    } rows[] = {
        {"solid a\n" + Facet("outer loop", "\n") + Facet("outer loop", "\n", "5") + "endsolid a\n", 2},
        {"solid a\r\n" + Facet("outer loop", "\r\n") + "endsolid a\r\n", 1},
        {"solid\n" + Facet("outerloop", "\n"), 1},
        {" solid\n" + Facet("outer loop", "\n"), 1},
        {"solid\rfacet normal 0 0 1\router loop\rvertex 0 0 0\rvertex 1 0 0\rvertex 0 1 0\r", 1},
        {"solid a\n" + Facet("outer loop", "\n", "1e-3") + "endsolid", 1},
        {"solid a\nouter loop v 0 0 0 1 1 1", 0}, // the last line has no end
        {"solid only\n", 0},
        {"solid a\n" + std::string(5000, 'x') + "\n" + Facet("outer loop", "\n"), 1},
        {"solid a\nouter loop VERTEX\n0 0 0 VERTEX 1 0 0 VERTEX\n\n 0 1 0\n", 0},
        {"solid a\nouter loop\nVERTEX 0 0 0 VERTEX 1 0 0 VERTEX\n\n 0 1 0\n", 1},
    };
    for (const auto &row : rows) {
        const bool broken = row.text.find("loop VERTEX\n") != std::string::npos;
        EXPECT_EQ(Read(row.text), broken ? kSTLBadVertices : kSTLRead) << row.text;
        EXPECT_EQ(nstltri, row.faces) << row.text;
        if (nstltri > 0) {
            EXPECT_EQ(stltri[0].n.z, 1) << row.text; // recomputed, whatever the file says
        }
    }
}

TEST_F(STLReader, SolidDecidesWithinSixCharacters)
{
    EXPECT_EQ(Read("  solid\n" + Facet("outer loop", "\n")), kSTLBadCount); // binary: the count is text
    EXPECT_EQ(nstltri, 0);
    std::string binary = BinarySTL(1, 1);
    binary.replace(0, 5, "solid");
    EXPECT_EQ(Read(binary), kSTLRead); // taken for ASCII, in which there is no loop
    EXPECT_EQ(nstltri, 0);
}

TEST_F(STLReader, ReadsBinaryInBothByteOrders)
{
    for (const bool swap : {false, true}) {
        options.byteswap = swap;
        EXPECT_EQ(Read(BinarySTL(3, 3, swap)), kSTLRead);
        ASSERT_EQ(nstltri, 3);
        EXPECT_EQ(stltri[2].p[0].x, 2);
        EXPECT_EQ(stltri[2].p[1].x, 3);
        EXPECT_EQ(stltri[2].p[2].y, 1);
        EXPECT_EQ(stlmax.x, 3);
    }
    options.byteswap = 1;
    EXPECT_EQ(Read(BinarySTL(3, 3)), kSTLBadCount); // 3 reversed is large
}

TEST_F(STLReader, TruncatedBinaryRepeatsTheValuesLastRead)
{
    const std::string whole = BinarySTL(4, 2);
    EXPECT_EQ(Read(whole), kSTLRead);
    ASSERT_EQ(nstltri, 4);
    for (const int i : {2, 3})
        EXPECT_EQ(stltri[i].p[1].x, 2);
    // Every other length: whatever is read, nothing is uninitialised (the sanitizers look on) and bounds are
    // finite.
    for (size_t length = 0; length < whole.size(); length++) {
        const STLResult result = Read(whole.substr(0, length));
        EXPECT_EQ(result, length < 80 ? kSTLShortHeader : kSTLRead) << length;
        EXPECT_LE(nstltri, length < 84 ? 0 : 4);
        for (int i = 0; i < nstltri; i++)
            for (const Vector &corner : stltri[i].p)
                EXPECT_LE(Modulus(corner), 2) << length;
    }
}

TEST_F(STLReader, CountsAreLimited)
{
    for (const uint32_t count : {10000001U, 0xffffffffU, 0x80000000U}) {
        SetBoxSurface(2, false);
        EXPECT_EQ(Read(BinarySTL(count, 2)), kSTLBadCount);
        EXPECT_EQ(nstltri, 0);
        EXPECT_EQ(stlmax.x, 1); // the old surface's
    }
    EXPECT_EQ(Read(BinarySTL(0, 0)), kSTLRead);
    EXPECT_EQ(nstltri, 0);
    EXPECT_EQ(stlmax.x, -1e32);
    // The largest count, with 16 bytes of one face: every face is degenerate and removed.
    EXPECT_EQ(Read(BinarySTL(10000000, 1).substr(0, 100)), kSTLRead);
    EXPECT_EQ(nstltri, 0);
}

TEST_F(STLReader, FilesThatAreNone)
{
    EXPECT_EQ(Read(""), kSTLShortHeader);
    EXPECT_EQ(ReadSTLFile("/"), kSTLShortHeader); // a directory opens, and holds no byte

    SetBoxSurface(2, false);
    EXPECT_EQ(ReadSTLFile("/no/such/file"), kSTLUnopened);
    EXPECT_EQ(nstltri, 12); // the old surface stays
    if (geteuid() != 0) {
        const TemporaryFile file("solid\n");
        chmod(file.path(), 0);
        EXPECT_EQ(ReadSTLFile(file.path()), kSTLUnopened);
        EXPECT_EQ(nstltri, 12);
    }
    strcpy(growthstate.surfacename, "Box");
    EXPECT_EQ(Read("solid\nouter loop\nvertex 1 2\nvertex 3 4 5\n"), kSTLBadVertices);
    EXPECT_EQ(nstltri, 0);
    EXPECT_STREQ(growthstate.surfacename, "None");
}

TEST_F(STLReader, VerboseModeReportsProgress)
{
    options.debug = 1;
    const TemporaryFile ascii("solid\n" + Facet("outer loop", "\n"));
    const TemporaryFile binary(BinarySTL(1, 1));
    const std::string bounds =
        "Bounds: 0 <= x <= 1\n        0 <= y <= 1\n        0 <= z <= 0\nMidpoint: 0.5 0.5 0\n";
    testing::internal::CaptureStderr();
    ReadSTLFile(ascii.path());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ASCII stl file\nParsing ascii stl file\nRead 1 triangle faces\n" + bounds + ascii.path() +
                  "\n");
    testing::internal::CaptureStderr();
    ReadSTLFile(binary.path());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Binary stl file\nParsing binary stl file\nExpecting 1 facets\nRead 1 triangle faces\n" +
                  bounds + binary.path() + "\n");
}

TEST_F(STLReader, LinesEndAtEitherCharacterOrTheLimit)
{
    const TemporaryFile text("ab\r\ncdefgh\n\nlast");
    FILE *file = fopen(text.path(), "r");
    char line[4];
    const struct {
        const char *line;
        int status;
    } rows[] = {{"ab", 1}, {"", 1}, {"cde", 1}, {"fgh", 1}, {"", 1}, {"", 1}, {"las", 1}, {"t", 0}, {"", 0}};
    for (const auto &row : rows) {
        EXPECT_EQ(ReadLine(file, line, 3), row.status) << row.line;
        EXPECT_STREQ(line, row.line);
    }
    fclose(file);
}
