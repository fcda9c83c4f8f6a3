#include "platform/stream/morvelindex.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/stream/streamcache.h"
#include "platform/stream/streampack.h"

namespace Morvel {

namespace {

// A name of no letters, its type and its number of children. In a file of the old version the number of events follows.
constexpr std::size_t LeastSignalSize = 1 + 4 + 4;
constexpr std::size_t LeastOldSignalSize = LeastSignalSize + 8;
constexpr std::uint8_t UnknownSize = 0xFF;

[[noreturn]] void FailIndex(const std::string &why)
{
    throw XFault("is damaged: its index " + why);
}

// Takes values, and tells in these words that the index ends inside one.
template <class TTake>
auto TakeOrFail(const char *why, TTake take)
{
    try {
        return take();
    } catch (const tesk::XByteDamage &) {
        FailIndex(why);
    }
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
    constexpr const char *WrongEnd = "does not end where it should";
    CByteReader bytes(m_bytes);
    TakeOrFail(WrongEnd, [&] {
        TakeSignals(bytes, TakeTypes(bytes));
        if (HasStretches()) {
            TakeTracks();
            TakeStretches(bytes);
        }
    });
    if (!bytes.AtEnd())
        FailIndex(WrongEnd);
}

CStreamIndex::SHeader CStreamIndex::ReadHeader(const CFileBytes &file)
{
    const std::uint64_t fileSize = file.Size();
    if (fileSize == 0)
        throw XFault("is empty");
    const std::string text = file.Read(0, std::min<std::uint64_t>(fileSize, HeaderSize));
    if (!text.starts_with(Magic))
        throw XFault("is no event stream");
    if (text.size() < HeaderSize)
        throw XFault("is cut off in its header");
    const std::string_view header = std::string_view(text).substr(0, HeaderSize - 4);
    if (CByteReader(std::string_view(text).substr(header.size())).Little<std::uint32_t>() != Crc(header))
        throw XFault("is damaged: its header has the wrong checksum");
    CByteReader bytes(header.substr(Magic.size()));
    m_version = bytes.Little<std::uint32_t>();
    if (m_version != Version && m_version != OldVersion)
        throw XFault("has version " + std::to_string(m_version) + " of the format; versions 1 and 2 can be read");
    bytes.Little<std::uint32_t>();  // reserved
    m_resolution = bytes.Little<std::int64_t>();
    m_endTime = bytes.Little<std::int64_t>();
    if (m_resolution <= 0 || m_endTime < 0)
        throw XFault("is damaged: its header has no sensible times");
    SHeader index{};
    index.indexOffset = bytes.Little<std::uint64_t>();
    index.indexSize = bytes.Little<std::uint64_t>();
    index.indexCrc = bytes.Little<std::uint32_t>();
    if (index.indexOffset < HeaderSize || index.indexOffset > fileSize ||
        index.indexSize > fileSize - index.indexOffset)
        throw XFault("is cut off: its index is missing");
    if (index.indexSize != fileSize - index.indexOffset)
        throw XFault("is damaged: there is something behind its index");
    return index;
}

const SSignalEntry *CStreamIndex::Find(int handle) const
{
    if (handle < 0 || static_cast<std::size_t>(handle) >= m_signals.size())
        return nullptr;
    return &m_signals[static_cast<std::size_t>(handle)];
}

// The handles of children rise with those of their parents.
const SSignalEntry *CStreamIndex::FindParent(int handle) const
{
    if (handle < m_topLevelCount)
        return nullptr;
    return &*(std::ranges::upper_bound(m_signals, handle, {}, &SSignalEntry::firstChild) - 1);
}

const Kestrin::KTypeInfo &CStreamIndex::TypeOf(const SSignalEntry &signal) const
{
    const auto known = m_types.find(signal.typeText);
    return known != m_types.end() ? known->second : m_types.try_emplace(signal.typeText, signal.typeText).first->second;
}

std::vector<const char *> CStreamIndex::TakeTypes(CByteReader &bytes) const
{
    return TakeOrFail("is cut off", [&] {
        const auto count = bytes.Little<std::uint32_t>();
        if (count > bytes.Rest().size())
            FailIndex("has more types than room");
        std::vector<const char *> types(count);
        for (const char *&type : types)
            type = bytes.Text().data();
        return types;
    });
}

// Level by level, so that the children of one signal follow those of the signal before it, and a tree is all that the
// numbers of children can describe.
void CStreamIndex::TakeSignals(CByteReader &bytes, const std::vector<const char *> &types)
{
    const auto count = bytes.Little<std::uint32_t>();
    const std::size_t room =
        std::max(bytes.Rest().size(), sizeof count) - sizeof count;  // behind that of the top level
    if (count > room / (HasStretches() ? LeastSignalSize : LeastOldSignalSize) ||
        count > std::numeric_limits<int>::max())
        FailIndex("has more signals than room");
    const auto topLevelCount = bytes.Little<std::uint32_t>();
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
    std::uint32_t type = 0;
    std::uint32_t childCount = 0;
    TakeOrFail("is cut off", [&] {
        signal.name = bytes.Text().data();
        type = bytes.Little<std::uint32_t>();
        childCount = bytes.Little<std::uint32_t>();
        signal.events = !HasStretches() || childCount == 0 ? bytes.Little<std::uint64_t>() : 0;
        signal.track = HasStretches() && childCount == 0 ? bytes.Little<std::uint32_t>() : NoTrack;
    });
    if (type >= types.size())
        FailIndex("names a type that it does not have");
    if (childCount > std::numeric_limits<int>::max() || (childCount > 0 && signal.events > 0))
        FailIndex("has a wrong number of children");
    signal.typeText = types[type];
    signal.firstChild = firstChild;
    signal.childCount = static_cast<int>(childCount);
    if (HasStretches())
        return signal;
    if (BlockCount(signal.events) > bytes.Rest().size() / BlockEntrySize)
        FailIndex("has more blocks than room");
    signal.blocks = bytes.Chars(BlockCount(signal.events) * BlockEntrySize);
    return signal;
}

void CStreamIndex::TestBlocks(const SSignalEntry &signal)
{
    CByteReader bytes(signal.blocks);
    while (!bytes.AtEnd()) {
        const SBlockEntry block = TakeBlockEntry(bytes);
        TestBlock(block.offset, block.size);
    }
}

void CStreamIndex::TestBlock(std::uint64_t offset, std::uint32_t size)
{
    if (offset < HeaderSize || offset > m_blockEnd || size > m_blockEnd - offset)
        FailIndex("has a block outside the file");
    m_blockBytes += size;
    if (m_blockBytes > m_blockEnd - HeaderSize)
        FailIndex("has blocks that overlap");
}

// The tracks are numbered without a gap. Scalars that share their events have one.
void CStreamIndex::TakeTracks()
{
    std::size_t count = 0;
    for (const SSignalEntry &signal : m_signals)
        count = std::max<std::size_t>(count, signal.track != NoTrack ? std::size_t{signal.track} + 1 : 0);
    if (count > m_signals.size())
        FailIndex("has a wrong number of scalars");
    m_handleOfTrack.assign(count, -1);
    m_valueSizes.assign(count, UnknownSize);
    for (std::size_t i = 0; i < m_signals.size(); ++i) {
        const SSignalEntry &signal = m_signals[i];
        if (signal.track == NoTrack && signal.events == 0)
            continue;
        if (signal.track == NoTrack)
            FailIndex("has a wrong number of scalars");
        int &handle = m_handleOfTrack[signal.track];
        handle = handle < 0 ? static_cast<int>(i) : handle;
        if (m_signals[static_cast<std::size_t>(handle)].events != signal.events)
            FailIndex("has a wrong number of events");
    }
    if (std::ranges::count(m_handleOfTrack, -1) > 0)
        FailIndex("has a wrong number of scalars");
}

void CStreamIndex::TakeStretches(CByteReader &bytes)
{
    const auto count = bytes.Little<std::uint32_t>();
    if (count > bytes.Rest().size() / StretchEntrySize)
        FailIndex("has more stretches of time than room");
    m_stretches.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i)
        TakeOrFail("has more blocks than room", [&] { TakeStretch(bytes); });
}

void CStreamIndex::TakeStretch(CByteReader &bytes)
{
    SStretchEntry stretch{};
    stretch.first = bytes.Little<std::int64_t>();
    stretch.last = bytes.Little<std::int64_t>();
    stretch.lowTrack = bytes.Little<std::uint32_t>();
    stretch.highTrack = bytes.Little<std::uint32_t>();
    stretch.blockCount = bytes.Little<std::uint32_t>();
    stretch.firstBlock = static_cast<std::uint32_t>(m_packs.size());
    stretch.table = TakePackEntry(bytes);
    if (stretch.blockCount > bytes.Rest().size() / PackEntrySize)
        FailIndex("has more blocks than room");
    if (stretch.first < 0 || stretch.last < stretch.first || stretch.lowTrack > stretch.highTrack ||
        stretch.highTrack >= TrackCount())
        FailIndex("has a stretch of time that cannot be");
    TestBlock(stretch.table.offset, stretch.table.size);
    for (std::uint32_t b = 0; b < stretch.blockCount; ++b) {
        m_packs.push_back(TakePackEntry(bytes));
        TestBlock(m_packs.back().offset, m_packs.back().size);
    }
    m_stretches.push_back(stretch);
}

unsigned CStreamIndex::ValueSizeOf(std::uint32_t track) const
{
    std::uint8_t &size = m_valueSizes[track];
    if (size == UnknownSize) {
        const Kestrin::KTypeInfo &type = TypeOf(m_signals[static_cast<std::size_t>(m_handleOfTrack[track])]);
        size = type.IsScalar() ? static_cast<std::uint8_t>(type.GetScalarSize_OldFormat()) : 0;
    }
    return size;
}

std::string SStreamFile::ReadBlock(const SBlockEntry &entry) const
{
    std::string packed = bytes->Read(entry.offset, entry.size);
    if (Crc(packed) != entry.crc)
        throw XFault("is damaged: a block has the wrong checksum");
    return packed;
}

std::string SStreamFile::ReadPack(const SPackEntry &entry) const
{
    const std::string packed = bytes->Read(entry.offset, entry.size);
    if (Crc(packed) != entry.crc)
        throw XFault("is damaged: a block has the wrong checksum");
    std::string raw;
    if (entry.rawSize > MaxRawBytes || !UnpackFast(packed, entry.rawSize, raw))
        throw XFault("is damaged: a block is not what the index says");
    return raw;
}

namespace {

// What an earlier opening read, as long as somebody keeps it.
struct SKnownFile {
    CFileStamp stamp;
    std::string header;
    std::weak_ptr<const CFileBytes> unpacked;  // of a packed file
    std::weak_ptr<const CStreamIndex> index;
    std::weak_ptr<CStreamCache> cache;
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
        file.cache = known.cache.lock();
        if (file.isPacked)
            file.bytes = known.unpacked.lock();
        if (file.index != nullptr && file.cache != nullptr && file.bytes != nullptr)
            return file;
    }
    if (file.isPacked)
        file.bytes = CFileBytes::Unpack(path);
    file.index = std::make_shared<CStreamIndex>(*file.bytes);
    file.cache = std::make_shared<CStreamCache>();
    KnownFiles().push_back({stamp, std::move(header), file.bytes, file.index, file.cache});
    return file;
}

}  // namespace Morvel
