#include "platform/kestrin.h"

#include <gmock/gmock.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "platform/types/typesamples.h"

using Kestrin::KTypeInfo;
using testing::IsNull;

TEST(TypeInfo, IsNotThatOfTheTextReadBeforeItWhereOnlyTheLengthIsTheSame)
{
    const KTypeInfo before("e#3#bitc2 01");
    const KTypeInfo other("e#3#batc2 10");
    EXPECT_STREQ(other.GetTypeIdentifier(), "bat");
    EXPECT_STREQ(other.GetTypeInfoString(), "e#3#batc2 10");
    EXPECT_STREQ(before.GetTypeIdentifier(), "bit");
}

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
        {"va#11#signed[1:0]1 ricd1 0 e#3#regc4 01ZX", 4, "signed[1:0]", true, true, true, 2, 1, 2},
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

// Each of these would take minutes if the time grew faster than the text.
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
