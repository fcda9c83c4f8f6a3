// The fields of a settings formula, "\name\value\name\value".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk {

/// Without the double quotes around it; a text that does not both start and end with one stays as it is.
std::string_view Unquote(std::string_view text);

/// The fields between backslashes, none of them empty: a run of backslashes separates as one does.
std::vector<std::string> FormulaFields(std::string_view text);

}  // namespace tesk
