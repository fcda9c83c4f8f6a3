#include "platform/stream/morvelindex.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace Morvel {

namespace {

// A name of no letters, its type, its number of children and its number of events.
constexpr std::size_t LeastSignalSize = 1 + 4 + 4 + 8;

std::uint64_t SizeOfFile(const std::filesystem::path &path)
{
    std::error_code error;
    const auto type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::directory)
        throw XFault("is a directory");
    const std::uint64_t size = error ? 0 : std::filesystem::file_size(path, error);
    if (error)
        throw XFault("cannot be read: " + error.message());
    return size;
}

[[noreturn]] void FailIndex(const std::string &why)
{
    throw XFault("is damaged: its index " + why);
}

}  // namespace

struct CIndexedFile::SHeader {
    std::uint64_t indexOffset;
    std::uint64_t indexSize;
    std::uint32_t indexCrc;
};

CIndexedFile::CIndexedFile(const std::filesystem::path &path)
{
    const std::uint64_t fileSize = SizeOfFile(path);
    m_file.open(path, std::ios::binary);
    if (!m_file)
        throw XFault("cannot be opened");
    const SHeader header = ReadHeader(fileSize);
    m_blockEnd = header.indexOffset;
    m_index = ReadBytes(header.indexOffset, header.indexSize);
    if (Crc(m_index) != header.indexCrc)
        FailIndex("has the wrong checksum");
    CByteReader bytes(m_index);
    TakeSignals(bytes, TakeTypes(bytes));
    if (!bytes.IsGood() || !bytes.Rest().empty())
        FailIndex("does not end where it should");
}

CIndexedFile::SHeader CIndexedFile::ReadHeader(std::uint64_t fileSize)
{
    if (fileSize == 0)
        throw XFault("is empty");
    const std::string text = ReadBytes(0, std::min<std::uint64_t>(fileSize, HeaderSize));
    CByteReader bytes(text);
    if (bytes.TakeBytes(Magic.size()) != Magic)
        throw XFault("is no event stream");
    if (text.size() < HeaderSize)
        throw XFault("is cut off in its header");
    if (CByteReader(std::string_view(text).substr(HeaderSize - 4)).Take<std::uint32_t>() !=
        Crc(std::string_view(text).substr(0, HeaderSize - 4)))
        throw XFault("is damaged: its header has the wrong checksum");
    if (const auto version = bytes.Take<std::uint32_t>(); version != Version)
        throw XFault("has version " + std::to_string(version) + " of the format; version 1 can be read");
    bytes.Take<std::uint32_t>();  // reserved
    m_resolution = bytes.Take<std::int64_t>();
    m_endTime = bytes.Take<std::int64_t>();
    if (m_resolution <= 0 || m_endTime < 0)
        throw XFault("is damaged: its header has no sensible times");
    SHeader header{};
    header.indexOffset = bytes.Take<std::uint64_t>();
    header.indexSize = bytes.Take<std::uint64_t>();
    header.indexCrc = bytes.Take<std::uint32_t>();
    if (header.indexOffset < HeaderSize || header.indexOffset > fileSize ||
        header.indexSize > fileSize - header.indexOffset)
        throw XFault("is cut off: its index is missing");
    if (header.indexSize != fileSize - header.indexOffset)
        throw XFault("is damaged: there is something behind its index");
    return header;
}

std::string CIndexedFile::ReadBytes(std::uint64_t offset, std::uint64_t size)
{
    std::string bytes(static_cast<std::size_t>(size), '\0');
    m_file.clear();
    m_file.seekg(static_cast<std::streamoff>(offset));
    m_file.read(bytes.data(), static_cast<std::streamsize>(size));
    if (!m_file)
        throw XFault("cannot be read to its end");
    return bytes;
}

std::string CIndexedFile::ReadBlock(const SBlockEntry &entry)
{
    std::string packed = ReadBytes(entry.offset, entry.size);
    if (Crc(packed) != entry.crc)
        throw XFault("is damaged: a block has the wrong checksum");
    return packed;
}

const SSignalEntry *CIndexedFile::Find(int handle) const
{
    if (handle < 0 || static_cast<std::size_t>(handle) >= m_signals.size())
        return nullptr;
    return &m_signals[static_cast<std::size_t>(handle)];
}

std::vector<const char *> CIndexedFile::TakeTypes(CByteReader &bytes) const
{
    const auto count = bytes.Take<std::uint32_t>();
    if (count > bytes.Rest().size())
        FailIndex("has more types than room");
    std::vector<const char *> types(count);
    for (const char *&type : types)
        type = bytes.TakeText();
    if (!bytes.IsGood())
        FailIndex("is cut off");
    return types;
}

// Level by level, so that the children of one signal follow those of the signal before it, and a tree is all that the
// numbers of children can describe.
void CIndexedFile::TakeSignals(CByteReader &bytes, const std::vector<const char *> &types)
{
    const auto count = bytes.Take<std::uint32_t>();
    const auto topLevelCount = bytes.Take<std::uint32_t>();
    if (count > bytes.Rest().size() / LeastSignalSize || count > std::numeric_limits<int>::max())
        FailIndex("has more signals than room");
    if (topLevelCount > count || (topLevelCount == 0 && count > 0))
        FailIndex("has a wrong number of top-level signals");
    m_topLevelCount = static_cast<int>(topLevelCount);
    m_signals.reserve(count);
    std::size_t nextChild = topLevelCount;
    std::size_t levelEnd = topLevelCount;
    int depth = 1;
    while (m_signals.size() < count) {
        if (m_signals.size() == levelEnd) {
            levelEnd = nextChild;
            if (++depth > MaxDepth)
                FailIndex("nests signals too deep");
        }
        m_signals.push_back(TakeSignal(bytes, types, static_cast<int>(nextChild)));
        TestBlocks(m_signals.back());
        nextChild += static_cast<std::size_t>(m_signals.back().childCount);
        if (nextChild > count || (nextChild == m_signals.size() && nextChild < count))
            FailIndex("has a wrong number of children");
    }
    if (nextChild != count)
        FailIndex("has a wrong number of children");
}

SSignalEntry CIndexedFile::TakeSignal(CByteReader &bytes, const std::vector<const char *> &types, int firstChild) const
{
    SSignalEntry signal{};
    signal.name = bytes.TakeText();
    const auto type = bytes.Take<std::uint32_t>();
    const auto childCount = bytes.Take<std::uint32_t>();
    signal.events = bytes.Take<std::uint64_t>();
    if (!bytes.IsGood())
        FailIndex("is cut off");
    if (type >= types.size())
        FailIndex("names a type that it does not have");
    if (childCount > std::numeric_limits<int>::max() || (childCount > 0 && signal.events > 0))
        FailIndex("has a wrong number of children");
    if (BlockCount(signal.events) > bytes.Rest().size() / BlockEntrySize)
        FailIndex("has more blocks than room");
    signal.typeText = types[type];
    signal.firstChild = firstChild;
    signal.childCount = static_cast<int>(childCount);
    signal.blocks = bytes.TakeBytes(BlockCount(signal.events) * BlockEntrySize);
    return signal;
}

void CIndexedFile::TestBlocks(const SSignalEntry &signal)
{
    CByteReader bytes(signal.blocks);
    while (!bytes.Rest().empty()) {
        const SBlockEntry block = TakeBlockEntry(bytes);
        if (block.offset < HeaderSize || block.offset > m_blockEnd || block.size > m_blockEnd - block.offset)
            FailIndex("has a block outside the file");
        m_blockBytes += block.size;
        if (m_blockBytes > m_blockEnd - HeaderSize)
            FailIndex("has blocks that overlap");
    }
}

}  // namespace Morvel
