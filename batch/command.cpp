#include "batch/command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "archive/aggregate_file.h"
#include "base/processors.h"
#include "growth/parameters.h"
#include "growth/state.h"
#include "recipe/arguments.h"
#include "recipe/keys.h"
#include "recipe/recipe_reader.h"

constexpr std::int64_t kDefaultParticles = 100000;
constexpr int kMostThreads = 1024;

namespace
{
// The values of the options as texts
struct Arguments {
    std::string recipe, output, resume, checkpointfile, statistics;
    std::string particles, steps, minutes, seed;
    std::vector<std::string> sets, saves, slices;
    double checkpoint = 10;
    int threads = 0;
    bool continues = false, force = false, quiet = false, printrecipe = false;
};
} // namespace

static Fault Interpret(const Arguments &given, Command *command);
static Fault ReadRecipeAndSettings(const Arguments &given, Recipe *recipe);
static Fault ReadSaves(const Arguments &given, Command *command);
static Fault ReadSlices(const Arguments &given, Command *command);
static std::string ListKinds();

bool ReadCommand(int argc, char **argv, Command *command, Fault *fault)
{
    Arguments given;
    CLI::App app("Grows a diffusion limited aggregate without a window and keeps it in a file.",
                 "sarkelo-grow");
    app.add_option("RECIPE", given.recipe, "What to grow (TOML); without one, the default aggregate")
        ->type_name(" ");
    app.add_option("-o,--output", given.output, "The aggregate file; aggregate.sarkelo.h5 if missing");
    app.add_option("--particles", given.particles, "Stop at N particles; 100000 if no stop is given")
        ->type_name("N");
    app.add_option("--steps", given.steps, "Stop after N steps of walkers")->type_name("N");
    app.add_option("--minutes", given.minutes, "Stop after M minutes")->type_name("M");
    app.add_option("--seed", given.seed, "The same as --set growth.seed=N")->type_name("N");
    app.add_option("--set", given.sets, "Override a value of the recipe")
        ->allow_extra_args(false)
        ->type_name("KEY=VALUE");
    app.add_option("--resume", given.resume,
                   "Continue an aggregate file, and write back to it unless -o names another")
        ->type_name("FILE");
    app.add_flag("--continue", given.continues,
                 "Continue from the output or its checkpoint if there is one, else start");
    app.add_option(
           "--threads", given.threads,
           "Threads for flights; as many as there are processors if missing. The aggregate is the same")
        ->type_name("N");
    app.add_option("--checkpoint", given.checkpoint, "Minutes between checkpoints; 10 if missing, 0 for none")
        ->type_name("M");
    app.add_option("--checkpoint-file", given.checkpointfile, "Where checkpoints go; the output if missing")
        ->type_name("FILE");
    app.add_option("--save", given.saves, "Also save the aggregate in another format; " + ListKinds())
        ->allow_extra_args(false)
        ->type_name("[KIND:]FILE");
    app.add_option("--slices", given.slices,
                   "Cut the aggregate into N slices across a direction, written to a folder")
        ->expected(2)
        ->type_name("N,X,Y,Z DIR");
    app.add_option("--statistics", given.statistics, "Measure the aggregate and write a JSON file")
        ->type_name("FILE");
    app.add_flag("--force", given.force, "Overwrite files that exist");
    app.add_flag("--quiet", given.quiet, "Print no progress");
    app.add_flag("--print-recipe", given.printrecipe, "Print the recipe with every parameter, and exit");
    for (CLI::Option *option : app.get_options())
        option->check(
            [](const std::string &value) { return value.empty() ? "an empty value" : std::string(); });
    if (!ReadArguments(&app, {argv + 1, argv + argc}, fault))
        return false;
    *fault = Interpret(given, command);
    return !*fault;
}

static Fault Interpret(const Arguments &given, Command *command)
{
    command->continues = given.continues;
    command->overwrites = given.force;
    command->quiet = given.quiet;
    command->printsrecipe = given.printrecipe;
    command->resume = given.resume;
    command->output = given.output;
    if (given.output.empty())
        command->output =
            given.resume.empty() ? std::string("aggregate") + kAggregateExtension : given.resume;
    command->checkpoint = given.checkpointfile.empty() ? command->output : given.checkpointfile;
    command->checkpointminutes = given.checkpoint;
    command->statistics = given.statistics;
    if (!given.recipe.empty())
        command->inputs.push_back(given.recipe);
    if (given.threads < 0 || given.threads > kMostThreads)
        return {kRequestFault, "--threads: a number from 1 to " + std::to_string(kMostThreads) +
                                   " is expected, or 0 for as many as there are processors"};
    command->threads = given.threads > 0 ? given.threads : AvailableProcessors();
    if (!(given.checkpoint >= 0))
        return {kRequestFault, "--checkpoint: minutes from 0 on are expected"};
    if (!given.resume.empty() && given.printrecipe)
        return {kRequestFault, "--print-recipe prints a recipe, and --resume needs none"};
    if (!given.resume.empty() && given.continues)
        return {kRequestFault, "--resume and --continue exclude each other"};
    if (!given.resume.empty() && !given.recipe.empty())
        return {kRequestFault,
                "--resume goes on with what the file says: " + given.recipe + " is not needed"};
    if (!given.resume.empty() && !given.seed.empty())
        return {kRequestFault, "--resume goes on with the file's generators: --seed is not allowed"};
    if (Fault fault = ReadRecipeAndSettings(given, &command->recipe))
        return fault;
    for (const std::string &input : {command->recipe.seedfile, command->recipe.surfacefile})
        if (!input.empty())
            command->inputs.push_back(input);
    if (Fault fault = ReadSaves(given, command))
        return fault;
    return ReadSlices(given, command);
}

static Fault ReadRecipeAndSettings(const Arguments &given, Recipe *recipe)
{
    if (!given.recipe.empty())
        if (Fault fault = ReadRecipe(given.recipe, recipe))
            return fault;
    for (const std::string &set : given.sets) {
        const Key *key = FindKey(set.substr(0, set.find('=')));
        if (!given.resume.empty() && key != nullptr && FindGroup(key->table).affectsgrowth)
            return {kRequestFault, "--set " + set + ": with --resume only stop and drawing can be set"};
        if (Fault fault = SetInRecipe(set, "--set " + set, recipe))
            return fault;
    }
    const struct {
        const char *option, *key;
        const std::string &value;
    } shortcuts[] = {
        {"--particles", "stop.particles", given.particles},
        {"--steps", "stop.steps", given.steps},
        {"--minutes", "stop.minutes", given.minutes},
        {"--seed", "growth.seed", given.seed},
    };
    for (const auto &shortcut : shortcuts) {
        if (shortcut.value.empty())
            continue;
        const std::string place = std::string(shortcut.option) + " " + shortcut.value;
        if (Fault fault = SetInRecipe(std::string(shortcut.key) + "=" + shortcut.value, place, recipe))
            return fault;
    }
    if (Fault fault = CheckRecipe(*recipe))
        return fault;
    if (recipe->particles == 0 && recipe->steps == 0 && recipe->minutes == 0 && !given.printrecipe)
        recipe->particles = kDefaultParticles;
    return {};
}

static Fault ReadSaves(const Arguments &given, Command *command)
{
    for (const std::string &save : given.saves) {
        const std::size_t colon = save.find(':');
        const std::string before = save.substr(0, colon);
        const bool named = colon != std::string::npos && before.find_first_of("./") == std::string::npos;
        const std::string path = named ? save.substr(colon + 1) : save;
        std::string extension = std::filesystem::path(path).extension().string();
        extension.erase(0, 1);
        const auto kinds = ModelKinds();
        const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const ModelKind &known) {
            return named ? before == known.name : extension == known.extension;
        });
        std::string wrong;
        if (path.empty())
            wrong = "no file is named";
        else if (kind == kinds.end() && named)
            wrong = "unknown kind " + before;
        else if (kind == kinds.end())
            wrong = "unknown extension \"" + extension + "\"";
        if (!wrong.empty())
            return {kRequestFault, "--save " + save + ": " + wrong.append("; ") + ListKinds()};
        command->saves.push_back({&*kind, path});
    }
    return {};
}

static std::string ListKinds()
{
    std::string list = "kinds:";
    std::string extensions;
    for (const ModelKind &kind : ModelKinds()) {
        list += std::string(" ") + kind.name;
        const std::string extension = std::string(" .") + kind.extension + " ";
        if ((extensions + " ").find(extension) == std::string::npos) {
            list += std::string(" (.") + kind.extension + ")";
            extensions += extension;
        }
    }
    return list;
}

static Fault ReadSlices(const Arguments &given, Command *command)
{
    if (given.slices.empty())
        return {};
    SliceRequest slices = {};
    int end = 0;
    double number = 0;
    Vector &n = slices.normal;
    const std::string &numbers = given.slices[0];
    const int read = sscanf(numbers.c_str(), "%lf,%lf,%lf,%lf%n", &number, &n.x, &n.y, &n.z, &end);
    const Parameter &count = ParameterOf(&options.slicecount);
    const double length = Modulus(n);
    if (read != 4 || numbers[end] != '\0' || number != std::floor(number) || number < count.low ||
        number > count.high || !std::isfinite(length) || !(length > 0))
        return {kRequestFault, "--slices " + numbers +
                                   ": a number of slices from 2 on and a direction are expected: N,X,Y,Z"};
    slices.count = static_cast<int>(number);
    Normalise(&n);
    slices.folder = given.slices[1];
    command->slices = slices;
    return {};
}
