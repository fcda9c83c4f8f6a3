// The handles of a GHW file's signals and of what is in them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ghw/ghwhierarchy.h"
#include "platform/tarn.h"

namespace NTARN {

/// What a handle stands for: a whole signal, or a part of one.
struct SGhwNode {
    std::uint32_t type;   ///< place among the types
    int parent;           ///< its handle; 0 for a whole signal
    int firstChild;       ///< its handle; 0 if there is none
    std::size_t element;  ///< place of its first scalar in the hierarchy
};

/// Handles begin at 1: first the signals in the file's order, then, level by level, the parts of each in a row.
class CGhwNodes {
public:
    /// @throw XGhwDamage if there are too many
    CGhwNodes(const CGhwTypes &types, const CGhwHierarchy &hierarchy, CGhwBudget &budget);

    /// Null if there is no such handle.
    const SGhwNode *Find(int handle) const;
    HSignalRange ChildrenOf(const SGhwNode &node) const;
    /// Which part of its parent a node is, counted from 0.
    std::size_t PartOf(int handle) const;

private:
    void AddChildren(std::size_t place, CGhwBudget &budget);

    const CGhwTypes &m_types;
    std::vector<SGhwNode> m_nodes;
};

}  // namespace NTARN
