#include "recipe/recipe_reader.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <variant>

#include <toml++/toml.h>

#include "growth/parameters.h"
#include "recipe/keys.h"
#include "surface/samples.h"

// Largest size of a recipe, bytes
constexpr std::size_t kLongestRecipe = std::size_t{1} << 20;

namespace
{
// Where a value was found, for messages, and the folder from which its relative paths count
struct Origin {
    std::string place; // "FILE:LINE" or the assignment
    std::filesystem::path folder;
};
} // namespace

static Fault UnknownKey(const std::string &place, const std::string &name);
static Fault NotATable(const std::string &place, const std::string &table);
static Fault SetTable(const toml::table &table, const char *name, const Origin &file, Recipe *recipe);
static Fault SetKey(const Key &key, const toml::node &value, const Origin &origin, Recipe *recipe);
static Fault SetParameterKey(const Key &key, const Parameter &parameter, const toml::node &value,
                             const Origin &origin, double *number);
static Fault SetNumber(const Key &key, const toml::node &value, const Origin &origin, bool whole,
                       double *number);
static Fault SetVector(const Key &key, const toml::node &value, const Origin &origin, Vector *vector);
static Fault SetText(const Key &key, const toml::node &value, const Origin &origin, std::string *text);
static Fault BadValue(const Key &key, const toml::node &value, const Origin &origin);

// Returns false, with the reason in errno, if a file cannot be read to its end or exceeds kLongestRecipe.
static bool ReadWholeFile(const std::string &path, std::string *text)
{
    FILE *file = fopen(path.c_str(), "r");
    if (file == nullptr)
        return false;
    char buffer[4096];
    std::size_t count = 0;
    while (text->size() <= kLongestRecipe && (count = fread(buffer, 1, sizeof buffer, file)) > 0)
        text->append(buffer, count);
    const bool ends = text->size() <= kLongestRecipe;
    const bool whole = ends && !ferror(file);
    const int reason = ends ? errno : EFBIG;
    fclose(file);
    errno = reason;
    return whole;
}

static std::string PlaceIn(const std::string &path, const toml::node &node)
{
    return path + ":" + std::to_string(node.source().begin.line);
}

Fault ReadRecipe(const std::string &path, Recipe *recipe)
{
    std::string text;
    if (!ReadWholeFile(path, &text))
        return {kFileFault, path + ": cannot read the recipe: " + strerror(errno)};

    toml::table root;
    try {
        root = toml::parse(text);
    } catch (const toml::parse_error &error) {
        return {kRequestFault, path + ":" + std::to_string(error.source().begin.line) +
                                   ": not a valid recipe: " + std::string(error.description())};
    }
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    for (const auto &[name, node] : root) {
        const std::string table(name.str());
        const Origin origin = {path, folder};
        const std::string place = PlaceIn(path, node);
        const bool empty = !node.is_table() || node.as_table()->empty();
        if (empty &&
            std::none_of(Keys().begin(), Keys().end(), [&](const Key &key) { return table == key.table; }))
            return UnknownKey(place, table);
        if (!node.is_table())
            return NotATable(place, table);
        if (Fault fault = SetTable(*node.as_table(), table.c_str(), origin, recipe))
            return fault;
    }
    return {};
}

Fault SetInRecipe(const std::string &assignment, const std::string &place, Recipe *recipe)
{
    const std::size_t equals = assignment.find('=');
    const Origin origin = {place, {}};
    if (equals == std::string::npos)
        return {kRequestFault, origin.place + ": not of the form KEY=VALUE"};
    const std::string name = assignment.substr(0, equals);
    const std::string value = assignment.substr(equals + 1);
    const Key *key = FindKey(name);
    if (key == nullptr)
        return UnknownKey(origin.place, name);
    toml::table parsed;
    try {
        parsed = toml::parse("value = " + value);
    } catch (const toml::parse_error &) {
        parsed.insert("value", value);
    }
    if (parsed.size() != 1)
        return {kRequestFault, origin.place + ": not of the form KEY=VALUE"};
    return SetKey(*key, *parsed.get("value"), origin, recipe);
}

static Fault UnknownKey(const std::string &place, const std::string &name)
{
    return {kRequestFault,
            place + ": unknown key " + name + "; did you mean " + NearestKey(name).Name() + "?"};
}

static Fault NotATable(const std::string &place, const std::string &table)
{
    return {kRequestFault, place + ": " + table + " is not a table: [" + table + "] is expected"};
}

static Fault SetTable(const toml::table &table, const char *name, const Origin &file, Recipe *recipe)
{
    for (const auto &[key, node] : table) {
        const std::string full = std::string(name) + "." + std::string(key.str());
        const Origin origin = {PlaceIn(file.place, node), file.folder};
        const Key *known = FindKey(full);
        if (known == nullptr)
            return UnknownKey(origin.place, full);
        if (Fault fault = SetKey(*known, node, origin, recipe))
            return fault;
    }
    return {};
}

static Fault SetKey(const Key &key, const toml::node &value, const Origin &origin, Recipe *recipe)
{
    Fault fault;
    double number = 0;
    if (const std::size_t *row = std::get_if<std::size_t>(&key.target)) {
        fault = SetParameterKey(key, Parameters()[*row], value, origin, &number);
        if (!fault)
            recipe->values[*row] = number;
    } else if (const auto *whole = std::get_if<std::int64_t Recipe::*>(&key.target)) {
        fault = SetNumber(key, value, origin, true, &number);
        if (!fault)
            recipe->**whole = static_cast<std::int64_t>(number);
    } else if (const auto *any = std::get_if<double Recipe::*>(&key.target)) {
        fault = SetNumber(key, value, origin, false, &(recipe->**any));
    } else if (const auto *vector = std::get_if<Vector Recipe::*>(&key.target)) {
        fault = SetVector(key, value, origin, &(recipe->**vector));
    } else {
        fault = SetText(key, value, origin, &(recipe->*std::get<std::string Recipe::*>(key.target)));
    }
    if (!fault)
        recipe->places[key.Name()] = origin.place;
    return fault;
}

static Fault SetParameterKey(const Key &key, const Parameter &parameter, const toml::node &value,
                             const Origin &origin, double *number)
{
    if (parameter.name == nullptr)
        return SetNumber(key, value, origin, std::holds_alternative<int *>(parameter.field), number);
    std::string name;
    if (parameter.name == SwitchName && value.is_boolean())
        name = SwitchName(*value.value<bool>());
    else if (parameter.name != SwitchName && value.is_string())
        name = *value.value<std::string>();
    const std::optional<int> code = FindNamed(parameter, name);
    if (!code)
        return BadValue(key, value, origin);
    *number = *code;
    return {};
}

static Fault SetNumber(const Key &key, const toml::node &value, const Origin &origin, bool whole,
                       double *number)
{
    if (!value.is_integer() && (whole || !value.is_floating_point()))
        return BadValue(key, value, origin);
    const double found = *value.value<double>();
    if (!std::isfinite(found) || found < key.low || found > key.high || (key.openlow && found == key.low))
        return BadValue(key, value, origin);
    *number = found;
    return {};
}

static Fault SetVector(const Key &key, const toml::node &value, const Origin &origin, Vector *vector)
{
    const toml::array *numbers = value.as_array();
    if (numbers == nullptr || numbers->size() != 3)
        return BadValue(key, value, origin);
    double components[3];
    for (std::size_t i = 0; i < 3; i++)
        if (SetNumber(key, *numbers->get(i), origin, false, &components[i]))
            return BadValue(key, value, origin);
    *vector = {components[0], components[1], components[2]};
    return {};
}

static Fault SetText(const Key &key, const toml::node &value, const Origin &origin, std::string *text)
{
    if (!value.is_string())
        return BadValue(key, value, origin);
    const std::string found = *value.value<std::string>();
    if (found.find('\0') != std::string::npos)
        return BadValue(key, value, origin);
    if (key.target == KeyTarget(&Recipe::sample)) {
        const auto samples = Samples();
        if (std::none_of(samples.begin(), samples.end(),
                         [&](const Sample &sample) { return found == sample.name; }))
            return BadValue(key, value, origin);
        *text = found;
    } else {
        *text = found.empty() ? "" : (origin.folder / found).string();
    }
    return {};
}

Fault CheckRecipe(const Recipe &recipe)
{
    if (!recipe.surfacefile.empty() && recipe.sample != "None")
        return {kRequestFault, recipe.PlaceOf("surface.file") +
                                   ": surface.file and surface.sample are both given: one surface at a time"};
    if (const auto contradiction = FindContradiction(recipe.values))
        return {kRequestFault, recipe.PlaceOf(contradiction->name) + ": " + contradiction->reason};
    if (recipe.seedfile.empty())
        return {};
    const Recipe defaults;
    for (const Key &key : Keys()) {
        const std::size_t *row = std::get_if<std::size_t>(&key.target);
        if (strcmp(key.table, "roots") == 0 && row != nullptr && recipe.values[*row] != defaults.values[*row])
            return {kRequestFault, recipe.PlaceOf(key.Name()) + ": " + key.Name() +
                                       " and roots.file are both given: the seed file places all roots"};
    }
    return {};
}

static Fault BadValue(const Key &key, const toml::node &value, const Origin &origin)
{
    std::ostringstream found;
    if (value.is_string())
        found << QuotedText(*value.value<std::string>());
    else
        value.visit([&](const auto &node) { found << node; });
    return {kRequestFault,
            origin.place + ": " + key.Name() + " is " + found.str() + "; allowed: " + AllowedValues(key)};
}

void PrintRecipe(FILE *file, const Recipe &recipe)
{
    const Recipe defaults;
    const char *table = "";
    fprintf(file, "# A recipe for sarkelo-grow. Keys that are left out have their defaults.\n");
    for (const Key &key : Keys()) {
        if (strcmp(table, key.table) != 0)
            fprintf(file, "\n[%s]\n", key.table);
        table = key.table;
        const std::string value = ValueText(key, recipe);
        const std::string standard = ValueText(key, defaults);
        // Files and stops have no default.
        const bool absent = value == standard && (value == "\"\"" || value == "0") &&
                            !std::holds_alternative<std::size_t>(key.target);
        fprintf(file, "# %s\n# %s%s%s\n", key.sentence, AllowedValues(key).c_str(),
                absent ? "" : "; default: ", absent ? "" : standard.c_str());
        if (absent)
            fprintf(file, "# %s =\n", key.key);
        else
            fprintf(file, "%s = %s\n", key.key, value.c_str());
    }
}
