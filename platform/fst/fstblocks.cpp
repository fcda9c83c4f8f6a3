#include "platform/fst/fstblocks.h"

#include <algorithm>
#include <cstdint>

#include "platform/fst/fstchain.h"

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

}  // namespace

CFstBlocks::CFstBlocks(CFstFile &file, const SFstLayout &layout)
    : m_file(file), m_layout(layout), m_limits(file.PackedSize()), m_blocks(layout.changes.size()),
      m_isUnreadable(layout.changes.size()), m_isCounted(layout.changes.size()), m_timesLeft(m_limits.Times())
{}

CFstBlocks::BlockPtr CFstBlocks::Block(std::size_t index)
{
    BlockPtr block = Pass(index);
    if (block && !m_blocks[index] && block->Memory() <= MostMemory - m_memory) {
        m_memory += block->Memory();
        m_blocks[index] = block;
    }
    return block;
}

CFstBlocks::BlockPtr CFstBlocks::Pass(std::size_t index)
{
    if (m_blocks[index] || m_isUnreadable[index])
        return m_blocks[index];
    if (m_passed && m_passedIndex == index)
        return m_passed;
    try {
        m_passed.reset();  // the next one may take its room
        m_passed = ReadBlock(index);
        m_passedIndex = index;
        return m_passed;
    } catch (const XFstTooMuch &) {
        NoteTooMuch(index);
    } catch (const XFstDamage &) {
        NoteDamage(index);
    }
    m_isUnreadable[index] = true;
    return nullptr;
}

// Its times count once, however often it is read.
CFstBlocks::BlockPtr CFstBlocks::ReadBlock(std::size_t index)
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

bool CFstBlocks::Unpack(std::size_t block, const SFstStretch &stretch, std::uint64_t &left, std::uint64_t &allLeft,
                        CFstBuffer &chain)
{
    chain.clear();
    const BlockPtr read = Pass(block);
    if (!read)
        return true;
    try {
        chain = read->Chain(m_file, stretch, std::min(left, allLeft));
        const std::uint64_t size = std::max<std::uint64_t>(chain.size(), stretch.size);
        left -= size;
        allLeft -= size;
    } catch (const XFstTooMuch &) {
        NoteTooMuch(block);
        return false;
    } catch (const XFstDamage &) {
        NoteDamage(block);
    }
    return true;
}

// The frame of the first block is of no use where the store changes just then, nor where it only holds what the writer
// filled it with, unless times are told from a later one on.
SFstInitial CFstBlocks::Initial(const SFstStore &store, SFstSpan chain)
try {
    const SFstSpan letters = FrameLetters(store);
    const BlockPtr block = letters.empty() ? nullptr : Block(0);
    if (!block || block->Times().Count() == 0)
        return {};
    const std::uint64_t begin = m_layout.changes[0].begin;
    const std::uint64_t first = block->Times().At(0);
    if (begin > first || (begin == first && IsUntold(letters, store)))
        return {};
    if (!chain.empty() && FirstTime(chain, store, block->Times()) == begin)
        return {};
    return {begin, letters};
} catch (const XFstDamage &) {
    NoteDamage(0);
    return {};
}

bool CFstBlocks::IsUntold(SFstSpan letters, const SFstStore &store) const
{
    if (store.kind == SFstStore::EKind::Real)
        return IsNan(FstReal(letters, m_layout.header.isBigEndian));
    return std::ranges::all_of(letters, [](std::uint8_t letter) { return letter == 'x'; });
}

SFstSpan CFstBlocks::FrameLetters(const SFstStore &store)
{
    const SFstSpan frame = Frame();
    if (store.position > frame.size() || store.size > frame.size() - store.position)
        return {};
    return frame.subspan(static_cast<std::size_t>(store.position), store.size);
}

const CFstBuffer &CFstBlocks::Frame()
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

void CFstBlocks::NoteDamage(std::size_t block)
{
    const std::uint64_t begin = block < m_layout.changes.size() ? m_layout.changes[block].begin : 0;
    m_firstDamage = std::min(m_firstDamage.value_or(begin), begin);
}

void CFstBlocks::NoteTooMuch(std::size_t block)
{
    m_isTooMuch = true;
    NoteDamage(block);
}

}  // namespace NTARN
