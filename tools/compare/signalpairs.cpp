#include "tools/compare/signalpairs.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "tools/files/selectedfile.h"

namespace tesk {

namespace {

constexpr std::ptrdiff_t MostNamesakes = 64;  // that are looked at for one that fits
constexpr std::size_t WidestInteger = 64;     // levels that an integer is compared with

// A signal of a side, below the scope that is looked at.
struct SCandidate {
    std::size_t signal;
    std::string name;    // below the scope
    std::string folded;  // the same, as names are compared
    bool isPaired = false;
};

struct SElement {
    std::size_t candidate;
    std::size_t element;
};

// What both sides have below one name, by index.
struct SElementGroup {
    std::map<long long, SElement> expected;
    std::map<long long, SElement> got;
    std::string name;  // below the scope, as the expected side spells it
    std::optional<bool> isAscending;
};

std::size_t WidthOf(const SFileSignal &signal)
{
    return static_cast<std::size_t>(signal.elementCount);
}

// Pairs what lies below one scope of each side.
class CScopePairing {
public:
    CScopePairing(const SPairedSide &expected, const SPairedSide &got, const SScopeMap &scope, SSignalPairs &found,
                  const std::vector<std::string> &globs, std::vector<bool> &isGlobMet)
        : m_expectedSide(expected), m_gotSide(got), m_scope(scope), m_found(found), m_globs(globs),
          m_isGlobMet(isGlobMet), m_expected(Candidates(expected, scope.expected)), m_got(Candidates(got, scope.got))
    {
        for (std::size_t i = 0; i < m_got.size(); ++i)
            m_gotByName[m_got[i].folded].push_back(i);
    }

    void Run()
    {
        PairByName(true);
        PairByName(false);
        PairByElement();
        AddLeft();
    }

private:
    static std::vector<SCandidate> Candidates(const SPairedSide &side, const std::string &scope)
    {
        std::vector<SCandidate> candidates;
        for (std::size_t i = 0; i < side.signals.size(); ++i) {
            if (const auto name = NameBelow(side.signals[i].path, scope))
                candidates.push_back({i, std::string(*name), FoldName(PlainName(*name))});
        }
        return candidates;
    }

    const SFileSignal &ExpectedSignal(const SCandidate &candidate) const
    {
        return m_expectedSide.signals[candidate.signal];
    }
    const SFileSignal &GotSignal(const SCandidate &candidate) const { return m_gotSide.signals[candidate.signal]; }
    EComparedKind ExpectedKind(const SCandidate &candidate) const { return m_expectedSide.kinds[candidate.signal]; }
    EComparedKind GotKind(const SCandidate &candidate) const { return m_gotSide.kinds[candidate.signal]; }

    // Whether a name below the scope is asked for, by itself or by that of its bus.
    bool IsWanted(std::string_view below)
    {
        if (m_globs.empty())
            return true;
        const std::string name = JoinName(m_scope.expected, below);
        const std::string plain = PlainName(name);
        const std::string_view base = TakeIndex(plain).base;
        bool isWanted = false;
        for (std::size_t i = 0; i < m_globs.size(); ++i) {
            if (!IsLikeGlob(name, m_globs[i]) && !IsLikeGlob(base, m_globs[i]))
                continue;
            m_isGlobMet[i] = true;
            isWanted = true;
        }
        return isWanted;
    }

    // What the values of both are compared as, if they can be.
    std::optional<SComparedForm> CommonForm(const SCandidate &expected, const SCandidate &got) const
    {
        const SComparedForm one{ExpectedKind(expected), WidthOf(ExpectedSignal(expected))};
        const SComparedForm other{GotKind(got), WidthOf(GotSignal(got))};
        if (one == other)
            return one;
        const auto isInteger = [](const SComparedForm &form) {
            return form.kind == EComparedKind::Integer && form.width == 1;
        };
        const auto isVector = [](const SComparedForm &form) {
            return form.kind == EComparedKind::Levels && form.width > 1 && form.width <= WidestInteger;
        };
        if (isInteger(one) && isVector(other))
            return other;
        return isVector(one) && isInteger(other) ? std::optional(one) : std::nullopt;
    }

    void PairByName(bool byLetters)
    {
        for (SCandidate &expected : m_expected) {
            const auto found = expected.isPaired ? m_gotByName.end() : m_gotByName.find(expected.folded);
            if (found == m_gotByName.end())
                continue;
            std::vector<std::size_t> &places = found->second;
            const auto end = places.begin() + std::min(std::ssize(places), MostNamesakes);
            const auto place = std::find_if(places.begin(), end, [&](std::size_t i) {
                return (!byLetters || m_got[i].name == expected.name) && PairWhole(expected, m_got[i]);
            });
            if (place != end)
                places.erase(place);
        }
    }

    // @return whether they belong together, be it that their values cannot be compared
    bool PairWhole(SCandidate &expected, SCandidate &got)
    {
        const std::optional<SComparedForm> form = CommonForm(expected, got);
        if (!form && ExpectedKind(expected) == GotKind(got))
            return false;  // so many elements, and so many: each may have its like
        expected.isPaired = true;
        got.isPaired = true;
        if (!IsWanted(expected.name))
            return true;
        const SFileSignal &one = ExpectedSignal(expected);
        const SFileSignal &other = GotSignal(got);
        if (!form) {
            m_found.unlike.push_back(
                {one.path, other.path, one.type.GetTypeIdentifier(), other.type.GetTypeIdentifier()});
            return true;
        }
        m_found.pairs.push_back({one.path,
                                 other.path,
                                 *form,
                                 !one.type.IsScalar() || !other.type.IsScalar(),
                                 {{expected.signal, 0, 0, WidthOf(one)}},
                                 {{got.signal, 0, 0, WidthOf(other)}}});
        return true;
    }

    // The name below which the elements of a signal are numbered; nothing if they are not.
    static std::optional<std::string_view> BaseOf(const SCandidate &candidate, const SFileSignal &signal)
    {
        if (!signal.type.IsScalar())
            return candidate.folded;
        const SIndexedName name = TakeIndex(candidate.folded);
        return name.index ? std::optional(name.base) : std::nullopt;
    }

    static void Collect(SElementGroup &group, std::map<long long, SElement> &elements, std::size_t place,
                        const SCandidate &candidate, const SFileSignal &signal)
    {
        if (signal.type.IsScalar()) {
            elements.try_emplace(*TakeIndex(candidate.folded).index, SElement{place, 0});
            return;
        }
        int left = 0;
        int right = 0;
        int direction = 0;
        signal.type.GetArrayDimensionRanges(0, left, right, direction);
        group.isAscending = group.isAscending.value_or(direction == 0);
        for (std::size_t i = 0; i < WidthOf(signal); ++i) {
            const auto step = static_cast<long long>(i);
            elements.try_emplace(direction == 0 ? left + step : left - step, SElement{place, i});
        }
    }

    void PairByElement()
    {
        std::map<std::string, SElementGroup, std::less<>> groups;
        std::vector<SElementGroup *> order;
        for (const SCandidate &candidate : m_expected) {
            const auto base = candidate.isPaired ? std::nullopt : BaseOf(candidate, ExpectedSignal(candidate));
            if (!base)
                continue;
            const auto [group, isNew] = groups.try_emplace(std::string(*base));
            if (isNew)
                order.push_back(&group->second);
        }
        for (std::size_t i = 0; i < m_got.size(); ++i) {
            const auto base = m_got[i].isPaired ? std::nullopt : BaseOf(m_got[i], GotSignal(m_got[i]));
            const auto group = base ? groups.find(*base) : groups.end();
            if (group != groups.end())
                Collect(group->second, group->second.got, i, m_got[i], GotSignal(m_got[i]));
        }
        for (std::size_t i = 0; i < m_expected.size(); ++i) {
            const auto base =
                m_expected[i].isPaired ? std::nullopt : BaseOf(m_expected[i], ExpectedSignal(m_expected[i]));
            const auto group = base ? groups.find(*base) : groups.end();
            if (group == groups.end() || group->second.got.empty())
                continue;
            if (group->second.expected.empty()) {
                group->second.name = PlainName(m_expected[i].name).substr(0, base->size());
                if (!ExpectedSignal(m_expected[i]).type.IsScalar())
                    group->second.isAscending.reset();
            }
            Collect(group->second, group->second.expected, i, m_expected[i], ExpectedSignal(m_expected[i]));
        }
        for (SElementGroup *group : order) {
            if (!group->expected.empty())
                PairGroup(*group);
        }
    }

    // Makes a pair of the indices that both sides have; the others are told.
    void PairGroup(const SElementGroup &group)
    {
        std::vector<long long> common;
        for (const auto &[index, element] : group.expected) {
            if (group.got.contains(index))
                common.push_back(index);
        }
        if (common.empty())
            return;
        if (!group.isAscending.value_or(false))
            std::ranges::reverse(common);
        MarkGroup(group, common);
        std::erase_if(common, [&](long long index) { return !IsWanted(ElementName(group, index)); });
        if (!common.empty())
            AddGroup(group, common);
    }

    static std::string ElementName(const SElementGroup &group, long long index)
    {
        return group.name + '[' + std::to_string(index) + ']';
    }

    // Nothing of the signals that take part is left over as a whole.
    void MarkGroup(const SElementGroup &group, const std::vector<long long> &common)
    {
        for (const long long index : common) {
            m_expected[group.expected.at(index).candidate].isPaired = true;
            m_got[group.got.at(index).candidate].isPaired = true;
        }
        for (const auto &[index, element] : group.expected) {
            const bool isLone = m_expected[element.candidate].isPaired && !group.got.contains(index);
            if (isLone && IsWanted(ElementName(group, index)))
                m_found.missing.push_back(JoinName(m_scope.expected, ElementName(group, index)));
        }
        for (const auto &[index, element] : group.got) {
            const bool isLone = m_got[element.candidate].isPaired && !group.expected.contains(index);
            if (isLone && IsWanted(ElementName(group, index)))
                m_found.additional.push_back(JoinName(m_scope.got, ElementName(group, index)));
        }
    }

    void AddGroup(const SElementGroup &group, const std::vector<long long> &common)
    {
        const SElement &first = group.expected.at(common.front());
        const SElement &other = group.got.at(common.front());
        SSignalPair pair{JoinName(m_scope.expected, group.name),
                         JoinName(m_scope.got, group.name),
                         {ExpectedKind(m_expected[first.candidate]), common.size()},
                         true,
                         {},
                         {}};
        const auto isKind = [&](long long index) {
            return ExpectedKind(m_expected[group.expected.at(index).candidate]) == pair.form.kind &&
                   GotKind(m_got[group.got.at(index).candidate]) == pair.form.kind;
        };
        if (!std::ranges::all_of(common, isKind)) {
            m_found.unlike.push_back({pair.expectedName, pair.gotName,
                                      ExpectedSignal(m_expected[first.candidate]).type.GetTypeIdentifier(),
                                      GotSignal(m_got[other.candidate]).type.GetTypeIdentifier()});
            return;
        }
        for (std::size_t slot = 0; slot < common.size(); ++slot) {
            const SElement &expected = group.expected.at(common[slot]);
            const SElement &got = group.got.at(common[slot]);
            AddPart(pair.expected, {m_expected[expected.candidate].signal, expected.element, slot, 1});
            AddPart(pair.got, {m_got[got.candidate].signal, got.element, slot, 1});
        }
        m_found.pairs.push_back(std::move(pair));
    }

    static void AddPart(std::vector<SPairPart> &parts, const SPairPart &part)
    {
        const bool goesOn = !parts.empty() && parts.back().signal == part.signal &&
                            parts.back().element + parts.back().count == part.element;
        if (goesOn)
            ++parts.back().count;
        else
            parts.push_back(part);
    }

    void AddLeft()
    {
        for (const SCandidate &candidate : m_expected) {
            if (!candidate.isPaired && IsWanted(candidate.name))
                m_found.missing.push_back(ExpectedSignal(candidate).path);
        }
        for (const SCandidate &candidate : m_got) {
            if (!candidate.isPaired && IsWanted(candidate.name))
                m_found.additional.push_back(GotSignal(candidate).path);
        }
    }

    const SPairedSide &m_expectedSide;
    const SPairedSide &m_gotSide;
    const SScopeMap &m_scope;
    SSignalPairs &m_found;
    const std::vector<std::string> &m_globs;
    std::vector<bool> &m_isGlobMet;
    std::vector<SCandidate> m_expected;
    std::vector<SCandidate> m_got;
    std::unordered_map<std::string, std::vector<std::size_t>> m_gotByName;  // those that are left
};

}  // namespace

SIndexedName TakeIndex(std::string_view name)
{
    if (name.empty() || (name.back() != ']' && name.back() != ')'))
        return {name, std::nullopt};
    const std::size_t bracket = name.find_last_of("[(");
    if (bracket == name.npos || bracket == 0)
        return {name, std::nullopt};
    long long index = 0;
    const char *const end = name.data() + name.size() - 1;
    const auto read = std::from_chars(name.data() + bracket + 1, end, index);
    if (read.ec != std::errc() || read.ptr != end)
        return {name, std::nullopt};
    return {name.substr(0, bracket), index};
}

std::string PlainName(std::string_view name)
{
    const std::size_t open = name.size() > 2 && name.back() == '\\' ? name.rfind('\\', name.size() - 2) : name.npos;
    if (open == name.npos || (open > 0 && name[open - 1] != '.'))
        return std::string(name);
    const std::string_view inner = name.substr(open + 1, name.size() - open - 2);
    const SIndexedName indexed = TakeIndex(inner);
    constexpr std::string_view Letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_$";
    if (!indexed.index || indexed.base.find_first_not_of(Letters) != indexed.base.npos)
        return std::string(name);
    return std::string(name.substr(0, open)) + std::string(inner);
}

SSignalPairs PairSignals(const SPairedSide &expected, const SPairedSide &got, const std::vector<SScopeMap> &scopes,
                         const std::vector<std::string> &globs)
{
    SSignalPairs found;
    std::vector<bool> isGlobMet(globs.size());
    for (const SScopeMap &scope : scopes.empty() ? std::vector<SScopeMap>(1) : scopes)
        CScopePairing(expected, got, scope, found, globs, isGlobMet).Run();
    for (std::size_t i = 0; i < globs.size(); ++i) {
        if (!isGlobMet[i])
            found.unmatchedGlobs.push_back(globs[i]);
    }
    return found;
}

}  // namespace tesk
