#include "growth/cell_index.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <new>
#include <vector>

#include "growth/state.h"

// Larger than any squared distance in an aggregate: where the scan's minimum starts.
constexpr double kFarAway = 1e32;
// Cells are this much larger than the distance that they stand for, so that a coordinate rounded across a
// cell's border cannot hide a particle.
constexpr double kMargin = 1.01;
// Cells further than this from the origin are not told apart safely; nor are branch lengths outside these
// bounds indexed. Beyond them every particle is scanned.
constexpr double kFarthestCell = 1e9;
constexpr double kShortestBranch = 1e-9;
constexpr double kLongestBranch = 1e9;
// More classes than this share one map of clearances.
constexpr int kMostMaps = 16;
// Where the maps end, in launch radii; they are made anew when the aggregate outgrows them.
constexpr double kMapRoom = 1.25;
// Bytes that the maps may take, together: for themselves and per particle.
constexpr double kMapBytes = 8e6;
constexpr double kMapBytesPerParticle = 40;

// The scan's state, and its test of one particle ----------------------------------------------------------

// Particles attach only to those of their own class, index mod this.
static int Classes()
{
    return growthstate.association && growthstate.nroots > 0 ? growthstate.nroots : 1;
}

struct Scan {
    Vector pos = growthstate.pos;
    double reach2 = growthstate.branchlength * growthstate.branchlength;
    int classes = Classes();
    int wanted = ncells % classes;
    double dmin = kFarAway;
    int partner = -1;

    [[nodiscard]] bool IsEligible(int i) const { return classes == 1 || i % classes == wanted; }

    [[nodiscard]] double SquaredDistance(int i) const
    {
        const Vector d = cells[i].p - pos;
        return DotProduct(d, d);
    }

    // Of particle i's coordinates less the walker's, the largest.
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

// floor() of what fits an int, without a call.
static int Floor(double value)
{
    const int truncated = static_cast<int>(value);
    return truncated - (value < truncated ? 1 : 0);
}

// Lists of particles by cube of space, newest first -------------------------------------------------------

class CellLists
{
public:
    // The eight lists that hold every particle within the reach of a point, and perhaps others. A list may
    // occur twice.
    using Lists = std::array<int, 8>;

    void Start(double reach, int count)
    {
        inverse = 1 / (2 * kMargin * reach);
        std::size_t size = kSmallest;
        while (size < 2 * static_cast<std::size_t>(count))
            size *= 2;
        heads.assign(size, -1);
        next.clear();
        next.reserve(static_cast<std::size_t>(count));
    }

    [[nodiscard]] bool IsFull() const { return next.size() >= heads.size(); }

    [[nodiscard]] bool Holds(Vector p) const
    {
        return std::fabs(p.x) * inverse < kFarthestCell && std::fabs(p.y) * inverse < kFarthestCell &&
               std::fabs(p.z) * inverse < kFarthestCell;
    }

    // Appends the next particle; one that is in no list has no cell.
    void Append(Vector p, bool listed)
    {
        const int i = static_cast<int>(next.size());
        next.push_back(-1);
        if (!listed)
            return;
        int &head = heads[Slot(Cell(p.x, 0), Cell(p.y, 0), Cell(p.z, 0))];
        next.back() = head;
        head = i;
    }

    // The cubes of edge 2 reaches that the ball about p can meet: two along each axis.
    [[nodiscard]] Lists Around(Vector p) const
    {
        const int x = Cell(p.x, 0.5);
        const int y = Cell(p.y, 0.5);
        const int z = Cell(p.z, 0.5);
        Lists lists;
        for (int k = 0; k < 8; k++)
            lists[static_cast<std::size_t>(k)] = heads[Slot(x + k % 2, y + k / 2 % 2, z + k / 4)];
        return lists;
    }

    // Calls visit(q) for the particles q newer than i within a radius of p, and perhaps others, until it
    // returns false. Returns false, without a visit, where that would mean more lists than there are
    // particles.
    template<typename Visit>
    bool VisitNewer(Vector p, double radius, int i, Visit visit) const
    {
        const double span = radius * inverse * kMargin;
        const int n = static_cast<int>(2 * span) + 2;
        if (std::pow(n, 3) > static_cast<double>(next.size()))
            return false;
        const int x0 = Cell(p.x, span);
        const int y0 = Cell(p.y, span);
        const int z0 = Cell(p.z, span);
        for (int z = z0; z < z0 + n; z++)
            for (int y = y0; y < y0 + n; y++)
                for (int x = x0; x < x0 + n; x++)
                    for (int q = heads[Slot(x, y, z)]; q > i; q = Next(q))
                        if (!visit(q))
                            return true;
        return true;
    }

    [[nodiscard]] int Next(int i) const { return next[static_cast<std::size_t>(i)]; }

private:
    static constexpr std::size_t kSmallest = 1024;

    [[nodiscard]] int Cell(double coordinate, double shift) const
    {
        return Floor(coordinate * inverse - shift);
    }

    // Blocks of 4 x 4 x 4 cells lie together in memory; blocks that share a slot share their lists. A slot is
    // made of a part for each coordinate.
    [[nodiscard]] std::size_t Slot(int x, int y, int z) const
    {
        return (Part(x, 73856093U, 0) ^ Part(y, 19349663U, 2) ^ Part(z, 83492791U, 4)) & (heads.size() - 1);
    }

    static std::size_t Part(int coordinate, std::size_t factor, int shift)
    {
        const auto block = static_cast<std::size_t>(coordinate >> 2);
        const auto within = static_cast<std::size_t>(coordinate & 3);
        return block * factor << 6 | within << shift;
    }

    double inverse = 0;     // cells per unit of length
    std::vector<int> heads; // by slot: the newest particle of the list, or -1
    std::vector<int> next;  // by particle: the next older one of its list, or -1
};

// How far the nearest particle is at least, by cube of space ----------------------------------------------

// Levels of cubic cells about the origin, each level's of twice the edge of the level below. A cell's bit is
// set when a particle lies in it or in one of its 26 neighbours; so a point in a cell whose bit is not set is
// at least an edge away from every particle.
class ClearanceMap
{
public:
    // A map of the cube from -extent to extent whose smallest cells have at least the given edge.
    // It takes at most `bytes`, and coarser cells where it must.
    void Start(double smallestedge, double wantedextent, double bytes)
    {
        extent = wantedextent;
        edge = kMargin * smallestedge;
        constexpr double cellsperbyte = 4; // two bits a cell
        while (std::pow(2 * extent / edge + 1, 3) > cellsperbyte * bytes)
            edge *= 2;
        inverse = 1 / edge;
        int size = static_cast<int>(2 * extent / edge) + 1;
        for (;;) {
            levels.push_back(
                Level{size, std::vector<uint64_t>(Words(size)), std::vector<uint64_t>(Words(size))});
            if (size <= kCoarsest)
                break;
            size = (size - 1) / 2 + 1;
        }
        last = 0;
    }

    void Mark(Vector p)
    {
        int x, y, z;
        if (!FindCell(p, &x, &y, &z))
            return;
        for (Level &level : levels) {
            if (!level.Occupy(x, y, z))
                return; // and so are the cells around it, on this level and on those above
            x >>= 1;
            y >>= 1;
            z >>= 1;
        }
    }

    // A distance within which there is no particle of p, or 0 when none is known.
    double Clearance(Vector p)
    {
        int x, y, z;
        if (!FindCell(p, &x, &y, &z))
            return 0;
        if (!levels[0].Contains(x, y, z))
            return 0;
        // Walkers move little between two questions: the search starts beside the last answer's level.
        const int top = static_cast<int>(levels.size()) - 1;
        int l = last < top ? last + 1 : top;
        const auto marked = [&](int k) {
            return levels[static_cast<std::size_t>(k)].IsMarked(x >> k, y >> k, z >> k);
        };
        if (marked(l)) {
            do
                l--;
            while (l >= 0 && marked(l));
        } else {
            while (l < top && !marked(l + 1))
                l++;
        }
        last = l < 0 ? 0 : l;
        return l < 0 ? 0 : std::ldexp(edge, l) / kMargin;
    }

private:
    static constexpr int kCoarsest = 4;

    struct Level {
        int size;                       // cells along each axis
        std::vector<uint64_t> near;     // a particle lies in the cell or in a neighbour
        std::vector<uint64_t> occupied; // a particle lies in the cell

        [[nodiscard]] bool IsMarked(int x, int y, int z) const { return Test(near, x, y, z); }

        [[nodiscard]] bool Contains(int x, int y, int z) const
        {
            return x >= 0 && y >= 0 && z >= 0 && x < size && y < size && z < size;
        }

        // A particle lies in the cell, which may be outside of the map. Returns false where that was known.
        bool Occupy(int x, int y, int z)
        {
            if (Contains(x, y, z)) {
                if (Test(occupied, x, y, z))
                    return false;
                Set(&occupied, x, y, z);
            }
            for (int k = z - 1; k <= z + 1; k++)
                for (int j = y - 1; j <= y + 1; j++)
                    for (int i = x - 1; i <= x + 1; i++)
                        if (Contains(i, j, k))
                            Set(&near, i, j, k);
            return true;
        }

        [[nodiscard]] bool Test(const std::vector<uint64_t> &bits, int x, int y, int z) const
        {
            const std::size_t bit = Bit(x, y, z);
            return (bits[bit / 64] >> (bit % 64) & 1) != 0;
        }

        void Set(std::vector<uint64_t> *bits, int x, int y, int z) const
        {
            const std::size_t bit = Bit(x, y, z);
            (*bits)[bit / 64] |= uint64_t{1} << (bit % 64);
        }

        [[nodiscard]] std::size_t Bit(int x, int y, int z) const
        {
            const auto n = static_cast<std::size_t>(size);
            return (static_cast<std::size_t>(z) * n + static_cast<std::size_t>(y)) * n +
                   static_cast<std::size_t>(x);
        }
    };

    static std::size_t Words(int size)
    {
        const auto n = static_cast<std::size_t>(size);
        return (n * n * n + 63) / 64;
    }

    // The cell of the lowest level; returns false for a point too far away to have one.
    bool FindCell(Vector p, int *x, int *y, int *z) const
    {
        const Vector c = {(p.x + extent) * inverse, (p.y + extent) * inverse, (p.z + extent) * inverse};
        if (!(std::fabs(c.x) < kFarthestCell && std::fabs(c.y) < kFarthestCell &&
              std::fabs(c.z) < kFarthestCell))
            return false;
        *x = Floor(c.x);
        *y = Floor(c.y);
        *z = Floor(c.z);
        return true;
    }

    std::vector<Level> levels; // the finest first
    double extent = 0;
    double edge = 0;    // of the finest cells
    double inverse = 0; // its reciprocal
    int last = 0;       // level of the last answer
};

// The index -----------------------------------------------------------------------------------------------

struct CellIndex {
    // What it was built from; anything else than this, and it is built anew.
    const Particle *array = nullptr;
    int count = -1;
    double branchlength = 0;
    int classes = 1;
    Vector newest = {0, 0, 0};

    bool usable = false; // every particle has a cell
    CellLists lists;
    // A map for each class, or one for all particles. None: nothing is known to be clear.
    std::vector<ClearanceMap> maps;
    double mapextent = 0; // what they were made to cover

    // A ball that is free of walkers' partners: no particle lies within a branch length of a point in it.
    Vector freecentre = {0, 0, 0};
    double freeradius2 = -1;
};

static CellIndex cellindex;

static bool IsCurrent();
static bool NewestIsUnmoved();
static bool Prepare();
static void Build();
static void Insert(int i);
static void MakeMaps();
static ClearanceMap *MapOf(int i);
static double LaunchRadius();
static int ScanAll();
static int NewestWithinReach(int below);
static int PartnerInOrder(int newest);

int FindPartner()
{
    const Vector pos = growthstate.pos;
    if (IsCurrent()) {
        const Vector moved = pos - cellindex.freecentre;
        if (DotProduct(moved, moved) < cellindex.freeradius2)
            return -1;
    }
    if (!Prepare() || !cellindex.lists.Holds(pos))
        return ScanAll();

    if (ClearanceMap *map = MapOf(ncells); map != nullptr) {
        const double free = map->Clearance(pos) - growthstate.branchlength;
        if (free >= 0) {
            cellindex.freecentre = pos;
            cellindex.freeradius2 = free * free;
            return -1;
        }
    }
    const int newest = NewestWithinReach(ncells);
    return growthstate.branchlength >= 1 ? newest : PartnerInOrder(newest);
}

void AddToCellIndex()
{
    if (!cellindex.usable || cellindex.count != ncells - 1 || cellindex.lists.IsFull()) {
        DropCellIndex();
        return;
    }
    try {
        cellindex.array = cells;
        Insert(ncells - 1);
    } catch (const std::bad_alloc &) {
        DropCellIndex();
    }
}

void DropCellIndex()
{
    cellindex.array = nullptr;
    cellindex.count = -1;
    cellindex.freeradius2 = -1;
}

static bool IsCurrent()
{
    return cellindex.array == cells && cellindex.count == ncells &&
           cellindex.branchlength == growthstate.branchlength && cellindex.classes == Classes();
}

static bool NewestIsUnmoved()
{
    const Vector p = ncells > 0 ? cells[ncells - 1].p : Vector{0, 0, 0};
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    return same(p.x, cellindex.newest.x) && same(p.y, cellindex.newest.y) && same(p.z, cellindex.newest.z);
}

// Makes the index current. Returns false where the aggregate cannot be indexed, or memory does not suffice.
static bool Prepare()
{
    try {
        if (!IsCurrent() || !NewestIsUnmoved())
            Build();
        else if (cellindex.usable && LaunchRadius() > cellindex.mapextent)
            MakeMaps();
    } catch (const std::bad_alloc &) {
        cellindex = CellIndex();
        return false;
    }
    return cellindex.usable;
}

static void Build()
{
    DropCellIndex();
    cellindex.branchlength = growthstate.branchlength;
    cellindex.classes = Classes();
    cellindex.usable =
        growthstate.branchlength >= kShortestBranch && growthstate.branchlength <= kLongestBranch;
    if (cellindex.usable) {
        cellindex.lists.Start(growthstate.branchlength, ncells);
        cellindex.maps.clear();
        for (int i = 0; i < ncells && cellindex.usable; i++)
            Insert(i);
        MakeMaps();
    }
    cellindex.array = cells;
    cellindex.count = ncells;
    cellindex.newest = ncells > 0 ? cells[ncells - 1].p : Vector{0, 0, 0};
}

// A particle that is not at a finite place is nobody's partner and is left out.
static void Insert(int i)
{
    const Vector p = cells[i].p;
    const bool finite = std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    cellindex.usable = cellindex.usable && (!finite || cellindex.lists.Holds(p));
    if (!cellindex.usable)
        return;
    cellindex.lists.Append(p, finite);
    if (ClearanceMap *map = MapOf(i); map != nullptr)
        map->Mark(p);
    cellindex.count = i + 1;
    cellindex.newest = p;
    cellindex.freeradius2 = -1;
}

static void MakeMaps()
{
    cellindex.maps.clear();
    cellindex.freeradius2 = -1;
    cellindex.mapextent = kMapRoom * (LaunchRadius() + growthstate.branchlength);
    if (!(cellindex.mapextent / growthstate.branchlength < kFarthestCell))
        return; // searched without a map
    const int count = cellindex.classes <= kMostMaps ? cellindex.classes : 1;
    const double bytes = (kMapBytes + kMapBytesPerParticle * ncells) / count;
    cellindex.maps.resize(static_cast<std::size_t>(count));
    for (ClearanceMap &map : cellindex.maps)
        map.Start(kMargin * growthstate.branchlength, cellindex.mapextent, bytes);
    for (int i = 0; i < ncells; i++)
        MapOf(i)->Mark(cells[i].p);
}

// The map that a particle of index i is marked in, or nullptr.
static ClearanceMap *MapOf(int i)
{
    if (cellindex.maps.empty())
        return nullptr;
    return &cellindex.maps[static_cast<std::size_t>(i) % cellindex.maps.size()];
}

static double LaunchRadius()
{
    return 2 * growthstate.branchlength + growthstate.radius;
}

static int ScanAll()
{
    Scan scan;
    for (int i = ncells - 1; i >= 0; i--)
        if (scan.IsEligible(i) && scan.Visit(i))
            return scan.partner;
    return -1;
}

// The newest eligible particle nearer than a branch length whose index is below `below`. Where the branch
// length is 1 or more, the newest of all is the partner: no signed difference of its coordinates exceeds the
// branch length, nor the square of that, nor the scan's minimum before it.
static int NewestWithinReach(int below)
{
    const Scan scan;
    int newest = -1;
    for (int i : cellindex.lists.Around(scan.pos)) {
        for (; i > newest; i = cellindex.lists.Next(i)) {
            if (i < below && scan.SquaredDistance(i) < scan.reach2 && scan.IsEligible(i)) {
                newest = i;
                break;
            }
        }
    }
    return newest;
}

// Below a branch length of 1 the scan can pass over a particle within reach: when a newer particle, not
// itself passed over, has a squared distance below one of its signed differences. Until the scan stops, every
// squared distance that counts is at least the branch length's square; so a particle whose differences do not
// exceed that is never passed over. Where these two facts do not decide, the scan does.
static int PartnerInOrder(int newest)
{
    const Scan scan;
    for (int i = newest; i >= 0; i = NewestWithinReach(i)) {
        const double difference = scan.LargestDifference(i);
        if (difference <= scan.reach2)
            return i;
        bool contested = false;
        bool passedover = false;
        const bool searched = cellindex.lists.VisitNewer(scan.pos, std::sqrt(difference), i, [&](int q) {
            if (!scan.IsEligible(q) || !(scan.SquaredDistance(q) < difference))
                return true;
            contested = true;
            passedover = scan.LargestDifference(q) <= scan.reach2;
            return !passedover;
        });
        if (!searched || (contested && !passedover))
            return ScanAll();
        if (!contested)
            return i;
    }
    return -1;
}
