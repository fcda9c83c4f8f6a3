// The search for a signal of a database by its name.

#include <random>

#include "platform/crt.h"
#include "waveform/fakefiles.h"
#include "waveform/tarnstimulus.h"

namespace {

constexpr int None = -1;

int Find(NTARN::IDatabaseReader &reader, const std::string &name)
{
    return FindTarnSignalHandle(&reader, name.c_str(), -1, nullptr, {-1, -1});
}

// A signal with children.
SFakeSignal Parent(const std::string &name, const std::string &type, int first, int last)
{
    return {name, type, {}, {first, last}};
}

CFakeReader Design()
{
    const std::string record = RecordType({{"a", BitType}, {"b", BitType}});
    return {1000,
            10,
            {{"tb.clk"},
             Parent("tb.bus", VectorType(2), 4, 5),
             Parent("tb.rec", record, 6, 7),
             Parent("scope", BitType, 8, 9),
             {"[1]"},
             {"[0]"},
             {"a"},
             {"b"},
             {".x"},
             {"y"}},
            4};
}

TEST(FindTarnSignalHandle, FindsTopLevelSignalsElementsAndFields)
{
    CFakeReader reader = Design();
    const struct {
        const char *name;
        int handle;
    } rows[] = {{"tb.clk", 0},   {"tb.bus", 1},   {"tb.bus[1]", 4},    {"tb.bus[0]", 5},  {"tb.rec", 2},
                {"tb.rec.a", 6}, {"tb.rec.b", 7}, {"tb.bus[2]", None}, {"tb.cl", None},   {"tb.clk2", None},
                {"", None},      {"a", None},     {"tb.reca", None},   {"tb.rec.", None}, {"tb.bus.[1]", None}};
    for (const auto &row : rows)
        EXPECT_EQ(Find(reader, row.name), row.handle) << row.name;
}

TEST(FindTarnSignalHandle, PutsNothingBetweenTheNamesOfAScopeAndOfASignal)
{
    CFakeReader reader = Design();
    EXPECT_EQ(Find(reader, "scope.x"), 8);
    EXPECT_EQ(Find(reader, "scopey"), 9);
    EXPECT_EQ(Find(reader, "scope.y"), None);
}

TEST(FindTarnSignalHandle, IgnoresLetterCase)
{
    CFakeReader reader = Design();
    EXPECT_EQ(Find(reader, "TB.Clk"), 0);
    EXPECT_EQ(Find(reader, "tb.REC.B"), 7);
}

TEST(FindTarnSignalHandle, TakesTheFirstMatchAndIsNotStoppedByABeginning)
{
    CFakeReader reader(1000, 10, {{"s"}, {"sig"}, {"SIG"}, Parent("si", BitType, 4, 4), {"g"}}, 4);
    EXPECT_EQ(Find(reader, "sig"), 1);
    CFakeReader deep(1000, 10, {Parent("s", BitType, 2, 2), {"sig"}, {"ig"}}, 2);
    EXPECT_EQ(Find(deep, "sig"), 2) << "a child comes before the next sibling";
}

TEST(FindTarnSignalHandle, SearchesBelowAGivenSignalOnly)
{
    CFakeReader reader = Design();
    EXPECT_EQ(FindTarnSignalHandle(&reader, "tb.bus[0]", 1, "tb.bus", {4, 5}), 5);
    EXPECT_EQ(FindTarnSignalHandle(&reader, "tb.bus[0]", 1, "tb.bus", {4, 4}), None);
    EXPECT_EQ(FindTarnSignalHandle(&reader, "[0]", 1, nullptr, {4, 5}), 5);
    EXPECT_EQ(FindTarnSignalHandle(&reader, "tb.bus[0]", 1, "tb.bus", {-1, 5}), None);
}

TEST(FindTarnSignalHandle, WalksFromTheFirstTopLevelHandleToTheLast)
{
    CFakeReader none(1000, 10, {});
    EXPECT_EQ(Find(none, ""), None);
    CFakeReader one(1000, 10, {{""}});
    EXPECT_EQ(Find(one, ""), 0);
}

TEST(FindTarnSignalHandle, EndsWhereASignalIsItsOwnChild)
{
    CFakeReader reader(1000, 10, {Parent("", BitType, 0, 0)}, 1);
    EXPECT_EQ(Find(reader, "a"), None);
}

// All full names in the order of the walk, each with its handle.
void ListNames(CFakeReader &reader, NTARN::HSignalRange range, const std::string &parent,
               std::vector<std::pair<std::string, int>> &names)
{
    for (int handle = range.first; range.first != -1 && handle <= range.last; ++handle) {
        const std::string name = parent + reader.GetName(handle);
        names.emplace_back(name, handle);
        const bool isRecord = reader.GetType(handle).GetKind() == 5;
        ListNames(reader, reader.GetChildRange(handle), isRecord ? name + "." : name, names);
    }
}

int FindInList(const std::vector<std::pair<std::string, int>> &names, const std::string &name)
{
    for (const auto &[listed, handle] : names) {
        if (_stricmp(listed.c_str(), name.c_str()) == 0)
            return handle;
    }
    return None;
}

TEST(FindTarnSignalHandle, AgreesWithAListOfAllNames)
{
    std::mt19937 random(3);
    const auto upTo = [&random](unsigned last) { return static_cast<int>(random() % (last + 1)); };
    const auto anyName = [&](int longest) {
        std::string name;
        for (int length = upTo(static_cast<unsigned>(longest)); length > 0; --length)
            name += "aAb."[upTo(3)];
        return name;
    };
    for (int round = 0; round < 300; ++round) {
        constexpr int Count = 12;
        std::vector<SFakeSignal> signals;
        int next = 4;  // the first signals are top-level ones; children follow their parents
        for (int i = 0; i < Count; ++i) {
            signals.push_back({anyName(2), upTo(1) == 0 ? BitType : RecordType({{"f", BitType}}), {}, {}});
            const int children = upTo(2);
            if (children == 0 || next <= i || next + children > Count)
                continue;
            signals.back().children = {next, next + children - 1};
            next += children;
        }
        CFakeReader reader(1000, 10, signals, 4);
        std::vector<std::pair<std::string, int>> names;
        ListNames(reader, {0, 3}, "", names);
        for (int i = 0; i < 30; ++i) {
            const std::string name = anyName(5);
            ASSERT_EQ(Find(reader, name), FindInList(names, name)) << name << " in round " << round;
        }
    }
}

}  // namespace
