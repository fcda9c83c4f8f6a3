#include "platform/fst/fstvalues.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace NTARN {
namespace {

// Blocks are kept as long as they take no more than this; others are read again each time.
constexpr std::size_t MostMemory = std::size_t{256} << 20;

bool IsNan(std::uint64_t bits)
{
    constexpr std::uint64_t Infinity = 0x7FF0000000000000;
    return (bits & ~(std::uint64_t{1} << 63)) > Infinity;
}

// The time of the first change of a chain.
std::uint64_t FirstTime(SFstSpan bytes, const SFstStore &store, const CFstTimes &times)
{
    std::uint64_t timeIndex = 0;
    CFstChain(bytes, store).Next(timeIndex);
    if (timeIndex >= times.Count())
        throw XFstDamage();
    return times.At(timeIndex);
}

template <class T>
void AppendBytes(std::string &text, const T &value)
{
    text.append(reinterpret_cast<const char *>(&value), sizeof value);
}

}  // namespace

CFstValues::CFstValues(CFstFile &file, const SFstLayout &layout, const std::vector<SFstStore> &stores,
                       const SFstClock &clock)
    : m_file(file), m_layout(layout), m_stores(stores), m_clock(clock), m_limits(file.PackedSize()),
      m_blocks(layout.changes.size()), m_isUnreadable(layout.changes.size()), m_isCounted(layout.changes.size()),
      m_timesLeft(m_limits.Times()), m_eventsLeft(m_limits.Events()), m_bytesLeft(m_limits.ChangeBytes()),
      m_eventsOf(stores.size())
{}

const SFstEvents &CFstValues::Events(std::uint32_t store)
{
    static const SFstEvents none;
    const SFstEvents *&known = m_eventsOf[store];
    if (known != nullptr)
        return *known;
    known = &none;
    try {
        const std::vector<SSource> sources = Sources(store);
        const auto [place, isNew] = m_events.try_emplace(Identity(store, sources));
        if (isNew)
            place->second = Load(store, sources);
        known = &place->second;
    } catch (const std::bad_alloc &) {
        NoteDamage(0);
    }
    return *known;
}

SFstEvents CFstValues::Load(std::uint32_t store, const std::vector<SSource> &sources)
{
    const std::vector<SPiece> pieces = Pieces(sources);
    const SFstInitial initial = Initial(m_stores[store], pieces);
    if (pieces.empty() && initial.letters.empty())
        return {};
    CFstEventMaker maker(m_stores[store], m_clock, m_layout.header.isBigEndian, m_eventsLeft);
    maker.AddInitial(initial);
    AddPieces(maker, pieces);
    maker.EndCounting();
    maker.AddInitial(initial);
    AddPieces(maker, pieces);
    SFstEvents events = maker.Take();
    m_eventsLeft -= events.events.size();
    return events;
}

std::vector<CFstValues::SSource> CFstValues::Sources(std::uint32_t store)
{
    if (++m_askedFor == 2)
        FindBlocks();
    std::vector<SSource> sources;
    if (m_storeBlocks.IsKnown()) {
        for (const std::uint32_t block : m_storeBlocks.BlocksOf(store))
            AddSource(block, store, sources);
        return sources;
    }
    for (std::size_t i = 0; i < m_layout.changes.size(); ++i)
        AddSource(i, store, sources);
    return sources;
}

void CFstValues::AddSource(std::size_t block, std::uint32_t store, std::vector<SSource> &sources)
{
    const BlockPtr read = Block(block);
    const SFstStretch stretch = read ? read->Positions().Find(store) : SFstStretch{0, 0};
    if (stretch.size > 0)
        sources.push_back({block, stretch});
}

void CFstValues::FindBlocks()
{
    for (std::size_t i = 0; i < m_layout.changes.size(); ++i) {
        if (const BlockPtr block = Block(i))
            m_storeBlocks.Add(i, block->Positions(), m_stores.size());
    }
    m_storeBlocks.End(m_stores.size());
}

// What the events are made of: stores of which it is the same have the same events.
std::string CFstValues::Identity(std::uint32_t store, const std::vector<SSource> &sources)
{
    const SFstSpan letters = FrameLetters(m_stores[store]);
    std::string identity(reinterpret_cast<const char *>(letters.data()), letters.size());
    AppendBytes(identity, m_stores[store].kind);
    AppendBytes(identity, m_stores[store].size);
    for (const SSource &source : sources) {
        AppendBytes(identity, source.block);
        AppendBytes(identity, source.stretch.position);
    }
    return identity;
}

std::vector<CFstValues::SPiece> CFstValues::Pieces(const std::vector<SSource> &sources)
{
    std::vector<SPiece> pieces;
    std::uint64_t left = m_limits.StoreBytes();
    for (const SSource &source : sources) {
        const BlockPtr block = Block(source.block);
        if (!block)
            continue;
        try {
            CFstBuffer chain = block->Chain(m_file, source.stretch, std::min(left, m_bytesLeft));
            const std::uint64_t size = std::max<std::uint64_t>(chain.size(), source.stretch.size);
            left -= size;
            m_bytesLeft -= size;
            if (!chain.empty())
                pieces.push_back({source.block, std::move(chain)});
        } catch (const XFstTooMuch &) {
            NoteTooMuch(source.block);
            break;
        } catch (const XFstDamage &) {
            NoteDamage(source.block);
        }
    }
    return pieces;
}

void CFstValues::AddPieces(CFstEventMaker &maker, const std::vector<SPiece> &pieces)
{
    for (const SPiece &piece : pieces) {
        const BlockPtr block = Block(piece.block);
        try {
            maker.AddChain(piece.chain, block ? block->Times() : CFstTimes());
        } catch (const XFstTooMuch &) {
            NoteTooMuch(piece.block);
            break;
        } catch (const XFstDamage &) {
            NoteDamage(piece.block);
        }
    }
}

// The frame of the first block tells the values at its beginning. It is of no use where the store changes just then,
// nor where it only holds what the writer filled it with, unless times are told from a later one on.
SFstInitial CFstValues::Initial(const SFstStore &store, const std::vector<SPiece> &pieces)
try {
    const SFstSpan letters = FrameLetters(store);
    const BlockPtr block = letters.empty() ? nullptr : Block(0);
    if (!block || block->Times().Count() == 0)
        return {};
    const std::uint64_t begin = m_layout.changes[0].begin;
    const std::uint64_t first = block->Times().At(0);
    if (begin > first || (begin == first && IsUntold(letters, store)))
        return {};
    if (!pieces.empty() && pieces[0].block == 0 && FirstTime(pieces[0].chain, store, block->Times()) == begin)
        return {};
    return {begin, letters};
} catch (const XFstDamage &) {
    NoteDamage(0);
    return {};
}

bool CFstValues::IsUntold(SFstSpan letters, const SFstStore &store) const
{
    if (store.kind == SFstStore::EKind::Real)
        return IsNan(FstReal(letters, m_layout.header.isBigEndian));
    return std::ranges::all_of(letters, [](std::uint8_t letter) { return letter == 'x'; });
}

// Of a store in the frame of the first block; empty if it has none there.
SFstSpan CFstValues::FrameLetters(const SFstStore &store)
{
    const SFstSpan frame = Frame();
    if (store.position > frame.size() || store.size > frame.size() - store.position)
        return {};
    return frame.subspan(static_cast<std::size_t>(store.position), store.size);
}

const CFstBuffer &CFstValues::Frame()
{
    if (m_frame)
        return *m_frame;
    m_frame.emplace();
    try {
        if (const BlockPtr block = m_blocks.empty() ? nullptr : Block(0))
            m_frame = block->Frame(m_file, m_limits.Unpacked());
    } catch (const XFstTooMuch &) {
        NoteTooMuch(0);
    } catch (const XFstDamage &) {
        NoteDamage(0);
    }
    return *m_frame;
}

CFstValues::BlockPtr CFstValues::Block(std::size_t index)
{
    if (m_blocks[index] || m_isUnreadable[index])
        return m_blocks[index];
    try {
        BlockPtr block = ReadBlock(index);
        if (block->Memory() <= MostMemory - m_memory) {
            m_memory += block->Memory();
            m_blocks[index] = block;
        }
        return block;
    } catch (const XFstTooMuch &) {
        NoteTooMuch(index);
    } catch (const XFstDamage &) {
        NoteDamage(index);
    }
    m_isUnreadable[index] = true;
    return nullptr;
}

// Its times count once, however often it is read.
CFstValues::BlockPtr CFstValues::ReadBlock(std::size_t index)
{
    const std::uint64_t most = m_isCounted[index] ? m_limits.Times() : m_timesLeft;
    const SFstChangeBlock &place = m_layout.changes[index];
    const auto block = std::make_shared<CFstBlock>(m_file, place, most);
    if (!m_isCounted[index])
        m_timesLeft -= block->Times().Count();
    m_isCounted[index] = true;
    if (index > 0)
        block->Times().MoveInto(place.begin, place.end);
    return block;
}

void CFstValues::NoteDamage(std::size_t block)
{
    const std::uint64_t begin = block < m_layout.changes.size() ? m_layout.changes[block].begin : 0;
    m_firstDamage = std::min(m_firstDamage.value_or(begin), begin);
}

void CFstValues::NoteTooMuch(std::size_t block)
{
    m_isTooMuch = true;
    NoteDamage(block);
}

}  // namespace NTARN
