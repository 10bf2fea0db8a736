#include "recipe/recipe.h"

#include "growth/parameters.h"

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
