// The tokeniser on texts that are only seen; the text sets are those of `core/tokenizer.h`.
#pragma once

#include <string>
#include <string_view>

#include "core/tokenizer.h"

namespace tesk {

/// `NextToken` without copying: the token is a part of what `rest` saw, and `rest` moves behind it.
std::string_view TakeToken(std::string_view &rest, const char *open, const char *close, const char *blanks);

/// The inside of the group that `text` begins with, up to the end if it is not closed; all of `text` if it begins with
/// none.
std::string_view StripGroup(std::string_view text, const char *open, const char *close);

/// `SplitChunk` on a text that is only seen.
std::string TakeChunk(std::string_view &rest, const char *stop, const char *open, const char *close, const char *blanks,
                      EJoin join);

}  // namespace tesk
