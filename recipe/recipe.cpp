#include "recipe/recipe.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <span>
#include <sstream>
#include <string_view>
#include <variant>

#include <toml++/toml.h>

#include "growth/parameters.h"
#include "surface/samples.h"

constexpr double kUnbounded = std::numeric_limits<double>::infinity();
// The largest whole number that a double holds with all smaller ones.
constexpr double kLargestWhole = 9007199254740992.0;

namespace
{
// One key of a recipe that is no parameter of the core's table.
using Place = std::variant<std::size_t, // the row of a parameter
                           std::string Recipe::*, Vector Recipe::*, std::int64_t Recipe::*, double Recipe::*>;
struct Key {
    const char *table, *key;
    Place place;
    double low, high; // of a number
    const char *unit, *sentence;
    bool openlow = false; // low itself is not allowed

    [[nodiscard]] std::string Name() const { return std::string(table) + "." + key; }
};

// Where a value was found, for messages, and what relative paths count from.
struct Origin {
    std::string place; // "FILE:LINE" or the assignment
    std::filesystem::path folder;
};
} // namespace

static const Key kRootKeys[] = {
    {"roots", "file", &Recipe::seedfile, 0, 0, "",
     "A seed file: three numbers a root. In place of distribution, count and range."},
};
static const Key kSurfaceKeys[] = {
    {"surface", "sample", &Recipe::sample, 0, 0, "", "A built-in surface that branches do not cross."},
    {"surface", "file", &Recipe::surfacefile, 0, 0, "", "An STL file in place of a built-in surface."},
    {"surface", "rotate", &Recipe::rotate, -kUnbounded, kUnbounded, "degrees",
     "Turns the surface about the x, then the y, then the z axis; first of the three."},
    {"surface", "scale", &Recipe::scale, -kUnbounded, kUnbounded, "", "Scales it along the three axes."},
    {"surface", "shift", &Recipe::shift, -kUnbounded, kUnbounded, "length", "Shifts it, last."},
};
static const Key kStopKeys[] = {
    {"stop", "particles", &Recipe::particles, 1, INT_MAX, "", "Growth stops at so many particles."},
    {"stop", "steps", &Recipe::steps, 1, kLargestWhole, "", "Growth stops after so many steps of walkers."},
    {"stop", "minutes", &Recipe::minutes, 0, kUnbounded, "minutes", "Growth stops after so long a time.",
     true},
};

static const std::vector<Key> &Keys();
static const Key *FindKey(const std::string &name);
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
static std::string AllowedValues(const Key &key);
static std::string AllowedNames(const Parameter &parameter);
static std::string ParameterText(const Parameter &parameter, double value);
static std::string ValueText(const Key &key, const Recipe &recipe);
static std::string NumberText(double value);
static std::string QuotedText(const std::string &text);

// Reading -------------------------------------------------------------------------------------------------

Recipe::Recipe()
{
    for (const Parameter &parameter : Parameters())
        values.push_back(parameter.standard);
}

std::string Recipe::PlaceOf(const std::string &key) const
{
    const auto place = places.find(key);
    return place != places.end() ? place->second : "recipe";
}

// Returns false, with the reason in errno, where a file cannot be read to its end.
static bool ReadWholeFile(const std::string &path, std::string *text)
{
    FILE *file = fopen(path.c_str(), "r");
    if (file == nullptr)
        return false;
    char buffer[4096];
    std::size_t count = 0;
    while ((count = fread(buffer, 1, sizeof buffer, file)) > 0)
        text->append(buffer, count);
    const bool whole = !ferror(file);
    const int reason = errno;
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
                                   ": no recipe: " + std::string(error.description())};
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

static const std::vector<Key> &Keys()
{
    static const std::vector<Key> keys = [] {
        std::vector<Key> all;
        const auto append = [&](const char *group, std::span<const Key> others) {
            const std::span<const Parameter> rows = Parameters();
            for (std::size_t i = 0; i < rows.size(); i++)
                if (strcmp(rows[i].group, group) == 0)
                    all.push_back({rows[i].group, rows[i].key, i, rows[i].low, rows[i].high, rows[i].unit,
                                   rows[i].sentence});
            all.insert(all.end(), others.begin(), others.end());
        };
        append("growth", {});
        append("roots", kRootKeys);
        append("source", {});
        append("surface", kSurfaceKeys);
        append("drawing", {});
        append("stop", kStopKeys);
        return all;
    }();
    return keys;
}

static const Key *FindKey(const std::string &name)
{
    for (const Key &key : Keys())
        if (key.Name() == name)
            return &key;
    return nullptr;
}

// Insertions, deletions and replacements that make one text of the other.
static std::size_t EditDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); j++)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); i++) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); j++) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
            diagonal = above;
        }
    }
    return row[b.size()];
}

static Fault UnknownKey(const std::string &place, const std::string &name)
{
    const std::vector<Key> &keys = Keys();
    // A key without its table, or a table without its key, is compared with that part alone.
    const bool part = name.find('.') == std::string::npos;
    const auto distance = [&](const Key &key) {
        const std::size_t whole = EditDistance(key.Name(), name);
        return part ? std::min({whole, EditDistance(key.key, name), EditDistance(key.table, name)}) : whole;
    };
    const auto nearest = std::min_element(
        keys.begin(), keys.end(), [&](const Key &a, const Key &b) { return distance(a) < distance(b); });
    return {kRequestFault, place + ": unknown key " + name + "; the nearest known one is " + nearest->Name()};
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
    if (const std::size_t *row = std::get_if<std::size_t>(&key.place)) {
        fault = SetParameterKey(key, Parameters()[*row], value, origin, &number);
        if (!fault)
            recipe->values[*row] = number;
    } else if (const auto *whole = std::get_if<std::int64_t Recipe::*>(&key.place)) {
        fault = SetNumber(key, value, origin, true, &number);
        if (!fault)
            recipe->**whole = static_cast<std::int64_t>(number);
    } else if (const auto *any = std::get_if<double Recipe::*>(&key.place)) {
        fault = SetNumber(key, value, origin, false, &(recipe->**any));
    } else if (const auto *vector = std::get_if<Vector Recipe::*>(&key.place)) {
        fault = SetVector(key, value, origin, &(recipe->**vector));
    } else {
        fault = SetText(key, value, origin, &(recipe->*std::get<std::string Recipe::*>(key.place)));
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
    if (key.place == Place(&Recipe::sample)) {
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
    if (recipe.seedfile.empty())
        return {};
    const Recipe defaults;
    for (const Key &key : Keys()) {
        const std::size_t *row = std::get_if<std::size_t>(&key.place);
        if (strcmp(key.table, "roots") == 0 && row != nullptr && recipe.values[*row] != defaults.values[*row])
            return {kRequestFault, recipe.PlaceOf(key.Name()) + ": " + key.Name() +
                                       " and roots.file are both given: the seed file places all roots"};
    }
    return {};
}

// Texts ---------------------------------------------------------------------------------------------------

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

static std::string AllowedValues(const Key &key)
{
    const auto *row = std::get_if<std::size_t>(&key.place);
    if (row != nullptr && Parameters()[*row].name != nullptr)
        return AllowedNames(Parameters()[*row]);
    if (std::holds_alternative<std::string Recipe::*>(key.place)) {
        if (key.place != Place(&Recipe::sample))
            return "the path of a file";
        std::string names;
        for (const Sample &sample : Samples())
            names += (names.empty() ? "" : ", ") + QuotedText(sample.name);
        return names;
    }
    const bool whole = row != nullptr ? std::holds_alternative<int *>(Parameters()[*row].field)
                                      : std::holds_alternative<std::int64_t Recipe::*>(key.place);
    std::string text = std::holds_alternative<Vector Recipe::*>(key.place) ? "three numbers"
                       : whole                                             ? "whole numbers"
                                                                           : "numbers";
    if (key.openlow)
        text += " above " + NumberText(key.low);
    else if (key.low > -kUnbounded)
        text += " from " + NumberText(key.low);
    if (key.high < kUnbounded)
        text += " to " + NumberText(key.high);
    return text + (*key.unit != '\0' ? std::string(" (") + key.unit + ")" : "");
}

static std::string AllowedNames(const Parameter &parameter)
{
    std::string names;
    for (int code = static_cast<int>(parameter.low); code <= static_cast<int>(parameter.high); code++)
        if (parameter.name(code) != nullptr)
            names += (names.empty() ? "" : ", ") + ParameterText(parameter, code);
    return names;
}

// As a recipe has it.
static std::string ParameterText(const Parameter &parameter, double value)
{
    if (parameter.name == nullptr)
        return NumberText(value);
    const char *name = parameter.name(static_cast<int>(value));
    return parameter.name == SwitchName ? name : QuotedText(name);
}

static std::string ValueText(const Key &key, const Recipe &recipe)
{
    if (const std::size_t *row = std::get_if<std::size_t>(&key.place))
        return ParameterText(Parameters()[*row], recipe.values[*row]);
    if (const auto *whole = std::get_if<std::int64_t Recipe::*>(&key.place))
        return std::to_string(recipe.**whole);
    if (const auto *any = std::get_if<double Recipe::*>(&key.place))
        return NumberText(recipe.**any);
    if (const auto *vector = std::get_if<Vector Recipe::*>(&key.place)) {
        const Vector v = recipe.**vector;
        return "[" + NumberText(v.x) + ", " + NumberText(v.y) + ", " + NumberText(v.z) + "]";
    }
    const std::string &text = recipe.*std::get<std::string Recipe::*>(key.place);
    if (key.place == Place(&Recipe::sample) || text.empty())
        return QuotedText(text);
    std::error_code error; // a path, which is to hold from any folder
    const std::filesystem::path absolute = std::filesystem::absolute(text, error);
    return QuotedText(error ? text : absolute.string());
}

// The shortest text that is read as this number again.
static std::string NumberText(double value)
{
    char text[32];
    for (int digits = 6; digits <= 17; digits++) {
        snprintf(text, sizeof text, "%.*g", digits, value);
        if (strtod(text, nullptr) == value)
            break;
    }
    const std::string whole = std::to_string(static_cast<long long>(std::clamp(value, -1e15, 1e15)));
    return static_cast<double>(strtoll(whole.c_str(), nullptr, 10)) == value ? whole : text;
}

static std::string QuotedText(const std::string &text)
{
    const bool plain = std::none_of(text.begin(), text.end(), [](unsigned char c) {
        return c < ' ' || c == '"' || c == '\\' || c == 0x7f;
    });
    if (plain)
        return '"' + text + '"';
    std::ostringstream quoted;
    quoted << toml::value<std::string>(text);
    return quoted.str();
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
                            !std::holds_alternative<std::size_t>(key.place);
        fprintf(file, "# %s\n# %s%s%s\n", key.sentence, AllowedValues(key).c_str(),
                absent ? "" : "; default: ", absent ? "" : standard.c_str());
        if (absent)
            fprintf(file, "# %s =\n", key.key);
        else
            fprintf(file, "%s = %s\n", key.key, value.c_str());
    }
}
