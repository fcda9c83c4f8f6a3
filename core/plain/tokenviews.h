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

/// The tokens of the chunk that a formula begins with, one by one: those of which `TakeChunk` with the stop ",", the parser's
/// groups and `EJoin::BehindEveryToken` makes a chunk, read again from that. A comma behind a blank belongs to the chunk.
class CChunkTokens {
public:
    explicit CChunkTokens(std::string_view formula) : m_rest(formula) {}

    bool IsAtEnd() const { return m_rest.empty() || m_rest.front() == ','; }
    /// The next token, empty at the end of the chunk, and where nothing but blanks follows. It lives as long as the object
    /// and the formula. An unclosed group has one blank behind it.
    std::string_view Take();
    /// The token behind, where it stands in the formula.
    std::string_view Peek() const;
    /// What is left of the formula behind the chunk.
    std::string_view Behind() const;

private:
    std::string_view m_rest;
    std::string m_unclosed;
};

}  // namespace tesk
