// What openings of one event stream have unpacked and may need again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/stream/morvelevents.h"
#include "platform/stream/morvelindex.h"
#include "platform/stream/stretchtable.h"

namespace Morvel {

/// Things by numbers, up to so many bytes; those used last stay.
template <class T>
class TRecentlyUsed {
public:
    using Ptr = std::shared_ptr<const T>;

    explicit TRecentlyUsed(std::size_t mostBytes) : m_mostBytes(mostBytes) {}

    Ptr Find(std::uint64_t number)
    {
        const auto found = m_places.find(number);
        if (found == m_places.end())
            return nullptr;
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return found->second->thing;
    }

    void Keep(std::uint64_t number, Ptr thing, std::size_t bytes)
    {
        m_entries.push_front({number, std::move(thing), bytes});
        m_places[number] = m_entries.begin();
        m_bytes += bytes;
        while (m_bytes > m_mostBytes && m_entries.size() > 1) {
            m_bytes -= m_entries.back().bytes;
            m_places.erase(m_entries.back().number);
            m_entries.pop_back();
        }
    }

private:
    struct SEntry {
        std::uint64_t number;
        Ptr thing;
        std::size_t bytes;
    };

    std::size_t m_mostBytes;
    std::size_t m_bytes = 0;
    std::list<SEntry> m_entries;  // the one used last in front
    std::unordered_map<std::uint64_t, typename std::list<SEntry>::iterator> m_places;
};

/// The events of neighbouring tracks.
struct SLoadedTracks {
    std::uint32_t first = 0;
    std::vector<std::shared_ptr<const CStoredEvents>> events;

    bool Has(std::uint32_t track) const { return track >= first && track - first < events.size(); }
};

class CStreamCache {
public:
    /// The table of a stretch. @throw XFault if it cannot be read
    std::shared_ptr<const SStretchTable> Table(const SStreamFile &file, std::size_t stretch);
    /// The unpacked block of a chunk. @throw XFault if it cannot be read
    std::shared_ptr<const std::string> Block(const SStreamFile &file, std::size_t stretch, const SChunk &chunk);

    /// The events that were loaded last: those of the elements of an array are asked for one after the other.
    SLoadedTracks lastLoaded;

private:
    TRecentlyUsed<SStretchTable> m_tables{std::size_t{12} << 20};
    TRecentlyUsed<std::string> m_blocks{std::size_t{8} << 20};
};

}  // namespace Morvel
