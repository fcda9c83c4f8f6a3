// The fields of a settings formula, "\name\value\name\value". Internal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk {

/// Without the double quotes around it; a text that does not both start and end with one stays as it is.
std::string_view Unquote(std::string_view text);

/// The pieces between backslashes. A run of them separates as one does, so there are no empty fields.
std::vector<std::string> SplitFields(std::string_view text);

}  // namespace tesk
