// Which stores change alike: a writer has changes that several of them share once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/fst/fstblocks.h"
#include "platform/fst/fsthierarchy.h"

namespace NTARN {

/// Two stores are of one class if they are alike, begin alike and have the same chains in every block. For that each block is
/// gone through once, and none is kept.
class CFstClasses {
public:
    static constexpr std::uint32_t None = UINT32_MAX;

    /// Goes through the file, if that has not been done. @throw std::bad_alloc
    void Find(CFstBlocks &blocks, const std::vector<SFstStore> &stores);

    /// Classes are counted from 0.
    std::size_t Count() const { return m_count; }
    std::uint32_t Of(std::uint32_t store) const { return m_classOf[store]; }
    /// Whether a block has changes of a store.
    bool HasChanges(std::uint32_t store) const { return m_hasChanges[store]; }

private:
    void Begin(CFstBlocks &blocks, const std::vector<SFstStore> &stores);
    void Split(const CFstPositions &positions);
    void Number();

    bool m_areKnown = false;
    std::vector<std::uint32_t> m_classOf;  // of each store
    std::vector<bool> m_hasChanges;
    std::uint32_t m_count = 0;
};

}  // namespace NTARN
