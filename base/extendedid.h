// Extended identifiers, "\...\".
#pragma once

#include <cstddef>
#include <string_view>

#include "base/export.h"

namespace tesk {

/// The length of the extended identifier `\...\` that a name begins with; 0 if it begins with none, or with one that is
/// not closed. A doubled backslash does not close it.
std::size_t ExtendedLength(std::string_view name);

}  // namespace tesk

/// Steps over an extended identifier, "\...\", at the start of `text`; "\\" inside it stands for one backslash.
/// @return what stands behind it, the end of `text` if it is not closed; `text` itself if there is none
TESK_API const char *SkipExtendedID(const char *text);
