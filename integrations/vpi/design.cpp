#include "integrations/vpi/design.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include "base/ascii.h"
#include "integrations/vpi/hierarchicalname.h"
#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"

namespace tesk::vpi {

namespace {

// Objects that a scope lists. Some simulators complain of being asked for more kinds than they have.
constexpr PLI_INT32 ScopeKinds[] = {vpiModule, vpiInternalScope};
constexpr PLI_INT32 SignalKinds[] = {vpiNet, vpiReg, vpiVariables, vpiParameter, vpiMemory, vpiNetArray};

struct SMember {
    std::string name;  // without scopes
    vpiHandle object;
};

struct SScope {
    std::vector<SMember> scopes;
    std::vector<SMember> signals;
};

std::string NameOf(vpiHandle object)
{
    const char *name = vpi_get_str(vpiName, object);
    return name != nullptr ? name : "";
}

std::vector<SMember> List(vpiHandle scope, std::span<const PLI_INT32> kinds)
{
    std::vector<SMember> members;
    for (const PLI_INT32 kind : kinds) {
        const vpiHandle iterator = vpi_iterate(kind, scope);
        if (iterator == nullptr)
            continue;
        while (const vpiHandle object = vpi_scan(iterator))
            members.push_back({NameOf(object), object});
    }
    return members;
}

// What a scope lists, looked through once; null for the top.
const SScope &Look(vpiHandle scope)
{
    static std::map<vpiHandle, SScope> s_scopes;
    const auto [place, isNew] = s_scopes.try_emplace(scope);
    if (isNew) {
        const bool hasAll = Simulator().hasEveryObject;
        const std::span<const PLI_INT32> scopeKinds(ScopeKinds, scope != nullptr && hasAll ? 2 : 1);
        constexpr PLI_INT32 OnlyNets[] = {vpiNet}, OnlyRegs[] = {vpiReg};
        place->second.scopes = List(scope, scopeKinds);
        if (scope != nullptr)
            place->second.signals = List(scope, hasAll                      ? std::span<const PLI_INT32>(SignalKinds)
                                                : Simulator().hasNineValues ? std::span<const PLI_INT32>(OnlyNets)
                                                                            : std::span<const PLI_INT32>(OnlyRegs));
    }
    return place->second;
}

const SMember *FindMember(const std::vector<SMember> &members, const std::string &name)
{
    const auto found =
        std::ranges::find_if(members, [&](const SMember &member) { return IsSameName(member.name, name); });
    return found != members.end() ? &*found : nullptr;
}

std::vector<std::string> NamesOf(const SScope &scope, const std::string &prefix)
{
    std::vector<std::string> names;
    for (const std::vector<SMember> *members : {&scope.scopes, &scope.signals}) {
        for (const SMember &member : *members)
            names.push_back(prefix + member.name);
    }
    return names;
}

[[noreturn]] void RefuseUnknown(const std::string &name, const std::string &prefix, const SScope &scope)
{
    const std::vector<std::string> names = NamesOf(scope, prefix);
    const std::string where = prefix.empty() ? "the design" : Quote(prefix.substr(0, prefix.size() - 1));
    const std::string near = DidYouMean(prefix + name, names);
    throw CRefusal("there is no " + Quote(prefix + name) + " in " + where +
                   (near.empty() ? Simulator().missing : near));
}

// A word of an array: its index is taken off.
vpiHandle FindWord(const SScope &scope, const std::string &name)
{
    const std::size_t open = name.find_last_of("[(");
    int index = 0;
    if (open == std::string::npos ||
        std::from_chars(&name[open + 1], name.data() + name.size(), index).ec != std::errc())
        return nullptr;
    const SMember *array = FindMember(scope.signals, name.substr(0, open));
    return array != nullptr ? vpi_handle_by_index(array->object, index) : nullptr;
}

// Goes down from scope to scope by listing them.
vpiHandle Walk(const std::vector<std::string> &parts)
{
    vpiHandle object = nullptr;
    std::string prefix;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const SScope &scope = Look(object);
        const bool isLast = i + 1 == parts.size();
        const SMember *member = isLast ? FindMember(scope.signals, parts[i]) : nullptr;
        if (member == nullptr)
            member = FindMember(scope.scopes, parts[i]);
        const vpiHandle word = isLast && member == nullptr ? FindWord(scope, parts[i]) : nullptr;
        if (member == nullptr && word == nullptr)
            RefuseUnknown(parts[i], prefix, scope);
        object = word != nullptr ? word : member->object;
        prefix += (member != nullptr ? member->name : parts[i]) + ".";
    }
    return object;
}

vpiHandle FindScope(const std::string &name)
{
    const std::vector<std::string> parts = SplitHierarchicalName(name);
    return Walk(parts);
}

// None for what is no scope, such as the front of an escaped identifier with a dot in it.
std::set<std::string> FindPorts(const std::string &scope, PLI_INT32 direction)
try {
    std::set<std::string> ports;
    const vpiHandle object = FindScope(scope);
    if (!Simulator().hasEveryObject) {
        for (const SMember &member : Look(object).signals) {
            if (vpi_get(vpiDirection, FindObject(scope + "." + member.name)) == direction)
                ports.insert(member.name);
        }
        return ports;
    }
    if (vpi_get(vpiType, object) != vpiModule)
        return ports;
    constexpr PLI_INT32 Ports[] = {vpiPort};
    for (const SMember &port : List(object, Ports)) {
        if (vpi_get(vpiDirection, port.object) == direction)
            ports.insert(port.name);
    }
    return ports;
} catch (const CRefusal &) {
    return {};
}

const std::set<std::string> &LookForInputs(const std::string &scope)
{
    static std::map<std::string, std::set<std::string>> s_inputs;
    const auto found = s_inputs.find(scope);
    return found != s_inputs.end() ? found->second : s_inputs.emplace(scope, FindPorts(scope, vpiInput)).first->second;
}

// A name without its last part, and that part.
std::pair<std::string, std::string> CutLast(const std::string &name)
{
    const std::vector<std::string> parts = SplitHierarchicalName(name);
    const std::string &last = parts.back();
    const std::size_t length = name.size() > last.size() + 1 ? name.size() - last.size() - 1 : 0;
    return {name.substr(0, length), last};
}

}  // namespace

std::string FullName(vpiHandle object)
{
    const char *name = vpi_get_str(vpiFullName, object);
    return name != nullptr ? DecodedName(name) : "";
}

vpiHandle FindObject(const std::string &name)
{
    const std::vector<std::string> parts = SplitHierarchicalName(name);
    if (parts.empty())
        throw CRefusal("there is no name");
    if (std::ranges::none_of(parts, &std::string::empty)) {
        if (const vpiHandle object = vpi_handle_by_name(Text(name.c_str()), nullptr))
            return object;
        if (const vpiHandle object = vpi_handle_by_name(Text(EncodedName(parts).c_str()), nullptr))
            return object;
    }
    return Walk(parts);
}

std::vector<std::string> SignalsIn(const std::string &scope)
{
    std::vector<std::string> names;
    for (const SMember &member : Look(FindScope(scope)).signals)
        names.push_back(scope + "." + member.name);
    return names;
}

std::vector<std::string> OutputsOf(const std::string &scope)
{
    std::vector<std::string> names;
    for (const std::string &output : FindPorts(scope, vpiOutput))
        names.push_back(scope + "." + output);
    return names;
}

std::vector<std::string> InputsOf(const std::string &scope)
{
    std::vector<std::string> names;
    for (const std::string &input : LookForInputs(scope))
        names.push_back(scope + "." + input);
    return names;
}

bool IsInput(vpiHandle object)
{
    if (!Simulator().hasEveryObject)
        return vpi_get(vpiDirection, object) == vpiInput;
    const auto [scope, signal] = CutLast(FullName(object));
    return !scope.empty() && LookForInputs(scope).count(signal) != 0;
}

bool IsInputOfTop(vpiHandle object)
{
    constexpr std::size_t OfTop = 2;  // the top and the signal
    return SplitHierarchicalName(FullName(object)).size() == OfTop && IsInput(object);
}

}  // namespace tesk::vpi
