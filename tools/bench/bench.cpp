#include "tools/bench/bench.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <set>
#include <utility>

#include <toml++/toml.h>

#include "platform/files/file.h"
#include "tools/bench/signalexamination.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

const std::vector<std::string> BenchKeys = {"resolution", "until", "scope", "signals", "replay"};
const std::vector<std::string> SignalKeys = {"formula", "type", "strength", "start"};
const std::vector<std::string> ReplayKeys = {"file", "scope",     "to",   "drive",         "compare",
                                             "x",    "tolerance", "from", "real_tolerance"};

struct SStrengthName {
    const char *name;
    EStrength strength;
};
constexpr SStrengthName Strengths[] = {
    {"override", EStrength::Override}, {"deposit", EStrength::Deposit}, {"drive", EStrength::Drive}};

SBenchPlace PlaceOf(const toml::source_position &position)
{
    return {static_cast<int>(position.line), static_cast<int>(position.column)};
}

SBenchPlace PlaceOf(const toml::node &node)
{
    return PlaceOf(node.source().begin);
}

// The members of a table in the order of the file; the parser keeps them by name.
struct SMember {
    std::string key;
    SBenchPlace place;  // of the key
    const toml::node *node;
};

std::vector<SMember> MembersOf(const toml::table &table)
{
    std::vector<SMember> members;
    for (const auto &[key, node] : table)
        members.push_back({std::string(key.str()), PlaceOf(key.source().begin), &node});
    std::ranges::stable_sort(members, {}, &SMember::place);
    return members;
}

// Reads one bench file.
class CBenchReader {
public:
    CBenchReader(SBench &bench, std::vector<SBenchFault> &faults) : m_bench(bench), m_faults(faults) {}

    void Read(const toml::table &root)
    {
        RefuseUnknown(root, BenchKeys, "of a bench");
        ReadHead(root);
        if (const toml::node *signals = root.get("signals")) {
            if (signals->is_table())
                ReadSignals(*signals->as_table(), m_bench.scope);
            else
                Add(PlaceOf(*signals), "signals is a table: write [signals] with NAME = \"FORMULA\" below it");
        }
        if (const toml::node *replays = root.get("replay"))
            ReadReplays(*replays);
        if (m_bench.signals.empty() && m_bench.replays.empty() && !HasError(m_faults))
            Add({1, 1}, "the bench has no signals; write [signals] with NAME = \"FORMULA\" below it");
    }

private:
    void Add(SBenchPlace place, std::string text, ESeverity severity = ESeverity::Error)
    {
        m_faults.push_back({severity, place, std::move(text)});
    }

    void RefuseUnknown(const toml::table &table, const std::vector<std::string> &known, const char *owner)
    {
        for (const SMember &member : MembersOf(table)) {
            if (std::ranges::find(known, member.key) == known.end())
                Add(member.place, "no key " + Quote(member.key) + " " + owner + DidYouMean(member.key, known));
        }
    }

    // A text of a table; empty where it is not there or, with a fault, no text.
    std::string TakeText(const toml::table &table, const char *key)
    {
        const toml::node *node = table.get(key);
        if (node == nullptr)
            return {};
        if (const auto text = node->value_exact<std::string>())
            return *text;
        Add(PlaceOf(*node), std::string(key) + " is a text: write " + key + " = \"...\"");
        return {};
    }

    // @return `absent` where it is not there, or a fault
    template <class Read>
    long long TakeTime(const toml::table &table, const char *key, long long absent, const Read &read)
    {
        const std::string text = TakeText(table, key);
        if (text.empty())
            return absent;
        try {
            return read(text);
        } catch (const CWrongUsage &fault) {
            Add(PlaceOf(*table.get(key)), fault.what());
            return absent;
        }
    }

    long long TakeTicks(const toml::table &table, const char *key, long long absent)
    {
        return TakeTime(table, key, absent,
                        [&](const std::string &text) { return ReadTimeOption(key, text, m_bench.resolution); });
    }

    // A number of 0 or above. @return nothing where it is not there, or a fault
    std::optional<double> TakeDistance(const toml::table &table, const char *key)
    {
        const toml::node *node = table.get(key);
        const auto number = node != nullptr ? node->value<double>() : std::nullopt;
        if (node == nullptr || (node->is_number() && *number >= 0 && std::isfinite(*number)))
            return number;
        Add(PlaceOf(*node), std::string(key) + " is a number of 0 or above; write one such as 1e-9");
        return std::nullopt;
    }

    std::vector<std::string> TakeTexts(const toml::table &table, const char *key)
    {
        std::vector<std::string> texts;
        const toml::node *node = table.get(key);
        if (node == nullptr)
            return texts;
        if (const auto text = node->value_exact<std::string>())
            return {*text};
        const toml::array *array = node->as_array();
        if (array == nullptr) {
            Add(PlaceOf(*node), std::string(key) + " is a list of texts: write " + key + " = [\"...\", \"...\"]");
            return texts;
        }
        for (const toml::node &member : *array) {
            if (const auto text = member.value_exact<std::string>())
                texts.push_back(*text);
            else
                Add(PlaceOf(member), std::string(key) + " holds texts only");
        }
        return texts;
    }

    void ReadHead(const toml::table &root)
    {
        m_bench.resolution = TakeTime(root, "resolution", m_bench.resolution,
                                      [](const std::string &text) { return ReadResolution(text); });
        if (root.get("until") != nullptr)
            m_bench.until = TakeTicks(root, "until", 0);
        m_bench.scope = TakeText(root, "scope");
    }

    static std::string Join(const std::string &scope, const std::string &name)
    {
        return scope.empty() ? name : scope + "." + name;
    }

    void ReadSignals(const toml::table &table, const std::string &scope)
    {
        for (const SMember &member : MembersOf(table)) {
            const std::string name = Join(scope, member.key);
            const toml::table *inner = member.node->as_table();
            if (inner != nullptr && IsScope(*inner))
                ReadSignals(*inner, name);
            else
                ReadSignal(member, name);
        }
    }

    // A table without anything that a signal has is one of signals: dut.clk = "...".
    static bool IsScope(const toml::table &table)
    {
        return !table.empty() && std::ranges::none_of(SignalKeys, [&](const std::string &key) {
            const toml::node *node = table.get(key);
            return node != nullptr && !node->is_table();
        }) && std::ranges::all_of(MembersOf(table), [](const SMember &member) {
            return member.node->is_table() || member.node->is_string();
        });
    }

    void ReadSignal(const SMember &member, const std::string &name)
    {
        SBenchSignal signal;
        signal.name = name;
        signal.place = PlaceOf(*member.node);
        if (const auto formula = member.node->value_exact<std::string>())
            signal.formula = *formula;
        else if (const toml::table *table = member.node->as_table())
            ReadSignalTable(*table, signal);
        else
            return Add(signal.place, "a signal is a formula or a table: write " + member.key + " = \"1 0ns, 0 5ns\"");
        if (!m_names.insert(name).second)
            Add(member.place, "the signal " + Quote(name) + " stands twice in the bench");
        if (!signal.formula.empty() || member.node->is_string())
            ExamineBenchSignal(m_bench, signal, m_faults);
        m_bench.signals.push_back(std::move(signal));
    }

    void ReadSignalTable(const toml::table &table, SBenchSignal &signal)
    {
        RefuseUnknown(table, SignalKeys, "of a signal");
        signal.formula = TakeText(table, "formula");
        if (const toml::node *formula = table.get("formula"))
            signal.place = PlaceOf(*formula);
        else
            Add(signal.place, "the signal " + Quote(signal.name) + " has no formula; write formula = \"...\"");
        signal.typeName = TakeText(table, "type");
        try {
            signal.description = signal.typeName.empty() ? "" : ReadTypeArgument(signal.typeName);
        } catch (const CRefusal &fault) {
            Add(PlaceOf(*table.get("type")), fault.what());
        }
        signal.strength = TakeStrength(table);
        signal.start = TakeTicks(table, "start", 0);
    }

    EStrength TakeStrength(const toml::table &table)
    {
        const std::string text = TakeText(table, "strength");
        const std::optional<EStrength> strength = text.empty() ? EStrength::Override : StrengthOf(text);
        if (strength)
            return *strength;
        Add(PlaceOf(*table.get("strength")), "no strength " + Quote(text) + "; write override, deposit or drive");
        return EStrength::Override;
    }

    void ReadReplays(const toml::node &node)
    {
        const toml::array *array = node.as_array();
        const bool isOne = node.is_table();
        if (array == nullptr && !isOne)
            return Add(PlaceOf(node), "a replay is a table: write [[replay]] with file = \"...\" below it");
        if (isOne)
            return ReadReplay(*node.as_table());
        for (const toml::node &member : *array) {
            if (member.is_table())
                ReadReplay(*member.as_table());
            else
                Add(PlaceOf(member), "a replay is a table: write [[replay]] with file = \"...\" below it");
        }
    }

    void ReadReplay(const toml::table &table)
    {
        RefuseUnknown(table, ReplayKeys, "of a replay");
        SBenchReplay replay;
        replay.place = PlaceOf(table);
        replay.file = TakeText(table, "file");
        if (replay.file.empty())
            Add(replay.place, "the replay has no file; write file = \"run.fst\"");
        replay.scope = TakeText(table, "scope");
        replay.to = table.get("to") != nullptr ? TakeText(table, "to") : replay.scope;
        replay.drive = TakeTexts(table, "drive");
        replay.compare = TakeTexts(table, "compare");
        const std::string unknown = TakeText(table, "x");
        if (!unknown.empty() && unknown != "ignore" && unknown != "match")
            Add(PlaceOf(*table.get("x")), "x is \"ignore\" or \"match\", not " + Quote(unknown));
        replay.matchesUnknown = unknown == "match";
        replay.tolerance = TakeTicks(table, "tolerance", 0);
        replay.from = TakeTicks(table, "from", 0);
        replay.realTolerance = TakeDistance(table, "real_tolerance");
        m_bench.replays.push_back(std::move(replay));
    }

    SBench &m_bench;
    std::vector<SBenchFault> &m_faults;
    std::set<std::string> m_names;
};

std::optional<std::string> ReadWhole(const std::string &path, std::vector<SBenchFault> &faults)
{
    constexpr std::uintmax_t MostBytes = 16 << 20;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > MostBytes) {
        faults.push_back({ESeverity::Error, {}, error ? error.message() : "is too long for a bench"});
        return std::nullopt;
    }
    std::string text;
    if (const int fault = ReadBeginning(path, MostBytes, text); fault != 0) {
        faults.push_back({ESeverity::Error, {}, std::strerror(fault)});
        return std::nullopt;
    }
    return text;
}

}  // namespace

std::optional<EStrength> StrengthOf(const std::string &name)
{
    const auto row = std::ranges::find_if(
        Strengths, [&](const SStrengthName &strength) { return NameDistance(strength.name, name, 0) == 0; });
    return row != std::end(Strengths) ? std::optional(row->strength) : std::nullopt;
}

bool IsBenchName(const std::string &text)
{
    return text.ends_with(".toml") && text.find(',') == std::string::npos;
}

SBench ReadBench(const std::string &path, std::vector<SBenchFault> &faults)
{
    SBench bench;
    bench.path = path;
    const auto text = ReadWhole(path, faults);
    if (!text)
        return bench;
    try {
        CBenchReader(bench, faults).Read(toml::parse(*text, path));
    } catch (const toml::parse_error &error) {
        faults.push_back({ESeverity::Error, PlaceOf(error.source().begin), OneLine(error.description())});
    }
    std::ranges::stable_sort(faults, {}, &SBenchFault::place);
    return bench;
}

bool HasError(const std::vector<SBenchFault> &faults)
{
    return std::ranges::any_of(faults, [](const SBenchFault &fault) { return fault.severity == ESeverity::Error; });
}

std::string FaultLine(const SBench &bench, const SBenchFault &fault)
{
    std::string line = bench.path;
    const std::string severity = fault.severity == ESeverity::Error ? "error: " : "warning: ";
    if (line.empty())
        return OneLine(severity + fault.text);
    if (fault.place.line > 0)
        line += ":" + std::to_string(fault.place.line) + ":" + std::to_string(fault.place.column);
    return OneLine(line + ": " + severity + fault.text);
}

}  // namespace tesk
