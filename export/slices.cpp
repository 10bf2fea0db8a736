#include "export/slices.h"

#include <cerrno>
#include <cstdlib>
#include <new>
#include <vector>

#include "base/output_file.h"
#include "export/text_writer.h"
#include "growth/state.h"

namespace
{
// A branch, and how ReportBranches reports it
struct TracedBranch {
    int from, to;    // indices of cells
    bool newroot;    // the first branch from a root
    bool firstchild; // the first branch from a particle that is no root
};
} // namespace

static std::vector<TracedBranch> ListBranches();
static SliceResult ProcessSlice(const std::string &path, const Slab &slab,
                                const std::vector<TracedBranch> &branches, FILE *progress);
static void TraceBranch(TextWriter &out, const TracedBranch &branch, const Slab &slab);
static void ReportBranches(const std::vector<TracedBranch> &branches, FILE *progress);
static Vector CutAtPlane(Vector p, Vector q, Vector n, double D);

SliceResult DoSlice(const std::string &folder, int count, Vector direction, FILE *progress)
{
    const double radius = growthstate.radius;
    try {
        const std::vector<TracedBranch> branches = ListBranches();
        SliceResult all;
        for (int k = 0; k < count; k++) {
            const Slab slab = {direction, radius - 2.0 * k * radius / count,
                               radius - 2.0 * (k + 1.0) * radius / count};
            if (!(slab.top > -radius))
                break;
            if (progress != nullptr)
                fprintf(progress, "Slice %d, distance: %g to %g\n", k, slab.top, slab.bottom);
            char name[32];
            snprintf(name, sizeof name, "slice_%03d.txt", k);
            const std::string path = folder == "." ? name : folder + "/" + name;
            SliceResult result = ProcessSlice(path, slab, branches, k == 0 ? progress : nullptr);
            if (!all.fault || !result.unopened.empty())
                all = std::move(result);
            if (!all.unopened.empty())
                break;
        }
        return all;
    } catch (const std::bad_alloc &) {
        return {{kMemoryFault, "Not enough memory to slice the aggregate"}, ""};
    }
}

int ClipBranch(Vector p, Vector q, const Slab &slab, Vector *start, Vector *end)
{
    const Vector down = {-slab.n.x, -slab.n.y, -slab.n.z};
    const double heightp = DotProduct(slab.n, p);
    const double heightq = DotProduct(slab.n, q);
    const bool pabove = slab.top - heightp < 0;
    const bool qabove = slab.top - heightq < 0;
    const bool pbelow = heightp - slab.bottom < 0;
    const bool qbelow = heightq - slab.bottom < 0;
    const auto cutattop = [&] { return CutAtPlane(p, q, down, slab.top); };
    const auto cutatbottom = [&] { return CutAtPlane(p, q, slab.n, -slab.bottom); };

    if ((pabove && qabove) || (pbelow && qbelow))
        return 0;
    *start = p;
    *end = q;
    if ((pabove && qbelow) || (pbelow && qabove)) {
        *start = cutattop();
        *end = cutatbottom();
    } else if (pabove) {
        *start = cutattop();
    } else if (qabove) {
        *start = cutattop();
        *end = p;
    } else if (qbelow) {
        *end = cutatbottom();
    } else if (pbelow) {
        *start = q;
        *end = cutatbottom();
    }
    return 1;
}

int FindBranch(int index, int *branch)
{
    for (int i = 0; i < ncells; i++) {
        if (!cells[i].visited && cells[i].parent == index) {
            *branch = i;
            return 1;
        }
    }
    return 0;
}

int TerminalCell(int index)
{
    for (int i = 0; i < ncells; i++)
        if (cells[i].parent == index)
            return 1;
    return 0;
}

void WriteVector(FILE *file, Vector a, Vector b)
{
    fprintf(file, "%g %g %g %g %g %g\n", a.x, a.y, a.z, b.x, b.y, b.z);
}

// Returns all branches, root by root in the order of cells. For each particle come the branches to its children,
// oldest child first; then, from the youngest child to the oldest, the branches of its descendants in the same way.
static std::vector<TracedBranch> ListBranches()
{
    const std::size_t n = ncells;
    // The children of particle i are children[first[i]] to children[first[i + 1] - 1], oldest first.
    std::vector<int> first(n + 2, 0);
    std::vector<int> children(n);
    for (std::size_t i = 0; i < n; i++)
        if (cells[i].parent >= 0)
            first[cells[i].parent + 2]++;
    for (std::size_t i = 2; i < n + 2; i++)
        first[i] += first[i - 1];
    for (std::size_t i = 0; i < n; i++)
        if (cells[i].parent >= 0) {
            int &next = first[cells[i].parent + 1];
            children[next] = static_cast<int>(i);
            next++;
        }

    std::vector<TracedBranch> branches;
    branches.reserve(n);
    std::vector<int> waiting;
    for (int root = 0; root < ncells; root++) {
        if (cells[root].parent >= 0)
            continue;
        waiting.push_back(root);
        while (!waiting.empty()) {
            const int from = waiting.back();
            waiting.pop_back();
            const int begin = first[from];
            const int end = first[from + 1];
            for (int k = begin; k < end; k++) {
                const int to = children[k];
                branches.push_back({from, to, from == root && k == begin, from != root && k == begin});
                waiting.push_back(to);
            }
        }
    }
    return branches;
}

// Writes one slice. Prints the branches as they are traced to `progress` unless that is nullptr.
static SliceResult ProcessSlice(const std::string &path, const Slab &slab,
                                const std::vector<TracedBranch> &branches, FILE *progress)
{
    OutputFile file(path.c_str());
    if (file.Stream() == nullptr && file.Reason() == ENOMEM)
        throw std::bad_alloc();
    if (file.Stream() == nullptr)
        return {file.Finish(), path};
    if (progress != nullptr)
        ReportBranches(branches, progress);
    {
        TextWriter out(file.Stream());
        for (const TracedBranch &branch : branches)
            TraceBranch(out, branch, slab);
    }
    return {file.Finish(), ""};
}

static void TraceBranch(TextWriter &out, const TracedBranch &branch, const Slab &slab)
{
    Vector start, end;
    if (ClipBranch(cells[branch.from].p, cells[branch.to].p, slab, &start, &end))
        out.Print("%g %g %g %g %g %g\n", start, end);
}

// Prints the roots and the branches in the order in which they are traced; prints branches to the first child of a
// particle that is no root only in verbose mode.
static void ReportBranches(const std::vector<TracedBranch> &branches, FILE *progress)
{
    TextWriter out(progress);
    std::size_t next = 0;
    for (int root = 0; root < ncells; root++) {
        if (cells[root].parent >= 0)
            continue;
        out.Print("   Processing seed node %d\n", root);
        if (next == branches.size() || branches[next].from != root)
            continue; // nothing grows from it
        do {
            const TracedBranch &branch = branches[next];
            if (!branch.firstchild || options.debug)
                out.Print("      Tracing branch node from %d -> %d\n", branch.from, branch.to);
            next++;
        } while (next < branches.size() && !branches[next].newroot);
    }
}

// The point where a branch crosses the plane n.x + D = 0; its ends are on different sides of the plane.
static Vector CutAtPlane(Vector p, Vector q, Vector n, double D)
{
    Vector cut;
    if (LineSegmentPlane(p, q, n, D, &cut))
        return cut;
    // LineSegmentPlane finds no crossing of a branch that is almost parallel to the plane.
    const double distancep = DotProduct(n, p) + D;
    const double distanceq = DotProduct(n, q) + D;
    return p + (distancep / (distancep - distanceq)) * (q - p);
}
