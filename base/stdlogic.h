// The nine letters of std_logic, and the letters of gate-level states.
#pragma once

#include <string_view>

#include "base/export.h"

namespace tesk {

/// The values of std_logic, each at its position.
inline constexpr std::string_view StdLogicLetters = "UX01ZWLH-";

}  // namespace tesk

/// The std_logic letter of a gate-level state letter, 0 for an unknown one. Case matters: 'U' is a level, 'u' is not.
TESK_API char GateLevel2StdLogic(char letter);

/// As `GateLevel2StdLogic`, the position in the alphabet "UX01ZWLH-", -1 for an unknown letter.
TESK_API int GateLevel2StdLogicIndex(char letter);
