#include "growth/deferred_flows.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "growth/flows.h"
#include "growth/state.h"

namespace
{
// The amount that a particle whose flow is deferred adds to each particle on its path. Shares that pass through the
// same particle form a linked list in the order of arrival, which is the order of their indices.
struct Share {
    double amount;
    int next; // next share of the list, or -1
};

// A particle where several lists meet; they are merged and continue as one list.
struct Junction {
    int awaitedlists; // lists that have not arrived yet
    int first;        // first share of the merged list of those that have arrived
};

struct {
    bool exist = false;
    int from = 0; // first particle whose flow is deferred
    std::vector<Share> shares;
    std::vector<Junction> junctions;
    std::vector<double> amounts; // the amounts of the list being added
    std::size_t capacity = 0;    // number of deferred flows that memory is reserved for
    double largest = 0;          // flow of the particles to which flows were added last
} deferred;
} // namespace

// Most flows that are deferred at a time: kLeastDeferred, or one for every kParticlesPerDeferred particles of a
// larger aggregate.
constexpr std::size_t kLeastDeferred = 4096;
constexpr std::size_t kParticlesPerDeferred = 16;
// Number of particles of a path to which a list is added at once.
constexpr int kParticlesAtOnce = 8;

static void MakeRoom(int count);
static void AddDeferredFlows(int from, int end);
static void CountLists(int from, int end);
static int MergeLists(int a, int b);
static void ReadList(int first);
static int AddList(int particle);

DeferredFlows::DeferredFlows()
{
    MakeRoom(ncells);
    if (deferred.capacity == 0)
        return;
    for (int i = 0; i < ncells; i++)
        cells[i].visited = 0;
    deferred.from = ncells;
    deferred.exist = true;
}

// Reserves memory for the deferred flows of an aggregate of `count` particles; keeps the earlier capacity when memory does not suffice.
static void MakeRoom(int count)
{
    const std::size_t wanted =
        std::max(kLeastDeferred, static_cast<std::size_t>(count) / kParticlesPerDeferred);
    if (wanted <= deferred.capacity)
        return;
    try {
        deferred.shares.reserve(wanted);
        deferred.junctions.reserve(wanted);
        deferred.amounts.reserve(wanted);
        deferred.capacity = wanted;
    } catch (const std::bad_alloc &) {
        // keep the earlier capacity
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
    else if (AreManyFlowsDeferred(ncells))
        SettleFlows();
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
    AddDeferredFlowsBefore(ncells);
    FinishDeferredFlows(ncells);
}

bool AreFlowsDeferred()
{
    return deferred.exist;
}

bool AreManyFlowsDeferred(int count)
{
    return deferred.exist && static_cast<std::size_t>(count - deferred.from) >= deferred.capacity;
}

void AddDeferredFlowsBefore(int end)
{
    deferred.largest = 0;
    const bool hastables = ExtendPathTables(end, false);
    for (int from = deferred.from; from < end;) {
        const int next = static_cast<int>(std::min<std::size_t>(end, from + deferred.capacity));
        if (hastables)
            AddDeferredFlows(from, next);
        for (; from < next; from++)
            if (!hastables)
                deferred.largest = std::max(deferred.largest, AddFlowWithoutTables(cells[from].parent));
    }
}

void FinishDeferredFlows(int end)
{
    deferred.from = end;
    RaiseLargestFlow(deferred.largest);
    MakeRoom(end);
}

// Adds the deferred flows. Every particle receives the same shares in the same order as if they were added one by
// one.
static void AddDeferredFlows(int from, int end)
{
    CountLists(from, end);
    deferred.shares.clear();
    deferred.junctions.clear();
    for (int i = from; i < end; i++) {
        int first = i - from; // first share of the list that is carried towards the root
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
                if (--junction.awaitedlists > 0)
                    break;
                first = junction.first;
                lists = 1;
            }
            ReadList(first);
            at = AddList(at);
        }
    }
}

// Sets `visited` of every particle on the deferred paths to the number of lists that will arrive there.
static void CountLists(int from, int end)
{
    for (int i = from; i < end; i++) {
        int at = cells[i].parent;
        while (at >= 0 && cells[at].visited++ == 0)
            at = cells[at].parent;
    }
}

// Merges two lists, each in order of increasing indices, into one. Follows one list until the other has the next
// lower index, then exchanges their roles. Returns the first share.
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

// Adds the amounts to a particle and its ancestors, up to the particle where another list joins, which is returned;
// -1 after the root.
static int AddList(int particle)
{
    while (particle >= 0 && cells[particle].visited == 1) {
        int at[kParticlesAtOnce];
        double sums[kParticlesAtOnce] = {};
        int count = 0;
        for (; count < kParticlesAtOnce && particle >= 0 && cells[particle].visited == 1; count++) {
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
            deferred.largest = std::max(deferred.largest, sums[k]);
        }
    }
    return particle;
}
