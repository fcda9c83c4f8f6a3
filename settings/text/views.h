// Strings of the library out of texts that are only seen.
#pragma once

#include <string_view>

#include "settings/cstr.h"

namespace tesk {

/// A copy; it ends before a zero in `text`.
inline SimpleString::CStr ToCStr(std::string_view text)
{
    return SimpleString::CStr(text.data(), static_cast<unsigned>(text.size()));
}

}  // namespace tesk
