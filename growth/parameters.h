// The parameters that a user sets, in one table: unit, range, default and a descriptive sentence for each.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

// What happens to a number outside of a parameter's range. For an integer parameter, the number is first truncated
// toward zero, and NaN becomes 0.
enum ParameterRule {
    kLimited,     // it becomes the nearer limit, NaN the lower one
    kSignDropped, // it becomes its absolute value
    kAnyNumber    // it is accepted as it is
};

// A group of parameters: a table of recipes. [surface] and [stop] have no parameters but keys of their own.
struct ParameterGroup {
    const char *name;
    bool affectsgrowth; // the aggregate depends on it, so a run that is continued must have the same values
    bool isinrecipes;
};

struct Parameter {
    const char *group, *key;             // its name in a recipe: [group] key
    std::variant<double *, int *> field; // of growthstate or options
    double standard;                     // the default
    double low, high;                    // the range
    ParameterRule rule;
    const char *unit; // "" if it has none
    const char *sentence;
    const char *(*name)(int value) = nullptr; // name of a value, or nullptr; null: no names
};

// All groups, in the order of recipes
std::span<const ParameterGroup> ParameterGroups();
const ParameterGroup &FindGroup(const char *name);

std::span<const Parameter> Parameters();

// The row in the table, and the parameter, of a field, which must be in the table.
std::size_t ParameterIndex(const void *field);
const Parameter &ParameterOf(const void *field);

// The value that a parameter has.
double ParameterValue(const Parameter &parameter);

// Whether a parameter can have this value: its rule does not change it.
bool IsAllowed(const Parameter &parameter, double value);

// A parameter whose value does not go together with the others, by its name in a recipe, and why.
struct Contradiction {
    const char *name, *reason;
};

// The contradiction between these values, of Parameters() row by row, if any.
std::optional<Contradiction> FindContradiction(std::span<const double> values);

// Sets a parameter to a number as changed by the parameter's rule.
void SetParameter(const Parameter &parameter, double value);

// Sets the parameter with this field to its default.
void SetDefault(const void *field);

// Sets all parameters of a group to their defaults.
void SetDefaults(const char *group);

// Sets options and interfacestate to their values at program start.
void SetProgramDefaults();

// The value of the parameter that has this name, if any.
std::optional<int> FindNamed(const Parameter &parameter, std::string_view name);

// "false" and "true", as names of 0 and 1.
const char *SwitchName(int value);
