#include "platform/fst/fstclasses.h"

#include <map>
#include <string>
#include <tuple>
#include <utility>

namespace NTARN {

void CFstClasses::Find(CFstBlocks &blocks, const std::vector<SFstStore> &stores)
{
    if (m_areKnown)
        return;
    Begin(blocks, stores);
    for (std::size_t i = 0; i < blocks.Count(); ++i) {
        if (const CFstBlocks::BlockPtr block = blocks.Pass(i))
            Split(block->Positions());
        Number();
    }
    m_areKnown = true;
}

// By what they are in front of the first block.
void CFstClasses::Begin(CFstBlocks &blocks, const std::vector<SFstStore> &stores)
{
    std::map<std::tuple<std::string, SFstStore::EKind, std::uint32_t>, std::uint32_t> classes;
    m_hasChanges.assign(stores.size(), false);
    m_classOf.clear();
    m_count = 0;
    for (const SFstStore &store : stores) {
        const SFstSpan letters = blocks.FrameLetters(store);
        const auto [known, isNew] = classes.try_emplace(
            {std::string(reinterpret_cast<const char *>(letters.data()), letters.size()), store.kind, store.size},
            m_count);
        m_count += isNew ? 1 : 0;
        m_classOf.push_back(known->second);
    }
}

// Those that have a chain in a block leave their class, together with those that have the same.
void CFstClasses::Split(const CFstPositions &positions)
{
    std::vector<std::pair<std::uint32_t, std::uint32_t>> first(positions.ChainCount(), {None, None});  // class, new one
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> others;  // by chain and class
    for (std::size_t i = 0; i < positions.EntryCount(); ++i) {
        const std::uint32_t store = positions.StoreOf(i);
        if (store >= m_classOf.size() || positions.StretchOf(i).size == 0)
            continue;
        m_hasChanges[store] = true;
        std::uint32_t &of = m_classOf[store];
        auto &[known, split] = first[positions.ChainOf(i)];
        if (known == None) {
            known = of;
            split = m_count++;
        }
        if (known == of) {
            of = split;
            continue;
        }
        const auto [place, isNew] = others.try_emplace({positions.ChainOf(i), of}, m_count);
        m_count += isNew ? 1 : 0;
        of = place->second;
    }
}

// Numbers those classes that have stores.
void CFstClasses::Number()
{
    std::vector<std::uint32_t> numbers(m_count, None);
    m_count = 0;
    for (std::uint32_t &of : m_classOf) {
        std::uint32_t &number = numbers[of];
        if (number == None)
            number = m_count++;
        of = number;
    }
}

}  // namespace NTARN
