#include "settings/fields.h"

#include <algorithm>

namespace tesk {

std::string_view Unquote(std::string_view text)
{
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::vector<std::string> SplitFields(std::string_view text)
{
    std::vector<std::string> fields;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\\'), text.size());
        if (end > 0)
            fields.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return fields;
}

}  // namespace tesk
