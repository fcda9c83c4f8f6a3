// The layout of an event-stream file, described in docs/eventstream.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/bytes.h"
#include "platform/files/bytereader.h"

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

using tesk::CByteReader;

inline SBlockEntry TakeBlockEntry(CByteReader &bytes)
{
    SBlockEntry entry{};
    entry.offset = bytes.Little<std::uint64_t>();
    entry.size = bytes.Little<std::uint32_t>();
    entry.crc = bytes.Little<std::uint32_t>();
    entry.first = bytes.Little<std::int64_t>();
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
    entry.offset = bytes.Little<std::uint64_t>();
    entry.size = bytes.Little<std::uint32_t>();
    entry.rawSize = bytes.Little<std::uint32_t>();
    entry.crc = bytes.Little<std::uint32_t>();
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
