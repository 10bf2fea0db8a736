#include "growth/flows.h"

#include <algorithm>
#include <new>
#include <vector>

#include "growth/state.h"

// Tables by particle, filled for the first particles: the path length as PathLength returns it, and the ancestor
// kStrides generations up, or -1.
static std::vector<int> lengths, ancestors;
// A path is followed by so many interleaved walks, whose memory accesses do not wait for each other.
constexpr int kStrides = 8;

namespace
{
// What growthstate.maxweight was when it was last known to be the largest flow of the first `count` particles.
struct KnownLargest {
    int count;
    double maxweight;
};
} // namespace
static KnownLargest known = {-1, 0};

static void Append(std::vector<int> *list, int number);

double AddFlow(int partner)
{
    if (!ExtendPathTables(partner + 1, true))
        return AddFlowWithoutTables(partner);
    const double share = 1.0 / lengths[partner];
    double largest = 0;
    const auto add = [&](int i) {
        cells[i].weight += share;
        largest = std::max(largest, cells[i].weight);
    };
    int at[kStrides];
    at[0] = partner;
    for (int k = 1; k < kStrides; k++)
        at[k] = at[k - 1] < 0 ? -1 : cells[at[k - 1]].parent;
    while (at[kStrides - 1] >= 0) {
        for (int &i : at) {
            add(i);
            i = ancestors[i];
        }
    }
    for (const int i : at)
        if (i >= 0)
            add(i);
    return largest;
}

double AddFlowWithoutTables(int partner)
{
    int n = 1;
    int i = partner;
    do {
        n++;
        i = cells[i].parent;
    } while (i > 0);
    double largest = 0;
    for (i = partner; i >= 0; i = cells[i].parent) {
        cells[i].weight += 1.0 / n;
        largest = std::max(largest, cells[i].weight);
    }
    return largest;
}

bool ExtendPathTables(int count, bool withancestors)
{
    try {
        for (int i = static_cast<int>(lengths.size()); i < count; i++) {
            const int parent = cells[i].parent;
            Append(&lengths, parent > 0 ? lengths[parent] + 1 : 2);
        }
        for (int i = static_cast<int>(ancestors.size()); withancestors && i < count; i++) {
            int ancestor = i;
            for (int k = 0; k < kStrides && ancestor >= 0; k++)
                ancestor = cells[ancestor].parent;
            Append(&ancestors, ancestor);
        }
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

// Appends a number; a full vector's capacity grows by an eighth.
static void Append(std::vector<int> *list, int number)
{
    if (list->size() == list->capacity())
        list->reserve(list->size() / 8 * 9 + 1000);
    list->push_back(number);
}

void ForgetPaths()
{
    lengths = std::vector<int>();
    ancestors = std::vector<int>();
    known.count = -1;
}

int PathLength(int particle)
{
    return lengths[particle];
}

void RaiseLargestFlow(double flow)
{
    const bool wasknown = known.maxweight == growthstate.maxweight;
    growthstate.maxweight = std::max(growthstate.maxweight, flow);
    if (wasknown)
        known.maxweight = growthstate.maxweight;
}

bool IsLargestFlowKnown(int count)
{
    return known.count == count && known.maxweight == growthstate.maxweight;
}

void UpdateLargestFlow(double newest)
{
    if (IsLargestFlowKnown(ncells - 1))
        growthstate.maxweight = std::max(growthstate.maxweight, newest);
    else
        FindLargestFlow();
    KeepLargestFlow();
}

void FindLargestFlow()
{
    if (IsLargestFlowKnown(ncells))
        return;
    for (int i = 0; i < ncells; i++)
        growthstate.maxweight = std::max(growthstate.maxweight, cells[i].weight);
    KeepLargestFlow();
}

void KeepLargestFlow()
{
    known = {ncells, growthstate.maxweight};
}
