#include "settings/text/formulafields.h"

#include "settings/text/fields.h"

namespace tesk {

std::string_view Unquote(std::string_view text)
{
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::vector<std::string> FormulaFields(std::string_view text)
{
    std::vector<std::string> fields;
    while (const auto field = TakeField(text, '\\'))
        fields.emplace_back(*field);
    return fields;
}

}  // namespace tesk
