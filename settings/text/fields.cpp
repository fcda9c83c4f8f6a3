#include "settings/text/fields.h"

#include <algorithm>

namespace tesk {

std::optional<std::string_view> TakeField(std::string_view &rest, char separator)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(separator), rest.size()));
    if (rest.empty())
        return std::nullopt;
    const std::string_view field = rest.substr(0, rest.find(separator));
    rest.remove_prefix(std::min(field.size() + 1, rest.size()));
    return field;
}

}  // namespace tesk
