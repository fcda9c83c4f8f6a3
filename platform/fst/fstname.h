// Names of variables as FST files write them: "clk", "data [7:0]", "memory[3][0:15]".
#pragma once

#include <cstdint>
#include <string_view>

namespace NTARN {

/// A name taken apart. The texts are parts of the one that was taken apart.
struct SFstName {
    std::string_view base;   ///< without blanks at its end
    std::string_view index;  ///< brackets behind it that are no range, such as "[3]"; they belong to the name
    int left = 0;            ///< the range; "width-1 downto 0" where none is written
    int right = 0;
};

/// Only brackets at the end that span exactly `width` elements are a range. A name that begins with a backslash holds
/// whatever stands before a blank or a second backslash.
/// @param width  at least 1
SFstName SplitFstName(std::string_view text, std::uint32_t width);

}  // namespace NTARN
