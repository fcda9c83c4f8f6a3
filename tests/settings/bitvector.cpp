#include "settings/bitvector.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <utility>

#include "settings/bitvectors.h"
#include "settings/number/binarynumbers.h"

namespace {

constexpr unsigned FirstCall = 0xFFFFFFFF;

}  // namespace

TEST(BitVector, IsInvalidByDefault)
{
    const CBitVector vector;
    EXPECT_EQ(vector.GetWidth(), 0U);
    EXPECT_FALSE(vector.TestBit(0));
    EXPECT_EQ(vector.ToBinaryText(), "0");
}

TEST(BitVector, ReadsEachRadix)
{
    const struct {
        unsigned width;
        const char *text;
        unsigned radix;
        const char *bits;
    } rows[] = {
        {4, "101", 2, "0101"},        {6, "17", 8, "001111"},  {8, "10", 10, "00001010"}, {8, "1f", 16, "00011111"},
        {8, "16#1F", 10, "00011111"}, {4, "2#11", 16, "0011"}, {3, "", 10, "000"},        {3, nullptr, 10, "000"},
        {3, "16#", 2, "000"},         {3, "", 7, "000"},       {4, "10#-1", 2, "1111"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Show(CBitVector(row.width, row.text, row.radix)), row.bits) << (row.text ? row.text : "null");
}

TEST(BitVector, NegatesADecimalNumberWithinTheWidth)
{
    EXPECT_EQ(Show(CBitVector(8, "-5", 10)), "11111011");
    EXPECT_EQ(Show(CBitVector(40, "-1", 10)), std::string(40, '1'));
    EXPECT_EQ(Show(CBitVector(40, "-4294967296", 10)), "11111111" + std::string(32, '0'));
    EXPECT_EQ(Show(CBitVector(4, "-0", 10)), "0000");
    EXPECT_EQ(Show(CBitVector(4, "-", 10)), "0000");
    EXPECT_EQ(Show(CBitVector(4, "-16", 10)), "0000");
}

TEST(BitVector, IsInvalidForATextThatIsNoNumber)
{
    const struct {
        const char *text;
        unsigned radix;
    } rows[] = {
        {"2", 2},      {"8", 8},      {"a", 10},
        {"g", 16},     {" 1", 10},    {"1 ", 10},
        {"-1", 2},     {"-1", 8},     {"-1", 16},
        {"--1", 10},   {"-10#5", 10}, {"#1", 10},
        {"0#1", 10},   {"x#1", 10},   {"16 #1", 10},
        {"16##1", 10}, {"16#-1", 10}, {"1", 0},
        {"1", 1},      {"1", 3},      {"1", 7},
        {"1", 9},      {"1", 11},     {"1", 15},
        {"1", 17},     {"3#1", 2},    {"4294967312#1", 10},
    };
    for (const auto &row : rows) {
        CBitVector vector(8, row.text, row.radix);
        EXPECT_EQ(vector.GetWidth(), 0U) << row.text << " radix " << row.radix;
        EXPECT_FALSE(vector.TestBit(0)) << row.text << " radix " << row.radix;
    }
}

TEST(BitVector, IsInvalidWithAWidthOfZero)
{
    EXPECT_EQ(CBitVector(0, "1", 2).GetWidth(), 0U);
}

TEST(BitVector, HasNoBitOutsideTheWidth)
{
    const CBitVector vector(4, "11111", 2);
    EXPECT_TRUE(vector.TestBit(3));
    EXPECT_FALSE(vector.TestBit(4));
    EXPECT_FALSE(vector.TestBit(0xFFFFFFFF));
    EXPECT_EQ(vector.ToBinaryText(), "1111");
}

TEST(BitVector, KeepsBitsAboveTheWidthInTheTopWordOnly)
{
    const CBitVector zero(4, "0", 2);
    EXPECT_FALSE(CBitVector(4, "16#80000000", 2).IsAtMost(zero));
    EXPECT_TRUE(CBitVector(4, "16#100000000", 2).IsAtMost(zero));
}

TEST(BitVector, WritesItsBitsWithoutLeadingZeros)
{
    EXPECT_EQ(CBitVector(40, "0", 10).ToBinaryText(), "0");
    EXPECT_EQ(CBitVector(40, "", 10).ToBinaryText(), "0");
    EXPECT_EQ(CBitVector(40, "5", 10).ToBinaryText(), "101");
    EXPECT_EQ(CBitVector(40, "16#8000000000", 10).ToBinaryText(), '1' + std::string(39, '0'));
}

TEST(BitVector, AddsWithinTheWidth)
{
    CBitVector vector = Bits("1111");
    vector.Add(Bits("0001"));
    EXPECT_EQ(Show(vector), "0000");
    EXPECT_TRUE(vector.IsAtMost(CBitVector(4, "0", 2)));
}

TEST(BitVector, SubtractsWithinTheWidth)
{
    CBitVector vector(40, "0", 10);
    vector.Subtract(CBitVector(40, "1", 10));
    EXPECT_EQ(Show(vector), std::string(40, '1'));
    EXPECT_TRUE(vector.IsAtMost(CBitVector(64, "16#ffffffffff", 10)));
}

TEST(BitVector, AddsAndSubtractsNoMoreWordsThanBothHave)
{
    CBitVector narrow(32, "16#ffffffff", 10);
    narrow.Add(CBitVector(64, "16#100000001", 10));
    EXPECT_EQ(narrow.ToBinaryText(), "0");
    CBitVector wide(96, "0", 10);
    wide.Subtract(CBitVector(8, "1", 10));  // the borrow runs on
    EXPECT_EQ(Show(wide), std::string(96, '1'));
}

TEST(BitVector, AddsItself)
{
    CBitVector vector(64, "16#80000001", 10);
    vector.Add(vector);
    EXPECT_EQ(vector.ToBinaryText(), '1' + std::string(30, '0') + "10");
    vector.Subtract(vector);
    EXPECT_EQ(vector.ToBinaryText(), "0");
}

TEST(BitVector, ConvertsToGrayAndBack)
{
    CBitVector vector = Bits("0110");
    vector.ToGray();
    EXPECT_EQ(Show(vector), "0101");
    vector.FromGray();
    EXPECT_EQ(Show(vector), "0110");
}

TEST(BitVector, ChangesNothingInGrayCodeOfOneBit)
{
    CBitVector vector = Bits("1");
    vector.FromGray();
    EXPECT_EQ(Show(vector), "1");
}

TEST(BitVector, ReturnsFromEveryGrayCode)
{
    std::mt19937 random(3);
    for (unsigned width = 1; width <= 140; ++width) {
        const std::string bits = reference::RandomDigits(random, 2, width);
        CBitVector vector = Bits(bits);
        vector.ToGray();
        for (unsigned i = 0; i < width; ++i)
            ASSERT_EQ(vector.TestBit(i), (bits[width - 1 - i] != (i + 1 < width ? bits[width - 2 - i] : '0'))) << bits;
        vector.FromGray();
        ASSERT_EQ(Show(vector), bits);
    }
}

TEST(BitVector, IsMirrored)
{
    for (const auto &[bits, mirrored] : {std::pair("0010", "0100"), std::pair("0011", "1100"), std::pair("1", "1")}) {
        CBitVector vector = Bits(bits);
        vector.Reverse(vector.GetWidth());
        EXPECT_EQ(Show(vector), mirrored);
    }
}

TEST(BitVector, IsMirroredOverAnotherWidth)
{
    CBitVector part = Bits("11100010");
    part.Reverse(4);
    EXPECT_EQ(Show(part), "11100100");
    CBitVector none = Bits("0101");
    none.Reverse(0);
    EXPECT_EQ(Show(none), "0000");  // no word is left
    CBitVector wider(8, "10000001", 2);
    wider.Reverse(64);
    EXPECT_EQ(Show(wider), "00000000");
}

TEST(BitVector, AgreesWithArithmeticOnTextsInEveryRadix)
{
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        const unsigned radix = std::array{2U, 8U, 10U, 16U}[reference::Below(random, 4)];
        const std::string digits = reference::RandomDigits(random, radix, 1 + reference::Below(random, 50));
        const bool negative = radix == 10 && reference::Below(random, 2) != 0;
        const std::size_t width = 1 + reference::Below(random, 150);
        const std::string bits = reference::Fit(reference::FromRadix(digits, radix), width);
        const CBitVector vector(static_cast<unsigned>(width), ((negative ? "-" : "") + digits).c_str(), radix);
        ASSERT_EQ(Show(vector), negative ? reference::Negate(bits) : bits) << digits << " radix " << radix;
    }
}

// Widths come from callers as they are; a width that is hardly used must cost nothing.
TEST(BitVector, HoldsAsManyWordsAsItsValueNeeds)
{
    CBitVector vector(0xFFFFFFFF, "7", 10);
    const CBitVector one(0xFFFFFFFF, "1", 10);
    for (int round = 0; round < 1000; ++round)
        vector.Add(one);
    vector.ToGray();
    vector.FromGray();
    EXPECT_EQ(vector.ToBinaryText(), "1111101111");
    EXPECT_FALSE(vector.CheckOneHot(true));
    vector.Johnson(true);
    vector.NormalizeJohnson(true);
    EXPECT_EQ(vector.ToBinaryText(), "11");
    unsigned position = FirstCall;
    CBitVector next;
    next.CircularOne(vector, true, position);
    EXPECT_EQ(next.ToBinaryText(), "10");
}

TEST(BitVector, TakesEveryOperationOnAnInvalidValue)
{
    for (const CBitVector &invalid : {CBitVector(), CBitVector(8, "x", 2), CBitVector(0, "1", 2)}) {
        for (const bool flag : {false, true}) {
            CBitVector vector = invalid;
            CBitVector state = invalid;
            vector.Add(CBitVector(70, "-1", 10));
            vector.Subtract(CBitVector(70, "1", 10));
            vector.ToGray();
            vector.FromGray();
            vector.Johnson(flag);
            vector.NormalizeJohnson(flag);
            vector.CheckOneHot(flag);
            unsigned position = FirstCall;
            vector.CircularOne(state, flag, position);
            vector.CircularZero(state, flag, position);
            vector.Reverse(0);
            EXPECT_EQ(vector.GetWidth(), 0U);
            EXPECT_TRUE(invalid.IsAtMost(CBitVector(8, "0", 2)));
        }
    }
}
