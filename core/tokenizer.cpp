#include "core/tokenizer.h"

#include <string_view>

#include "core/plain/tokenviews.h"
#include "settings/text/views.h"

using tesk::ToCStr;

namespace {

std::string_view ToView(const SimpleString::CStr &text)
{
    return std::string_view(text, static_cast<std::size_t>(text.GetLength()));
}

// What `rest` left of `text` becomes the whole of it.
void KeepRest(SimpleString::CStr &text, std::string_view rest)
{
    text = text.Mid(text.GetLength() - static_cast<int>(rest.size()));
}

}  // namespace

SimpleString::CStr NextToken(SimpleString::CStr &text, const char *open, const char *close, const char *blanks)
{
    std::string_view rest = ToView(text);
    const SimpleString::CStr token = ToCStr(tesk::TakeToken(rest, open, close, blanks));
    KeepRest(text, rest);
    return token;
}

SimpleString::CStr PeekToken(const SimpleString::CStr &text, const char *open, const char *close, const char *blanks)
{
    std::string_view rest = ToView(text);
    return ToCStr(tesk::TakeToken(rest, open, close, blanks));
}

SimpleString::CStr SplitChunk(SimpleString::CStr &text, const char *stop, const char *open, const char *close,
                              const char *blanks, EJoin join)
{
    std::string_view rest = ToView(text);
    const SimpleString::CStr chunk = ToCStr(tesk::TakeChunk(rest, stop, open, close, blanks, join));
    KeepRest(text, rest);
    return chunk;
}
