#include "tools/exchange/jsvalue.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "base/ascii.h"
#include "tools/quote.h"

namespace tesk {

namespace {

bool IsNameLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' || c == '$';
}

// A character of Unicode in UTF-8; one half of a pair becomes U+FFFD.
std::string Utf8(unsigned code)
{
    if (code >= 0xD800 && code < 0xE000)
        code = 0xFFFD;
    if (code < 0x80)
        return {static_cast<char>(code)};
    if (code < 0x800)
        return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

class CJsReader {
public:
    explicit CJsReader(std::string_view text) : m_text(text) {}

    SJsFault Read(SJsValue &value)
    {
        Skip();
        TakeIf('(');  // some files hold an expression
        if (ReadValue(value, 0)) {
            Skip();
            TakeIf(')');
            Skip();
            TakeIf(';');
            Skip();
            if (m_at < m_text.size())
                Fail("there is more behind the end");
        }
        return m_fault;
    }

private:
    char Now() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }

    char Take()
    {
        const char c = m_text[m_at++];
        m_line += c == '\n' ? 1 : 0;
        return c;
    }

    bool TakeIf(char c)
    {
        if (m_at >= m_text.size() || Now() != c)
            return false;
        Take();
        return true;
    }

    bool Fail(const std::string &why)
    {
        if (m_fault.line == 0)
            m_fault = {m_line, why};
        return false;
    }

    void SkipUntil(std::string_view end)
    {
        while (m_at < m_text.size() && !m_text.substr(m_at).starts_with(end))
            Take();
    }

    // Blanks and comments.
    void Skip()
    {
        while (m_at < m_text.size()) {
            const std::string_view rest = m_text.substr(m_at);
            if (rest.starts_with("//"))
                SkipUntil("\n");
            else if (rest.starts_with("/*"))
                SkipComment();
            else if (IsSpace(rest[0]))
                Take();
            else
                return;
        }
    }

    void SkipComment()
    {
        m_at += 2;
        SkipUntil("*/");
        m_at = std::min(m_at + 2, m_text.size());
    }

    bool ReadValue(SJsValue &value, int depth)
    {
        constexpr int Deepest = 64;
        constexpr int MostLiterals = 1 << 20;
        Skip();
        value.line = m_line;
        if (depth > Deepest)
            return Fail("literals lie too deep inside one another");
        if (++m_count > MostLiterals)
            return Fail("there are more than " + std::to_string(MostLiterals) + " literals");
        switch (Now()) {
        case '{': return ReadObject(value, depth);
        case '[': return ReadArray(value, depth);
        case '"':
        case '\'':
        case '`': value.kind = SJsValue::EKind::Text; return ReadText(value.text);
        default: return ReadWord(value);
        }
    }

    bool ReadObject(SJsValue &value, int depth)
    {
        value.kind = SJsValue::EKind::Object;
        Take();
        while (true) {
            Skip();
            if (TakeIf('}'))
                return true;
            SJsMember &member = value.members.emplace_back();
            if (!ReadName(member.name))
                return false;
            Skip();
            if (!TakeIf(':'))
                return Fail("there is no \":\" behind " + Quote(member.name));
            if (!ReadValue(member.value, depth + 1) || !ReadComma('}'))
                return false;
        }
    }

    bool ReadArray(SJsValue &value, int depth)
    {
        value.kind = SJsValue::EKind::Array;
        Take();
        while (true) {
            Skip();
            if (TakeIf(']'))
                return true;
            if (!ReadValue(value.elements.emplace_back(), depth + 1) || !ReadComma(']'))
                return false;
        }
    }

    // A comma, unless the closer comes.
    bool ReadComma(char closer)
    {
        Skip();
        return TakeIf(',') || Now() == closer || Fail(std::string("neither \",\" nor \"") + closer + "\" comes");
    }

    bool ReadName(std::string &name)
    {
        if (Now() == '"' || Now() == '\'')
            return ReadText(name);
        while (IsNameLetter(Now()))
            name += Take();
        return !name.empty() || Fail("a name is missing");
    }

    bool ReadText(std::string &text)
    {
        const char quote = Take();
        while (m_at < m_text.size()) {
            if (Now() == '\n' && quote != '`')
                return Fail("a text is not closed on its line");
            const char c = Take();
            if (c == quote)
                return true;
            if (c == '\\' && !ReadEscape(text))
                return false;
            if (c != '\\')
                text += c;
        }
        return Fail("a text is not closed");
    }

    bool ReadEscape(std::string &text)
    {
        if (m_at >= m_text.size())
            return Fail("a text is not closed");
        constexpr std::string_view Letters = "bfnrtv0";
        constexpr std::string_view Meanings("\b\f\n\r\t\v\0", 7);
        const char c = Take();
        if (c == 'u' || c == 'x')
            return ReadCode(text, c == 'u' ? 4 : 2);
        const std::size_t letter = Letters.find(c);
        if (c != '\n')
            text += letter != Letters.npos ? Meanings[letter] : c;
        return true;
    }

    bool ReadCode(std::string &text, std::size_t digits)
    {
        unsigned code = 0;
        const std::string_view rest = m_text.substr(m_at, digits);
        const auto result = std::from_chars(rest.data(), rest.data() + rest.size(), code, 16);
        if (rest.size() != digits || result.ptr != rest.data() + digits)
            return Fail("a character has no code");
        m_at += digits;
        text += Utf8(code);
        return true;
    }

    // A number, true, false or null.
    bool ReadWord(SJsValue &value)
    {
        const std::size_t begin = m_at;
        while (IsNameLetter(Now()) || Now() == '-' || Now() == '+' || Now() == '.')
            Take();
        value.text = m_text.substr(begin, m_at - begin);
        if (value.text == "true" || value.text == "false") {
            value.kind = SJsValue::EKind::Boolean;
            value.number = value.text == "true" ? 1 : 0;
            return true;
        }
        if (value.text == "null")
            return true;
        const char *end = value.text.data() + value.text.size();
        const auto result = std::from_chars(value.text.data(), end, value.number);
        value.kind = SJsValue::EKind::Number;
        if (!value.text.empty() && result.ec == std::errc() && result.ptr == end)
            return true;
        return Fail(value.text.empty() ? "a value is missing" : "no value " + Quote(value.text) + " is known");
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    int m_line = 1;
    int m_count = 0;  // literals
    SJsFault m_fault;
};

}  // namespace

const SJsValue *SJsValue::Find(std::string_view name) const
{
    const auto found = std::ranges::find_if(members, [&](const SJsMember &member) { return member.name == name; });
    return found != members.end() ? &found->value : nullptr;
}

SJsFault ReadJsValue(std::string_view text, SJsValue &value)
{
    return CJsReader(text).Read(value);
}

}  // namespace tesk
