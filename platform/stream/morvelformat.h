// The layout of an event-stream file, described in docs/eventstream.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/bytes.h"

namespace Morvel {

constexpr std::string_view Magic{"teskevs\n", 8};
constexpr std::uint32_t Version = 1;
constexpr std::size_t HeaderSize = 56;
constexpr int MaxDepth = 64;  ///< levels of signals, the top level included
/// Every block of a scalar holds so many events, but for the last one.
constexpr std::size_t EventsPerBlock = 1024;
/// The scalars of type descriptions have up to 8 bytes.
constexpr unsigned MaxValueSize = 8;
/// A time difference takes up to 9 bytes, 7 bits each.
constexpr std::size_t MaxBlockBytes = EventsPerBlock * (9 + MaxValueSize);

/// One block as the index tells of it.
struct SBlockEntry {
    std::uint64_t offset;  ///< in the file
    std::uint32_t size;    ///< packed
    std::uint32_t crc;     ///< of the packed bytes
    std::int64_t first;    ///< time of the first event, file ticks
};
constexpr std::size_t BlockEntrySize = 24;

constexpr std::uint64_t BlockCount(std::uint64_t events)
{
    return events / EventsPerBlock + (events % EventsPerBlock != 0 ? 1 : 0);
}

/// Appends a number, least significant byte first.
template <class T>
void Append(std::string &bytes, T number)
{
    tesk::AppendLittleEndian(static_cast<std::make_unsigned_t<T>>(number), sizeof(T), bytes);
}

/// Takes numbers and texts off the front of bytes; once something is missing all that follows is 0 and empty.
class CByteReader {
public:
    explicit CByteReader(std::string_view bytes) : m_rest(bytes) {}

    template <class T>
    T Take()
    {
        const std::string_view bytes = TakeBytes(sizeof(T));
        return static_cast<T>(tesk::LoadLittleEndian(bytes.data(), bytes.size()));
    }

    std::string_view TakeBytes(std::uint64_t count)
    {
        if (count > m_rest.size())
            m_good = false;
        const std::string_view taken = m_good ? m_rest.substr(0, static_cast<std::size_t>(count)) : std::string_view();
        m_rest = m_good ? m_rest.substr(taken.size()) : std::string_view();
        return taken;
    }

    /// A text that a zero ends; the zero stands behind what is returned. Null if there is no zero.
    const char *TakeText()
    {
        const std::size_t length = m_rest.find('\0');
        const std::string_view text = TakeBytes(length == m_rest.npos ? m_rest.size() + 1 : length + 1);
        return m_good ? text.data() : nullptr;
    }

    std::string_view Rest() const { return m_rest; }
    /// Whether all that was asked for was there.
    bool IsGood() const { return m_good; }

private:
    std::string_view m_rest;
    bool m_good = true;
};

inline SBlockEntry TakeBlockEntry(CByteReader &bytes)
{
    SBlockEntry entry{};
    entry.offset = bytes.Take<std::uint64_t>();
    entry.size = bytes.Take<std::uint32_t>();
    entry.crc = bytes.Take<std::uint32_t>();
    entry.first = bytes.Take<std::int64_t>();
    return entry;
}

inline void AppendBlockEntry(std::string &bytes, const SBlockEntry &entry)
{
    Append(bytes, entry.offset);
    Append(bytes, entry.size);
    Append(bytes, entry.crc);
    Append(bytes, entry.first);
}

/// CRC-32 as in zlib, gzip and PNG.
std::uint32_t Crc(std::string_view bytes);

}  // namespace Morvel
