// Our reader beside the other dumps of the same run, and beside ghwdump.
#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "logcatcher.h"
#include "platform/fst/fstvcd.h"
#include "platform/ghw/ghwmaker.h"
#include "platform/ghw/ghwshow.h"

namespace {

using namespace ghwtest;
using fsttest::CVcdText;
using fsttest::DataFile;
using fsttest::SVcdDump;

constexpr int Enumeration = 1;
constexpr int Integer = 2;
constexpr int Real = 3;

// A value of a scalar as a VCD of GHDL's has it; `text` is the element's letter, or the digits of an integer or a real.
std::string InVcdWords(const Kestrin::KTypeInfo &type, const std::string &text)
{
    if (type.GetKind() == Real)
        return std::to_string(std::stod(text));
    if (type.GetKind() == Integer)
        return std::to_string(static_cast<int>(std::stoull(text, nullptr, 2)));
    const std::string identifier = type.GetTypeIdentifier();
    return identifier != "boolean" ? text : text == "1" ? "true" : "false";
}

// Values by time. A GHW file also has those that are over at once, others may repeat what has not changed.
class CValues {
public:
    void Add(long long time, const std::string &value) { m_values[time] = value; }

    std::vector<std::string> Changes() const
    {
        std::vector<std::string> changes;
        std::string last;
        for (const auto &[time, value] : m_values) {
            if (value != last)
                changes.push_back(std::to_string(time) + ":" + value);
            last = value;
        }
        return changes;
    }

private:
    std::map<long long, std::string> m_values;
};

std::vector<std::string> OfVcd(const SVcdDump &dump, const SVcdDump::SVariable &variable,
                               const Kestrin::KTypeInfo &type, std::size_t element)
{
    CValues values;
    for (const SVcdDump::SChange &change : dump.changes.at(variable.id)) {
        const bool isLetter = type.GetKind() == Enumeration;
        values.Add(change.time, InVcdWords(type, isLetter ? change.value.substr(element, 1) : change.value));
    }
    return values.Changes();
}

std::vector<std::string> OfReader(NTARN::IDatabaseReader &reader, int handle)
{
    const Kestrin::KTypeInfo &type = reader.GetType(handle);
    CValues values;
    for (const SEvent &event : AllEvents(reader, handle)) {
        const std::string value = type.GetValueString_OldFormat(&event.value, 0, 0, 0, false);
        values.Add(event.time * reader.GetResolution(),
                   type.GetKind() == Real ? std::to_string(std::stod(value)) : value);
    }
    return values.Changes();
}

void AddScalars(NTARN::IDatabaseReader &reader, int handle, std::vector<int> &scalars)
{
    const NTARN::HSignalRange children = reader.GetChildRange(handle);
    for (int child = children.first; child >= 0 && child <= children.last; ++child)
        AddScalars(reader, child, scalars);
    if (reader.GetType(handle).IsScalar())
        scalars.push_back(handle);
}

std::vector<int> Scalars(NTARN::IDatabaseReader &reader, int handle)
{
    std::vector<int> scalars;
    AddScalars(reader, handle, scalars);
    return scalars;
}

// "tb.stage(0).held" and "tb.data [7:0]" as a reader spells them.
std::string WithoutRange(const std::string &name)
{
    std::string spelled = name.substr(0, name.rfind(':') != std::string::npos ? name.rfind('[') : name.npos);
    std::ranges::replace(spelled, '(', '[');
    std::ranges::replace(spelled, ')', ']');
    return spelled;
}

void ExpectAsVcd(const std::string &name, std::size_t count)
{
    const ReaderPtr reader = Open(DataFile(name + ".ghdl.ghw"));
    std::ifstream text(DataFile(name + ".ghdl.vcd"));
    const SVcdDump dump = CVcdText(text).Read();
    std::size_t compared = 0;
    for (const SVcdDump::SVariable &variable : dump.variables) {
        const std::string path = WithoutRange(variable.name);
        if (path.find('?') != path.npos)
            continue;  // a generate statement over an enumeration: the VCD does not tell its values
        const int handle = Find(*reader, path);
        ASSERT_NE(handle, -1) << path;
        const std::vector<int> scalars = Scalars(*reader, handle);
        for (std::size_t i = 0; i < scalars.size(); ++i, ++compared)
            EXPECT_EQ(OfReader(*reader, scalars[i]), OfVcd(dump, variable, reader->GetType(scalars[i]), i))
                << path << ' ' << i;
    }
    EXPECT_EQ(compared, count);
}

TEST(GhwComparison, HoldsForTheVcdOfTheSameRun)
{
    ExpectAsVcd("ghw_types", 33);
    ExpectAsVcd("tb", 92);
}

TEST(GhwComparison, HoldsForTheFstOfTheSameRun)
{
    const CLogCatcher log;
    const ReaderPtr ghw = Open(DataFile("tb.ghdl.ghw"));
    const ReaderPtr fst = Open(DataFile("tb.ghdl.fst"));
    int compared = 0;
    for (const int *root = fst->RootHandlesBegin(); root != fst->RootHandlesEnd(); ++root) {
        const std::string path = "tb." + WithoutRange(fst->GetName(*root));  // the FST has no outermost scope
        const int handle = Find(*ghw, path);
        ASSERT_NE(handle, -1) << path;
        const std::vector<int> ours = Scalars(*ghw, handle), theirs = Scalars(*fst, *root);
        const std::string letters = ghw->GetType(ours.at(0)).GetTypeIdentifier();
        if (letters != "std_logic" && letters != "bit")
            continue;
        ASSERT_EQ(ours.size(), theirs.size()) << path;
        for (std::size_t i = 0; i < ours.size(); ++i, ++compared)
            EXPECT_EQ(OfReader(*ghw, ours[i]), OfReader(*fst, theirs[i])) << path << ' ' << i;
    }
    EXPECT_EQ(compared, 89);
}

// "#12: 'U' (0)": the values of all elements at every time, as ghwdump prints them.
std::map<long long, std::vector<std::string>> RunGhwDump(const std::filesystem::path &file)
{
    const CTemporaryFolder folder;
    const std::string output = folder / "dump.txt";
    const std::string command = "ghwdump -s '" + file.string() + "' >'" + output + "' 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    std::map<long long, std::vector<std::string>> values;
    long long time = 0;
    std::ifstream text(output);
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with("Time is "))
            values[time = std::stoll(line.substr(8))].clear();
        else if (line.starts_with("#"))
            values[time].push_back(line.substr(line.find(':') + 2));
    }
    return values;
}

// What ghwdump writes of one of our values.
std::string InGhwDumpWords(const Kestrin::KTypeInfo &type, std::uint64_t value)
{
    const std::string text = type.GetValueString_OldFormat(&value, 0, 0, 0, false);
    if (type.GetKind() == Real) {
        char digits[40];
        std::snprintf(digits, sizeof digits, "%g", std::stod(text));
        return digits;
    }
    if (type.GetKind() != Enumeration)
        return text;
    const bool isCharacter = std::string(type.GetTypeInfoString()).find("c") != std::string::npos && text.size() == 1;
    return (isCharacter ? "'" + text + "'" : text) + " (" + std::to_string(value) + ")";
}

// The scalars in the order of the file's elements: those that a port shares with a signal are met before.
std::vector<int> Elements(NTARN::IDatabaseReader &reader)
{
    std::vector<int> scalars;
    for (const int *root = reader.RootHandlesBegin(); root != reader.RootHandlesEnd(); ++root)
        AddScalars(reader, *root, scalars);
    std::vector<int> elements;
    std::set<const NTARN::SFileEvent *> known;
    for (const int scalar : scalars) {
        if (known.insert(reader.EventsFrom(scalar, 0).event()).second)
            elements.push_back(scalar);
    }
    return elements;
}

TEST(GhwComparison, HoldsForGhwDumpAtEveryTime)
{
    ASSERT_TRUE(fsttest::HasProgram("ghwdump")) << "ghwdump is in the package ghdl-tools";
    const std::filesystem::path file = DataFile("tb.ghdl.ghw");
    const auto dump = RunGhwDump(file);
    const ReaderPtr reader = Open(file);
    const std::vector<int> elements = Elements(*reader);
    ASSERT_GT(dump.size(), 50U);
    EXPECT_EQ(dump.rbegin()->first, reader->GetEndTime());
    for (const auto &[time, values] : dump) {
        ASSERT_EQ(values.size(), elements.size());
        for (std::size_t i = 0; i < elements.size(); ++i) {
            NTARN::KEventIterator it = reader->EventsFrom(elements[i], time + 1);
            --it;
            const std::uint64_t value = fsttest::EventAt(it).value;
            ASSERT_EQ(InGhwDumpWords(reader->GetType(elements[i]), value), values[i])
                << reader->GetFullName(elements[i], false) << " at " << time;
        }
    }
}

}  // namespace
