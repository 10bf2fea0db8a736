#include "batch/measure.h"

#include <cmath>
#include <new>
#include <vector>

#include <nlohmann/json.hpp>

#include "analysis/box_count.h"
#include "analysis/dimension.h"
#include "base/output_file.h"
#include "geom/elementary.h"

// First level of the box count's fit, the first whose boxes are small enough to show the structure inside the
// aggregate, and least number of particles for the fit to the radius of gyration
constexpr int kFirstLevel = 2;
constexpr int kLeastParticles = 100;

using Json = nlohmann::ordered_json;

static bool Measure(const RunRecord &run, std::string *text);
static Json DescribeBoxCount();
static Json DescribeGyration();
static Json DescribeFit(const LineFit &fit, double first, double last);

Fault WriteStatistics(const std::string &path, const RunRecord &run)
{
    std::string text;
    try {
        if (!Measure(run, &text))
            throw std::bad_alloc();
    } catch (const std::bad_alloc &) {
        return {kMemoryFault, "not enough memory for the statistics"};
    }
    OutputFile file(path.c_str());
    if (file.Stream() != nullptr)
        fprintf(file.Stream(), "%s\n", text.c_str());
    return file.Finish();
}

// Measures the aggregate, and describes it and its run in JSON. Returns false, or throws std::bad_alloc, when memory
// does not suffice.
static bool Measure(const RunRecord &run, std::string *text)
{
    if (!CountBranches() || !StartBoxCount())
        return false;
    while (options.boxcountrequest)
        CountNextBox();
    Json json;
    json["program_version"] = versionid / 100.0;
    json["particles"] = ncells;
    json["steps"] = growthstate.steptotal;
    json["launches"] = nseeds;
    json["seconds"] = run.seconds;
    json["radius"] = growthstate.radius;
    json["radius_of_gyration"] = RadiusOfGyration();
    json["branch_distribution"] = stats.branchcount;
    json["box_count"] = DescribeBoxCount();
    json["number_by_radius_of_gyration"] = DescribeGyration();
    *text = json.dump(2);
    return true;
}

static Json DescribeBoxCount()
{
    Json levels = Json::array();
    double finest = NAN;
    for (int level = 0; level < kBoxLevels; level++) {
        if (stats.boxcount[level] <= 0)
            continue;
        levels.push_back({{"edge", stats.boxsize[level]}, {"count", stats.boxcount[level]}});
        finest = stats.boxsize[level];
    }
    // The file has the slope against log(edge); FitBoxCount returns that against log(1/edge).
    LineFit fit = FitBoxCount(kFirstLevel);
    fit.slope = -fit.slope;
    Json json = DescribeFit(fit, finest, fit.points > 0 ? stats.boxsize[kFirstLevel] : NAN);
    json["levels"] = levels;
    return json;
}

static Json DescribeGyration()
{
    std::vector<double> x, y;
    double first = NAN, last = NAN;
    for (const Gyration &at : GyrationByNumber(kLeastParticles)) {
        if (at.number < kLeastParticles || !(at.radius > 0))
            continue;
        if (x.empty())
            first = at.number;
        last = at.number;
        x.push_back(Logarithm(at.radius));
        y.push_back(Logarithm(at.number));
    }
    return DescribeFit(FitLine(x, y), first, last);
}

// A fit in JSON; `first` and `last` are the range of edges or numbers to which the line was fitted.
static Json DescribeFit(const LineFit &fit, double first, double last)
{
    return {{"slope", fit.slope},
            {"standard_error", fit.slopeerror},
            {"points", fit.points},
            {"range", {first, last}}};
}
