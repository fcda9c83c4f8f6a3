#include "platform/ghw/ghwnodes.h"

#include <limits>

namespace NTARN {

CGhwNodes::CGhwNodes(const CGhwTypes &types, const CGhwHierarchy &hierarchy, CGhwBudget &budget) : m_types(types)
{
    for (const SGhwSignal &signal : hierarchy.Signals())
        m_nodes.push_back({signal.type, 0, 0, signal.firstElement});
    for (std::size_t i = 0; i < m_nodes.size(); ++i)
        AddChildren(i, budget);
}

const SGhwNode *CGhwNodes::Find(int handle) const
{
    const bool isKnown = handle > 0 && static_cast<std::size_t>(handle) <= m_nodes.size();
    return isKnown ? &m_nodes[static_cast<std::size_t>(handle - 1)] : nullptr;
}

HSignalRange CGhwNodes::ChildrenOf(const SGhwNode &node) const
{
    if (node.firstChild == 0)
        return {};
    return {node.firstChild, node.firstChild + static_cast<int>(m_types.At(node.type).PartCount()) - 1};
}

std::size_t CGhwNodes::PartOf(int handle) const
{
    const SGhwNode *node = Find(handle);
    const SGhwNode *parent = node != nullptr ? Find(node->parent) : nullptr;
    return parent != nullptr ? static_cast<std::size_t>(handle - parent->firstChild) : 0;
}

void CGhwNodes::AddChildren(std::size_t place, CGhwBudget &budget)
{
    const SGhwType &type = m_types.At(m_nodes[place].type);
    const std::uint64_t count = type.PartCount();
    if (count == 0)
        return;
    budget.Charge(count);
    if (count > std::numeric_limits<int>::max() - m_nodes.size())
        throw XGhwDamage();
    m_nodes[place].firstChild = static_cast<int>(m_nodes.size()) + 1;
    std::size_t element = m_nodes[place].element;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t part = CGhwTypes::PartPlace(type, i);
        m_nodes.push_back({part, static_cast<int>(place) + 1, 0, element});
        element += static_cast<std::size_t>(m_types.At(part).scalars);
    }
}

}  // namespace NTARN
