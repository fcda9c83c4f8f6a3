// The keywords that tell the kinds of formula apart.
#pragma once

#include <string_view>

namespace tesk {

inline constexpr std::string_view CustomKeyword = "/custom";
inline constexpr std::string_view TxtKeyword = "/txt";
inline constexpr std::string_view MatKeyword = "/mat";
inline constexpr std::string_view CounterKeyword = "\\counter";
inline constexpr std::string_view RandomKeyword = "\\random";
inline constexpr std::string_view BrelKeyword = "/brel";

}  // namespace tesk
