// Whether a type has a place for a value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/kestrin.h"

namespace tesk {

/// Why a value is none of a type.
struct SValueFault {
    bool isError = true;  ///< else the value is played, but not as it stands
    std::string text;
    std::string advice;
};

/// Holds the value of an event against the type of the signal.
/// @param value  as the formula writes it, quotes and brackets included
/// @return nothing if the type has a place for it, or if the type is not one that can be judged
std::optional<SValueFault> ExamineValue(std::string_view value, const Kestrin::KTypeInfo &type);

}  // namespace tesk
