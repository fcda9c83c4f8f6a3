#include "waveform/packedevents.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <new>

void ReservePacked(SPackedEvents *&events, std::size_t size)
{
    if (size > std::numeric_limits<std::uint32_t>::max() / 2)
        throw std::bad_alloc();
    const std::size_t used = events != nullptr ? events->used : 0;
    const std::size_t total = (sizeof(SPackedEvents) + std::max(size, used + used / 4) + 7) / 16 * 16 + 8;
    auto *const grown = static_cast<SPackedEvents *>(std::realloc(events, total));
    if (grown == nullptr)
        throw std::bad_alloc();
    if (events == nullptr)
        *grown = {std::numeric_limits<long long>::min(), 0, 0};
    events = grown;
    events->capacity = static_cast<std::uint32_t>(total - sizeof(SPackedEvents));
}

std::size_t PackedHeadSize(std::uint64_t distance)
{
    return 1 + (static_cast<std::size_t>(std::bit_width(distance >> 3)) + 6) / 7;
}
