// The commands of the tool, one source file each. Internal.
#pragma once

#include <CLI/CLI.hpp>

#include <stdexcept>
#include <string>

/// A formula or file that the tool refuses: what, where, why, and what would do, on one line. Ends with status 1.
class CRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Each adds its command, with its options, help and an example, to the tool.
void AddCheckCommand(CLI::App &app);
void AddPlayCommand(CLI::App &app);
