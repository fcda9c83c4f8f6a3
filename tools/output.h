// Where a command writes. Internal.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// Lets `write` fill a file, or standard output if `path` is empty. A file is written whole or not at all: next to
/// its place, and moved there when it is complete. @throw CRefusal if it cannot be written
void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write);

/// Writes lines with their fields below one another. @param numbers  the column that stands to the right
void WriteColumns(std::ostream &out, const std::vector<std::vector<std::string>> &lines, std::size_t numbers);

/// Whether standard output is a terminal.
bool IsTerminal();

/// Whether standard error is one.
bool IsErrorTerminal();

/// Columns of the terminal, 80 where there is none.
int TerminalWidth();
