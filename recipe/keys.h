// The keys of a recipe: the field that each sets, its allowed values, and its value as text

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "recipe/recipe.h"

// What a key sets: the row of a parameter in the core's table, or a member of the recipe.
using KeyTarget = std::variant<std::size_t, std::string Recipe::*, Vector Recipe::*, std::int64_t Recipe::*,
                               double Recipe::*>;

struct Key {
    const char *table, *key;
    KeyTarget target;
    double low, high; // range of a number
    const char *unit, *sentence;
    bool openlow = false; // low itself is not allowed

    [[nodiscard]] std::string Name() const { return std::string(table) + "." + key; }
};

// All keys, table by table
const std::vector<Key> &Keys();

// The key "table.key", or nullptr.
const Key *FindKey(const std::string &name);

// The key with the most similar name, for the message about an unknown key
const Key &NearestKey(const std::string &name);

// The allowed values of a key, in words
std::string AllowedValues(const Key &key);

// The value of a key in a recipe, as TOML text
std::string ValueText(const Key &key, const Recipe &recipe);

// A text as a TOML string, in quotes
std::string QuotedText(const std::string &text);
