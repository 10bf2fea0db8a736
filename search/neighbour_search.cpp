#include "search/neighbour_search.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <vector>

#include "growth/state.h"
#include "growth/walker.h"
#include "search/cube_lists.h"

// Initial minimum of the scan: larger than any squared distance in an aggregate.
constexpr double kFarAway = kFarthestPartner * kFarthestPartner;
// Branch lengths outside these bounds are not indexed: every particle is scanned.
constexpr double kShortestBranch = 1e-9;
constexpr double kLongestBranch = 1e9;
// With more association classes than this, all share one clearance map.
constexpr int kMostMaps = 16;
// The maps' extent in branch lengths is a power of this; they are extended when the aggregate outgrows them.
constexpr double kMapGrowth = 1.25;
// The edge of the maps' smallest cubes, in branch lengths: a clearance of three edges leaves room for a flight of two
// branch lengths and its drift.
constexpr double kMapEdge = 1.03;
// Limit on the bytes of the tables that find all maps' blocks: a constant and a share per particle. The edge is
// doubled until they fit.
constexpr double kMapBytes = 1e6;
constexpr double kMapBytesPerParticle = 1;
// Where particles are added one by one, the lists have room for these more: a share of the particles, and some.
constexpr int kSpareShare = 8;
constexpr int kSpareParticles = 1024;

// The scan -----------------------------------------------------------------------------------------------

// Particles attach only to those of their own class, index mod this.
static int Classes()
{
    return growthstate.association && growthstate.nroots > 0 ? growthstate.nroots : 1;
}

namespace
{
// The scan of a walker at `pos` over the first `seen` particles
struct Scan {
    Vector pos;
    int seen;
    int number; // of the particle that the walker will become
    double reach2 = growthstate.branchlength * growthstate.branchlength;
    int classes = Classes();
    int wanted = number % classes;
    double dmin = kFarAway;
    int partner = -1;

    [[nodiscard]] bool IsEligible(int i) const { return classes == 1 || i % classes == wanted; }

    [[nodiscard]] double SquaredDistance(int i) const
    {
        const Vector d = cells[i].p - pos;
        return DotProduct(d, d);
    }

    // The largest signed difference between a coordinate of particle i and the walker's.
    [[nodiscard]] double LargestDifference(int i) const
    {
        const Vector d = cells[i].p - pos;
        return std::max({d.x, d.y, d.z});
    }

    // Returns true when the scan stops at particle i.
    bool Visit(int i)
    {
        const double dx = cells[i].p.x - pos.x;
        if (dx > dmin)
            return false;
        const double dy = cells[i].p.y - pos.y;
        if (dy > dmin)
            return false;
        const double dz = cells[i].p.z - pos.z;
        if (dz > dmin)
            return false;
        const double d2 = dx * dx + dy * dy + dz * dz;
        if (d2 < dmin) {
            dmin = d2;
            partner = i;
        }
        return dmin < reach2;
    }
};
} // namespace

// The index -----------------------------------------------------------------------------------------------

namespace
{
struct NeighbourIndex {
    // What the index was built from; it is rebuilt when any of these has changed.
    const Particle *array = nullptr;
    int count = -1;
    double branchlength = 0;
    int classes = 1;
    Vector newest = {0, 0, 0};

    bool usable = false; // the branch length and all finite positions are within bounds
    CubeLists lists;
    // A map for each class, or one for all particles; none when they would be too large.
    std::vector<ClearanceMap> maps;
    double mapextent = 0;     // distance that they cover from the origin along each axis
    double mapedge = 0;       // edge of their smallest cubes
    bool mapschecked = false; // no particle was added since extent and edge were checked

    // Of the walker of steps: what it found last, and the scale of its last clearance
    FreeBall ball = {{0, 0, 0}, -1};
    int scale = 0;
};
} // namespace

static NeighbourIndex neighbourindex;
static unsigned searchnumber = 0;

static bool IsCurrent();
static bool NewestIsUnmoved();
static void Build();
static bool Insert(int i);
static int WithSpare(int particles);
static void MakeLists(int capacity);
static void List(int i);
static bool IsFinite(Vector p);
static bool MapsFit();
static void MakeMaps();
static bool ExtendMaps();
static int MapCount();
static double MapExtent();
static double MapEdge();
static ClearanceMap *MapOf(int i);
static bool IsWithinBox(Vector p, const SearchNotes &notes, double margin);
static int ScanAll(Scan scan);
static int NewestWithinReach(const Scan &scan, int below);
static int PartnerInOrder(const Scan &scan, int newest);

int FindPartner()
{
    const Vector pos = growthstate.pos;
    if (CurrentFreeBall().Contains(pos))
        return -1;
    PrepareSearch();
    Searcher searcher = {ncells, ncells, neighbourindex.scale};
    const double free = FreeRadius(pos, &searcher);
    neighbourindex.scale = searcher.scale;
    if (free < 0)
        return FindPartnerNear(pos, &searcher);
    neighbourindex.ball = {pos, free * free};
    return -1;
}

FreeBall CurrentFreeBall()
{
    return IsCurrent() ? neighbourindex.ball : FreeBall{{0, 0, 0}, -1};
}

double FreeRadius(Vector p, Searcher *searcher)
{
    if (!neighbourindex.usable || !neighbourindex.lists.Holds(p) || neighbourindex.maps.empty())
        return -1;
    UnsetBit reason;
    const double clearance = MapOf(searcher->number)->Clearance(p, &searcher->scale, &reason);
    if (clearance > 0 && searcher->notes != nullptr)
        searcher->notes->bits.push_back(reason);
    return clearance - growthstate.branchlength;
}

int FindPartnerNear(Vector p, Searcher *searcher)
{
    const Scan scan = {p, searcher->seen, searcher->number};
    if (searcher->notes != nullptr) {
        searcher->notes->searched.push_back(p);
        MinMaxXYZ(&searcher->notes->min, &searcher->notes->max, p);
    }
    if (!neighbourindex.usable || !neighbourindex.lists.Holds(p))
        return ScanAll(scan);
    const int newest = NewestWithinReach(scan, scan.number);
    return growthstate.branchlength >= 1 ? newest : PartnerInOrder(scan, newest);
}

void SearchNotes::Clear()
{
    bits.clear();
    searched.clear();
    min = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
    max = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
}

// A particle at a distance of 1 or more never keeps the scan from a particle within a branch length below 1.
bool StillHold(const SearchNotes &notes, int seen)
{
    for (const UnsetBit &bit : notes.bits)
        if (bit.IsSet())
            return false;
    const double reach = kMargin * std::max(growthstate.branchlength, 1.0);
    for (int i = seen; i < ncells; i++) {
        const Vector p = cells[i].p;
        if (!IsWithinBox(p, notes, reach))
            continue;
        for (const Vector place : notes.searched)
            if (DotProduct(place - p, place - p) < reach * reach)
                return false;
    }
    return true;
}

static bool IsWithinBox(Vector p, const SearchNotes &notes, double margin)
{
    const auto within = [margin](double at, double min, double max) {
        return at > min - margin && at < max + margin;
    };
    return within(p.x, notes.min.x, notes.max.x) && within(p.y, notes.min.y, notes.max.y) &&
           within(p.z, notes.min.z, notes.max.z);
}

unsigned SearchNumber()
{
    return searchnumber;
}

bool ReserveSearch(int particles)
{
    if (!PrepareSearch() || !neighbourindex.usable || neighbourindex.maps.empty())
        return false;
    try {
        if (neighbourindex.lists.Capacity() < particles)
            MakeLists(particles);
        return true;
    } catch (const std::bad_alloc &) {
        neighbourindex = NeighbourIndex();
        return false;
    }
}

bool AddToNeighbourIndex()
{
    if (!neighbourindex.usable || neighbourindex.count != ncells - 1) {
        DropNeighbourIndex();
        return false;
    }
    try {
        neighbourindex.array = cells;
        if (Insert(ncells - 1)) {
            neighbourindex.mapschecked = MapsFit();
            return neighbourindex.mapschecked;
        }
        DropNeighbourIndex();
        return false;
    } catch (const std::bad_alloc &) {
        DropNeighbourIndex();
        return false;
    }
}

bool IsNeighbourIndexCurrent()
{
    return IsCurrent();
}

void MoveNeighbourIndex()
{
    neighbourindex.array = cells;
}

void DropNeighbourIndex()
{
    neighbourindex.array = nullptr;
    neighbourindex.count = -1;
    neighbourindex.ball.radius2 = -1;
}

void FreeNeighbourIndex()
{
    searchnumber++;
    neighbourindex = NeighbourIndex();
}

static bool IsCurrent()
{
    return neighbourindex.array == cells && neighbourindex.count == ncells &&
           neighbourindex.branchlength == growthstate.branchlength && neighbourindex.classes == Classes();
}

static bool NewestIsUnmoved()
{
    const Vector p = ncells > 0 ? cells[ncells - 1].p : Vector{0, 0, 0};
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    return same(p.x, neighbourindex.newest.x) && same(p.y, neighbourindex.newest.y) &&
           same(p.z, neighbourindex.newest.z);
}

bool PrepareSearch()
{
    try {
        if (!IsCurrent() || !NewestIsUnmoved())
            Build();
        else if (neighbourindex.usable && !neighbourindex.mapschecked && !MapsFit())
            MakeMaps();
        neighbourindex.mapschecked = true;
    } catch (const std::bad_alloc &) {
        neighbourindex = NeighbourIndex();
        return false;
    }
    return true;
}

static void Build()
{
    DropNeighbourIndex();
    neighbourindex.branchlength = growthstate.branchlength;
    neighbourindex.classes = Classes();
    neighbourindex.usable =
        growthstate.branchlength >= kShortestBranch && growthstate.branchlength <= kLongestBranch;
    if (neighbourindex.usable) {
        neighbourindex.lists.Start(growthstate.branchlength, WithSpare(ncells));
        neighbourindex.lists.Reserve(WithSpare(ncells));
        neighbourindex.maps.clear();
        for (int i = 0; i < ncells && neighbourindex.usable; i++)
            neighbourindex.usable = Insert(i);
        MakeMaps();
    }
    neighbourindex.array = cells;
    neighbourindex.count = ncells;
    neighbourindex.newest = ncells > 0 ? cells[ncells - 1].p : Vector{0, 0, 0};
}

// Adds a particle to lists and map. Returns false if it is too far away for them. Changes nothing that a search of
// another thread reads except through them.
static bool Insert(int i)
{
    const Vector p = cells[i].p;
    if (IsFinite(p) && !neighbourindex.lists.Holds(p))
        return false;
    if (i >= neighbourindex.lists.Capacity())
        MakeLists(WithSpare(i));
    List(i);
    if (ClearanceMap *map = MapOf(i); map != nullptr)
        map->Mark(p);
    neighbourindex.count = i + 1;
    neighbourindex.newest = p;
    neighbourindex.mapschecked = false;
    neighbourindex.ball.radius2 = -1;
    return true;
}

static int WithSpare(int particles)
{
    return particles + particles / kSpareShare + kSpareParticles;
}

// Makes room in the lists; long lists are made anew with more slots.
static void MakeLists(int capacity)
{
    if (neighbourindex.lists.AreLong(capacity)) {
        neighbourindex.lists.Start(growthstate.branchlength, capacity);
        neighbourindex.lists.Reserve(capacity);
        for (int i = 0; i < neighbourindex.count; i++)
            List(i);
    }
    neighbourindex.lists.Reserve(capacity);
}

// Adds a particle to the lists. One whose position is not finite can never be a partner and is left out.
static void List(int i)
{
    if (IsFinite(cells[i].p))
        neighbourindex.lists.Insert(i, cells[i].p);
}

static bool IsFinite(Vector p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

static bool MapsFit()
{
    return MapExtent() == neighbourindex.mapextent && MapEdge() == neighbourindex.mapedge;
}

static void MakeMaps()
{
    neighbourindex.ball.radius2 = -1;
    neighbourindex.scale = 0;
    searchnumber++;
    const bool islarger = MapExtent() >= neighbourindex.mapextent;
    neighbourindex.mapextent = MapExtent();
    const bool covers = neighbourindex.mapextent / growthstate.branchlength < kFarthestCube;
    const double edge = MapEdge();
    if (covers && islarger && edge == neighbourindex.mapedge && ExtendMaps())
        return;
    neighbourindex.mapedge = edge;
    neighbourindex.maps.clear();
    if (!covers)
        return; // searches then use the lists alone
    neighbourindex.maps.resize(MapCount());
    for (ClearanceMap &map : neighbourindex.maps)
        map.Start(edge, neighbourindex.mapextent);
    for (int i = 0; i < ncells; i++)
        MapOf(i)->Mark(cells[i].p);
}

// Returns false if there is no map, or one cannot be extended.
static bool ExtendMaps()
{
    for (ClearanceMap &map : neighbourindex.maps)
        if (!map.Extend(neighbourindex.mapextent))
            return false;
    return !neighbourindex.maps.empty();
}

static int MapCount()
{
    return neighbourindex.classes <= kMostMaps ? neighbourindex.classes : 1;
}

// Distance from the origin to the maps' borders along each axis: beyond all places where a walker can stick. It
// depends on the aggregate alone, as the edge does, so that clearances far outside do not depend on when the maps
// were made.
static double MapExtent()
{
    double extent = growthstate.branchlength;
    while (extent < AggregateReach() + growthstate.branchlength)
        extent *= kMapGrowth;
    return extent;
}

// The edge of the smallest cubes. It depends on the aggregate alone, so that a resumed run makes the same maps as the
// run it continues.
static double MapEdge()
{
    const auto count = static_cast<double>(std::bit_floor(static_cast<unsigned>(ncells)));
    const double bytes = (kMapBytes + kMapBytesPerParticle * count) / MapCount();
    double edge = kMapEdge * growthstate.branchlength;
    while (ClearanceMap::IndexBytes(edge, AggregateReach()) > bytes)
        edge *= 2;
    return edge;
}

// The map in which particle i is marked, or nullptr without maps.
static ClearanceMap *MapOf(int i)
{
    if (neighbourindex.maps.empty())
        return nullptr;
    return &neighbourindex.maps[i % neighbourindex.maps.size()];
}

static int ScanAll(Scan scan)
{
    for (int i = scan.seen - 1; i >= 0; i--)
        if (scan.IsEligible(i) && scan.Visit(i))
            return scan.partner;
    return -1;
}

// The newest eligible particle nearer than a branch length whose index is below `below`, or -1. With a branch length
// of 1 or more and `below` above all indices, it is the partner: its signed differences are below the branch length, hence
// below its square, hence below the scan's minimum so far, so the scan does not pass it over.
static int NewestWithinReach(const Scan &scan, int below)
{
    int newest = -1;
    neighbourindex.lists.VisitNear(scan.pos, [&](int i) {
        if (i > newest && i < below && scan.SquaredDistance(i) < scan.reach2 && scan.IsEligible(i))
            newest = i;
    });
    return newest;
}

// Below a branch length of 1 the scan can pass over a particle within reach: when a newer particle, not
// itself passed over, has a squared distance below one of its signed differences. Until the scan stops, every
// squared distance that counts is at least the branch length's square; so a particle whose differences do not
// exceed that is never passed over. Where these two facts do not decide, all particles are scanned.
static int PartnerInOrder(const Scan &scan, int newest)
{
    for (int i = newest; i >= 0; i = NewestWithinReach(scan, i)) {
        const double difference = scan.LargestDifference(i);
        if (difference <= scan.reach2)
            return i;
        bool contested = false;
        bool passedover = false;
        const bool searched = neighbourindex.lists.VisitAround(scan.pos, std::sqrt(difference), [&](int q) {
            if (q <= i || !scan.IsEligible(q) || !(scan.SquaredDistance(q) < difference))
                return true;
            contested = true;
            passedover = scan.LargestDifference(q) <= scan.reach2;
            return !passedover;
        });
        if (!searched || (contested && !passedover))
            return ScanAll(scan);
        if (!contested)
            return i;
    }
    return -1;
}
