#include "export/slices.h"

#include <gtest/gtest.h>

#include "base/array.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "temporary_file.h"

// A directory of its own for the files of a test.
class Slices : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        SetProgramDefaults();
    }

    static void GrowFork()
    {
        growthstate.nroots = 3;
        growthstate.roottype = kRootRingZ;
        RestartFromRoots();
        Grow(IterateSystem, 400, 10000000);
    }

    TemporaryDirectory directory;
};

namespace
{
// The walk as it is described, with a search for every child, a call within a call for every branch and two
// planes of four numbers: value 0 or more is inside.
struct PlainSlice {
    const double (&a)[4];
    const double (&b)[4];
    FILE *file;
    bool first;
    std::string *told;

    static double Value(const double (&plane)[4], Vector p)
    {
        return plane[0] * p.x + plane[1] * p.y + plane[2] * p.z + plane[3];
    }
    static Vector Cut(const double (&plane)[4], Vector p, Vector q)
    {
        Vector x = p;
        LineSegmentPlane(p, q, {plane[0], plane[1], plane[2]}, plane[3], &x);
        return x;
    }
    void Tell(int from, int to) const
    {
        *told +=
            "      Tracing branch node from " + std::to_string(from) + " -> " + std::to_string(to) + "\n";
    }
    void Trace(int from, int to) const
    {
        const Vector p = cells[from].p, q = cells[to].p;
        cells[from].visited = cells[to].visited = 1;
        const bool pa = Value(a, p) < 0, qa = Value(a, q) < 0, pb = Value(b, p) < 0, qb = Value(b, q) < 0;
        if ((pa && qa) || (pb && qb))
            ;
        else if ((pa && qb) || (pb && qa))
            WriteVector(file, Cut(a, p, q), Cut(b, p, q));
        else if (pa)
            WriteVector(file, Cut(a, p, q), q);
        else if (qa)
            WriteVector(file, Cut(a, p, q), p);
        else if (qb)
            WriteVector(file, p, Cut(b, p, q));
        else if (pb)
            WriteVector(file, q, Cut(b, p, q));
        else
            WriteVector(file, p, q);
        int next;
        while (FindBranch(from, &next)) {
            if (first)
                Tell(from, next);
            Trace(from, next);
        }
        if (FindBranch(to, &next)) {
            if (first && options.debug)
                Tell(to, next);
            Trace(to, next);
        }
    }
    void Run() const
    {
        for (int i = 0; i < ncells; i++)
            cells[i].visited = 0;
        for (int root = 0; root < ncells; root++) {
            if (cells[root].parent >= 0)
                continue;
            if (first)
                *told += "   Processing seed node " + std::to_string(root) + "\n";
            cells[root].visited = 1;
            int child;
            while (FindBranch(root, &child)) {
                if (first)
                    Tell(root, child);
                Trace(root, child);
            }
        }
    }
};
} // namespace

TEST_F(Slices, FilesAndReportsAreThoseOfThePlainWalk)
{
    GrowFork();
    Vector oblique = {1, -2, 0.5};
    Normalise(&oblique);
    for (const int debug : {0, 1}) {
        for (const Vector n : {Vector{0, 0, 1}, Vector{1, 0, 0}, oblique}) {
            options.debug = debug;
            testing::internal::CaptureStderr();
            ASSERT_EQ(DoSlice(".", 7, n, stderr), kSlicesDone);
            const std::string told = testing::internal::GetCapturedStderr();
            std::string expectedtold;
            const double r = growthstate.radius;
            for (int k = 0; k < 7; k++) {
                const double top = r - 2 * k * r / 7, bottom = r - 2 * (k + 1) * r / 7;
                const double a[4] = {-n.x, -n.y, -n.z, top}, b[4] = {n.x, n.y, n.z, -bottom};
                char line[100];
                snprintf(line, sizeof line, "Slice %d, distance: %g to %g\n", k, top, bottom);
                expectedtold += line;
                FILE *file = fopen("expected.txt", "w");
                PlainSlice{a, b, file, k == 0, &expectedtold}.Run();
                fclose(file);
                ASSERT_EQ(ReadWhole("slice_00" + std::to_string(k) + ".txt"), ReadWhole("expected.txt")) << k;
            }
            ASSERT_EQ(told, expectedtold);
            EXPECT_FALSE(std::filesystem::exists("slice_007.txt"));
        }
    }
}

// Ends on a plane are inside, and a branch across it at a grazing angle is cut where it crosses.
TEST_F(Slices, BranchesOnAndAlongThePlanes)
{
    const Slab slab = {{0, 0, 1}, 1, 0};
    Vector start, end;
    ASSERT_EQ(ClipBranch({0, 0, 1}, {5, 0, 1}, slab, &start, &end), 1);
    EXPECT_EQ(VectorLength(start, end), 5);
    EXPECT_EQ(ClipBranch({0, 0, 1.5}, {5, 0, 1.25}, slab, &start, &end), 0);
    ASSERT_EQ(ClipBranch({0, 0, 1 - 1e-6}, {4, 0, 1 + 1e-6}, slab, &start, &end), 1);
    EXPECT_NEAR(start.x, 2, 1e-6);
    EXPECT_EQ(end.x, 0);
    ASSERT_EQ(ClipBranch({0, 0, -1}, {0, 0, 0.5}, slab, &start, &end), 1); // cut below: turned about
    EXPECT_EQ(start.z, 0.5);
    EXPECT_EQ(end.z, 0);
}

TEST_F(Slices, OneLongChain)
{
    const int count = 200000;
    ASSERT_TRUE(ResizeArray(&cells, count));
    for (int i = 0; i < count; i++)
        cells[i] = {{0, 0, i * 0.001}, 0, i - 1, 0};
    ncells = count;
    growthstate.radius = 200;
    testing::internal::CaptureStderr();
    EXPECT_EQ(DoSlice(".", 2, {0, 0, 1}, stderr), kSlicesDone);
    testing::internal::GetCapturedStderr();
    const std::string upper = ReadWhole("slice_000.txt");
    EXPECT_EQ(std::count(upper.begin(), upper.end(), '\n'), count - 1);
    EXPECT_EQ(ReadWhole("slice_001.txt"), "0 0 0 0 0 0\n"); // touched at one end
}

TEST_F(Slices, OddRadiiEnd)
{
    for (const double radius : {0.0, -1.0, double(INFINITY), double(NAN), 1e308}) {
        growthstate.radius = radius;
        testing::internal::CaptureStderr();
        EXPECT_EQ(DoSlice(".", 3, {0, 0, 1}, stderr), kSlicesDone);
        testing::internal::GetCapturedStderr();
    }
}

TEST_F(Slices, AFileThatCannotBeOpenedIsReported)
{
    std::filesystem::create_directory("slice_001.txt");
    testing::internal::CaptureStderr();
    EXPECT_EQ(DoSlice(".", 3, {0, 0, 1}, stderr), kSliceUnopened);
    EXPECT_NE(
        testing::internal::GetCapturedStderr().find("Failed to open output slice file \"slice_001.txt\"\n"),
        std::string::npos);
}
