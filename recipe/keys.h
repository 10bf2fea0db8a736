// The keys of a recipe: what each sets, what it may be, and its value as text.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "recipe/recipe.h"

// What a key sets: the row of a parameter in the core's table, or a member of the recipe.
using Place = std::variant<std::size_t, std::string Recipe::*, Vector Recipe::*, std::int64_t Recipe::*,
                           double Recipe::*>;

struct Key {
    const char *table, *key;
    Place place;
    double low, high; // of a number
    const char *unit, *sentence;
    bool openlow = false; // low itself is not allowed

    [[nodiscard]] std::string Name() const { return std::string(table) + "." + key; }
};

// All of them, table by table.
const std::vector<Key> &Keys();

// The key "table.key", or nullptr.
const Key *FindKey(const std::string &name);

// The key whose name is the most alike.
const Key &NearestKey(const std::string &name);

// What a key may be, in words.
std::string AllowedValues(const Key &key);

// Its value in a recipe, as it stands there.
std::string ValueText(const Key &key, const Recipe &recipe);

// A text as a recipe has it.
std::string QuotedText(const std::string &text);
