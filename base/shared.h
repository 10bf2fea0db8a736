// Numbers in tables that one thread changes while others read them.

#pragma once

#include <atomic>

// Publishes a number together with everything that this thread has written before.
template<typename T>
void StoreShared(T *place, T value)
{
    std::atomic_ref<T>(*place).store(value, std::memory_order_release);
}

// Reads a number and sees everything that was written before it was published.
template<typename T>
T LoadShared(const T *place)
{
    return std::atomic_ref<T>(*const_cast<T *>(place)).load(std::memory_order_acquire);
}
