#include "tools/exchange/simpath.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/ascii.h"
#include "base/extendedid.h"

namespace tesk {

namespace {

// Replaces one separator by another outside extended identifiers. @return whether `to` stood there already
bool Separate(std::string &path, char from, char to)
{
    bool hasOther = false;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const std::size_t extended = ExtendedLength(std::string_view(path).substr(i));
        if (extended > 0) {
            i += extended - 1;
            continue;
        }
        hasOther = hasOther || path[i] == to;
        if (path[i] == from)
            path[i] = to;
    }
    return hasOther;
}

// Reads a script character by character.
class CTclReader {
public:
    explicit CTclReader(std::string_view script) : m_script(script) {}

    void Read(const std::function<void(const STclCommand &command)> &take)
    {
        while (m_at < m_script.size()) {
            SkipBlanks();
            if (IsCommandEnd()) {
                Take();
                continue;
            }
            m_command = {m_line, {}};
            if (m_at < m_script.size())
                ReadCommand();
            take(m_command);
        }
    }

private:
    char Now() const { return m_at < m_script.size() ? m_script[m_at] : '\0'; }

    char Take()
    {
        const char c = m_script[m_at++];
        m_line += c == '\n' ? 1 : 0;
        return c;
    }

    bool IsAtEnd() const { return m_at >= m_script.size(); }
    bool IsCommandEnd() const { return !IsAtEnd() && (Now() == '\n' || Now() == ';'); }
    bool IsJoinedLine() const { return m_script.substr(m_at).starts_with("\\\n"); }

    void SkipBlanks()
    {
        while (!IsAtEnd() && (IsJoinedLine() || (IsSpace(Now()) && Now() != '\n')))
            m_at += IsJoinedLine() ? (++m_line, 2) : 1;
    }

    void ReadCommand()
    {
        if (Now() == '#')
            return ReadComment();
        while (!IsAtEnd() && !IsCommandEnd()) {
            ReadWord();
            SkipBlanks();
        }
    }

    void ReadComment()
    {
        std::string text;
        while (!IsAtEnd() && Now() != '\n')
            text += Take();
        m_command.words.push_back(text);
    }

    void ReadWord()
    {
        m_command.words.emplace_back();
        if (Now() == '{')
            return ReadBraced();
        if (Now() == '"')
            return ReadQuoted();
        while (!IsAtEnd() && !IsCommandEnd() && !IsSpace(Now()) && !IsJoinedLine())
            ReadLetter();
    }

    // A letter outside braces.
    void ReadLetter()
    {
        const char c = Take();
        m_command.isComputed = m_command.isComputed || c == '$' || c == '[';
        if (c == '\\' && !IsAtEnd())
            m_command.words.back() += Take();
        else
            m_command.words.back() += c;
    }

    void ReadBraced()
    {
        Take();
        std::string &word = m_command.words.back();
        for (int depth = 1; !IsAtEnd();) {
            const char c = Take();
            depth += c == '{' ? 1 : c == '}' ? -1 : 0;
            if (depth == 0)
                return;
            word += c;
        }
        m_command.isOpen = true;
    }

    void ReadQuoted()
    {
        Take();
        while (!IsAtEnd() && Now() != '"')
            ReadLetter();
        m_command.isOpen = IsAtEnd();
        if (!IsAtEnd())
            Take();
    }

    std::string_view m_script;
    std::size_t m_at = 0;
    int m_line = 1;
    STclCommand m_command;
};

}  // namespace

std::optional<std::string> SimulatorPath(const std::string &name)
{
    std::string path = name;
    if (Separate(path, '.', '/'))
        return std::nullopt;
    return '/' + path;
}

std::string NameOfPath(std::string_view path)
{
    const std::size_t colon = path.find(':');
    if (colon != path.npos && colon < path.find_first_of("/\\"))
        path.remove_prefix(colon + 1);
    if (path.starts_with('/'))
        path.remove_prefix(1);
    std::string name(path);
    Separate(name, '/', '.');
    return name;
}

std::vector<std::string> NameParts(const std::string &name)
{
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < name.size();) {
        const std::size_t length = std::max<std::size_t>(1, ExtendedLength(std::string_view(name).substr(i)));
        if (name[i] == '.')
            parts.emplace_back();
        else
            parts.back() += name.substr(i, length);
        i += length;
    }
    return parts;
}

std::optional<std::string> TclWord(const std::string &text)
{
    constexpr std::string_view Special = " \t\n\r\v\f\"\\{}[]$;#,";
    if (!text.empty() && text.find_first_of(Special) == text.npos)
        return text;
    int depth = 0;
    for (const char c : text) {
        depth += c == '{' ? 1 : c == '}' ? -1 : 0;
        if (depth < 0)
            return std::nullopt;
    }
    return depth == 0 && text.find('\n') == text.npos && !text.ends_with('\\') ? std::optional('{' + text + '}')
                                                                               : std::nullopt;
}

void ForEachTclCommand(std::string_view script, const std::function<void(const STclCommand &command)> &take)
{
    CTclReader(script).Read(take);
}

}  // namespace tesk
