#include "core/plain/tokenviews.h"

#include <algorithm>
#include <array>

namespace tesk {

namespace {

bool IsEmptySet(const char *set)
{
    return set == nullptr || *set == 0;
}

void SkipAny(std::string_view &rest, std::string_view set)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(set), rest.size()));
}

// Where the group at the start of `text` closes, or its size. A quote closes before it could open again.
std::size_t FindCloser(std::string_view text, char closer)
{
    std::size_t depth = 1;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == closer) {
            if (--depth == 0)
                return i;
        } else if (text[i] == text.front()) {
            ++depth;
        }
    }
    return text.size();
}

// The closer of a group that begins with `opener`, 0 if none does.
char CloserOf(char opener, std::string_view open, std::string_view close)
{
    const std::size_t place = open.find(opener);
    return place < close.size() ? close[place] : '\0';
}

}  // namespace

std::string_view TakeToken(std::string_view &rest, const char *open, const char *close, const char *blanks)
{
    if (!IsEmptySet(blanks))
        SkipAny(rest, blanks);
    if (rest.empty() || IsEmptySet(open) || IsEmptySet(close) || IsEmptySet(blanks))
        return {};
    const char closer = CloserOf(rest.front(), open, close);
    const std::size_t end = closer != 0 ? FindCloser(rest, closer) + 1 : rest.find_first_of(blanks);
    const std::string_view token = rest.substr(0, end);
    rest.remove_prefix(token.size());
    return token;
}

std::string_view StripGroup(std::string_view text, const char *open, const char *close)
{
    const char closer = text.empty() ? '\0' : CloserOf(text.front(), open, close);
    return closer != 0 ? text.substr(1, FindCloser(text, closer) - 1) : text;
}

std::string TakeChunk(std::string_view &rest, const char *stop, const char *open, const char *close, const char *blanks,
                      EJoin join)
{
    const std::string_view stops = stop != nullptr ? stop : "";
    const std::string all = std::string(stops) + (blanks != nullptr ? blanks : "");
    std::string chunk;
    bool isFirst = true;
    while (!rest.empty() && stops.find(rest.front()) == std::string_view::npos) {
        const std::size_t before = rest.size();
        const std::string_view token = TakeToken(rest, open, close, all.c_str());
        if (rest.size() == before)
            break;  // without brackets or blanks to go by there is no token
        if (join == EJoin::BetweenTokens && !isFirst && !IsEmptySet(blanks))
            chunk += *blanks;
        chunk += token;
        if (join == EJoin::BehindEveryToken && !IsEmptySet(blanks))
            chunk += *blanks;
        isFirst = false;
    }
    SkipAny(rest, stops);
    return chunk;
}

namespace {

// Which characters part the tokens of a chunk.
constexpr std::array<bool, 256> Parts = [] {
    std::array<bool, 256> parts{};
    for (const char c : std::string_view(TokenBlanks))
        parts[static_cast<unsigned char>(c)] = true;
    parts[','] = true;
    return parts;
}();

bool IsPart(char c)
{
    return Parts[static_cast<unsigned char>(c)];
}

// As `TakeToken` with the parser's groups. @param isClosed  receives whether the token is no group that lacks its end
std::string_view TakeChunkToken(std::string_view &rest, bool &isClosed)
{
    rest.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(rest, IsPart) - rest.begin()));
    isClosed = true;
    if (rest.empty())
        return {};
    std::size_t end = 0;
    if (const char closer = CloserOf(rest.front(), ParserOpen, ParserClose); closer != 0) {
        end = FindCloser(rest, closer) + 1;
        isClosed = end <= rest.size();
    } else {
        end = static_cast<std::size_t>(std::ranges::find_if(rest, IsPart) - rest.begin());
    }
    const std::string_view token = rest.substr(0, end);
    rest.remove_prefix(token.size());
    return token;
}

}  // namespace

std::string_view CChunkTokens::Take()
{
    if (IsAtEnd())
        return {};
    bool isClosed = true;
    const std::string_view token = TakeChunkToken(m_rest, isClosed);
    if (isClosed)
        return token;
    m_unclosed = token;
    m_unclosed += TokenBlanks[0];
    return m_unclosed;
}

std::string_view CChunkTokens::Peek() const
{
    std::string_view rest = m_rest;
    bool isClosed = true;
    return IsAtEnd() ? std::string_view() : TakeChunkToken(rest, isClosed);
}

std::string_view CChunkTokens::Behind() const
{
    return m_rest.substr(std::min(m_rest.find_first_not_of(','), m_rest.size()));
}

}  // namespace tesk
