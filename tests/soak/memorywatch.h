// What the process holds: memory, open files, processes.
#pragma once

#include <malloc.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace soak {

struct SHolding {
    std::size_t resident = 0;   ///< bytes of memory of the process
    std::size_t allocated = 0;  ///< bytes of it that are given out and not given back
    std::size_t descriptors = 0;
    std::size_t processes = 0;  ///< children, those that are dead and not buried too
};

inline SHolding WhatIsHeld()
{
    SHolding held;
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    held.resident = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const struct mallinfo2 heap = mallinfo2();
    held.allocated = heap.uordblks + heap.hblkhd;
    held.descriptors = static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator()));
    std::ifstream children("/proc/self/task/" + std::to_string(getpid()) + "/children");
    held.processes =
        static_cast<std::size_t>(std::distance(std::istream_iterator<int>(children), std::istream_iterator<int>()));
    return held;
}

}  // namespace soak
