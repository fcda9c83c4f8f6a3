#include "platform/stream/morvelindex.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace Morvel {

namespace {

// A name of no letters, its type, its number of children and its number of events.
constexpr std::size_t LeastSignalSize = 1 + 4 + 4 + 8;

[[noreturn]] void FailIndex(const std::string &why)
{
    throw XFault("is damaged: its index " + why);
}

}  // namespace

struct CStreamIndex::SHeader {
    std::uint64_t indexOffset;
    std::uint64_t indexSize;
    std::uint32_t indexCrc;
};

CStreamIndex::CStreamIndex(const CFileBytes &file)
{
    const SHeader header = ReadHeader(file);
    m_blockEnd = header.indexOffset;
    m_bytes = file.Read(header.indexOffset, header.indexSize);
    if (Crc(m_bytes) != header.indexCrc)
        FailIndex("has the wrong checksum");
    CByteReader bytes(m_bytes);
    TakeSignals(bytes, TakeTypes(bytes));
    if (!bytes.IsGood() || !bytes.Rest().empty())
        FailIndex("does not end where it should");
}

CStreamIndex::SHeader CStreamIndex::ReadHeader(const CFileBytes &file)
{
    const std::uint64_t fileSize = file.Size();
    if (fileSize == 0)
        throw XFault("is empty");
    const std::string text = file.Read(0, std::min<std::uint64_t>(fileSize, HeaderSize));
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

const SSignalEntry *CStreamIndex::Find(int handle) const
{
    if (handle < 0 || static_cast<std::size_t>(handle) >= m_signals.size())
        return nullptr;
    return &m_signals[static_cast<std::size_t>(handle)];
}

const Kestrin::KTypeInfo &CStreamIndex::TypeOf(const SSignalEntry &signal) const
{
    const auto known = m_types.find(signal.typeText);
    return known != m_types.end() ? known->second : m_types.try_emplace(signal.typeText, signal.typeText).first->second;
}

std::vector<const char *> CStreamIndex::TakeTypes(CByteReader &bytes) const
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
void CStreamIndex::TakeSignals(CByteReader &bytes, const std::vector<const char *> &types)
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

SSignalEntry CStreamIndex::TakeSignal(CByteReader &bytes, const std::vector<const char *> &types, int firstChild) const
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

void CStreamIndex::TestBlocks(const SSignalEntry &signal)
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

std::string SStreamFile::ReadBlock(const SBlockEntry &entry) const
{
    std::string packed = bytes->Read(entry.offset, entry.size);
    if (Crc(packed) != entry.crc)
        throw XFault("is damaged: a block has the wrong checksum");
    return packed;
}

namespace {

// What an earlier opening read, as long as somebody keeps it.
struct SKnownFile {
    CFileStamp stamp;
    std::string header;
    std::weak_ptr<const CFileBytes> unpacked;  // of a packed file
    std::weak_ptr<const CStreamIndex> index;
};

std::vector<SKnownFile> &KnownFiles()
{
    static thread_local std::vector<SKnownFile> files;
    std::erase_if(files, [](const SKnownFile &file) { return file.index.expired(); });
    return files;
}

}  // namespace

// Stamps have the grain of the system's clock: the header, which holds the index's checksum, must be the same too.
SStreamFile OpenStreamFile(const std::filesystem::path &path)
{
    SStreamFile file;
    file.bytes = CFileBytes::Open(path);
    file.isPacked = file.bytes->IsPacked();
    const CFileStamp stamp = file.bytes->Stamp();
    std::string header = file.bytes->Read(0, std::min<std::uint64_t>(file.bytes->Size(), HeaderSize));
    for (const SKnownFile &known : KnownFiles()) {
        if (known.stamp != stamp || known.header != header)
            continue;
        file.index = known.index.lock();
        if (file.isPacked)
            file.bytes = known.unpacked.lock();
        if (file.index != nullptr && file.bytes != nullptr)
            return file;
    }
    if (file.isPacked)
        file.bytes = CFileBytes::Unpack(path);
    file.index = std::make_shared<CStreamIndex>(*file.bytes);
    KnownFiles().push_back({stamp, std::move(header), file.bytes, file.index});
    return file;
}

}  // namespace Morvel
