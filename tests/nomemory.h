// Operations without memory: each allocation fails in turn. This replaces the process's operator new, so that it is included by the one
// source of a program of its own.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>

#include "signal/unknown.h"

inline constexpr long Never = -1;
inline long g_allocationsLeft = Never;

// Not inlined, or the compiler takes malloc and operator delete for a mismatched pair.
[[gnu::noinline]] void *operator new(std::size_t size)
{
    if (g_allocationsLeft == 0)
        throw std::bad_alloc();
    if (g_allocationsLeft > 0)
        --g_allocationsLeft;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    try {
        return operator new(size);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

[[gnu::noinline]] void operator delete(void *memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

/// Calls an operation without memory, then with room for one allocation, for two and so on, until it succeeds.
/// @return how often it failed, each time with E_OUTOFMEMORY, or with E_FAIL where a part of a whole could not be made
inline int Starve(const std::function<long()> &operation)
{
    for (int failures = 0;; ++failures) {
        g_allocationsLeft = failures;
        const long result = operation();
        g_allocationsLeft = Never;
        if (result == S_OK)
            return failures;
        EXPECT_TRUE(result == E_OUTOFMEMORY || result == E_FAIL)
            << result << " with room for " << failures << " allocations";
        if (failures > 100)
            return failures;
    }
}
