// The table of a stretch of time: its times, and where the events of which scalars lie.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/stream/morvelformat.h"

namespace Morvel {

/// The events of a group of scalars in a stretch.
struct SChunk {
    std::uint32_t firstTrack;
    std::uint32_t count;   ///< tracks, 1 to `MaxGroup`
    std::uint32_t block;   ///< among those of the stretch
    std::uint32_t offset;  ///< in the unpacked block
    std::uint32_t size;
};

struct SStretchTable {
    std::vector<long long> times;  ///< file ticks, rising
    /// By rising first track, those that lie in one block behind each other. A scalar may be in several: the events in the
    /// first one come first.
    std::vector<SChunk> chunks;

    std::size_t MemorySize() const
    {
        return sizeof *this + times.capacity() * sizeof(long long) + chunks.capacity() * sizeof(SChunk);
    }
};

std::string MakeStretchTable(std::span<const long long> times, std::span<const SChunk> chunks, std::size_t blocks);

/// Reads a table, without trusting it. @throw XFault if it is not what the index says
SStretchTable ReadStretchTable(std::string_view bytes, const SStretchEntry &entry, std::span<const SPackEntry> blocks);

}  // namespace Morvel
