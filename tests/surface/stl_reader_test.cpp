#include "surface/stl_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "golden.h"
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

// Files of other programs, odd ones and files that are none, each with a surface there before.
TEST_F(STLReader, ReadsWhatItReadRightBefore)
{
    std::string disguised = BinarySTL(1, 1);
    disguised.replace(0, 5, "solid");
    const std::string contents[] = {
        "solid a\n" + Facet("outer loop", "\n") + Facet("outer loop", "\n", "5") + "endsolid a\n",
        "solid a\r\n" + Facet("outer loop", "\r\n") + "endsolid a\r\n",
        "solid\n" + Facet("outerloop", "\n"),
        " solid\n" + Facet("outer loop", "\n"),
        "  solid\n" + Facet("outer loop", "\n"), // binary: solid stands too late
        "solid\rfacet normal 0 0 1\router loop\rvertex 0 0 0\rvertex 1 0 0\rvertex 0 1 0\r",
        "solid a\n" + Facet("outer loop", "\n", "1e-3") + "endsolid",
        "solid a\nouter loop v 0 0 0 1 1 1",
        "solid only\n",
        "solid a\n" + std::string(5000, 'x') + "\n" + Facet("outer loop", "\n"),
        "solid a\nouter loop VERTEX\n0 0 0 VERTEX 1 0 0 VERTEX\n\n 0 1 0\n",
        "solid a\nouter loop\nVERTEX 0 0 0 VERTEX 1 0 0 VERTEX\n\n 0 1 0\n",
        "solid\nouter loop\nvertex 1 2\nvertex 3 4 5\n",
        "",
        disguised,
        BinarySTL(3, 3),
        BinarySTL(3, 3, true),
        BinarySTL(4, 2),
        BinarySTL(0, 0),
        BinarySTL(10000000, 1).substr(0, 100),
        BinarySTL(10000001, 2),
        BinarySTL(0xffffffffU, 2),
        BinarySTL(0x80000000U, 2),
    };
    std::ostringstream text;
    for (size_t i = 0; i <= std::size(contents); i++) {
        for (const int swap : {0, 1}) {
            options.debug = 0;
            SetBoxSurface(2, false);
            options.debug = 1;
            strcpy(growthstate.surfacename, "Old");
            options.byteswap = swap;
            const TemporaryFile file(i < std::size(contents) ? contents[i] : "");
            const std::string path = i < std::size(contents) ? file.path() : "/no/such/file";
            testing::internal::CaptureStderr();
            const STLResult result = ReadSTLFile(path.c_str());
            std::string reported = testing::internal::GetCapturedStderr();
            if (const size_t at = reported.find(path); at != std::string::npos)
                reported.replace(at, path.size(), "path");
            text << "file " << i << ", swapped " << swap << ": " << result << ' ' << growthstate.surfacename
                 << ' ' << nstltri << " faces, " << stlmin.x << ' ' << stlmax.x << ' ' << stlmid.y << '\n'
                 << reported;
            for (int k = 0; k < nstltri && k < 3; k++)
                text << "  " << stltri[k].p[0].x << ' ' << stltri[k].p[1].x << ' ' << stltri[k].p[2].y << ' '
                     << stltri[k].n.z << '\n';
        }
    }
    ExpectGolden("stl_files.txt", text.str());
    options.debug = options.byteswap = 0;
    EXPECT_EQ(ReadSTLFile("/"), kSTLShortHeader); // a directory opens, and holds no byte
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
