// Reads the legacy gate-level notation.
#pragma once

#include <string_view>

#include "settings/brel.h"

namespace tesk {

/// Fills a sequence with the items of `text`, which is in capital letters. Groups may lie in one another 1000 deep; one
/// that lies deeper is dropped as one that cannot be read. Takes time in proportion to the text's length.
/// @return false for a group that is not closed or has nothing behind it; the items before it are kept
bool ReadBrelItems(std::string_view text, CBrelSequence &sequence);

}  // namespace tesk
