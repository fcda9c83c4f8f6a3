// Where a command writes.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// Has every signal that ends the tool remove its drafts first (see platform/files/draft.h). One that is ignored, as
/// under nohup, stays so; that of a file beyond its limit becomes a write that fails, to be told. To be called once, first.
void RemoveDraftsOnSignals();

/// Lets `write` fill a file, or standard output if `path` is empty or "-". A file is written whole or not at all, as a draft.
/// @throw CRefusal if it cannot be written
void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write);

/// Writes lines with their fields below one another. @param numbers  the column that stands to the right
void WriteColumns(std::ostream &out, const std::vector<std::vector<std::string>> &lines, std::size_t numbers);

/// Whether standard output is a terminal.
bool IsTerminal();

/// Whether standard error is one.
bool IsErrorTerminal();

/// Columns of the terminal, 80 where there is none.
int TerminalWidth();

/// Whether the environment asks for UTF-8: the first of LC_ALL, LC_CTYPE and LANG that is set and not empty.
bool IsUtf8Locale();

enum class EColour { Red, Yellow, Green };

/// A word for standard error, coloured where that is a terminal and NO_COLOR is not set or empty.
std::string Coloured(const std::string &text, EColour colour);
