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
constexpr std::uint32_t Version = 2;     ///< what is written
constexpr std::uint32_t OldVersion = 1;  ///< what is read too: every scalar has blocks of its own
constexpr std::size_t HeaderSize = 56;
constexpr int MaxDepth = 64;  ///< levels of signals, the top level included
/// Every block of a scalar holds so many events, but for the last one: in a file of the old version, and in memory.
constexpr std::size_t EventsPerBlock = 1024;
/// The scalars of type descriptions have up to 8 bytes.
constexpr unsigned MaxValueSize = 8;
/// A time difference takes up to 9 bytes, 7 bits each.
constexpr std::size_t MaxBlockBytes = EventsPerBlock * (9 + MaxValueSize);

/// A packed block of a stretch of time, as the index tells of it.
struct SPackEntry {
    std::uint64_t offset;   ///< in the file
    std::uint32_t size;     ///< packed
    std::uint32_t rawSize;  ///< unpacked
    std::uint32_t crc;      ///< of the packed bytes
};
constexpr std::size_t PackEntrySize = 20;

/// A stretch of time: its table, which tells the times and where the events of which scalars are, and blocks of events.
/// A track is the number of a scalar in the stretches.
struct SStretchEntry {
    std::int64_t first;  ///< time of the first event, file ticks
    std::int64_t last;   ///< of the last one
    std::uint32_t lowTrack;
    std::uint32_t highTrack;  ///< inclusive
    SPackEntry table;
    std::uint32_t firstBlock;  ///< among all blocks of the file; not in the file
    std::uint32_t blockCount;
};
constexpr std::size_t StretchEntrySize = 8 + 8 + 4 + 4 + 4 + PackEntrySize;
constexpr std::uint32_t NoTrack = 0xFFFFFFFF;

// What a stretch has at most.
constexpr std::size_t MaxStretchTimes = std::size_t{1} << 20;
constexpr std::size_t MaxStretchChunks = std::size_t{1} << 22;
constexpr std::size_t MaxRawBytes = std::size_t{1} << 28;  ///< of a block, unpacked

/// One block of a scalar, as the index of a file of the old version tells of it.
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

inline SPackEntry TakePackEntry(CByteReader &bytes)
{
    SPackEntry entry{};
    entry.offset = bytes.Take<std::uint64_t>();
    entry.size = bytes.Take<std::uint32_t>();
    entry.rawSize = bytes.Take<std::uint32_t>();
    entry.crc = bytes.Take<std::uint32_t>();
    return entry;
}

inline void AppendPackEntry(std::string &bytes, const SPackEntry &entry)
{
    Append(bytes, entry.offset);
    Append(bytes, entry.size);
    Append(bytes, entry.rawSize);
    Append(bytes, entry.crc);
}

}  // namespace Morvel
