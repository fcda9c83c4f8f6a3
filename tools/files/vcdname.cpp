#include "tools/files/vcdname.h"

#include <string_view>

#include "platform/felvarbase.h"

namespace {

// Length of the extended identifier that `text` begins with, `\...\` or `\...` up to a blank or the end; 0 if it begins
// with none.
std::size_t EscapedLength(std::string_view text)
{
    if (!text.starts_with('\\'))
        return 0;
    const std::size_t closer = text.find('\\', 1);
    return closer != text.npos ? closer + 1 : text.size();
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

// One blank may stand between the words of an extended identifier, as simulators write them.
std::string Cleaned(std::string_view part)
{
    const bool isEscaped = part.starts_with('\\');
    std::string cleaned;
    for (const char c : part) {
        const bool isBlank = c == ' ' && isEscaped && cleaned.back() != ' ';
        cleaned += (static_cast<unsigned char>(c) > ' ' && c != '$') || isBlank ? c : '_';
    }
    if (!cleaned.empty() && cleaned.back() == ' ')
        cleaned.back() = '_';
    return cleaned.empty() ? "_" : cleaned;
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
        name.scopes.push_back(Cleaned(part));
        rest.remove_prefix(part.size() + 1);
    }
    name.variable = Cleaned(rest);
    return name;
}
