// What a GHW file says of its signals: files made here, in both byte orders.
#include <gmock/gmock.h>

#include "logcatcher.h"
#include "platform/ghw/ghwmaker.h"
#include "platform/ghw/ghwshow.h"

namespace {

using namespace ghwtest;
using testing::ElementsAre;
using testing::IsEmpty;

ReaderPtr OpenMade(const CTemporaryFolder &folder, const CGhwMaker &maker)
{
    WriteBytes(folder / "made.ghw", maker.Bytes());
    return Open(folder / "made.ghw");
}

TEST(GhwFile, ReadsTheSameInBothByteOrders)
{
    const CTemporaryFolder folder;
    for (const bool isBigEndian : {false, true}) {
        const CLogCatcher log;
        const ReaderPtr reader = OpenMade(folder, Sample(isBigEndian));
        EXPECT_EQ(reader->GetResolution(), 1);
        EXPECT_EQ(reader->GetEndTime(), 30);
        EXPECT_EQ(reader->GetSignalEndTime(1), 30);
        EXPECT_EQ(Events(*reader, "tb.a"), "0:0 10:1");
        EXPECT_EQ(Events(*reader, "tb.p.valid"), "0:1 30:0");
        EXPECT_EQ(Events(*reader, "tb.p.place"), "0:-5 10:7");
        EXPECT_EQ(Events(*reader, "tb.r"), "0:1.5 30:-2");
        EXPECT_THAT(log.Messages(), IsEmpty());
    }
}

TEST(GhwFile, IsToldFromAnFstByItsFirstBytesWhateverItsName)
{
    const CTemporaryFolder folder;
    WriteBytes(folder / "made.fst", Sample().Bytes());
    EXPECT_EQ(Events(*Open(folder / "made.fst"), "tb.a"), "0:0 10:1");
    WriteBytes(folder / "made.ghw", {'G', 'H', 'D', 'L', 'w', 'a', 'v', 'e'});
    EXPECT_THROW(Open(folder / "made.ghw"), NTARN::XFileCorrupted);
}

TEST(GhwHandles, AreTheSignalsAndBehindThemTheirPartsInRows)
{
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, Sample());
    EXPECT_THAT(std::vector<int>(reader->RootHandlesBegin(), reader->RootHandlesEnd()), ElementsAre(1, 2, 3));
    EXPECT_EQ(reader->GetChildRange(2).first, 4);
    EXPECT_EQ(reader->GetChildRange(2).last, 5);
    EXPECT_EQ(reader->GetName(2), "tb.p");
    EXPECT_EQ(reader->GetName(5), "place");
    EXPECT_EQ(reader->GetFullName(5, false), "tb.p.place");
    for (const int handle : {1, 3, 4, 5, 0, -1, 6, INT32_MIN, INT32_MAX})
        EXPECT_EQ(reader->GetChildRange(handle).first, -1) << handle;
    for (const int handle : {0, -1, 6, INT32_MAX}) {
        EXPECT_EQ(reader->GetName(handle), "");
        EXPECT_EQ(reader->GetFullName(handle, false), "");
        EXPECT_EQ(reader->GetType(handle).GetKind(), 0);
        EXPECT_THAT(AllEvents(*reader, handle), IsEmpty());
    }
}

TEST(GhwHandles, OfARecordHaveNoEventsButThoseOfItsScalarsHave)
{
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, Sample());
    EXPECT_THAT(AllEvents(*reader, 2), IsEmpty());
    EXPECT_THAT(AllEvents(*reader, 5), ElementsAre(SEvent{0, 0xFFFFFFFB}, SEvent{10, 7}));
    EXPECT_EQ(*reader->EventsFrom(5, 1), 10);
    EXPECT_TRUE(reader->EventsFrom(5, 11) == reader->EventsEnd(5));
}

TEST(GhwNames, ShareTheirBeginningsInTheFile)
{
    CGhwMaker maker = Sample();
    // "integer", "integer_vector", and 40 letters of which the next string keeps 38.
    const std::string longName(38, 'n');
    maker.strings.Letters("integer").Byte(7).Letters("_vector").Byte(0);
    maker.strings.Letters(longName + "ab").Byte(0x80 | 6).Byte(1).Letters("cd").Byte(0);
    maker.stringCount += 4;
    for (const std::uint32_t back : {3U, 2U, 1U, 0U}) {
        maker.scopes.Byte(Signal).Varint(maker.stringCount - back).Varint(1).Varint(1);
    }
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    EXPECT_EQ(reader->GetName(4), "integer");
    EXPECT_EQ(reader->GetName(5), "integer_vector");
    EXPECT_EQ(reader->GetName(6), longName + "ab");
    EXPECT_EQ(reader->GetName(7), longName + "cd");
}

TEST(GhwNames, HaveBracketsForParenthesesAndAreUtf8)
{
    CGhwMaker maker = Sample();
    const std::uint32_t letter = maker.Enumeration("letter", {"'a'", "'('", "'\xE9'"});
    maker.ForScope("gen", 2, {0x7E}).AddSignal("\\x(1)\\", 1, {1}).EndScope();
    maker.ForScope("each", letter, {1}).AddSignal("\xFC", letter, {5}).EndScope();
    maker.changes.bytes.clear();
    maker.Cycles(0, {{0, {5, 2}}});
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    EXPECT_EQ(reader->GetName(4), "gen[-2].\\x[1]\\");
    EXPECT_EQ(reader->GetName(5), "each['['].\xC3\xBC");
    EXPECT_EQ(Events(*reader, "each['['].\xC3\xBC"), "0:'\xC3\xA9'");
}

TEST(GhwNames, OfProcessesAndUnnamedScopesAreNoPartOfAPath)
{
    CGhwMaker maker = Sample();
    maker.Scope(Block, "outer").Scope(Process, "p0");
    maker.scopes.Byte(If).Byte(0);
    maker.AddSignal("s", 1, {1}).EndScope().EndScope();
    maker.Scope(Package, "pack").AddSignal("t", 1, {1}).EndScope().AddSignal("top", 1, {1});
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    EXPECT_EQ(reader->GetName(4), "outer.s");
    EXPECT_EQ(reader->GetName(5), "pack.t");
    EXPECT_EQ(reader->GetName(6), "top");
}

TEST(GhwPorts, ShareTheEventsOfTheSignalsTheyAreConnectedTo)
{
    CGhwMaker maker = Sample();
    for (int kind = In; kind <= In + 4; ++kind)
        maker.AddSignal("port", 1, {1}, kind);
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    for (int handle = 4; handle <= 8; ++handle)
        EXPECT_EQ(reader->EventsFrom(handle, 0).event(), reader->EventsFrom(1, 0).event());
}

long long ScalarCount(const Kestrin::KTypeInfo &type)
{
    if (type.IsScalar())
        return 1;
    if (const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo())
        return type.GetNbOfElements() * ScalarCount(*element);
    long long count = 0;
    for (int i = 0; i < type.GetNbOfFields(); ++i)
        count += ScalarCount(*type.GetFieldKTypeInfo(i));
    return count;
}

TEST(GhwTypes, AreToldAsTheDesignHasThem)
{
    CGhwMaker maker;
    const std::uint32_t bit = maker.Enumeration("bit", {"'0'", "'1'"});
    const std::uint32_t logic =
        maker.Enumeration("std_ulogic", {"'U'", "'X'", "'0'", "'1'", "'Z'", "'W'", "'L'", "'H'", "'-'"});
    const std::uint32_t state = maker.Enumeration("state", {"idle", "'x'", "\\odd name\\"});
    const std::uint32_t integer = maker.Type(Int, "integer");
    const std::uint32_t far = maker.Type(Long, "far");
    const std::uint32_t real = maker.Type(Real, "real");
    const CBytes units = CByteWriter().Varint(2).Varint(1).SignedVarint(1).Varint(1).SignedVarint(1000).bytes;
    const std::uint32_t weight = maker.Type(Phys, "weight", units);
    const std::uint32_t time = maker.Type(LongPhys, "time", units);
    const std::uint32_t bits = maker.ArrayOf("bits", bit, {integer});
    const std::uint32_t nibble = maker.Subtype(SubArray, "nibble", bits, Range(Int | Down, 3, 0));
    const std::uint32_t grid = maker.ArrayOf("grid", state, {integer, state});
    const std::uint32_t rows = maker.ArrayOf("rows", bits, {integer});
    const std::uint32_t packet = maker.RecordOf("packet", {{"rows", rows}, {"\\a b\\", integer}, {"n(0)", nibble}});
    const std::uint32_t none = maker.RecordOf("none", {});
    const CBytes halves = Joined({{Real | Down}, RealBytes(maker, 0.5), RealBytes(maker, -0.5)});
    const struct {
        std::uint32_t number;
        const char *text;
    } types[] = {
        {bit, "e#3#bitc2 01"},
        {logic, "e#9#std_logicc9 UX01ZWLH-"},
        {maker.Subtype(SubScalar, "x01", logic, {Enum, 1, 3}), "e#9#std_logicc9 UX01ZWLH-"},
        {state, "e#5#states3 idle 'x' \\odd_name\\ "},
        {maker.Subtype(SubScalar, "active", state, {Enum, 1, 2}), "e#6#actives3 idle 'x' \\odd_name\\ "},
        {integer, "i#7#integerrict-2147483648 2147483647"},
        {maker.Subtype(SubScalar, "", integer, Range(Int | Down, 7, -8)), "i#7#integerricd7 -8"},
        {far, "p#3#farrict-9223372036854775808 9223372036854775807"},
        {maker.Subtype(SubScalar, "near", far, Range(Long, -5, 1LL << 40)), "p#4#nearrict-5 1099511627776"},
        {real, "f#4#realrrct-1.79769e+308 1.79769e+308"},
        {maker.Subtype(SubScalar, "half", real, halves), "f#4#halfrrcd0.5 -0.5"},
        {weight, "p#6#weightrict-2147483648 2147483647"},
        {maker.Subtype(SubScalar, "delay", time, Range(LongPhys, 0, INT64_MAX)), "p#5#delayrict0 9223372036854775807"},
        {nibble, "a#18#nibble(3 downto 0)1 ricd3 0 e#3#bitc2 01"},
        {maker.Subtype(SubArray, "", bits, Range(Int, 0, -1)), "a#13#bits(0 to -1)1 rict0 -1 e#3#bitc2 01"},
        {maker.Subtype(SubArray, "", nibble, Range(Int | Down, -1, -3)),
         "a#20#nibble(-1 downto -3)1 ricd-1 -3 e#3#bitc2 01"},
        {maker.Subtype(SubArray, "", grid, Joined({Range(Int, 4, 5), {Enum | Down, 2, 1}})),
         "a#23#grid(4 to 5,2 downto 1)2 rict4 5 ricd2 1 e#5#states3 idle 'x' \\odd_name\\ "},
        {maker.Subtype(SubArray, "", rows, Joined({Range(Int, 0, 1), Range(Int, 2, 2)})),
         "a#12#rows(0 to 1)1 rict0 1 a#12#bits(2 to 2)1 rict2 2 e#3#bitc2 01"},
        {maker.Subtype(SubRecord, "", packet, Joined({Range(Int, 0, 0), Range(Int, 1, 2)})),
         "r#6#packet3 rows a#12#rows(0 to 0)1 rict0 0 a#12#bits(1 to 2)1 rict1 2 e#3#bitc2 01 \\a b\\ "
         "i#7#integerrict-2147483648 2147483647 n[0] a#18#nibble(3 downto 0)1 ricd3 0 e#3#bitc2 01"},
        {none, "r#4#none0 "},
    };
    std::uint64_t next = 1;
    for (const auto &type : types) {
        maker.AddSignal("s", type.number, {});
        for (long long i = ScalarCount(Kestrin::KTypeInfo(type.text)); i > 0; --i)
            maker.scopes.Varint(next++);
    }
    maker.elementCount = static_cast<std::uint32_t>(next - 1);
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    int handle = 0;
    for (const auto &type : types) {
        EXPECT_EQ(std::string(reader->GetType(++handle).GetTypeInfoString()), type.text);
        EXPECT_NE(reader->GetType(handle).GetKind(), 0) << type.text;
    }
}

TEST(GhwChanges, AtOneTimeAreAllKeptInTheirOrder)
{
    CGhwMaker maker;
    maker.AddSignal("a", maker.Enumeration("bit", {"'0'", "'1'"}), {1});
    maker.Snapshot(5, {0}).Cycles(5, {{0, {1, 1}}, {0, {1, 0}}, {2, {1, 1}}}).Cycles(9, {{0, {1, 0}}});
    maker.Snapshot(12, {1});
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    EXPECT_EQ(Events(*reader, "a"), "5:0 5:1 5:0 7:1 9:0 12:1");
    EXPECT_EQ(reader->GetEndTime(), 12);
}

TEST(GhwChanges, OfEverySizeReadBackTheSame)
{
    CGhwMaker maker;
    maker.AddSignal("n", maker.Type(Int, "integer"), {1}).AddSignal("t", maker.Type(LongPhys, "time", {0}), {2});
    const std::int64_t values[] = {0,     1,          -1,        63,        64,        -64,       -65,      8191,
                                   -8192, 1000000000, INT32_MAX, INT32_MIN, INT64_MAX, INT64_MIN, 1LL << 40};
    std::string narrow, wide;
    maker.changes.Letters(std::string("CYC\0", 4)).Append(maker.Word(0, 8));
    long long time = 0;
    for (const std::int64_t value : values) {
        const bool isNarrow = value == static_cast<std::int32_t>(value);
        if (isNarrow)
            maker.changes.Byte(1).SignedVarint(value);
        maker.changes.Byte(isNarrow ? 1 : 2).SignedVarint(value).Byte(0).SignedVarint(1000000007);
        const std::string event = (time == 0 ? "" : " ") + std::to_string(time) + ":" + std::to_string(value);
        narrow += isNarrow ? event : "";
        wide += event;
        time += 1000000007;
    }
    maker.changes.Byte(0).SignedVarint(-1).Letters(std::string("ECY\0", 4));
    const CTemporaryFolder folder;
    const ReaderPtr reader = OpenMade(folder, maker);
    EXPECT_EQ(Events(*reader, "n"), narrow);
    EXPECT_EQ(Events(*reader, "t"), wide);
    EXPECT_EQ(reader->GetEndTime(), time);
}

TEST(GhwChanges, AreNoneInAFileWithoutAny)
{
    CGhwMaker maker;
    maker.AddSignal("a", maker.Enumeration("bit", {"'0'", "'1'"}), {1});
    const CTemporaryFolder folder;
    const CLogCatcher log;
    const ReaderPtr reader = OpenMade(folder, maker);
    EXPECT_EQ(reader->GetEndTime(), 0);
    EXPECT_THAT(AllEvents(*reader, 1), IsEmpty());
    EXPECT_THAT(log.Messages(), IsEmpty());
}

}  // namespace
