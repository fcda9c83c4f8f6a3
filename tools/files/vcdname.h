// Full names of signals, taken apart for a value change dump.
#pragma once

#include <cstddef>
#include <ostream>
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

/// Calls what closes and opens scopes on the way from one variable to the next.
template <class Close, class Open>
void GoToScopes(const std::vector<std::string> &from, const std::vector<std::string> &to, Close close, Open open)
{
    std::size_t kept = 0;
    while (kept < from.size() && kept < to.size() && from[kept] == to[kept])
        ++kept;
    for (std::size_t i = kept; i < from.size(); ++i)
        close();
    for (std::size_t i = kept; i < to.size(); ++i)
        open(to[i]);
}

/// Writes the scope lines of a dump that lead from one scope to another.
void WriteVcdScopes(std::ostream &out, const std::vector<std::string> &from, const std::vector<std::string> &to);
