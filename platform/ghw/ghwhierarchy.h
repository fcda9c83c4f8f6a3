// The scopes and signals of a GHW file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ghw/ghwtypes.h"
#include "platform/types/direction.h"

namespace NTARN {

/// How the values of an element are written.
enum class EGhwValue : std::uint8_t {
    None,     // of an element that no signal has
    Byte,     // a position
    Integer,  // of 32 bits, in groups of 7
    Long,     // of 64 bits, likewise
    Real
};

/// A port is a signal too, and mostly has the elements of the signal it is connected to.
struct SGhwSignal {
    std::uint32_t name;        ///< of a string
    int scope;                 ///< place among the scopes; -1 for none
    std::uint32_t type;        ///< place among the types
    std::size_t firstElement;  ///< place in `ElementOf`
    tesk::ESignalDirection direction;
};

class CGhwHierarchy {
public:
    CGhwHierarchy() = default;
    /// Reads what stands behind the tag of the section.
    /// @param types  must outlive the hierarchy
    /// @throw XGhwDamage
    CGhwHierarchy(CGhwBytes &bytes, const CGhwTypes &types, CGhwBudget &budget);

    const std::vector<SGhwSignal> &Signals() const { return m_signals; }
    /// Signals that are left out: their names or types are too long, or their types have no description.
    std::size_t LeftOutCount() const { return m_leftOutCount; }
    /// The number of the element, counted from 0, that is a scalar of a signal.
    std::uint32_t ElementOf(std::size_t place) const { return m_elements[place]; }
    /// How the values of each element are written.
    const std::vector<EGhwValue> &Values() const { return m_values; }
    /// The scopes and the signal, joined by `separator`.
    std::string Path(const SGhwSignal &signal, char separator) const;

private:
    friend class CGhwHierarchyReader;

    struct SScope {
        std::string name;
        int parent;            // -1 for none
        std::size_t pathSize;  // with a separator behind it
    };

    const CGhwTypes *m_types = nullptr;
    std::vector<SScope> m_scopes;
    std::vector<SGhwSignal> m_signals;
    std::vector<std::uint32_t> m_elements;
    std::vector<EGhwValue> m_values;
    std::size_t m_leftOutCount = 0;
};

}  // namespace NTARN
