#include "growth/deferred_flows.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "growth/flows.h"
#include "growth/state.h"

namespace
{
// What a particle whose flow is deferred brings. Shares that pass through the same particle make a list, in the order of arrival, which is
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
    int from = 0; // the first particle whose flow is deferred
    std::vector<Share> shares;
    std::vector<Junction> junctions;
    std::vector<double> amounts; // of a list
    std::size_t capacity = 0;    // particles whose flows there is memory for
} deferred;
} // namespace

// Flows are deferred until there are so many, or one for so many particles of a larger aggregate.
constexpr std::size_t kLeastDeferred = 65536;
constexpr std::size_t kParticlesPerDeferred = 32;
// Particles of a path to which a list is added at once.
constexpr int kTogether = 8;

static void MakeRoom();
static double AddDeferredFlows(int from);
static void CountLists(int from);
static int MergeLists(int a, int b);
static void ReadList(int first);
static int AddList(int particle, double *largest);

DeferredFlows::DeferredFlows()
{
    MakeRoom();
    if (deferred.capacity == 0)
        return;
    for (int i = 0; i < ncells; i++)
        cells[i].visited = 0;
    deferred.from = ncells;
    deferred.exist = true;
}

// For the flows that are to be deferred. Where there is no memory for more, it stays as it is.
static void MakeRoom()
{
    const std::size_t wanted =
        std::max(kLeastDeferred, static_cast<std::size_t>(ncells) / kParticlesPerDeferred);
    if (wanted <= deferred.capacity)
        return;
    try {
        deferred.shares.reserve(wanted);
        deferred.junctions.reserve(wanted);
        deferred.amounts.reserve(wanted);
        deferred.capacity = wanted;
    } catch (const std::bad_alloc &) {
        // as many as before
    }
}

DeferredFlows::~DeferredFlows()
{
    SettleFlows();
    deferred.exist = false;
}

void AddFlowOfNewest()
{
    double largest = 0;
    if (!deferred.exist)
        largest = AddFlow(cells[ncells - 1].parent);
    else if (static_cast<std::size_t>(ncells - deferred.from) >= deferred.capacity) {
        SettleFlows();
        MakeRoom();
    }
    if (!IsLargestFlowKnown(ncells - 1))
        SettleFlows();
    UpdateLargestFlow(largest);
}

void ForgetFlows()
{
    ForgetPaths();
    deferred.from = ncells;
}

void SettleFlows()
{
    if (!deferred.exist || deferred.from == ncells)
        return;
    double largest = 0;
    if (ExtendPathTables(ncells, false))
        largest = AddDeferredFlows(deferred.from);
    else
        for (int i = deferred.from; i < ncells; i++)
            largest = std::max(largest, AddFlowWithoutTables(cells[i].parent));
    deferred.from = ncells;
    RaiseLargestFlow(largest);
}

// Every particle's sum grows by the same shares in the same order as if they came one by one. Returns the largest.
static double AddDeferredFlows(int from)
{
    CountLists(from);
    deferred.shares.clear();
    deferred.junctions.clear();
    double largest = 0;
    for (int i = from; i < ncells; i++) {
        int first = i - from; // of the list that is on its way
        deferred.shares.push_back({1.0 / PathLength(cells[i].parent), -1});
        for (int at = cells[i].parent; at >= 0;) {
            int &lists = cells[at].visited;
            if (lists > 1) {
                deferred.junctions.push_back({lists - 1, first});
                lists = -static_cast<int>(deferred.junctions.size());
                break;
            }
            if (lists < 0) {
                Junction &junction = deferred.junctions[-lists - 1];
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

// Merges two lists that are in the order of arrival into one, by their shares' numbers. Walks along both: where the
// next share belongs to the other list, the lists change places. Returns the first share.
static int MergeLists(int a, int b)
{
    if (a > b)
        std::swap(a, b);
    const int first = a;
    while (b >= 0) { // a comes before b
        int *next = &deferred.shares[a].next;
        while (*next >= 0 && *next < b)
            next = &deferred.shares[*next].next;
        a = b;
        b = *next;
        *next = a;
    }
    return first;
}

static void ReadList(int first)
{
    deferred.amounts.clear();
    for (int i = first; i >= 0; i = deferred.shares[i].next)
        deferred.amounts.push_back(deferred.shares[i].amount);
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
        for (const double amount : deferred.amounts)
            for (double &sum : sums)
                sum += amount;
        for (int k = 0; k < count; k++) {
            cells[at[k]].weight = sums[k];
            *largest = std::max(*largest, sums[k]);
        }
    }
    return particle;
}
