// The names and literals of a GHW file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ghw/ghwsection.h"

namespace NTARN {

/// The strings, counted from 1, in UTF-8; the file has them in Latin-1. String 0 is that of what has no name.
class CGhwStrings {
public:
    CGhwStrings() = default;
    /// Reads what stands behind the tag of the section.
    /// @throw XGhwDamage
    CGhwStrings(CGhwBytes &bytes, CGhwBudget &budget);

    /// Valid as long as the object. @throw XGhwDamage if there is no such string
    std::string_view Text(std::uint32_t number) const;

private:
    std::string m_text;
    std::vector<std::size_t> m_ends = {0};  // of each string in m_text
};

}  // namespace NTARN
