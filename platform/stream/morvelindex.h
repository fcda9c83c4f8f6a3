// The header and the index of an event-stream file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/kestrin.h"
#include "platform/stream/filebytes.h"
#include "platform/stream/morvelformat.h"

namespace Morvel {

/// One signal. The texts lie in the index.
struct SSignalEntry {
    const char *name;
    const char *typeText;
    int firstChild;  ///< children have consecutive handles
    int childCount;
    std::uint64_t events;     ///< of a scalar; 0 of any other signal
    std::uint32_t track;      ///< of a scalar, `NoTrack` of any other signal, and in a file of the old version
    std::string_view blocks;  ///< `BlockCount(events)` block entries in a file of the old version
};

/// What header and index of a file say. A handle is a position among the signals.
class CStreamIndex {
public:
    /// Tests header and index; of the blocks only where they lie. @throw XFault
    explicit CStreamIndex(const CFileBytes &file);
    CStreamIndex(const CStreamIndex &) = delete;
    CStreamIndex &operator=(const CStreamIndex &) = delete;

    long long GetResolution() const { return m_resolution; }
    long long GetEndTime() const { return m_endTime; }
    int GetTopLevelCount() const { return m_topLevelCount; }
    std::size_t GetSignalCount() const { return m_signals.size(); }
    /// Whether the events lie in stretches of time, rather than each scalar's in blocks of its own.
    bool HasStretches() const { return m_version == Version; }
    /// @return null for an unknown handle
    const SSignalEntry *Find(int handle) const;
    /// @return null for a signal at the top level
    const SSignalEntry *FindParent(int handle) const;
    /// The type of a signal of this index, read once for all signals that have it.
    const Kestrin::KTypeInfo &TypeOf(const SSignalEntry &signal) const;

    const std::vector<SStretchEntry> &Stretches() const { return m_stretches; }
    std::span<const SPackEntry> BlocksOf(const SStretchEntry &stretch) const
    {
        return std::span(m_packs).subspan(stretch.firstBlock, stretch.blockCount);
    }
    /// Tracks are below it.
    std::size_t TrackCount() const { return m_handleOfTrack.size(); }
    /// The first signal that has it. @param track  below `TrackCount`
    int HandleOf(std::uint32_t track) const { return m_handleOfTrack[track]; }
    /// Bytes of a raw value; 0 if the type has none.
    unsigned ValueSizeOf(std::uint32_t track) const;

private:
    struct SHeader;

    SHeader ReadHeader(const CFileBytes &file);
    std::vector<const char *> TakeTypes(CByteReader &bytes) const;
    void TakeSignals(CByteReader &bytes, const std::vector<const char *> &types);
    SSignalEntry TakeSignal(CByteReader &bytes, const std::vector<const char *> &types, int firstChild) const;
    void TakeTracks();
    void TakeStretches(CByteReader &bytes);
    void TakeStretch(CByteReader &bytes);
    void TestBlocks(const SSignalEntry &signal);
    void TestBlock(std::uint64_t offset, std::uint32_t size);

    std::uint32_t m_version = Version;
    std::string m_bytes;
    std::uint64_t m_blockEnd = 0;    // where the blocks end and the index begins
    std::uint64_t m_blockBytes = 0;  // of all blocks seen so far: each byte of the file belongs to one signal only
    long long m_resolution = 0;
    long long m_endTime = 0;
    int m_topLevelCount = 0;
    std::vector<SSignalEntry> m_signals;  // level by level
    std::vector<int> m_handleOfTrack;
    std::vector<SStretchEntry> m_stretches;
    std::vector<SPackEntry> m_packs;                                       // the blocks of all stretches
    mutable std::vector<std::uint8_t> m_valueSizes;                        // by track; 0xFF where nobody asked yet
    mutable std::unordered_map<const char *, Kestrin::KTypeInfo> m_types;  // by their texts, which are one for each
};

class CStreamCache;

/// An open file and its index.
struct SStreamFile {
    std::shared_ptr<const CFileBytes> bytes;
    std::shared_ptr<const CStreamIndex> index;  ///< shared by all openings that met the same contents, while one lives
    std::shared_ptr<CStreamCache> cache;        ///< shared as the index is
    bool isPacked = false;                      ///< `bytes` are a temporary file's, and shared too

    /// Reads the packed bytes of a block. @throw XFault if they are not what the index says
    std::string ReadBlock(const SBlockEntry &entry) const;
    /// Reads and unpacks a block of a stretch. @throw XFault if it is not what the index says
    std::string ReadPack(const SPackEntry &entry) const;
};

/// Opens a file; one that gzip packed is unpacked into a temporary file. @throw XFault
SStreamFile OpenStreamFile(const std::filesystem::path &path);

}  // namespace Morvel
