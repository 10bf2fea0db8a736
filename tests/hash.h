// FNV-1a over bytes; `hash` continues an earlier sum.

#pragma once

#include <cstddef>

inline unsigned long long Hash(const void *data, std::size_t size,
                               unsigned long long hash = 14695981039346656037ULL)
{
    for (std::size_t i = 0; i < size; i++)
        hash = (hash ^ static_cast<const unsigned char *>(data)[i]) * 1099511628211ULL;
    return hash;
}
