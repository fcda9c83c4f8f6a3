// The tokeniser that all plain-formula code shares.
#pragma once

#include "settings/cstr.h"

// Text sets. A closer stands at the place of its opener.
inline constexpr const char TokenBlanks[] = " \n\t";
inline constexpr const char ParserOpen[] = "(\"'";
inline constexpr const char ParserClose[] = ")\"'";
inline constexpr const char SplitOpen[] = "([{\"'";
inline constexpr const char SplitClose[] = ")]}\"'";
inline constexpr const char ValueOpen[] = "\"'([{";
inline constexpr const char ValueClose[] = "\"')]}";
inline constexpr const char ElementBlanks[] = " \n\t,";

/// How the tokens of a chunk are joined.
enum class EJoin {
    BetweenTokens,    ///< a joiner between two tokens
    BehindEveryToken  ///< a joiner behind each token, the last one too
};

/// Takes the next token off the front of `text`, leading blanks first. A token is a bracketed or quoted group, brackets
/// kept, or everything up to the next blank. Groups nest in groups of their own kind only; an unclosed one takes the
/// rest. A null or empty set gives an empty token.
/// @param open    characters that open a group
/// @param close   the characters that close it, at the same places
/// @param blanks  characters that separate tokens
SimpleString::CStr NextToken(SimpleString::CStr &text, const char *open, const char *close, const char *blanks);

/// As `NextToken`, leaving `text` alone.
SimpleString::CStr PeekToken(const SimpleString::CStr &text, const char *open, const char *close, const char *blanks);

/// Takes everything up to the next `stop` character outside groups, and the stop characters behind it, off the front
/// of `text`. The tokens come back joined with the first character of `blanks`.
SimpleString::CStr SplitChunk(SimpleString::CStr &text, const char *stop, const char *open, const char *close,
                              const char *blanks, EJoin join = EJoin::BetweenTokens);
