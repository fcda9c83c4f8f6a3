// The types that the readers of dumps give to signals.
#pragma once

#include <string>
#include <string_view>

namespace Kestrin {

inline constexpr std::string_view StdLogicTypeText = "e#9#std_logicc9 UX01ZWLH-";
inline constexpr std::string_view RealTypeText = "f#4#realrrct-1.79769e+308 1.79769e+308";

/// The description of a std_logic_vector. Equal bounds go down.
inline std::string BusTypeText(int left, int right)
{
    const std::string bounds[] = {std::to_string(left), std::to_string(right)};
    const bool isDown = left >= right;
    const std::string name = "std_logic_vector(" + bounds[0] + (isDown ? " downto " : " to ") + bounds[1] + ")";
    return "a#" + std::to_string(name.size()) + "#" + name + "1 ric" + (isDown ? "d" : "t") + bounds[0] + " " +
           bounds[1] + " " + std::string(StdLogicTypeText);
}

}  // namespace Kestrin
