// The parameters that a user sets, in one table: unit, range and default of each, and a sentence on it.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

// What a number becomes that is outside of a parameter's range. Where the parameter is whole, it is first cut
// toward zero, and what is not a number becomes 0.
enum ParameterRule {
    kLimited,     // the limit; what is not a number becomes the lower one
    kSignDropped, // its absolute value
    kAnyNumber    // it is taken as it is
};

struct Parameter {
    const char *group, *key;             // as a recipe names it: [group] key
    std::variant<double *, int *> field; // of growthstate or options
    double standard;                     // the default
    double low, high;                    // the range
    ParameterRule rule;
    const char *unit; // "" where it has none
    const char *sentence;
    const char *(*name)(int value) = nullptr; // where whole numbers stand for names; nullptr for one without
};

std::span<const Parameter> Parameters();

// The row of the parameter whose field that is, which must be one of the table's; and the parameter.
std::size_t ParameterIndex(const void *field);
const Parameter &ParameterOf(const void *field);

// The value that a parameter has.
double ParameterValue(const Parameter &parameter);

// Whether a parameter can have that value: its rule leaves it as it is.
bool IsAllowed(const Parameter &parameter, double value);

// Sets a parameter to a number, by its rule.
void SetParameter(const Parameter &parameter, double value);

// Gives the parameter whose field that is its default.
void SetDefault(const void *field);

// Gives all parameters of a group their defaults.
void SetDefaults(const char *group);

// Gives options and interfacestate the values that they have at program start.
void SetProgramDefaults();

// The whole number that a name stands for, where the parameter has names and this is one of them.
std::optional<int> FindNamed(const Parameter &parameter, std::string_view name);

// "false" and "true", as names of 0 and 1.
const char *SwitchName(int value);
