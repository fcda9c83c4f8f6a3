// Scopes that have another name on the other side.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesk {

/// What lies below the one scope is compared with what lies below the other one. An empty name is all of a side.
struct SScopeMap {
    std::string expected;
    std::string got;
};

/// Reads "tb.dut=top.dut". @throw CWrongUsage for a text without one "="
SScopeMap ReadScopeMap(const std::string &text);

/// What of a name stands below a scope, in any letter case; empty of the scope itself. @return nothing if it is not below
std::optional<std::string_view> NameBelow(std::string_view name, std::string_view scope);

/// The name of something below a scope.
std::string JoinName(const std::string &scope, std::string_view below);

}  // namespace tesk
