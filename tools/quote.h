// Users' texts in messages and tables.
#pragma once

#include <string>
#include <string_view>

/// A text for a message, in quotes: on one line, and not longer than a reader needs to find it.
std::string Quote(std::string text);

/// A name or a literal as one line of ASCII: any other byte is shown by its code, such as "\\x1B".
std::string Printable(std::string_view text);

/// A message with users' texts in it: control characters are shown by their codes, letters of all languages stay.
std::string OneLine(std::string_view text);

/// A text for a message, without quotes: not longer than a reader needs to find it.
std::string Shorten(std::string text);

/// A whole message as `OneLine` makes it, of which the middle is left out where it is longer than any file's name and what
/// there is to say of it.
std::string MessageLine(std::string_view text);

/// A field of a CSV table, in quotes where RFC 4180 wants them.
std::string CsvField(const std::string &field);
