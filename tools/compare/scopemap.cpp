#include "tools/compare/scopemap.h"

#include <algorithm>

#include "platform/felvarbase.h"
#include "tools/commandline.h"
#include "tools/files/selectedfile.h"

namespace tesk {

SScopeMap ReadScopeMap(const std::string &text)
{
    const std::size_t sign = text.find('=');
    if (sign == text.npos || text.find('=', sign + 1) != text.npos)
        RefuseOption("--scope", text, "write the scope in A, \"=\" and the scope in B, such as tb.dut=top.dut");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

std::optional<std::string_view> NameBelow(std::string_view name, std::string_view scope)
{
    if (scope.empty())
        return name;
    if (name.size() < scope.size() || FoldName(name.substr(0, scope.size())) != FoldName(scope))
        return std::nullopt;
    const std::string_view rest = name.substr(scope.size());
    if (rest.empty())
        return rest;
    if (rest[0] == '[' || rest[0] == '(')
        return rest;
    return rest[0] == GetVHDLHierarchySeparator() ? std::optional(rest.substr(1)) : std::nullopt;
}

std::string JoinName(const std::string &scope, std::string_view below)
{
    const bool isJoined = scope.empty() || below.empty() || below[0] == '[' || below[0] == '(';
    return scope + (isJoined ? "" : std::string(1, GetVHDLHierarchySeparator())) + std::string(below);
}

}  // namespace tesk
