#include "recipe/start.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <span>
#include <string>

#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "recipe/recipe_reader.h"
#include "search/neighbour_search.h"
#include "surface/samples.h"
#include "surface/stl_reader.h"
#include "surface/surface.h"

// Largest distance of the surface's corners from the origin: walking squares distances, which could overflow.
constexpr double kFarthest = 1e150;
// Launch radius, in branch lengths, from which on a walker's steps are lost in rounding
constexpr double kFarthestLaunch = 1e17;

static Fault StartSurface(const Recipe &recipe);
static Fault ReadSurface(const Recipe &recipe);
static bool IsCutShort(const std::string &path);
static Fault CheckCorners(const Recipe &recipe);
static Fault StartRoots(const Recipe &recipe);
static Fault CheckGrowth(const Recipe &recipe);

Fault StartRun(const Recipe &recipe)
{
    if (Fault fault = CheckRecipe(recipe))
        return fault;
    InitialiseGrowth();
    for (const ParameterGroup &group : ParameterGroups()) {
        if (group.isinrecipes)
            SetDefaults(group.name);
        if (strcmp(group.name, "roots") != 0) // StartRoots sets these, in its own order
            ApplyGroup(recipe, group.name);
    }
    if (Fault fault = StartSurface(recipe))
        return fault;
    if (Fault fault = StartRoots(recipe))
        return fault;
    return CheckGrowth(recipe);
}

void ApplyGroup(const Recipe &recipe, const char *group)
{
    const std::span<const Parameter> rows = Parameters();
    for (std::size_t i = 0; i < rows.size(); i++)
        if (strcmp(rows[i].group, group) == 0 &&
            recipe.places.contains(std::string(group) + "." + rows[i].key))
            SetParameter(rows[i], recipe.values[i]);
}

static Fault StartSurface(const Recipe &recipe)
{
    if (!recipe.surfacefile.empty()) {
        if (Fault fault = ReadSurface(recipe))
            return fault;
    } else {
        for (const Sample &sample : Samples())
            if (recipe.sample == sample.name && !BuildSample(sample.id))
                return {kMemoryFault, "memory does not hold the surface " + recipe.sample};
    }
    const Recipe plain;
    if (recipe.scale != plain.scale || recipe.rotate != plain.rotate || recipe.shift != plain.shift)
        TransformSTL(recipe.scale, recipe.shift, recipe.rotate);
    return CheckCorners(recipe);
}

static Fault ReadSurface(const Recipe &recipe)
{
    std::error_code error;
    const std::string about = recipe.PlaceOf("surface.file") + ": surface.file " + recipe.surfacefile;
    if (std::filesystem::is_directory(recipe.surfacefile, error))
        return {kFileFault, about + ": is a directory"};
    if (IsCutShort(recipe.surfacefile))
        return {kFileFault, about + ": cut short: it announces more faces than it holds"};
    switch (ReadSTLFile(recipe.surfacefile.c_str())) {
    case kSTLRead:
        break;
    case kSTLUnopened:
        return {kFileFault, about + ": " + strerror(errno)};
    case kSTLBadVertices:
        return {kFileFault, about + ": a face without three vertices"};
    case kSTLShortHeader:
        return {kFileFault, about + ": not an STL file: too short"};
    case kSTLBadCount:
        return {kFileFault, about + ": not an STL file: more than 10,000,000 faces announced"};
    case kSTLOutOfMemory:
        return {kMemoryFault, about + ": memory does not hold its faces"};
    }
    if (nstltri == 0)
        return {kFileFault, about + ": has no face"};
    return {};
}

// Whether a binary STL file has fewer faces than it announces: the reader would fill up with copies of the last face.
// Only the attribute bytes of the last face may be missing.
static bool IsCutShort(const std::string &path)
{
    constexpr std::uintmax_t kHeader = 80, kCount = 4, kFace = 50, kAttribute = 2;
    FILE *file = fopen(path.c_str(), "r");
    if (file == nullptr)
        return false; // the reader reports the reason
    char line[7];
    ReadLine(file, line, 6);
    int32_t faces = 0;
    const bool counted = strstr(line, "solid") == nullptr && fseek(file, kHeader, SEEK_SET) == 0 &&
                         ReadInt(file, &faces, options.byteswap) == 1 && faces > 0;
    fclose(file);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    const auto count = static_cast<std::uintmax_t>(faces);
    return counted && !error && size < kHeader + kCount + kFace * count - kAttribute;
}

static Fault CheckCorners(const Recipe &recipe)
{
    for (int i = 0; i < nstltri; i++)
        for (const Vector corner : stltri[i].p)
            if (!(Modulus(corner) < kFarthest))
                return {kRequestFault,
                        recipe.PlaceOf(recipe.surfacefile.empty() ? "surface.scale" : "surface.file") +
                            ": face " + std::to_string(i + 1) +
                            " has a corner that is not a finite position"};
    return {};
}

// Places the roots, with the number of roots set last, as a user of the settings panel may do.
static Fault StartRoots(const Recipe &recipe)
{
    std::error_code error;
    if (!recipe.seedfile.empty()) {
        const std::string about = recipe.PlaceOf("roots.file") + ": roots.file " + recipe.seedfile;
        if (std::filesystem::is_directory(recipe.seedfile, error))
            return {kFileFault, about + ": is a directory"};
        switch (ReadSeedFile(recipe.seedfile.c_str())) {
        case kSeedFileRead:
            break;
        case kSeedFileUnopened:
            return {kFileFault, about + ": " + strerror(errno)};
        case kSeedFileEmpty:
            return {kFileFault, about + ": has no root: three numbers a root are expected"};
        case kSeedFileOutOfMemory:
            return {kMemoryFault, about + ": memory does not hold its roots"};
        }
        for (int i = 0; i < ncells; i++)
            if (!std::isfinite(Modulus(cells[i].p)))
                return {kFileFault, about + ": root " + std::to_string(i + 1) + " is not a finite position"};
        return {};
    }
    const auto set = [&](const void *field) {
        const std::size_t row = ParameterIndex(field);
        SetParameter(Parameters()[row], recipe.values[row]);
    };
    set(&growthstate.roottype);
    HandleRootMenu(growthstate.roottype);
    set(&growthstate.rootrange);
    if (!RestartFromRoots())
        return {kMemoryFault, "memory does not hold a root"};
    set(&growthstate.nroots);
    if (!MemoryHoldsRoots() || !RestartFromRoots())
        return {kMemoryFault, recipe.PlaceOf("roots.count") + ": memory does not hold " +
                                  std::to_string(growthstate.nroots) + " roots"};
    return {};
}

// Returns a fault if it is certain that nothing can grow. A walker sticks within a branch length of a particle, and
// does not leave the launch sphere except by drift and rotation.
static Fault CheckGrowth(const Recipe &recipe)
{
    const auto never = [&](const char *key, const std::string &reason) {
        return Fault(kRequestFault, recipe.PlaceOf(key) + ": can never grow: " + reason);
    };
    if (ncells == 0)
        return never("roots.count", "there is no root");
    if (growthstate.branchlength > kFarthestPartner)
        return never("growth.branch_length", "particles farther away than 1e16 are never found");
    const double launchradius = LaunchRadius();
    if (!(launchradius < kFarthestLaunch * growthstate.branchlength))
        return never(recipe.seedfile.empty() ? "roots.range" : "roots.file",
                     "the space is too large to be walked");
    const bool associated = growthstate.association != 0 && growthstate.nroots >= 2;
    if (associated && ncells < growthstate.nroots)
        return never("growth.association",
                     "association needs a root for each class, and the distribution \"Origin\" places one");
    const double reach = launchradius + 2 * growthstate.branchlength;
    int outside = 0;
    for (int i = 0; i < ncells; i++)
        outside += Modulus(cells[i].p) > reach;
    if (outside == ncells || (associated && outside > 0))
        return never("roots.range", "no walker comes as far out as the roots are");
    return {};
}
