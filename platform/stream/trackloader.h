// The events of single scalars, gathered from the stretches of a stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/stream/groupevents.h"
#include "platform/stream/morvelevents.h"
#include "platform/stream/morvelindex.h"
#include "platform/stream/streamcache.h"

namespace Morvel {

/// Gathers the events of `count` neighbouring tracks. What they keep in memory is packed.
/// @throw XFault if the file is damaged there
SLoadedTracks LoadTracks(const SStreamFile &file, const std::shared_ptr<CBlockCache> &cache, std::uint32_t first,
                         std::size_t count);

/// The form of a chunk's events. @throw XFault if its tracks have values of different sizes, or none
SGroupForm FormOf(const CStreamIndex &index, const SChunk &chunk);

}  // namespace Morvel
