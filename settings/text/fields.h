// Fields of a settings text, cut at a separator.
#pragma once

#include <optional>
#include <string_view>

namespace tesk {

/// Takes the next field off the front of `rest`, and the separator behind it. Separators in a row count as one and
/// leading ones are skipped, so empty fields do not exist.
/// @return a view into the text; nothing if only separators are left, `rest` is then empty
std::optional<std::string_view> TakeField(std::string_view &rest, char separator);

}  // namespace tesk
