// Where a command writes. Internal.
#pragma once

#include <functional>
#include <ostream>
#include <string>

/// Lets `write` fill a file, or standard output if `path` is empty. A file is written whole or not at all: next to
/// its place, and moved there when it is complete. @throw CRefusal if it cannot be written
void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write);

/// Whether standard output is a terminal.
bool IsTerminal();

/// Columns of the terminal, 80 where there is none.
int TerminalWidth();
