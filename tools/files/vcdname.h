// Full names of signals, taken apart for a value change dump.
#pragma once

#include <string>
#include <vector>

struct SVcdName {
    std::vector<std::string> scopes;
    std::string variable;

    bool operator==(const SVcdName &) const = default;
};

/// Cuts a path at the hierarchy separators outside extended identifiers, so that a reader who joins the parts has the
/// path again. No part is empty, and what a dump's words cannot hold becomes "_". An extended identifier `\a+b\` becomes
/// the Verilog escaped one, `\a+b`, wherever one can hold the same letters.
SVcdName SplitVcdName(const std::string &path);
