#include "core/scalarinfo.h"

#include <gtest/gtest.h>

#include <climits>
#include <string_view>

namespace {

using tesk::CSimpleScalarInfo;

}  // namespace

TEST(ScalarInfo, KeepsOneCharacterForEachValue)
{
    CSimpleScalarInfo info(3);
    EXPECT_EQ(info.GetElementsCount(), 3);
    EXPECT_TRUE(info.AddEnumValue(0, 'a'));
    EXPECT_TRUE(info.AddEnumValue(2, 'c'));
    EXPECT_EQ(info.GetElementValue(0), 'a');
    EXPECT_EQ(info.GetElementValue(2), 'c');
}

TEST(ScalarInfo, RefusesAnIndexOutOfRange)
{
    CSimpleScalarInfo info(3);
    for (const int index : {INT_MIN, -1, 3, INT_MAX}) {
        EXPECT_FALSE(info.AddEnumValue(index, 'a')) << index;
        EXPECT_EQ(info.GetElementValue(index), 0) << index;
    }
}

TEST(ScalarInfo, HoldsNothingForACountBelowOne)
{
    for (const int count : {0, -1, INT_MIN}) {
        CSimpleScalarInfo info(count);
        EXPECT_EQ(info.GetElementsCount(), count);
        EXPECT_FALSE(info.AddEnumValue(0, 'a')) << count;
        EXPECT_EQ(CSimpleScalarInfo(info).GetElementValue(0), 0) << count;
    }
}

TEST(ScalarInfo, IsCopiedWithItsTable)
{
    CSimpleScalarInfo info(2);
    info.AddEnumValue(0, 'a');
    CSimpleScalarInfo copy(info);
    info.AddEnumValue(0, 'x');
    EXPECT_EQ(copy.GetElementsCount(), 2);
    EXPECT_EQ(copy.GetElementValue(0), 'a');
}

TEST(ScalarInfo, SharesItsTableAfterAnAssignment)  // deliberate
{
    CSimpleScalarInfo info(2);
    {
        CSimpleScalarInfo other(5);
        other.AddEnumValue(4, 'e');
        info = other;
        other.AddEnumValue(0, 'a');
    }
    EXPECT_EQ(info.GetElementsCount(), 5);
    EXPECT_EQ(info.GetElementValue(0), 'a');
    EXPECT_EQ(info.GetElementValue(4), 'e');
}

TEST(ExtendedIdentifier, IsSteppedOver)
{
    const struct {
        const char *text, *rest;
    } rows[] = {
        {"abc", "abc"},         {"", ""},
        {"a\\b\\c", "a\\b\\c"}, {R"(\abc\ rest)", " rest"},
        {R"(\a\\b\ x)", " x"},  {R"(\abc\)", ""},
        {R"(\a\.b)", ".b"},     {R"(\\ x)", " x"},
        {R"(\abc)", ""},        {R"(\)", ""},
        {R"(\a\\b)", ""},       {R"(\a\\)", ""},
        {R"(\a\\\ x)", " x"},   {R"(\\\\ x)", " x"},
        {R"(\\\)", ""},
    };
    for (const auto &row : rows)
        EXPECT_STREQ(SkipExtendedID(row.text), row.rest) << row.text;
}

TEST(ExtendedIdentifier, IsNotLookedForElsewhere)
{
    const char *text = "abc";
    EXPECT_EQ(SkipExtendedID(text), text);
    EXPECT_EQ(SkipExtendedID(nullptr), nullptr);
}

TEST(StateLetter, HasAStdLogicLetterAndItsPosition)
{
    const struct {
        char letter, stdLogic;
        int index;
    } rows[] = {
        {'1', '1', 3}, {'0', '0', 2}, {'H', '1', 3}, {'L', '0', 2}, {'X', 'X', 1}, {'Z', 'Z', 4},
        {'R', 'X', 1}, {'V', 'X', 1}, {'.', 'X', 1}, {'F', 'X', 1}, {'U', '1', 3}, {'G', '0', 2},
        {'S', 'X', 1}, {'u', 'X', 1}, {'d', 'X', 1}, {'l', 'L', 6}, {'h', 'H', 7}, {'x', 'W', 5},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(GateLevel2StdLogic(row.letter), row.stdLogic) << row.letter;
        EXPECT_EQ(GateLevel2StdLogicIndex(row.letter), row.index) << row.letter;
    }
}

TEST(StateLetter, IsUnknownOtherwise)
{
    const std::string_view known = "10HLXZRV.FUGSudlhx";
    for (int code = CHAR_MIN; code <= CHAR_MAX; ++code) {
        const char letter = static_cast<char>(code);
        if (known.find(letter) != std::string_view::npos)
            continue;
        EXPECT_EQ(GateLevel2StdLogic(letter), 0) << code;
        EXPECT_EQ(GateLevel2StdLogicIndex(letter), -1) << code;
    }
}
