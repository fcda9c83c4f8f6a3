// Comparing the names along a path of a signal tree with a full name.
#pragma once

#include <cstring>
#include <string>

#include "platform/crt.h"

namespace tesk {

enum class ENameMatch { Differs, Begins, Equals };

/// Deepest signal that a search by name goes down to.
inline constexpr int DeepestSignal = 1000;

/// Compares a path with the beginning of a full name, in any letter case.
inline ENameMatch MatchName(const std::string &path, const char *fullName)
{
    if (_strnicmp(path.c_str(), fullName, path.size()) != 0)
        return ENameMatch::Differs;
    return std::strlen(fullName) == path.size() ? ENameMatch::Equals : ENameMatch::Begins;
}

}  // namespace tesk
