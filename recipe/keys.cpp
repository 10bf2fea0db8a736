#include "recipe/keys.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <span>
#include <sstream>
#include <string_view>

#include <toml++/toml.h>

#include "growth/parameters.h"
#include "surface/samples.h"

constexpr double kUnbounded = std::numeric_limits<double>::infinity();
// The largest whole number up to which a double holds all whole numbers
constexpr double kLargestWhole = 9007199254740992.0;

// The keys that are not parameters
static const Key kOtherKeys[] = {
    {"roots", "file", &Recipe::seedfile, 0, 0, "",
     "A seed file: three numbers a root. In place of distribution, count and range."},
    {"surface", "sample", &Recipe::sample, 0, 0, "", "A built-in surface that branches do not cross."},
    {"surface", "file", &Recipe::surfacefile, 0, 0, "", "An STL file in place of a built-in surface."},
    {"surface", "rotate", &Recipe::rotate, -kUnbounded, kUnbounded, "degrees",
     "Turns the surface about the x, then the y, then the z axis; first of the three."},
    {"surface", "scale", &Recipe::scale, -kUnbounded, kUnbounded, "",
     "Scales the surface along the three axes."},
    {"surface", "shift", &Recipe::shift, -kUnbounded, kUnbounded, "length",
     "Shifts the surface along the three axes; last of the three."},
    {"stop", "particles", &Recipe::particles, 1, INT_MAX, "", "Growth stops at so many particles."},
    {"stop", "steps", &Recipe::steps, 1, kLargestWhole, "", "Growth stops after so many steps of walkers."},
    {"stop", "minutes", &Recipe::minutes, 0, kUnbounded, "minutes", "Growth stops after so long a time.",
     true},
};

static std::size_t EditDistance(std::string_view a, std::string_view b);
static std::string AllowedNames(const Parameter &parameter);
static std::string ParameterText(const Parameter &parameter, double value);
static std::string NumberText(double value);

const std::vector<Key> &Keys()
{
    static const std::vector<Key> keys = [] {
        std::vector<Key> all;
        const std::span<const Parameter> rows = Parameters();
        for (const ParameterGroup &group : ParameterGroups()) {
            for (std::size_t i = 0; i < rows.size() && group.isinrecipes; i++)
                if (strcmp(rows[i].group, group.name) == 0)
                    all.push_back({rows[i].group, rows[i].key, i, rows[i].low, rows[i].high, rows[i].unit,
                                   rows[i].sentence});
            std::copy_if(std::begin(kOtherKeys), std::end(kOtherKeys), std::back_inserter(all),
                         [&](const Key &key) { return strcmp(key.table, group.name) == 0; });
        }
        return all;
    }();
    return keys;
}

const Key *FindKey(const std::string &name)
{
    for (const Key &key : Keys())
        if (key.Name() == name)
            return &key;
    return nullptr;
}

const Key &NearestKey(const std::string &name)
{
    const std::vector<Key> &keys = Keys();
    // A name without a dot is also compared with the key and with the table alone.
    const bool part = name.find('.') == std::string::npos;
    const auto distance = [&](const Key &key) {
        const std::size_t whole = EditDistance(key.Name(), name);
        return part ? std::min({whole, EditDistance(key.key, name), EditDistance(key.table, name)}) : whole;
    };
    return *std::min_element(keys.begin(), keys.end(),
                             [&](const Key &a, const Key &b) { return distance(a) < distance(b); });
}

// The least number of insertions, deletions and replacements of characters that turn one text into the other
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

std::string AllowedValues(const Key &key)
{
    const auto *row = std::get_if<std::size_t>(&key.target);
    if (row != nullptr && Parameters()[*row].name != nullptr)
        return AllowedNames(Parameters()[*row]);
    if (std::holds_alternative<std::string Recipe::*>(key.target)) {
        if (key.target != KeyTarget(&Recipe::sample))
            return "the path of a file";
        std::string names;
        for (const Sample &sample : Samples())
            names += (names.empty() ? "" : ", ") + QuotedText(sample.name);
        return names;
    }
    const bool iswhole = std::holds_alternative<std::int64_t Recipe::*>(key.target) ||
                         (row != nullptr && std::holds_alternative<int *>(Parameters()[*row].field));
    std::string text = iswhole ? "whole numbers" : "numbers";
    if (std::holds_alternative<Vector Recipe::*>(key.target))
        text = "three numbers";
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

// The value of a parameter as TOML text
static std::string ParameterText(const Parameter &parameter, double value)
{
    if (parameter.name == nullptr)
        return NumberText(value);
    const char *name = parameter.name(static_cast<int>(value));
    return parameter.name == SwitchName ? name : QuotedText(name);
}

std::string ValueText(const Key &key, const Recipe &recipe)
{
    if (const std::size_t *row = std::get_if<std::size_t>(&key.target))
        return ParameterText(Parameters()[*row], recipe.values[*row]);
    if (const auto *whole = std::get_if<std::int64_t Recipe::*>(&key.target))
        return std::to_string(recipe.**whole);
    if (const auto *any = std::get_if<double Recipe::*>(&key.target))
        return NumberText(recipe.**any);
    if (const auto *vector = std::get_if<Vector Recipe::*>(&key.target)) {
        const Vector v = recipe.**vector;
        return std::string("[") + NumberText(v.x) + ", " + NumberText(v.y) + ", " + NumberText(v.z) + "]";
    }
    const std::string &text = recipe.*std::get<std::string Recipe::*>(key.target);
    if (key.target == KeyTarget(&Recipe::sample) || text.empty())
        return QuotedText(text);
    std::error_code error; // paths become absolute: valid from any folder
    const std::filesystem::path absolute = std::filesystem::absolute(text, error);
    return QuotedText(error ? text : absolute.string());
}

// A text, as short as possible from six digits on, from which the same number is read
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

std::string QuotedText(const std::string &text)
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
