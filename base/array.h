// All malloc'ed arrays of the program grow through these functions.

#pragma once

#include <cstdlib>
#include <type_traits>

// Resizes the malloc'ed array *array to exactly count elements; elements beyond the old size are
// uninitialised. Returns false, with *array unchanged, when memory does not suffice.
template<typename T>
bool ResizeArray(T **array, std::size_t count)
{
    static_assert(std::is_trivially_copyable_v<T>);
    if (count > static_cast<std::size_t>(-1) / 2 / sizeof(T))
        return false;
    void *resized = std::realloc(*array, (count > 0 ? count : 1) * sizeof(T));
    if (resized == nullptr)
        return false;
    *array = static_cast<T *>(resized);
    return true;
}

// Appends one element to an array of *count elements. Returns false, nothing changed, when memory does not
// suffice.
template<typename T>
bool AppendToArray(T **array, int *count, const T &element)
{
    if (!ResizeArray(array, static_cast<std::size_t>(*count) + 1))
        return false;
    (*array)[*count] = element;
    (*count)++;
    return true;
}
