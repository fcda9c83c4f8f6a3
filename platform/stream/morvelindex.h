// The header and the index of an event-stream file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/stream/morvelformat.h"

namespace Morvel {

/// What is wrong with a file; the text does not name it.
class XFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One signal. The texts lie in the index.
struct SSignalEntry {
    const char *name;
    const char *typeText;
    int firstChild;  ///< children have consecutive handles
    int childCount;
    std::uint64_t events;     ///< of a scalar; 0 of any other signal
    std::string_view blocks;  ///< `BlockCount(events)` block entries
};

/// A file and what its index says. A handle is a position among the signals.
class CIndexedFile {
public:
    /// Opens the file and tests header and index; of the blocks only where they lie. @throw XFault
    explicit CIndexedFile(const std::filesystem::path &path);
    CIndexedFile(const CIndexedFile &) = delete;
    CIndexedFile &operator=(const CIndexedFile &) = delete;

    long long GetResolution() const { return m_resolution; }
    long long GetEndTime() const { return m_endTime; }
    int GetTopLevelCount() const { return m_topLevelCount; }
    /// @return null for an unknown handle
    const SSignalEntry *Find(int handle) const;
    /// Reads the packed bytes of a block. @throw XFault if they are not what the index says
    std::string ReadBlock(const SBlockEntry &entry);

private:
    struct SHeader;

    SHeader ReadHeader(std::uint64_t fileSize);
    std::string ReadBytes(std::uint64_t offset, std::uint64_t size);
    std::vector<const char *> TakeTypes(CByteReader &bytes) const;
    void TakeSignals(CByteReader &bytes, const std::vector<const char *> &types);
    SSignalEntry TakeSignal(CByteReader &bytes, const std::vector<const char *> &types, int firstChild) const;
    void TestBlocks(const SSignalEntry &signal);

    std::ifstream m_file;
    std::string m_index;
    std::uint64_t m_blockEnd = 0;    // where the blocks end and the index begins
    std::uint64_t m_blockBytes = 0;  // of all blocks seen so far: each byte of the file belongs to one signal only
    long long m_resolution = 0;
    long long m_endTime = 0;
    int m_topLevelCount = 0;
    std::vector<SSignalEntry> m_signals;  // level by level
};

}  // namespace Morvel
