// The option --period of commands that compose formulas.
#pragma once

#include <string>

/// Reads the time between two values. @throw CWrongUsage for one that is no time above 0
/// @return femtoseconds
long long ReadPeriodOption(const std::string &text);
