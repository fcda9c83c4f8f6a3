#include "platform/kestrin.h"

#include <gmock/gmock.h>

#include <cctype>
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "platform/typesamples.h"

using Kestrin::KTypeInfo;
using testing::IsNull;
using testing::NotNull;

namespace {

// Asks everything that can be asked of a type and of all types inside it.
void AskEverything(const KTypeInfo &type)
{
    type.IsSimple();
    type.IsVerilog();
    type.IsSigned();
    type.GetNbOfElements();
    ASSERT_THAT(type.GetTypeIdentifier(), NotNull());
    for (int i = -1; i <= type.GetNbOfDimensions(); ++i) {
        int left = 1;
        int right = 1;
        int direction = 1;
        type.GetArrayDimensionRanges(i, left, right, direction);
    }
    for (int i = -1; i <= type.GetNbOfFields(); ++i) {
        type.GetFieldName(i);
        if (const KTypeInfo *field = type.GetFieldKTypeInfo(i))
            AskEverything(*field);
    }
    if (type.GetArrayElementKTypeInfo() != nullptr)
        AskEverything(*type.GetArrayElementKTypeInfo());
    char buffer[64] = {};
    type.GetBytes_OldFormat("01", buffer, sizeof buffer, 2, 0);
    if (type.GetSimpleSize_OldFormat() <= sizeof buffer)
        type.GetValueString_OldFormat(buffer, 2, 0, -1, false);
}

}  // namespace

TEST(TypeInfo, TellsWhatATypeIs)
{
    const struct {
        std::string text;
        int kind;
        const char *name;
        bool isSimple, isVerilog, isSigned;
        long long elements;
        unsigned scalarSize, simpleSize;
    } rows[] = {
        {Bit, 1, "bit", true, false, false, 1, 1, 1},
        {StdLogic, 1, "std_logic", true, false, false, 1, 1, 1},
        {State, 1, "state", true, false, false, 1, 1, 1},
        {"e#2#stc0 ", 1, "st", true, false, false, 1, 1, 1},
        {"eBIT c2 01", 1, "BIT", true, false, false, 1, 1, 1},
        {"est s2 on off ", 1, "st", true, false, false, 1, 1, 1},
        {Integer, 2, "integer", true, false, true, 1, 4, 4},
        {Real, 3, "real", true, false, false, 1, 8, 8},
        {"f#4#realrrut0 1.5", 3, "real", true, false, false, 1, 8, 8},
        {Time, 6, "time", true, false, false, 1, 8, 8},
        {Memory, 4, "mem(7 downto 0)", true, false, false, 8, 1, 8},
        {"a#27#std_logic_vector(0 to 1023)1 rict0 1023 " + StdLogic, 4, "std_logic_vector(0 to 1023)", true, false,
         false, 1024, 1, 1024},
        {"a#16#std_logic_vector1 riut0 2147483647 estd_logic c9 UX01ZWLH-", 4, "std_logic_vector", true, false, false,
         2147483648, 1, 2147483648U},
        {ArrayOf(Integer, "ricd7 4"), 4, "a", true, false, false, 4, 4, 16},
        {ArrayOf(Time), 4, "a", true, false, false, 3, 8, 24},
        {ArrayOf(Memory), 4, "a", false, false, false, 3, 0, 0},
        {ArrayOf(Bus), 4, "a", false, false, false, 3, 0, 0},
        {"a#1#a2 rict0 2 rict1 4 " + Bit, 4, "a", false, false, false, 12, 1, 0},
        {"a#3#a()0  " + Bit, 4, "a()", false, false, false, 1, 1, 0},
        {Bus, 5, "bus", false, false, false, 1, 0, 0},
        {"r#1#r0 ", 5, "r", false, false, false, 1, 0, 0},
        {"va#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX", 4, "reg[7:0]", true, true, false, 8, 1, 8},
        {"vsa#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX", 4, "reg[7:0]", true, true, true, 8, 1, 8},
        {"va#11#signed[1:0]1 ricd1 0 e#3#regc4 01ZX", 4, "signed[1:0]", true, true, false, 2, 1, 2},
        {"vi#7#integerrict0 9", 2, "integer", true, true, false, 1, 4, 4},
        {"vsi#7#integerrict0 9", 2, "integer", true, true, true, 1, 4, 4},
        {"a#6#signed1 ricd1 0 " + StdLogic, 4, "signed", true, false, true, 2, 1, 2},
        {"a#18#SIGNED(1 downto 0)1 ricd1 0 " + StdLogic, 4, "SIGNED(1 downto 0)", true, false, true, 2, 1, 2},
        {"a#8#unsigned1 ricd1 0 " + StdLogic, 4, "unsigned", true, false, false, 2, 1, 2},
        {"a#5#signe1 ricd1 0 " + StdLogic, 4, "signe", true, false, false, 2, 1, 2},
        {"e#6#signedc2 01", 1, "signed", true, false, false, 1, 1, 1},
    };
    for (const auto &row : rows) {
        const KTypeInfo type(row.text.c_str());
        EXPECT_TRUE(KTypeInfo::CheckTypeInfo(row.text.c_str())) << row.text;
        EXPECT_EQ(type.GetKind(), row.kind) << row.text;
        EXPECT_STREQ(type.GetTypeIdentifier(), row.name) << row.text;
        EXPECT_EQ(type.IsScalar(), row.kind != 4 && row.kind != 5) << row.text;
        EXPECT_EQ(type.IsSimple(), row.isSimple) << row.text;
        EXPECT_EQ(type.IsVerilog(), row.isVerilog) << row.text;
        EXPECT_EQ(type.IsSigned(), row.isSigned) << row.text;
        EXPECT_EQ(type.GetNbOfElements(), row.elements) << row.text;
        EXPECT_EQ(type.GetScalarSize_OldFormat(), row.scalarSize) << row.text;
        EXPECT_EQ(type.GetSimpleSize_OldFormat(), row.simpleSize) << row.text;
        EXPECT_EQ(type.GetTypeInfoString(), row.text);
    }
}

TEST(TypeInfo, OfAnUnreadableTextIsInvalid)
{
    const struct {
        const char *why;
        std::string text;
    } rows[] = {
        {"empty", ""},
        {"no kind", "x#3#bitc2 01"},
        {"kind alone", "e"},
        {"something behind", Bit + " "},
        {"something behind a vector", Memory + "x"},
        {"signed without Verilog", "s" + Bit},
        {"Verilog twice", "vv" + Bit},
        {"no length", "e##bitc2 01"},
        {"length not a number", "e#x#bitc2 01"},
        {"negative length", "e#-3#bitc2 01"},
        {"length with a plus", "e#+3#bitc2 01"},
        {"length beyond the text", "e#300#bitc2 01"},
        {"length beyond 64 bits", "e#99999999999999999999#bitc2 01"},
        {"length too short", "e#2#bitc2 01"},
        {"neither c nor s", "e#3#bitd2 01"},
        {"no count", "e#3#bitc 01"},
        {"negative count", "e#3#bitc-2 01"},
        {"count beyond the text", "e#3#bitc3 01"},
        {"enormous count", "e#3#bitc18446744073709551615 01"},
        {"count beyond 64 bits", "e#3#bitc18446744073709551616 01"},
        {"one word too few", "e#2#sts3 idle run "},
        {"no blank behind the last word", "e#2#sts2 idle run"},
        {"enormous count of words", "e#2#sts4294967295 idle run "},
        {"short form without a name", "e c2 01"},
        {"short form without a blank", "eBITc2"},
        {"no range", "i#7#integer"},
        {"range of reals on an integer", "i#7#integerrrct0 1"},
        {"range of integers on a real", "f#4#realrict0 1"},
        {"unknown mode", "i#7#integerrixt0 1"},
        {"unknown direction", "i#7#integerricu0 1"},
        {"no right bound", "i#7#integerrict0 "},
        {"two blanks between the bounds", "i#7#integerrict0  1"},
        {"bound with a plus", "i#7#integerrict+0 1"},
        {"a word for a bound", "i#7#integerrict0 x"},
        {"integer beyond 32 bits", "i#7#integerrict0 2147483648"},
        {"integer below 32 bits", "i#7#integerrict-2147483649 0"},
        {"index beyond 32 bits", ArrayOf(Bit, "rict0 2147483648")},
        {"physical type beyond 64 bits", "p#4#timerict0 9223372036854775808"},
        {"infinite real", "f#4#realrrct0 inf"},
        {"real that is no number", "f#4#realrrctnan 1"},
        {"real beyond a double", "f#4#realrrct0 1e999"},
        {"array without a count", "a#1#a rict0 2 " + Bit},
        {"array with a negative count", "a#1#a-1 rict0 2 " + Bit},
        {"array with one range too few", "a#1#a2 rict0 2 " + Bit},
        {"array with one range too many", "a#1#a1 rict0 2 rict0 2 " + Bit},
        {"array with an enormous count", "a#1#a4294967295 rict0 2 " + Bit},
        {"array indexed by reals", ArrayOf(Bit, "rrct0 2")},
        {"array without an element", "a#1#a1 rict0 2 "},
        {"array of something unreadable", ArrayOf("x")},
        {"record with one field too few", "r#1#r2 x " + Bit},
        {"record with one field too many", "r#1#r1 x " + Bit + " y " + Bit},
        {"record with a negative count", "r#1#r-1 "},
        {"record with an enormous count", "r#1#r4294967295 x " + Bit},
        {"record without a blank behind the count", "r#1#r0"},
        {"field without a type", "r#1#r1 x "},
        {"field name without a blank", "r#1#r1 x"},
        {"field of something unreadable", "r#1#r1 x y"},
    };
    for (const auto &row : rows) {
        const KTypeInfo type(row.text.c_str());
        EXPECT_FALSE(KTypeInfo::CheckTypeInfo(row.text.c_str())) << row.why;
        EXPECT_EQ(type.GetKind(), 0) << row.why;
        EXPECT_EQ(type.GetTypeInfoString(), row.text) << row.why;
        EXPECT_STREQ(type.GetTypeIdentifier(), "") << row.why;
        AskEverything(type);
    }
}

TEST(TypeInfo, OfANullTextIsInvalid)
{
    EXPECT_FALSE(KTypeInfo::CheckTypeInfo(nullptr));
    const KTypeInfo type(nullptr);
    EXPECT_EQ(type.GetKind(), 0);
    EXPECT_STREQ(type.GetTypeInfoString(), "");
    EXPECT_FALSE(type.IsScalar());
    EXPECT_FALSE(type.IsSimple());
    EXPECT_EQ(type.GetNbOfElements(), 0);
    EXPECT_EQ(type.GetScalarSize_OldFormat(), 0U);
    EXPECT_EQ(type.GetSimpleSize_OldFormat(), 0U);
}

TEST(TypeInfo, AcceptsBoundsUpToTheLimits)
{
    for (const std::string &text :
         {std::string("i#1#irict-2147483648 2147483647"), ArrayOf(Bit, "ricd2147483647 -2147483648"),
          std::string("p#1#prict-9223372036854775808 9223372036854775807"),
          std::string("f#1#frrct-1.7976931348623157e+308 1.7976931348623157e+308"), std::string("i#1#irict-0 007")})
        EXPECT_TRUE(KTypeInfo::CheckTypeInfo(text.c_str())) << text;
}

TEST(TypeInfo, CountsNamesByBytesSoThatTheyMayHoldAnything)
{
    EXPECT_STREQ(KTypeInfo("e#5#a b#cc2 01").GetTypeIdentifier(), "a b#c");
    EXPECT_STREQ(KTypeInfo("e#4#\xE1\x14 ec2 01").GetTypeIdentifier(), "\xE1\x14 e");
    EXPECT_STREQ(KTypeInfo("i#12#i#1#irict0 1rict2 3").GetTypeIdentifier(), "i#1#irict0 1");
    EXPECT_EQ(KTypeInfo("e#0#c2 01").GetKind(), 1);
    EXPECT_STREQ(KTypeInfo("e#0#c2 01").GetTypeIdentifier(), "");
}

TEST(TypeInfo, TakesAnArrayApart)
{
    const KTypeInfo grid(Grid.c_str());
    ASSERT_EQ(grid.GetNbOfDimensions(), 2);
    EXPECT_EQ(grid.GetArrayElementTypeInfo(), Bus);
    EXPECT_EQ(grid.GetArrayElementKTypeInfo()->GetKind(), 5);
    EXPECT_EQ(grid.GetNbOfElements(), 4);
    int left = -1;
    int right = -1;
    int direction = -1;
    EXPECT_TRUE(grid.GetArrayDimensionRanges(0, left, right, direction));
    EXPECT_EQ(std::vector({left, right, direction}), std::vector({0, 1, 0}));
    EXPECT_TRUE(grid.GetArrayDimensionRanges(1, left, right, direction));
    EXPECT_EQ(std::vector({left, right, direction}), std::vector({3, 2, 1}));
}

TEST(TypeInfo, GivesZeroesForADimensionThatIsNotThere)
{
    for (const int dimension : {-1, 2, INT_MAX, INT_MIN}) {
        int left = 7;
        int right = 7;
        int direction = 7;
        EXPECT_FALSE(KTypeInfo(Grid.c_str()).GetArrayDimensionRanges(dimension, left, right, direction));
        EXPECT_EQ(std::vector({left, right, direction}), std::vector({0, 0, 0})) << dimension;
    }
}

TEST(TypeInfo, ReadsTheShortFormOfAnElement)
{
    const KTypeInfo vector("a#10#bit_vector1 riut0 2147483647 eBIT c2 01");
    const char *element = vector.GetArrayElementTypeInfo();
    EXPECT_STREQ(element, "eBIT c2 01");
    EXPECT_TRUE(KTypeInfo::CheckTypeInfo(element));
    EXPECT_STREQ(vector.GetArrayElementKTypeInfo()->GetTypeIdentifier(), "BIT");
    EXPECT_EQ(KTypeInfo(element).GetValueString_OldFormat("\1", 10, 0, -1, false), "1");
}

TEST(TypeInfo, TakesARecordApart)
{
    const KTypeInfo bus(Bus.c_str());
    ASSERT_EQ(bus.GetNbOfFields(), 2);
    EXPECT_STREQ(bus.GetFieldName(0), "valid");
    EXPECT_EQ(bus.GetFieldTypeInfo(0), Bit);
    EXPECT_STREQ(bus.GetFieldName(1), "data");
    EXPECT_EQ(bus.GetFieldKTypeInfo(1)->GetKind(), 2);
    for (const int index : {-1, 2, INT_MAX, INT_MIN}) {
        EXPECT_THAT(bus.GetFieldName(index), IsNull()) << index;
        EXPECT_THAT(bus.GetFieldTypeInfo(index), IsNull()) << index;
        EXPECT_THAT(bus.GetFieldKTypeInfo(index), IsNull()) << index;
    }
}

TEST(TypeInfo, HasNoElementUnlessItIsAnArrayAndNoFieldUnlessItIsARecord)
{
    EXPECT_THAT(KTypeInfo(Bus.c_str()).GetArrayElementKTypeInfo(), IsNull());
    EXPECT_THAT(KTypeInfo(Bus.c_str()).GetArrayElementTypeInfo(), IsNull());
    EXPECT_EQ(KTypeInfo(Bus.c_str()).GetNbOfDimensions(), 0);
    EXPECT_EQ(KTypeInfo(Memory.c_str()).GetNbOfFields(), 0);
}

TEST(TypeInfo, LetsFieldNamesInExtendedFormHoldBlanks)
{
    for (const std::string name : {"\\a b\\", "\\a\\\\ b\\", "\\a", "\\\\", "a\\b", ""}) {
        const KTypeInfo type(("r#1#r2 " + name + " " + Bit + " next " + Bit).c_str());
        ASSERT_EQ(type.GetNbOfFields(), 2) << name;
        EXPECT_EQ(type.GetFieldName(0), name);
        EXPECT_STREQ(type.GetFieldName(1), "next");
    }
}

// The prefix belongs to the description that it stands in front of.
TEST(TypeInfo, AnswersForVerilogWithItsOwnPrefixAlone)
{
    const KTypeInfo outer(("va#1#m1 ricd1 0 a#1#r1 ricd1 0 v" + Bit).c_str());
    EXPECT_TRUE(outer.IsVerilog());
    EXPECT_FALSE(outer.GetArrayElementKTypeInfo()->IsVerilog());
    EXPECT_TRUE(outer.GetArrayElementKTypeInfo()->GetArrayElementKTypeInfo()->IsVerilog());
}

TEST(TypeInfo, CountsElementsAndStopsAtTheLargestNumber)
{
    const struct {
        std::string ranges;
        int dimensions;
        long long elements;
    } rows[] = {
        {"rict0 7", 1, 8},
        {"ricd7 0", 1, 8},
        {"rict3 3", 1, 1},
        {"rict7 0", 1, 0},  // against its direction: empty
        {"ricd0 7", 1, 0},
        {"rict-2147483648 2147483647", 1, 4294967296},
        {"rict-2147483648 2147483647 rict1 2147483647", 2, 4294967296 * 2147483647},
        {"rict-2147483648 2147483647 rict0 2147483647", 2, LLONG_MAX},
        {"rict-2147483648 2147483647 rict-2147483648 2147483647 rict0 1", 3, LLONG_MAX},
        {"rict-2147483648 2147483647 rict-2147483648 2147483647 rict1 0", 3, 0},
    };
    for (const auto &row : rows) {
        const std::string text = "a#1#a" + std::to_string(row.dimensions) + " " + row.ranges + " " + Bit;
        EXPECT_EQ(KTypeInfo(text.c_str()).GetNbOfElements(), row.elements) << row.ranges;
    }
}

TEST(TypeInfo, StopsTheSimpleSizeAtTheLargestNumber)
{
    const std::string whole = "rict-2147483648 2147483647";
    EXPECT_EQ(KTypeInfo(ArrayOf(Bit, whole).c_str()).GetSimpleSize_OldFormat(), UINT_MAX);
    EXPECT_EQ(KTypeInfo(ArrayOf(Real, whole).c_str()).GetSimpleSize_OldFormat(), UINT_MAX);
    EXPECT_EQ(KTypeInfo(ArrayOf(Bit, "rict-2147483648 2147483646").c_str()).GetSimpleSize_OldFormat(), UINT_MAX);
    EXPECT_EQ(KTypeInfo(ArrayOf(Bit, "rict-2147483648 2147483645").c_str()).GetSimpleSize_OldFormat(), UINT_MAX - 1);
}

TEST(TypeInfo, MayNest64Deep)
{
    EXPECT_TRUE(KTypeInfo::CheckTypeInfo(Nested(64).c_str()));
    EXPECT_FALSE(KTypeInfo::CheckTypeInfo(Nested(65).c_str()));
    EXPECT_FALSE(KTypeInfo::CheckTypeInfo(Nested(10000).c_str()));
    std::string records;
    for (int i = 0; i < 64; ++i)
        records += "r#1#r1 x ";
    EXPECT_TRUE(KTypeInfo::CheckTypeInfo((records + Bit).c_str()));
    EXPECT_FALSE(KTypeInfo::CheckTypeInfo(("r#1#r1 x " + records + Bit).c_str()));
}

// Each of these would take minutes if the time grew faster than the text.
TEST(TypeInfo, ReadsLongTextsInLinearTime)
{
    constexpr int Many = 200000;
    std::string record = "r#1#r" + std::to_string(Many);
    std::string extended = record;
    std::string words = "e#1#es" + std::to_string(Many) + " ";
    for (int i = 0; i < Many; ++i) {
        record += " f e#0#c0 ";
        extended += " \\\\\\f e#0#c0 ";  // looks like the beginning of an extended name
        words += "'";
    }
    EXPECT_EQ(KTypeInfo(record.c_str()).GetNbOfFields(), Many);
    EXPECT_EQ(KTypeInfo(extended.c_str()).GetNbOfFields(), Many);
    EXPECT_FALSE(KTypeInfo::CheckTypeInfo(words.c_str()));
    EXPECT_FALSE(KTypeInfo::CheckTypeInfo(("f#1#frrct" + std::string(Many, '9') + " 1").c_str()));
}

TEST(TypeInfo, HandsOutPointersThatLiveAsLongAsACopyDoes)
{
    KTypeInfo kept(Bit.c_str());
    const char *element = nullptr;
    const KTypeInfo *field = nullptr;
    {
        const KTypeInfo grid(Grid.c_str());
        kept = grid;
        element = grid.GetArrayElementTypeInfo();
        field = grid.GetArrayElementKTypeInfo()->GetFieldKTypeInfo(1);
    }
    EXPECT_EQ(element, Bus);
    EXPECT_EQ(field->GetTypeInfoString(), Integer);
}

TEST(TypeInfo, IsNeverHollow)
{
    KTypeInfo type(Bit.c_str());
    const KTypeInfo moved(std::move(type));
    EXPECT_EQ(type.GetTypeInfoString(), moved.GetTypeInfoString());
}

TEST(TypeInfo, OfTheSameTextSharesWhatWasRead)
{
    const KTypeInfo first(Bit.c_str());
    const KTypeInfo second(std::string(Bit).c_str());
    EXPECT_EQ(static_cast<const void *>(first.GetTypeInfoString()), second.GetTypeInfoString());
    EXPECT_EQ(KTypeInfo(StdLogic.c_str()).GetTypeInfoString(), StdLogic);
    EXPECT_EQ(KTypeInfo("").GetKind(), 0);
    EXPECT_EQ(KTypeInfo(nullptr).GetKind(), 0);
}

TEST(TypeInfo, OfACutOffTextIsInvalidOrWhatTheRestSays)
{
    for (const std::string &whole : {Bit, State, Mixed, Integer, Real, Time, Memory, Bus, Grid, "vs" + Memory})
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const std::string text = whole.substr(0, size);
            const KTypeInfo type(text.c_str());
            EXPECT_EQ(KTypeInfo::CheckTypeInfo(text.c_str()), type.GetKind() != 0) << text;
            EXPECT_EQ(type.GetTypeInfoString(), text);
            // Only the last bound may lose something and still be one.
            EXPECT_TRUE(type.GetKind() == 0 || std::strchr("0123456789.e", whole[size]) != nullptr) << text;
            AskEverything(type);
        }
}

TEST(TypeInfo, SurvivesAnyDamage)
{
    std::mt19937 random(1);
    const std::vector<std::string> texts = {Bit, State, Mixed, Integer, Real, Time, Memory, Bus, Grid, Nested(5)};
    const std::string spice = "# 0123456789-eifparcsudtv'\\";
    for (int round = 0; round < 60000; ++round) {
        std::string text = texts[random() % texts.size()];
        for (auto changes = 1 + random() % 3; changes > 0 && !text.empty(); --changes) {
            const std::size_t place = random() % text.size();
            const char c = random() % 4 != 0 ? spice[random() % spice.size()] : static_cast<char>(1 + random() % 255);
            switch (random() % 3) {
            case 0: text[place] = c; break;
            case 1: text.insert(place, 1, c); break;
            default: text.erase(place, 1); break;
            }
        }
        const KTypeInfo type(text.c_str());
        ASSERT_EQ(KTypeInfo::CheckTypeInfo(text.c_str()), type.GetKind() != 0) << text;
        ASSERT_EQ(type.GetTypeInfoString(), text);
        AskEverything(type);
    }
}
