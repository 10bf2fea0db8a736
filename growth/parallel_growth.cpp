#include "growth/parallel_growth.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <vector>

#include "geom/elementary.h"
#include "growth/aggregate.h"
#include "growth/deferred_flows.h"
#include "growth/flights.h"
#include "growth/flows.h"
#include "growth/parameters.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "surface/surface.h"
#include "surface/surface_index.h"

int repeatedwalks = 0;
int fewparticles = 5000;

// Numbers ahead of the next particle that walks may have, for each thread.
constexpr int kWalksAhead = 8;
// Moves of a walk after which its thread looks whether the round is over.
constexpr int kMovesAtOnce = 64;
// Most notes of a walk; with more, it waits for its turn, when it needs none.
constexpr std::size_t kMostNotes = 1000000;
// Particles there is room for in a round: this share of the aggregate more, and some.
constexpr int kRoomShare = 8;
constexpr int kLeastRoom = 4096;
// The time between two calls of poll, and the longest sleep of a thread that has nothing to do.
constexpr std::chrono::milliseconds kPollInterval(10);
constexpr std::chrono::microseconds kIdleWait(200);

namespace
{
using Clock = std::chrono::steady_clock;
using Lock = std::unique_lock<std::mutex>;

// A walk with its notes
struct Slot {
    Walk walk;
    SearchNotes notes;
    long patience; // steps after which growth stops, if it is the next particle's
};

// What walks under way depend on besides the particles that were there when they started
struct Basis {
    unsigned aggregate, surface, search;
    int count, ahead;
    std::vector<double> parameters;
    bool operator==(const Basis &) const = default;
};

// What the threads share. The mutex guards all of it but the limits, which do not change, and what is atomic. The
// records are those of the thread that adds particles; the others know them by `count` to `steptotal`.
struct Team {
    GrowthLimits limits;
    int room = 0;                         // particles at which the round has to end
    Clock::time_point deadline, nextpoll; // of the calling thread

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Slot> slots; // each in one of the three lists that follow, or with a thread
    std::vector<Slot *> unused;
    std::vector<Slot *> paused; // walks under way
    std::vector<Slot *> found;  // walks that have found a place, by number modulo `ahead`, or nullptr
    int ahead = 1;              // numbers from `count` on that walks may have
    int count = 0;              // ncells
    double reach = 0;           // AggregateReach()
    long steptotal = 0;         // growthstate.steptotal
    int next = 0;               // the lowest number that no walk has had yet
    int lastdoubled = -1;       // the last number that two walks had
    bool isadding = false;
    bool isaddingflows = false;
    bool ispolldue = false;         // the calling thread waits for the end of adding
    std::optional<GrowthStop> stop; // why growth stops

    std::atomic<bool> isover = false; // the round ends
    std::atomic<int> publiccount = 0; // `count`, for a look without the mutex
};
} // namespace

static Team team;
static Basis basis;

static GrowthStop GrowInRounds(const GrowthLimits &limits, int threads);
static bool IsOneThreadEnough();
static int LeastForThreads();
static int PrepareRound(int threads);
static void DropWalks(int threads);
static Basis PresentBasis();
static void RunRound(int threads);
static void Work(bool iscaller);
static void WorkUntilOver(bool iscaller, Lock *lock);
static void Poll(Lock *lock);
static Slot *TakeWalk();
static Slot *TakePaused();
static bool IsNoLongerNeeded(const Walk &walk);
static Slot *FoundNext();
static void ContinueTaken(Slot *slot, bool iscaller, Lock *lock);
static bool Continue(Slot *slot, bool iscaller);
static bool HasManyNotes(const Slot &slot);
static std::optional<GrowthStop> FindStop(const Walk &walk);
static void AddFoundParticles(bool iscaller, Lock *lock);
static bool IsOutdated(const Slot &slot);
static void Restart(Slot *slot, int number);
static bool AddToRecords(const Walk &walk);
static void UpdateShared();
static void AddFlows(Lock *lock);
static void EndRound(std::optional<GrowthStop> stop);

GrowthStop GrowFlights(const GrowthLimits &limits, int threads)
{
    GrowthStop stop = GrowthStop::kNoMemory;
    try {
        stop = GrowInRounds(limits, threads);
    } catch (const std::bad_alloc &) {
        // no memory for a round
    }
    if (stop != GrowthStop::kNoMemory)
        return stop;
    basis = {}; // drops all walks
    if (ncells >= limits.particles)
        return GrowthStop::kReached; // memory ran out for a walk that was not needed any more
    growthstate.running = 0;
    return stop;
}

static GrowthStop GrowInRounds(const GrowthLimits &limits, int threads)
{
    team.limits = limits;
    const Clock::time_point now = Clock::now();
    team.deadline = now + std::chrono::microseconds(std::lround(1e6 * std::min(limits.seconds, 1e9)));
    team.nextpoll = std::min(now + kPollInterval, team.deadline);
    team.stop.reset();
    while (!team.stop) {
        if (!growthstate.running)
            return GrowthStop::kNoMemory;
        if (ncells >= limits.particles)
            return GrowthStop::kReached;
        RunRound(PrepareRound(threads));
        basis = PresentBasis();
    }
    return *team.stop;
}

// Before a round --------------------------------------------------------------------------------------------

// Whether walks cannot be made ahead of their turn, or would have to be repeated too often.
static bool IsOneThreadEnough()
{
    return ncells < LeastForThreads() || growthstate.intersectrange > 0 || options.debug != 0;
}

static int LeastForThreads()
{
    return std::max(fewparticles, growthstate.nroots);
}

// Makes what the threads read ready for a round, and keeps the walks that are under way if they are still true. Returns
// the number of threads.
static int PrepareRound(int threads)
{
    team.room = INT_MAX;
    if (threads > 1 && ncells < LeastForThreads())
        team.room = LeastForThreads();
    if (IsOneThreadEnough())
        threads = 1;
    if (threads > 1) {
        const long wanted = long{ncells} + ncells / kRoomShare + kLeastRoom;
        if (ParticleCapacity() - ncells < kLeastRoom / 2)
            ReserveParticles(static_cast<int>(std::min<long>(INT_MAX, wanted)));
        team.room = ParticleCapacity();
        if (team.room == ncells || !ReserveSearch(team.room) || !PrepareFaceSearch()) {
            threads = 1;
            team.room = INT_MAX;
        }
    }
    if (!PrepareSearch()) // without it, walks would know no free space and go other ways
        throw std::bad_alloc();
    team.ahead = threads == 1 ? 1 : kWalksAhead * threads;
    if (basis != PresentBasis())
        DropWalks(threads);
    team.lastdoubled = -1;
    team.isadding = team.isaddingflows = team.ispolldue = false;
    team.isover = false;
    UpdateShared();
    return threads;
}

static void DropWalks(int threads)
{
    team.slots.resize(team.ahead + threads);
    team.unused.clear();
    for (Slot &slot : team.slots)
        team.unused.push_back(&slot);
    team.paused.clear();
    team.paused.reserve(team.slots.size());
    team.found.assign(team.ahead, nullptr);
    team.next = ncells;
}

static Basis PresentBasis()
{
    Basis present = {AggregateNumber(), SurfaceNumber(), SearchNumber(), ncells, team.ahead, {}};
    for (const Parameter &parameter : Parameters())
        if (FindGroup(parameter.group).affectsgrowth)
            present.parameters.push_back(ParameterValue(parameter));
    return present;
}

static void RunRound(int threads)
{
    if (threads > 1 && AreFlowsDeferred() && !IsLargestFlowKnown(ncells)) {
        SettleFlows();
        FindLargestFlow();
    }
    {
        std::vector<std::jthread> others;
        try {
            for (int i = 1; i < threads; i++)
                others.emplace_back(Work, false);
        } catch (const std::exception &) {
            // without memory or permission for more, the threads that there are have to do
        }
        Work(true);
    }
    if (threads > 1 && AreFlowsDeferred())
        KeepLargestFlow();
}

// A thread of the round -------------------------------------------------------------------------------------

static void Work(bool iscaller)
{
    Lock lock(team.mutex);
    try {
        WorkUntilOver(iscaller, &lock);
    } catch (const std::bad_alloc &) {
        if (!lock.owns_lock())
            lock.lock();
        EndRound(GrowthStop::kNoMemory);
    }
    if (!iscaller)
        FreeElementaryCaches();
}

static void WorkUntilOver(bool iscaller, Lock *lock)
{
    while (!team.isover) {
        if (iscaller && Clock::now() >= team.nextpoll)
            team.ispolldue = true; // keeps others from adding particles
        if (iscaller && team.ispolldue && !team.isadding)
            Poll(lock);
        else if (!team.ispolldue && !team.isadding && FoundNext() != nullptr)
            AddFoundParticles(iscaller, lock);
        else if (!iscaller && !team.isaddingflows && AreManyFlowsDeferred(team.count))
            AddFlows(lock);
        else if (Slot *const slot = TakeWalk(); slot != nullptr)
            ContinueTaken(slot, iscaller, lock);
        else
            team.changed.wait_for(*lock, kIdleWait);
    }
}

static void Poll(Lock *lock)
{
    team.isadding = true;
    lock->unlock();
    const bool goeson = Clock::now() < team.deadline && (!team.limits.poll || team.limits.poll());
    lock->lock();
    team.isadding = team.ispolldue = false;
    team.nextpoll = std::min(Clock::now() + kPollInterval, team.deadline);
    if (!goeson)
        EndRound(GrowthStop::kPause);
}

// Takes a walk that is paused, or starts one of the next number. When all numbers ahead are taken, the next particle's
// is walked a second time, in case the system has put its thread aside. Returns nullptr if there is nothing to walk.
static Slot *TakeWalk()
{
    if (Slot *const slot = TakePaused(); slot != nullptr)
        return slot;
    const int end = std::min({team.limits.particles, team.room, team.count + team.ahead});
    int number = team.next;
    if (number < end)
        team.next++;
    else if (team.ahead > 1 && !team.isadding && team.lastdoubled < team.count)
        number = team.lastdoubled = team.count;
    else
        return nullptr;
    Slot *const slot = team.unused.back();
    team.unused.pop_back();
    Restart(slot, number);
    return slot;
}

// Takes the paused walk with the lowest number that can go on, or returns nullptr. One with many notes goes on when its
// turn comes, from its start.
static Slot *TakePaused()
{
    Slot *taken = nullptr;
    std::size_t kept = 0;
    for (Slot *const slot : team.paused) {
        const int number = slot->walk.searcher.number;
        if (IsNoLongerNeeded(slot->walk)) {
            team.unused.push_back(slot);
            continue;
        }
        team.paused[kept++] = slot;
        if ((taken == nullptr || number < taken->walk.searcher.number) &&
            (number == team.count || !HasManyNotes(*slot)))
            taken = slot;
    }
    team.paused.resize(kept);
    if (taken == nullptr)
        return nullptr;
    team.paused.erase(std::find(team.paused.begin(), team.paused.end(), taken));
    if (HasManyNotes(*taken))
        Restart(taken, taken->walk.searcher.number);
    return taken;
}

// Whether a walk's particle has been added, or another walk has found its place.
static bool IsNoLongerNeeded(const Walk &walk)
{
    return walk.searcher.number < team.count || team.found[walk.searcher.number % team.ahead] != nullptr;
}

// The walk that has found the place of the next particle, or nullptr.
static Slot *FoundNext()
{
    return team.found[team.count % team.ahead];
}

// Starts a walk anew among the particles that have been added. That of the next particle needs no notes, since no other
// particle can be added before it.
static void Restart(Slot *slot, int number)
{
    StartWalk(number, team.count, team.reach, number > team.count ? &slot->notes : nullptr, &slot->walk);
}

static void ContinueTaken(Slot *slot, bool iscaller, Lock *lock)
{
    const Walk &walk = slot->walk;
    slot->patience = std::min(team.limits.stallsteps, team.limits.steps - team.steptotal);
    lock->unlock();
    const bool isfound = Continue(slot, iscaller);
    lock->lock();
    if (IsNoLongerNeeded(walk)) {
        team.unused.push_back(slot);
    } else if (isfound) {
        team.found[walk.searcher.number % team.ahead] = slot;
    } else {
        if (walk.searcher.number == team.count && !team.isadding) {
            if (IsOutdated(*slot))
                Restart(slot, team.count);
            else if (const auto stop = FindStop(walk))
                EndRound(stop);
        }
        team.paused.push_back(slot);
    }
    if (team.ahead == 1 && !growthstate.running) // no memory for the index of the surface
        EndRound(GrowthStop::kNoMemory);
}

// Continues a walk until it has found a place, or its thread has to look after something else. Returns whether it has.
static bool Continue(Slot *slot, bool iscaller)
{
    Walk &walk = slot->walk;
    while (!ContinueWalk(kMovesAtOnce, &walk))
        if (walk.steps >= slot->patience || HasManyNotes(*slot) || team.isover ||
            team.publiccount > walk.searcher.number || (iscaller && Clock::now() >= team.nextpoll))
            return false;
    return true;
}

static bool HasManyNotes(const Slot &slot)
{
    return slot.walk.searcher.notes != nullptr &&
           slot.notes.bits.size() + slot.notes.searched.size() > kMostNotes;
}

// Why growth stops before the particle of a walk in its turn, if it does.
static std::optional<GrowthStop> FindStop(const Walk &walk)
{
    if (walk.steps >= team.limits.stallsteps)
        return GrowthStop::kStalled;
    if (walk.steps > team.limits.steps - team.steptotal)
        return GrowthStop::kReached;
    return std::nullopt;
}

// Adds the particles whose walks have found their places, as far as the next one that has not.
static void AddFoundParticles(bool iscaller, Lock *lock)
{
    team.isadding = true;
    for (Slot *slot; !team.isover && !team.ispolldue && (slot = FoundNext()) != nullptr;) {
        if (iscaller && Clock::now() >= team.nextpoll)
            break;
        lock->unlock();
        const bool isoutdated = IsOutdated(*slot);
        lock->lock();
        if (isoutdated) {
            team.found[slot->walk.searcher.number % team.ahead] = nullptr;
            Restart(slot, team.count);
            team.paused.push_back(slot);
            break;
        }
        if (const auto stop = FindStop(slot->walk)) {
            EndRound(stop);
            break;
        }
        lock->unlock();
        const bool isprepared = AddToRecords(slot->walk);
        lock->lock();
        if (!growthstate.running) {
            EndRound(GrowthStop::kNoMemory);
            break;
        }
        team.found[slot->walk.searcher.number % team.ahead] = nullptr;
        team.unused.push_back(slot);
        UpdateShared();
        if (ncells >= team.limits.particles)
            EndRound(GrowthStop::kReached);
        else if (!isprepared || ncells >= team.room)
            EndRound(std::nullopt);
    }
    team.isadding = false;
    team.changed.notify_all();
}

// Whether a particle that was added after the walk had started may have changed it.
static bool IsOutdated(const Slot &slot)
{
    const Walk &walk = slot.walk;
    if (walk.searcher.seen == ncells)
        return false;
    return (repeatedwalks > 0 && walk.searcher.number % repeatedwalks == 0) ||
           walk.reach != AggregateReach() || !StillHold(slot.notes, walk.searcher.seen);
}

// Adds the particle that a walk has found a place for. Returns false if the search has to be prepared again, or memory
// does not suffice.
static bool AddToRecords(const Walk &walk)
{
    if (!AddParticle(walk.pos, walk.partner))
        return false;
    UpdateRadius();
    const bool isprepared = AddToNeighbourIndex();
    if (team.ahead == 1 || !AreFlowsDeferred())
        AddFlowOfNewest();
    for (long i = 0; i < walk.launches; i++)
        RecordLaunch(walk.launched[i % kSeedRing]);
    growthstate.pos = walk.pos;
    growthstate.stepcount = 0;
    growthstate.steptotal += walk.steps;
    return isprepared;
}

// Brings what the threads know of the records up to date.
static void UpdateShared()
{
    team.count = ncells;
    team.publiccount = ncells;
    team.reach = AggregateReach();
    team.steptotal = growthstate.steptotal;
    team.next = std::max(team.next, team.count);
}

static void AddFlows(Lock *lock)
{
    team.isaddingflows = true;
    const int end = team.count;
    lock->unlock();
    AddDeferredFlowsBefore(end);
    lock->lock();
    FinishDeferredFlows(end);
    team.isaddingflows = false;
}

// Ends the round; growth stops if there is a reason to.
static void EndRound(std::optional<GrowthStop> stop)
{
    team.isover = true;
    if (!team.stop || stop == GrowthStop::kNoMemory)
        team.stop = stop;
}
