#include "growth/flows.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "growth/growth_step.h"
#include "growth/large_pages.h"
#include "growth/state.h"

namespace
{
// What a held particle brings. Shares that pass through the same particle make a list, in the order of arrival, which is
// that of their indices.
struct Share {
    double amount;
    int next; // of the list, or -1
};

// A particle through which several lists pass: they go on as one.
struct Junction {
    int missing; // lists that have not come yet
    int first;   // share of those that have, together
};

struct {
    bool exist = false;
    int from = 0; // the first particle whose flow is held
    std::vector<Share> shares;
    std::vector<Junction> junctions;
    std::vector<double> amounts; // of a list
    std::size_t most = 0;        // that there is memory for
} held;
} // namespace

// By particle, known for the first of them: how many particles the flow counts on the path to its root, and which
// particle is so many up as there are kStrides, or -1.
static LargeVector<int> lengths, ancestors;
// A long path is walked in so many strides at once: their loads do not wait for each other.
constexpr int kStrides = 8;
// Flows are held until there are so many, or one for so many particles of a larger aggregate.
constexpr std::size_t kLeastHeld = 65536;
constexpr std::size_t kParticlesPerHeld = 32;
// Particles of a path to which a list is added at once.
constexpr int kTogether = 8;

static double AddFlowPlainly(int partner);
static bool KnowPaths(int count, bool withancestors);
static void Append(LargeVector<int> *list, int number);
static void MakeRoom();
static double AddHeldFlows(int from);
static void CountLists(int from);
static int MergeLists(int a, int b);
static void ReadList(int first);
static int AddList(int particle, double *largest);

double AddFlow(int partner)
{
    if (!KnowPaths(partner + 1, true))
        return AddFlowPlainly(partner);
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

// The same without the memory that it takes to be fast.
static double AddFlowPlainly(int partner)
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

// Finds the paths of the first `count` particles. Returns false where there is no memory for them.
static bool KnowPaths(int count, bool withancestors)
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

// To a vector that grows by an eighth.
static void Append(LargeVector<int> *list, int number)
{
    if (list->size() == list->capacity())
        list->reserve(list->size() / 8 * 9 + 1000);
    list->push_back(number);
}

void ForgetPaths()
{
    lengths = LargeVector<int>();
    ancestors = LargeVector<int>();
    held.from = ncells;
}

// Held flows ----------------------------------------------------------------------------------------------

HeldFlows::HeldFlows()
{
    MakeRoom();
    if (held.most == 0)
        return;
    for (int i = 0; i < ncells; i++)
        cells[i].visited = 0;
    held.from = ncells;
    held.exist = true;
}

// For the flows that are to be held. Where there is no memory for more, it stays as it is.
static void MakeRoom()
{
    const std::size_t wanted = std::max(kLeastHeld, static_cast<std::size_t>(ncells) / kParticlesPerHeld);
    if (wanted <= held.most)
        return;
    try {
        held.shares.reserve(wanted);
        held.junctions.reserve(wanted);
        held.amounts.reserve(wanted);
        held.most = wanted;
    } catch (const std::bad_alloc &) {
        // as many as before
    }
}

HeldFlows::~HeldFlows()
{
    SettleFlows();
    held.exist = false;
}

double BringFlow()
{
    if (!held.exist)
        return AddFlow(cells[ncells - 1].parent);
    if (static_cast<std::size_t>(ncells - held.from) >= held.most) {
        SettleFlows();
        MakeRoom();
    }
    return 0;
}

void SettleFlows()
{
    if (!held.exist || held.from == ncells)
        return;
    double largest = 0;
    if (KnowPaths(ncells, false))
        largest = AddHeldFlows(held.from);
    else
        for (int i = held.from; i < ncells; i++)
            largest = std::max(largest, AddFlowPlainly(cells[i].parent));
    held.from = ncells;
    RaiseLargestFlow(largest);
}

// Every particle's sum grows by the same shares in the same order as if they came one by one. Returns the largest.
static double AddHeldFlows(int from)
{
    CountLists(from);
    held.shares.clear();
    held.junctions.clear();
    double largest = 0;
    for (int i = from; i < ncells; i++) {
        int first = i - from; // of the list that is on its way
        held.shares.push_back({1.0 / lengths[cells[i].parent], -1});
        for (int at = cells[i].parent; at >= 0;) {
            int &lists = cells[at].visited;
            if (lists > 1) {
                held.junctions.push_back({lists - 1, first});
                lists = -static_cast<int>(held.junctions.size());
                break;
            }
            if (lists < 0) {
                Junction &junction = held.junctions[-lists - 1];
                junction.first = MergeLists(junction.first, first);
                if (--junction.missing > 0)
                    break;
                first = junction.first;
                lists = 1;
            }
            ReadList(first);
            at = AddList(at, &largest);
        }
    }
    return largest;
}

// Makes `visited` of every particle on the paths how many lists will come to it.
static void CountLists(int from)
{
    for (int i = from; i < ncells; i++) {
        int at = cells[i].parent;
        while (at >= 0 && cells[at].visited++ == 0)
            at = cells[at].parent;
    }
}

static int MergeLists(int a, int b)
{
    if (a > b)
        std::swap(a, b);
    const int first = a;
    while (b >= 0) { // a comes before b
        int *next = &held.shares[a].next;
        while (*next >= 0 && *next < b)
            next = &held.shares[*next].next;
        a = b;
        b = *next;
        *next = a;
    }
    return first;
}

static void ReadList(int first)
{
    held.amounts.clear();
    for (int i = first; i >= 0; i = held.shares[i].next)
        held.amounts.push_back(held.shares[i].amount);
}

// Adds the amounts to a particle and to those below it, to where another list joins. Returns that particle, or -1.
static int AddList(int particle, double *largest)
{
    while (particle >= 0 && cells[particle].visited == 1) {
        int at[kTogether];
        double sums[kTogether] = {};
        int count = 0;
        for (; count < kTogether && particle >= 0 && cells[particle].visited == 1; count++) {
            cells[particle].visited = 0;
            at[count] = particle;
            sums[count] = cells[particle].weight;
            particle = cells[particle].parent;
        }
        for (const double amount : held.amounts)
            for (double &sum : sums)
                sum += amount;
        for (int k = 0; k < count; k++) {
            cells[at[k]].weight = sums[k];
            *largest = std::max(*largest, sums[k]);
        }
    }
    return particle;
}
