// Extended identifiers, "\...\".
#pragma once

#include "base/export.h"

/// Steps over an extended identifier, "\...\", at the start of `text`; "\\" inside it stands for one backslash.
/// @return what stands behind it, the end of `text` if it is not closed; `text` itself if there is none
TESK_API const char *SkipExtendedID(const char *text);
