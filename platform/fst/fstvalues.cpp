#include "platform/fst/fstvalues.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace NTARN {
namespace {

// Blocks are kept as long as they take no more than this; others are read again each time.
constexpr std::size_t MostMemory = std::size_t{256} << 20;
// A wider bus has too many elements for a signal.
constexpr std::uint32_t MostWidth = 1 << 24;

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

}  // namespace

CFstValues::CFstValues(CFstFile &file, const SFstLayout &layout, const std::vector<SFstStore> &stores,
                       const SFstClock &clock)
    : m_file(file), m_layout(layout), m_stores(stores), m_clock(clock), m_blocks(layout.changes.size()),
      m_isUnreadable(layout.changes.size())
{}

const SFstEvents &CFstValues::Events(std::uint32_t store)
{
    const auto [place, isNew] = m_events.try_emplace(store);
    if (!isNew || m_stores[store].Width() > MostWidth)
        return place->second;
    try {
        place->second = Load(m_stores[store], Pieces(store));
    } catch (const std::bad_alloc &) {
        NoteDamage(0);
    }
    return place->second;
}

SFstEvents CFstValues::Load(const SFstStore &store, const std::vector<SPiece> &pieces)
{
    const SFstInitial initial = Initial(store, pieces);
    CFstEventMaker maker(store, m_clock, m_layout.header.isBigEndian);
    maker.AddInitial(initial);
    AddPieces(maker, pieces);
    maker.EndCounting();
    maker.AddInitial(initial);
    AddPieces(maker, pieces);
    return maker.Take();
}

std::vector<CFstValues::SPiece> CFstValues::Pieces(std::uint32_t store)
{
    std::vector<SPiece> pieces;
    for (std::size_t i = 0; i < m_layout.changes.size(); ++i) {
        const BlockPtr block = Block(i);
        if (!block)
            continue;
        try {
            CFstBuffer chain = block->Chain(m_file, store);
            if (!chain.empty())
                pieces.push_back({i, std::move(chain)});
        } catch (const XFstDamage &) {
            NoteDamage(i);
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
        } catch (const XFstDamage &) {
            NoteDamage(piece.block);
        }
    }
}

// The frame of the first block tells the values at its beginning. It is of no use where the store changes just then,
// nor where it only holds what the writer filled it with, unless times are told from a later one on.
SFstInitial CFstValues::Initial(const SFstStore &store, const std::vector<SPiece> &pieces)
try {
    const BlockPtr block = m_blocks.empty() ? nullptr : Block(0);
    if (!block || block->Times().Count() == 0)
        return {};
    const std::uint64_t begin = m_layout.changes[0].begin;
    const std::uint64_t first = block->Times().At(0);
    const CFstBuffer &frame = Frame(*block);
    if (begin > first || store.position > frame.size() || store.size > frame.size() - store.position)
        return {};
    const SFstSpan letters = SFstSpan(frame).subspan(static_cast<std::size_t>(store.position), store.size);
    if (begin == first && IsUntold(letters, store))
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

const CFstBuffer &CFstValues::Frame(const CFstBlock &block)
{
    if (!m_frame) {
        m_frame.emplace();
        m_frame = block.Frame(m_file);
    }
    return *m_frame;
}

CFstValues::BlockPtr CFstValues::Block(std::size_t index)
{
    if (m_blocks[index] || m_isUnreadable[index])
        return m_blocks[index];
    try {
        auto block = std::make_shared<const CFstBlock>(m_file, m_layout.changes[index]);
        if (block->Memory() <= MostMemory - m_memory) {
            m_memory += block->Memory();
            m_blocks[index] = block;
        }
        return block;
    } catch (const XFstDamage &) {
        m_isUnreadable[index] = true;
        NoteDamage(index);
        return nullptr;
    }
}

void CFstValues::NoteDamage(std::size_t block)
{
    const std::uint64_t begin = block < m_layout.changes.size() ? m_layout.changes[block].begin : 0;
    m_firstDamage = std::min(m_firstDamage.value_or(begin), begin);
}

}  // namespace NTARN
