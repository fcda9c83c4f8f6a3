// The place of a virtual operation in the table of its class, for tests that pin the order of an interface.
#pragma once

#include <cstddef>
#include <cstring>

/// On the Itanium C++ ABI a pointer to a virtual member function begins with 1 plus the offset of its slot in bytes.
template <typename Operation>
std::size_t SlotOf(Operation operation)
{
    std::ptrdiff_t word;
    std::memcpy(&word, &operation, sizeof word);
    return static_cast<std::size_t>(word - 1) / sizeof(void *);
}
