#include "platform/fst/fstvalues.h"

#include <algorithm>
#include <new>
#include <utility>

namespace NTARN {

CFstValues::CFstValues(CFstBlocks &blocks, const std::vector<SFstStore> &stores, const SFstClock &clock)
    : m_blocks(blocks), m_stores(stores), m_clock(clock), m_eventsLeft(blocks.Limits().Events()),
      m_bytesLeft(blocks.Limits().ChangeBytes())
{}

const SFstEvents &CFstValues::Events(std::uint32_t store)
{
    static const SFstEvents none;
    try {
        SShared &shared = m_shared[Share(store)];
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
    m_classes.Find(m_blocks, m_stores);
    return m_classes.Of(store);
}

bool CFstValues::MayHaveEvents(std::uint32_t store)
{
    m_classes.Find(m_blocks, m_stores);
    return m_classes.HasChanges(store) || !m_blocks.Initial(m_stores[store], {}).letters.empty();
}

// Who asks for one store only has no need to know which ones are like it.
std::uint32_t CFstValues::Share(std::uint32_t store)
{
    if (m_firstStore == None) {
        m_firstStore = store;
        m_shared.emplace_back();
    }
    if (m_firstStore == store)
        return 0;
    if (m_sharedOf.empty()) {
        m_classes.Find(m_blocks, m_stores);
        FindBlocks();
        m_sharedOf.assign(m_classes.Count(), None);
        m_sharedOf[m_classes.Of(m_firstStore)] = 0;
    }
    std::uint32_t &shared = m_sharedOf[m_classes.Of(store)];
    if (shared == None) {
        shared = static_cast<std::uint32_t>(m_shared.size());
        m_shared.emplace_back();
    }
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
    CFstStoreBlocks found;
    for (std::size_t i = 0; i < m_blocks.Count(); ++i) {
        if (const CFstBlocks::BlockPtr block = m_blocks.Block(i))
            found.Add(i, block->Positions(), m_stores.size());
    }
    found.End(m_stores.size());
    m_storeBlocks = std::move(found);
}

std::vector<CFstValues::SPiece> CFstValues::Pieces(const std::vector<SSource> &sources)
{
    std::vector<SPiece> pieces;
    std::uint64_t left = m_blocks.Limits().StoreBytes();
    for (const SSource &source : sources) {
        CFstBuffer chain;
        if (!m_blocks.Unpack(source.block, source.stretch, left, m_bytesLeft, chain))
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
