#include "platform/fst/fstvalues.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace NTARN {
namespace {

template <class T>
void AppendBytes(std::string &text, const T &value)
{
    text.append(reinterpret_cast<const char *>(&value), sizeof value);
}

}  // namespace

CFstValues::CFstValues(CFstBlocks &blocks, const std::vector<SFstStore> &stores, const SFstClock &clock)
    : m_blocks(blocks), m_stores(stores), m_clock(clock), m_eventsLeft(blocks.Limits().Events()),
      m_sharedOf(stores.size(), None)
{}

const SFstEvents &CFstValues::Events(std::uint32_t store)
{
    static const SFstEvents none;
    try {
        SShared &shared = m_shared[Identify(store)];
        if (shared.isRead)
            return shared.events;
        shared.isRead = true;
        shared.events = Load(store, Sources(store));
        return shared.events;
    } catch (const std::bad_alloc &) {
        m_blocks.NoteDamage(0);
        return none;
    }
}

std::uint32_t CFstValues::Identify(std::uint32_t store)
{
    std::uint32_t &shared = m_sharedOf[store];
    if (shared != None)
        return shared;
    if (++m_askedFor == 2)
        FindBlocks();
    const auto next = static_cast<std::uint32_t>(m_shared.size());
    const std::vector<SSource> sources = Sources(store);
    const auto [place, isNew] = m_places.try_emplace(Identity(store, sources), next);
    if (isNew)
        m_shared.push_back({!sources.empty() || !m_blocks.Initial(m_stores[store], {}).letters.empty(), false, {}});
    shared = place->second;
    return shared;
}

SFstEvents CFstValues::Load(std::uint32_t store, const std::vector<SSource> &sources)
{
    const std::vector<SPiece> pieces = Pieces(sources);
    const bool beginsAtOnce = !pieces.empty() && pieces[0].block == 0;
    const SFstInitial initial = m_blocks.Initial(m_stores[store], beginsAtOnce ? pieces[0].chain : SFstSpan());
    if (pieces.empty() && initial.letters.empty())
        return {};
    CFstEventMaker maker(m_stores[store], m_clock, m_blocks.Layout().header.isBigEndian, m_eventsLeft);
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
    std::vector<SSource> sources;
    if (m_storeBlocks.IsKnown()) {
        for (const std::uint32_t block : m_storeBlocks.BlocksOf(store))
            AddSource(block, store, sources);
        return sources;
    }
    for (std::size_t i = 0; i < m_blocks.Count(); ++i)
        AddSource(i, store, sources);
    return sources;
}

void CFstValues::AddSource(std::size_t block, std::uint32_t store, std::vector<SSource> &sources)
{
    const CFstBlocks::BlockPtr read = m_blocks.Block(block);
    const SFstStretch stretch = read ? read->Positions().Find(store) : SFstStretch{0, 0};
    if (stretch.size > 0)
        sources.push_back({block, stretch});
}

void CFstValues::FindBlocks()
{
    for (std::size_t i = 0; i < m_blocks.Count(); ++i) {
        if (const CFstBlocks::BlockPtr block = m_blocks.Block(i))
            m_storeBlocks.Add(i, block->Positions(), m_stores.size());
    }
    m_storeBlocks.End(m_stores.size());
}

// What the events are made of: stores of which it is the same have the same events.
std::string CFstValues::Identity(std::uint32_t store, const std::vector<SSource> &sources)
{
    const SFstSpan letters = m_blocks.FrameLetters(m_stores[store]);
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
    std::uint64_t left = m_blocks.Limits().StoreBytes();
    for (const SSource &source : sources) {
        CFstBuffer chain;
        if (!m_blocks.Unpack(source.block, source.stretch, left, chain))
            break;
        if (!chain.empty())
            pieces.push_back({source.block, std::move(chain)});
    }
    return pieces;
}

void CFstValues::AddPieces(CFstEventMaker &maker, const std::vector<SPiece> &pieces)
{
    static const CFstTimes none;
    for (const SPiece &piece : pieces) {
        const CFstBlocks::BlockPtr block = m_blocks.Block(piece.block);
        try {
            maker.AddChain(piece.chain, block ? block->Times() : none);
        } catch (const XFstTooMuch &) {
            m_blocks.NoteTooMuch(piece.block);
            break;
        } catch (const XFstDamage &) {
            m_blocks.NoteDamage(piece.block);
        }
    }
}

}  // namespace NTARN
