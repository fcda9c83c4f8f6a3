#include "tools/files/vcdname.h"

#include <string_view>

#include "platform/felvarbase.h"
#include "platform/names/signalname.h"

namespace {

// Length of the extended identifier that `text` begins with, all of it if that is not closed; 0 if it begins with none.
std::size_t EscapedLength(std::string_view text)
{
    const std::size_t closed = tesk::ExtendedLength(text);
    return closed == 0 && text.starts_with('\\') ? text.size() : closed;
}

// The part before the next separator. A separator that would leave an empty part on either side belongs to a part.
std::string_view FirstPart(std::string_view text)
{
    const char separator = GetVHDLHierarchySeparator();
    for (std::size_t i = EscapedLength(text); i < text.size(); ++i) {
        if (text[i] == separator && i > 0 && i + 1 < text.size() && text[i + 1] != separator)
            return text.substr(0, i);
    }
    return text;
}

// A blank may stand between the words of an extended identifier. No word must end the declaration.
std::string Cleaned(std::string_view part)
{
    const bool isEscaped = part.starts_with('\\');
    std::string cleaned;
    for (const char c : part) {
        const bool isBlank = c == ' ' && isEscaped && cleaned.back() != ' ';
        cleaned += static_cast<unsigned char>(c) > ' ' || isBlank ? c : '_';
    }
    if (!cleaned.empty() && cleaned.back() == ' ')
        cleaned.back() = '_';
    for (std::size_t end = cleaned.find("$end"); end != cleaned.npos; end = cleaned.find("$end", end + 1)) {
        const bool isWord =
            (end == 0 || cleaned[end - 1] == ' ') && (end + 4 == cleaned.size() || cleaned[end + 4] == ' ');
        cleaned[end] = isWord ? '_' : '$';
    }
    return cleaned.empty() ? "_" : cleaned;
}

// An extended identifier is written as an escaped one, which viewers know: what stands behind it is apart.
std::string VariableName(std::string_view part)
{
    const std::string cleaned = Cleaned(part);
    const std::size_t length = tesk::ExtendedLength(cleaned);
    const std::string identifier = NTARN::VerilogName(cleaned.substr(0, length));
    const bool isApart = identifier.size() < length && length < cleaned.size();
    return identifier + (isApart ? " " : "") + cleaned.substr(length);
}

}  // namespace

SVcdName SplitVcdName(const std::string &path)
{
    SVcdName name;
    std::string_view rest = path;
    while (true) {
        const std::string_view part = FirstPart(rest);
        if (part.size() == rest.size())
            break;
        name.scopes.push_back(NTARN::VerilogName(Cleaned(part)));
        rest.remove_prefix(part.size() + 1);
    }
    name.variable = VariableName(rest);
    return name;
}

void WriteVcdScopes(std::ostream &out, const std::vector<std::string> &from, const std::vector<std::string> &to)
{
    GoToScopes(
        from, to, [&out] { out << "$upscope $end\n"; },
        [&out](const std::string &scope) { out << "$scope module " << scope << " $end\n"; });
}
