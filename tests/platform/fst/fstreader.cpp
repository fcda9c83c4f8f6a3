#include "platform/fst/fstreader.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "logcatcher.h"
#include "platform/felvarbase.h"
#include "platform/fst/fstmaker.h"

namespace {

using namespace fsttest;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char *Bit = "e#9#std_logicc9 UX01ZWLH-";

// A file and the reader that has it open.
class CFile {
public:
    explicit CFile(const CFstMaker &maker) : CFile(maker.Bytes()) {}
    explicit CFile(const CBytes &bytes)
    {
        WriteBytes(Path(), bytes);
        m_reader.reset(NTARN::IDatabaseReader::create(Path().c_str(), false));
    }

    std::filesystem::path Path() const { return m_folder / "made.fst"; }
    NTARN::IDatabaseReader *operator->() const { return m_reader.get(); }
    NTARN::IDatabaseReader &operator*() const { return *m_reader; }

    std::vector<SEvent> Events(int handle) const { return AllEvents(*m_reader, handle); }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const int *handle = m_reader->RootHandlesBegin(); handle != m_reader->RootHandlesEnd(); ++handle)
            names.push_back(m_reader->GetName(*handle));
        return names;
    }

private:
    CTemporaryFolder m_folder;
    ReaderPtr m_reader;
};

// Two scopes; a bit, a bus, a real, and the bit and the bus once more under another name.
CFstMaker Sample()
{
    CFstMaker maker;
    maker.end = 40;
    maker.Scope("top").Attribute("a comment").Variable(maker.Wire, "clk", 1).Variable(maker.Reg, "data [3:0]", 4);
    maker.Scope("dut").Variable(maker.Real, "level", 8).Variable(maker.Wire, "clock", 1, 1);
    maker.Variable(maker.Reg, "in[0:3]", 4, 2).EndScope().EndScope();
    maker.Block(0, {0, 10, 20}, "xxxxx" + RealLetters(0),
                {{{0, "0"}, {1, "1"}, {2, "1"}}, {{0, "01xz"}, {2, "0100"}}, {{1, RealLetters(2.5)}}});
    maker.Block(20, {20, 30, 40}, "10100" + RealLetters(2.5), {{{1, "z"}}, {{2, "1100"}}, {}});
    return maker;
}

TEST(FstHandles, AreThoseOfTheVariablesThenThoseOfTheElementsOfEachBus)
{
    const CFile file(Sample());
    EXPECT_THAT(std::vector<int>(file->RootHandlesBegin(), file->RootHandlesEnd()), ElementsAre(1, 2, 3, 4, 5));
    const struct {
        int handle, first, last;
    } rows[] = {
        {0, -1, -1}, {-1, -1, -1}, {1, -1, -1}, {2, 6, 9},    {3, -1, -1},
        {4, -1, -1}, {5, 10, 13},  {6, -1, -1}, {13, -1, -1}, {14, -1, -1},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(file->GetChildRange(row.handle).first, row.first) << row.handle;
        EXPECT_EQ(file->GetChildRange(row.handle).last, row.last) << row.handle;
    }
}

TEST(FstNames, ArePathsAndIndicesFromTheLeftBound)
{
    const CFile file(Sample());
    EXPECT_THAT(file.Names(), ElementsAre("top.clk", "top.data", "top.dut.level", "top.dut.clock", "top.dut.in"));
    const std::string elements[] = {"[3]", "[2]", "[1]", "[0]", "[0]", "[1]", "[2]", "[3]"};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(file->GetName(6 + i), elements[i]);
    EXPECT_EQ(file->GetName(14), "");
    EXPECT_EQ(file->GetFullName(2, false), "top.data");
    EXPECT_EQ(file->GetFullName(7, false), "top.data[2]");
    EXPECT_EQ(file->GetFullName(0, false), "");
}

TEST(FstNames, AreJoinedWithTheSeparatorOfTheHierarchy)
{
    SetVHDLHierarchySeparator('/');
    const CFile file(Sample());
    SetVHDLHierarchySeparator('.');
    EXPECT_EQ(file->GetName(3), "top/dut/level");
}

TEST(FstNames, LeaveOutScopesWithoutAName)
{
    CFstMaker maker;
    maker.Scope("").Scope("a").Scope("").Variable(maker.Wire, "b", 1).EndScope().EndScope().EndScope();
    maker.EndScope().Variable(maker.Wire, "c", 1);
    EXPECT_THAT(CFile(maker).Names(), ElementsAre("a.b", "c"));
}

TEST(FstNames, AreSpelledAsAFormulaTakesThem)
{
    CFstMaker maker;
    maker.Scope("gen(0)").Variable(maker.Wire, "m(3)", 1).EndScope();
    maker.Scope("\\s+1").Variable(maker.Wire, "\\a+b [1:0]", 2).Variable(maker.Wire, "\\c", 1);
    maker.Variable(maker.Wire, "\\v h\\", 1).Variable(maker.Wire, "\\d [3]", 1);
    EXPECT_THAT(CFile(maker).Names(),
                ElementsAre("gen[0].m[3]", "\\s+1\\.\\a+b\\", "\\s+1\\.\\c\\", "\\s+1\\.\\v h\\", "\\s+1\\.\\d\\[3]"));
}

TEST(FstTypes, TellBitsBusesAndReals)
{
    const CFile file(Sample());
    const auto text = [&](int handle) { return std::string(file->GetType(handle).GetTypeInfoString()); };
    EXPECT_EQ(text(1), Bit);
    EXPECT_EQ(text(2), std::string("a#28#std_logic_vector(3 downto 0)1 ricd3 0 ") + Bit);
    EXPECT_EQ(text(3), "f#4#realrrct-1.79769e+308 1.79769e+308");
    EXPECT_EQ(text(5), std::string("a#24#std_logic_vector(0 to 3)1 rict0 3 ") + Bit);
    EXPECT_EQ(text(6), Bit);
    EXPECT_EQ(file->GetType(2).GetKind(), 4);
    EXPECT_EQ(file->GetType(99).GetKind(), 0);
    EXPECT_EQ(&file->GetType(2), &file->GetType(2));
}

TEST(FstTypes, OfOneBitAreScalarsWhateverTheRange)
{
    CFstMaker maker;
    maker.Variable(maker.Wire, "a [0:0]", 1).Variable(maker.Wire, "b[5:5]", 1).Variable(maker.Wire, "c [7]", 1);
    const CFile file(maker);
    EXPECT_THAT(file.Names(), ElementsAre("a", "b", "c[7]"));
    for (int handle = 1; handle <= 3; ++handle)
        EXPECT_STREQ(file->GetType(handle).GetTypeInfoString(), Bit);
}

TEST(FstEvents, OfABitAreAllValuesThatTheFileWrites)
{
    const CFile file(Sample());
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{0, 2}, SEvent{10, 3}, SEvent{20, 3}, SEvent{30, 4}));
}

TEST(FstEvents, OfAnElementAreItsChanges)
{
    const CFile file(Sample());
    EXPECT_THAT(file.Events(6), ElementsAre(SEvent{0, 2}, SEvent{40, 3}));
    EXPECT_THAT(file.Events(7), ElementsAre(SEvent{0, 3}));
    EXPECT_THAT(file.Events(8), ElementsAre(SEvent{0, 1}, SEvent{20, 2}));
    EXPECT_THAT(file.Events(9), ElementsAre(SEvent{0, 4}, SEvent{20, 2}));
}

TEST(FstEvents, OfAWholeBusAndOfAnUnknownHandleAreNone)
{
    const CFile file(Sample());
    for (const int handle : {2, 5, 0, -3, 14}) {
        EXPECT_THAT(file.Events(handle), IsEmpty());
        EXPECT_TRUE(--file->EventsEnd(handle) == file->EventsFrom(handle, 0));
    }
}

TEST(FstEvents, OfARealAreTheBitsOfADouble)
{
    const CFile file(Sample());
    EXPECT_THAT(file.Events(3), ElementsAre(SEvent{0, 0}, SEvent{10, 0x4004000000000000}));
}

TEST(FstEvents, OfAnAliasAreThoseOfTheSameSignal)
{
    const CFile file(Sample());
    EXPECT_EQ(file.Events(4), file.Events(1));
    EXPECT_EQ(file.Events(10), file.Events(6));
    EXPECT_EQ(file.Events(13), file.Events(9));
}

TEST(FstEvents, AreFoundByTime)
{
    const CFile file(Sample());
    const struct {
        long long time, found;
    } rows[] = {{-5, 0}, {0, 0}, {1, 10}, {10, 10}, {20, 20}, {30, 30}, {31, -1}};
    for (const auto &row : rows)
        EXPECT_EQ(*file->EventsFrom(1, row.time), row.found) << row.time;
    EXPECT_EQ(*--file->EventsEnd(1), 30);
    EXPECT_TRUE(--file->EventsFrom(1, 0) == file->EventsEnd(1));
}

TEST(FstFile, TellsItsEndAndItsTick)
{
    const CFile file(Sample());
    EXPECT_EQ(file->GetEndTime(), 40);
    EXPECT_EQ(file->GetSignalEndTime(1), 40);
    EXPECT_EQ(file->GetResolution(), 1'000'000);
    EXPECT_EQ(file->GetMode(1), 0);
}

TEST(FstFile, HasTheTickThatItsScaleTells)
{
    const struct {
        int scale;
        long long femtoseconds;
    } rows[] = {
        {-15, 1},       {-14, 10},        {-12, 1000}, {0, 1'000'000'000'000'000}, {2, 100'000'000'000'000'000},
        {3, 1'000'000}, {-22, 1'000'000},  // no power that viewers know: 1 ns
        {-16, 1},       {-21, 1},          // shorter than a femtosecond: the times are made fewer
    };
    for (const auto &row : rows) {
        CFstMaker maker = Sample();
        maker.scale = row.scale;
        EXPECT_EQ(CFile(maker)->GetResolution(), row.femtoseconds) << row.scale;
    }
}

TEST(FstFile, CountsInFemtosecondsWhatHasShorterTicks)
{
    CFstMaker maker = Sample();
    maker.scale = -16;
    const CFile file(maker);
    EXPECT_EQ(file->GetEndTime(), 4);
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{0, 2}, SEvent{1, 3}, SEvent{2, 3}, SEvent{3, 4}));
}

TEST(FstFile, MovesAllTimesByItsTimeZero)
{
    CFstMaker maker = Sample();
    maker.timeZero = 15;
    const CFile file(maker);
    EXPECT_EQ(file->GetEndTime(), 55);
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{15, 2}, SEvent{25, 3}, SEvent{35, 3}, SEvent{45, 4}));
    maker.timeZero = INT64_MAX;
    EXPECT_EQ(CFile(maker)->GetEndTime(), INT64_MAX);
}

TEST(FstFile, ThatBeginsBeforeTimeZeroIsCountedFromItsBegin)
{
    for (const auto &[timeZero, begin] : {std::pair(-15LL, 0LL), {INT64_MIN, 0}, {-2, 3}, {-5, 0}, {-6, 0}}) {
        const std::uint64_t first = timeZero >= -6 && timeZero <= -2 ? 5 : 0;
        CFstMaker maker;
        maker.begin = first;
        maker.end = 40;
        maker.timeZero = timeZero;
        maker.Variable(maker.Wire, "a", 1).Block(first, {first, first + 10}, "x", {{{0, "0"}, {1, "1"}}});
        const CLogCatcher log;
        const CFile file(maker);
        EXPECT_THAT(file.Events(1), ElementsAre(SEvent{begin, 2}, SEvent{begin + 10, 3})) << timeZero;
        EXPECT_EQ(file->GetEndTime(), 40 - static_cast<long long>(first) + begin);
        EXPECT_EQ(log.Messages().size(), timeZero < -static_cast<long long>(first) ? 1U : 0U) << timeZero;
    }
}

// As some writers count: from the last time of the block before.
TEST(FstFile, MovesTimesThatStartAnewInABlockToItsBegin)
{
    CFstMaker maker;
    maker.end = 80;
    maker.Variable(maker.Wire, "a", 1).Block(0, {0, 40}, "x", {{{0, "0"}, {1, "1"}}});
    CBytes later = maker.BlockContents(45, {5, 40}, "1", {{{0, "0"}, {1, "z"}}});
    later[15] = 80;  // its end
    maker.Raw(8, later);
    const CLogCatcher log;
    EXPECT_THAT(CFile(maker).Events(1), ElementsAre(SEvent{0, 2}, SEvent{40, 3}, SEvent{45, 2}, SEvent{80, 4}));
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(FstFile, ReadsTheSameInEveryForm)
{
    for (const int kind : {1, 5, 8}) {
        for (const char packer : {'Z', 'F', '4'}) {
            for (const int hierarchy : {4, 6, 7}) {
                CFstMaker maker;
                maker.kind = kind;
                maker.packer = packer;
                maker.hierarchyKind = hierarchy;
                maker.hasGeometry = hierarchy != 6;
                maker.isPacked = kind != 1;
                maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "silent", 1).Variable(maker.Wire, "b", 1);
                maker.Variable(maker.Wire, "c", 1).Variable(maker.Wire, "d", 1).Variable(maker.Reg, "e", 9);
                const CFstChanges same = {{0, "1"}, {1, "0"}};
                maker.Block(5, {5, 7}, std::string(14, 'x'), {same, {}, same, same, {{1, "h"}}, {{0, "101010101"}}});
                maker.Raw(2, CByteWriter().Varint(1).Byte(0).Varint(5).bytes).Raw(77, {1, 2, 3});
                const CFile file(maker);
                for (const int handle : {1, 3, 4})
                    EXPECT_THAT(file.Events(handle), ElementsAre(SEvent{5, 3}, SEvent{7, 2})) << kind << packer;
                EXPECT_THAT(file.Events(2), IsEmpty());
                EXPECT_THAT(file.Events(5), ElementsAre(SEvent{7, 7}));
                EXPECT_THAT(file.Events(15), ElementsAre(SEvent{5, 3}));
            }
        }
    }
}

TEST(FstFile, PackedAsAWholeReadsTheSame)
{
    const CBytes bytes = Sample().Bytes();
    const CBytes packed = PackGzip(bytes);
    const CBytes wrapped = CByteWriter().Byte(254).Number(packed.size() + 16).Number(bytes.size()).Append(packed).bytes;
    const CFile file(wrapped);
    EXPECT_EQ(file.Events(1), CFile(bytes).Events(1));
    EXPECT_EQ(file.Events(6), CFile(bytes).Events(6));
}

TEST(FstReals, AreReadInTheByteOrderOfTheirWriter)
{
    CFstMaker maker;
    maker.isBigEndian = true;
    std::string letters = RealLetters(2.5);
    std::ranges::reverse(letters);
    maker.Variable(maker.Real, "r", 8).Block(0, {0}, std::string(8, 0), {{{0, letters}}});
    EXPECT_THAT(CFile(maker).Events(1), ElementsAre(SEvent{0, 0x4004000000000000}));
}

TEST(FstReals, MayBePackedAsIfTheirBytesWereBits)
{
    CFstMaker maker;
    maker.Variable(maker.Real, "r", 8).Block(0, {0}, std::string(8, 0), {{{0, "10110001"}}});
    EXPECT_THAT(CFile(maker).Events(1), ElementsAre(SEvent{0, 0x3130303031313031}));
}

TEST(FstValues, ArePositionsAmongTheLettersOfStdLogic)
{
    const std::string letters = "uUxX01zZwWlLhH-?qb";
    const std::vector<std::uint64_t> values = {0, 0, 1, 1, 2, 3, 4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 1, 1};
    CFstMaker maker;
    maker.Variable(maker.Reg, "v", letters.size()).Variable(maker.Wire, "b", 1);
    CFstChanges extra;
    for (std::uint64_t i = 0; i < 8; ++i)
        extra.push_back({i, std::string(1, "xzhuwl-?"[i])});
    maker.Block(0, {0, 1, 2, 3, 4, 5, 6, 7}, std::string(19, 'x'), {{{0, letters}}, extra});
    const CFile file(maker);
    for (std::size_t i = 0; i < letters.size(); ++i)
        EXPECT_THAT(file.Events(3 + static_cast<int>(i)), ElementsAre(SEvent{0, values[i]})) << letters[i];
    std::vector<std::uint64_t> bits;
    for (const SEvent &event : file.Events(2))
        bits.push_back(event.value);
    EXPECT_THAT(bits, ElementsAre(1, 4, 7, 0, 5, 6, 8, 8));
}

TEST(FstValues, OfAPortAreItsStates)
{
    CFstMaker maker;
    maker.Variable(maker.Port, "p", 3 * 4 + 2);
    maker.Block(0, {0, 3}, "xxxx 0000 0000", {{{0, "DuTA 6600 0660"}, {1, "LHF? 6660 0600"}}});
    const CFile file(maker);
    EXPECT_EQ(file->GetChildRange(1).last - file->GetChildRange(1).first, 3);
    EXPECT_THAT(file.Events(2), ElementsAre(SEvent{0, 2}));
    EXPECT_THAT(file.Events(3), ElementsAre(SEvent{0, 3}));
    EXPECT_THAT(file.Events(4), ElementsAre(SEvent{0, 4}));
    EXPECT_THAT(file.Events(5), ElementsAre(SEvent{0, 1}));
}

// Of writers that know nothing of the three letters a bit.
TEST(FstValues, OfAPortOfAnyOtherLengthAreBits)
{
    CFstMaker maker;
    maker.Variable(maker.Port, "p", 4).Variable(maker.Port, "q", 1);
    maker.Block(0, {0, 3}, "xxxxx", {{{0, "01zh"}, {1, "0110"}}, {{1, "1"}}});
    const CFile file(maker);
    EXPECT_EQ(file->GetChildRange(1).last - file->GetChildRange(1).first, 3);
    EXPECT_THAT(file.Events(4), ElementsAre(SEvent{0, 3}));
    EXPECT_THAT(file.Events(5), ElementsAre(SEvent{0, 4}, SEvent{3, 3}));
    EXPECT_THAT(file.Events(2), ElementsAre(SEvent{3, 3}));
}

// A writer finds out that they do, and then keeps their changes once.
TEST(FstEvents, OfSignalsThatChangeAlikeAreKeptOnce)
{
    CFstMaker maker;
    maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1).Variable(maker.Wire, "c", 1);
    const CFstChanges same = {{0, "1"}, {1, "0"}};
    maker.Block(0, {0, 7}, "xxx", {same, same, same}).Block(7, {7, 9}, "000", {{{1, "1"}}, {{1, "1"}}, {}});
    const CFile file(maker);
    EXPECT_EQ(file.Events(1), file.Events(2));
    EXPECT_EQ(file->EventsFrom(1, 0).event(), file->EventsFrom(2, 0).event());
    EXPECT_NE(file->EventsFrom(1, 0).event(), file->EventsFrom(3, 0).event());
    EXPECT_THAT(file.Events(3), ElementsAre(SEvent{0, 3}, SEvent{7, 2}));
}

// Values that are written as bits, then as letters, then as bits again.
TEST(FstEvents, OfABusAreItsChangesHoweverItsValuesAreWritten)
{
    CFstMaker maker;
    maker.Variable(maker.Reg, "v", 9);
    maker.Block(
        0, {0, 1, 2, 3, 4, 5}, std::string(9, 'x'),
        {{{0, "000000000"}, {1, "100000001"}, {2, "10000000z"}, {3, "100000001"}, {4, "100000001"}, {5, "000000001"}}});
    const CFile file(maker);
    EXPECT_THAT(file.Events(2), ElementsAre(SEvent{0, 2}, SEvent{1, 3}, SEvent{5, 2}));
    EXPECT_THAT(file.Events(3), ElementsAre(SEvent{0, 2}));
    EXPECT_THAT(file.Events(10), ElementsAre(SEvent{0, 2}, SEvent{1, 3}, SEvent{2, 4}, SEvent{3, 3}));
}

TEST(FstInitialValues, ComeFromTheFrameOfTheFirstBlockOnly)
{
    CFstMaker maker;
    maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1).Variable(maker.Reg, "v", 2);
    maker.Block(3, {3, 5}, "1001", {{}, {{0, "1"}}, {{1, "11"}}}).Block(5, {5, 9}, "1111", {{{1, "0"}}, {}, {}});
    const CFile file(maker);
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{3, 3}, SEvent{9, 2}));
    EXPECT_THAT(file.Events(2), ElementsAre(SEvent{3, 3}));  // the change at the beginning counts
    EXPECT_THAT(file.Events(4), ElementsAre(SEvent{3, 2}, SEvent{5, 3}));
    EXPECT_THAT(file.Events(5), ElementsAre(SEvent{3, 3}));
}

TEST(FstInitialValues, AreNoneWhereTheWriterWasToldNone)
{
    CFstMaker maker;
    maker.Variable(maker.Wire, "a", 1).Variable(maker.Reg, "v", 2).Variable(maker.Real, "r", 8);
    const std::string frame = "xxx" + RealLetters(std::numeric_limits<double>::quiet_NaN());
    maker.Block(0, {0, 5}, frame, {{{1, "1"}}, {}, {}});
    const CFile file(maker);
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{5, 3}));
    EXPECT_THAT(file.Events(4), IsEmpty());
    EXPECT_THAT(file.Events(3), IsEmpty());
    // Told from 0 on, though the first change is later: then x is a value.
    CFstMaker later;
    later.Variable(later.Wire, "a", 1).Block(0, {2, 5}, "x", {{{1, "1"}}});
    EXPECT_THAT(CFile(later).Events(1), ElementsAre(SEvent{0, 1}, SEvent{5, 3}));
}

TEST(FstEvents, AreFoundFromWhereverTheLastOneWas)
{
    CFstMaker maker;
    std::vector<std::uint64_t> times;
    CFstChanges changes;
    for (std::uint64_t i = 0; i < 40; ++i) {
        times.push_back(i / 3 * 5);  // three of one time
        changes.emplace_back(i, i % 2 == 0 ? "0" : "1");
    }
    maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1).Block(0, times, "xx", {changes, {{3, "1"}}});
    const CFile file(maker);
    const std::vector<SEvent> events = file.Events(1);
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const long long time = static_cast<long long>(random() % 75) - 2;
        const auto expected = std::ranges::lower_bound(events, time, {}, &SEvent::time);
        const NTARN::KEventIterator found = file->EventsFrom(1, time);
        ASSERT_EQ(found == file->EventsEnd(1), expected == events.end()) << time;
        if (expected != events.end()) {
            ASSERT_EQ(EventAt(found), *expected) << time;
        }
        if (random() % 4 == 0) {
            ASSERT_EQ(*file->EventsFrom(2, time), time > 5 ? -1 : 5);
        }
    }
}

TEST(FstText, IsLeftOutWithOneWarning)
{
    CFstMaker maker;
    maker.Variable(maker.Text, "s", 0).Variable(maker.Wire, "a", 1).Variable(maker.Text, "t", 0);
    maker.Variable(maker.Text, "u", 0, 1);
    maker.Block(0, {0}, "x", {{{0, "one"}}, {{0, "1"}}, {{0, "two"}}});
    const CLogCatcher log;
    const CFile file(maker);
    EXPECT_THAT(file.Names(), ElementsAre("a"));
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{0, 3}));
    EXPECT_THAT(log.Messages(), ElementsAre("2 KERNEL Waveform file `" + file.Path().string() +
                                            "': signals of text are left out (3)."));
}

}  // namespace
