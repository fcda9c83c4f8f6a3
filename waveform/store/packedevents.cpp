#include "waveform/store/packedevents.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace tesk {

std::uint32_t GrowPacked(void *&bytes, std::size_t header, std::size_t used, std::size_t wanted)
{
    if (wanted > std::numeric_limits<std::uint32_t>::max() / 2)
        throw std::bad_alloc();
    const std::size_t total = (header + std::max(wanted, used + used / 4) + 7) / 16 * 16 + 8;
    void *const grown = std::realloc(bytes, total);
    if (grown == nullptr)
        throw std::bad_alloc();
    bytes = grown;
    return static_cast<std::uint32_t>(total - header);
}

}  // namespace tesk
