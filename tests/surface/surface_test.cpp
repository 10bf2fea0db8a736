#include "surface/surface.h"

#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "surface/stl_reader.h"

TEST(Surface, FacesMatchExpectedText)
{
    StartAfresh();
    std::ostringstream text;
    text.precision(10);
    const auto print = [&] {
        text << testing::internal::GetCapturedStderr();
        for (int i = 0; i < nstltri; i++) {
            const Triangle &t = stltri[i];
            for (const Vector &v : {t.p[0], t.p[1], t.p[2], t.n, t.midpoint})
                text << " (" << Plain(v.x) << ' ' << Plain(v.y) << ' ' << Plain(v.z) << ')';
            for (const double number : {t.A, t.B, t.C, t.D, PointPlaneDist(i, {7, 5, 3})})
                text << ' ' << Plain(number);
            text << '\n';
        }
        testing::internal::CaptureStderr();
    };
    const Vector a = {0, 0, 0}, b = {1, 0, 0}, c = {0, 1, 0};
    const Vector faces[][3] = {{a, a, b}, // bad
                               {{1, 2, 3}, {4, 6, 5}, {9, 7, 8}},
                               {a, b, {1, 1e-7, 0}}, // bad
                               {a, b, {3, 0, 0}},    // collinear, kept
                               {c, b, c},            // bad
                               {{0, 0, 3}, {3, 0, 3}, {0, 3, 3}},
                               {c, c, c}}; // bad, at the end
    for (const auto &face : faces)
        AppendToArray(&stltri, &nstltri, Triangle{{face[0], face[1], face[2]}, {}, {}, 0, 0, 0, 0});
    options.debug = 1;
    testing::internal::CaptureStderr();
    UpdateSTL();
    print();
    TransformSTL({1, 2, 3}, {0, 0.5, -7}, {10, 20, 30}); // about x, then y, then z; scaled, then shifted
    print();
    TransformSTL({0, 0, 0}, {0, 0.5, -7}, {10, 20, 30});
    print();
    options.debug = 0;
    testing::internal::GetCapturedStderr();
    for (const int id : {1, 2, 3, 11, 12, 13, 21, 22, 23, 31, 100, 7})
        text << id << ' ' << BuildSample(id) << ' ' << growthstate.surfacename << ": " << nstltri << '\n';
    ExpectGolden("faces.txt", text.str());
}

// A binary STL file of `count` announced faces and `faces` present ones: face k spans (k,0,0), (k+1,0,0), (k,1,0).
static std::string BinarySTL(uint32_t count, int faces, bool swap = false)
{
    std::string text(80, '\0');
    const auto add = [&](const void *data) {
        text.append(static_cast<const char *>(data), 4);
        if (swap)
            std::reverse(text.end() - 4, text.end());
    };
    add(&count);
    for (float k = 0; k < static_cast<float>(faces); k++) {
        for (const float value : {9.F, 9.F, 9.F, k, 0.F, 0.F, k + 1, 0.F, 0.F, k, 1.F, 0.F})
            add(&value);
        text += "ab";
    }
    return text;
}

static std::string Facet(const std::string &loop, const std::string &end)
{
    return "facet normal 0 0 -1" + end + loop + end + "vertex 0 0 5" + end + " vertex 1 0 5" + end +
           "vertex 0 1 5" + end + "endloop" + end + "endfacet" + end;
}

// The result, what is reported, and the first faces.
static std::string Read(const std::string &content, const char *path = "file.stl")
{
    options.debug = 0;
    SetBoxSurface(2, false); // a surface there before
    options.debug = 1;
    strcpy(growthstate.surfacename, "Old");
    std::ofstream("file.stl", std::ios::binary) << content;
    testing::internal::CaptureStderr();
    std::ostringstream text;
    text << ReadSTLFile(path) << ' ' << growthstate.surfacename << ' ' << nstltri << " faces\n";
    text << testing::internal::GetCapturedStderr();
    for (int k = 0; k < nstltri && k < 4; k++)
        text << stltri[k].p[0].x << ' ' << stltri[k].p[1].x << ' ' << stltri[k].p[2].y << '\n';
    return text.str();
}

TEST(STLReader, MatchesExpectedText)
{
    StartAfresh();
    const TemporaryDirectory directory;
    const std::string contents[] = {
        "solid a\n" + Facet("outer loop", "\n") + Facet("outerloop", "\n") + "endsolid a\n",
        " solid\r\n" + Facet("outer loop", "\r\n"),
        "  solid\n" + Facet("outer loop", "\n"), // binary: solid is too late
        "solid\n" + std::string(5000, 'x') + "\nouter loop VERTEX\n0 0 0 VERTEX 1 0 0 VERTEX\n\n 0 1 0\n",
        "solid\nouter loop\nvertex 1 2\nvertex 3 4 5\n",
        "",
        "solid\r" + Facet("outer loop", "\r"),
        "solid\n" + std::string(995, 'x') + "outer loop\nv 0 0 0 v 1 0 0 v 0 1 0\n", // in no line of 1000
        BinarySTL(3, 3),
        BinarySTL(4, 2),
        BinarySTL(4, 2).substr(0, 100),
        BinarySTL(0, 0),
        BinarySTL(10000000, 1).substr(0, 100),
        BinarySTL(10000001, 2),
    };
    std::string text = "missing: " + Read("", "/no/such/file");
    for (const std::string &content : contents)
        text += "file " + std::to_string(&content - contents) + ": " + Read(content);
    options.byteswap = 1;
    text += "swapped: " + Read(BinarySTL(3, 3, true));
    ExpectGolden("stl_files.txt", text);
    options.debug = options.byteswap = 0;
}
