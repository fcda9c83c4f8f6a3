#include "settings/longnumber.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "settings/number/binarynumbers.h"

namespace {

struct SBinary {
    std::string text;
    bool fits;

    bool operator==(const SBinary &other) const = default;
};

void PrintTo(const SBinary &binary, std::ostream *out)
{
    *out << '"' << binary.text << "\" fits=" << binary.fits;
}

SBinary Write(const CLongNumber &number, int digits, bool pad)
{
    std::string buffer(static_cast<std::size_t>(std::max(digits, 1)) + 1, '?');
    const bool fits = number.ToBinaryText(buffer.data(), digits, pad);
    return {buffer.c_str(), fits};
}

std::string Binary(const char *text, unsigned radix)
{
    return Write(CLongNumber(text, radix), 1000, false).text;
}

}  // namespace

TEST(LongNumber, ReadsEachRadix)
{
    const struct {
        const char *text;
        unsigned radix;
        const char *bits;
    } rows[] = {
        {"101", 2, "101"},   {"17", 8, "1111"},   {"10", 10, "1010"},
        {"1f", 16, "11111"}, {"1F", 16, "11111"}, {"0", 2, "0"},
        {"000", 8, "0"},     {"7", 8, "111"},     {"aBcDeF", 16, "101010111100110111101111"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Binary(row.text, row.radix), row.bits) << row.text << " in radix " << row.radix;
}

TEST(LongNumber, TakesTheRadixInFrontOfAHashBeforeItsOwn)
{
    EXPECT_EQ(CLongNumber("16#ff", 10).BitLength(), 8U);
    EXPECT_EQ(Binary("16#ff", 10), "11111111");
    EXPECT_EQ(Binary("16#FF", 10), "11111111");
    EXPECT_EQ(Binary("2#11", 16), "11");
    EXPECT_EQ(Binary(" +8#11", 2), "1001");
    EXPECT_EQ(Binary("10#11", 3), "1011");
}

TEST(LongNumber, TakesNoDigitsBehindAHashForZero)
{
    for (const char *text : {"2#", "8#", "10#", "16#"}) {
        const CLongNumber number(text, 10);
        EXPECT_TRUE(number.IsNumber()) << text;
        EXPECT_EQ(number.BitLength(), 1U) << text;
        EXPECT_EQ(Write(number, 8, false).text, "0") << text;
    }
}

TEST(LongNumber, IsNoNumberForAnythingElse)
{
    const struct {
        const char *text;
        unsigned radix;
    } rows[] = {
        {nullptr, 10},
        {"", 10},
        {"-", 10},
        {"--1", 10},
        {"+1", 10},
        {" 1", 10},
        {"1 ", 10},
        {"1_0", 10},
        {"2", 2},
        {"8", 8},
        {"a", 10},
        {"g", 16},
        {"12x", 16},
        {"x12", 16},
        {"1Z", 2},
        {"3#12", 10},
        {"4#1", 10},
        {"9#1", 10},
        {"11#1", 10},
        {"15#1", 10},
        {"17#1", 10},
        {"1#0", 10},
        {"0#1", 10},
        {"#1", 10},
        {"-#1", 10},
        {"--16#1", 10},
        {"16 #1", 10},
        {"0x10#1", 10},
        {"16##1", 10},
        {"16#1#", 10},
        {"16#-1", 10},
        {"4294967312#1", 10},
        {"18446744073709551632#1", 10},
        {"99999999999999999999#1", 10},
        {"1", 0},
        {"1", 1},
        {"1", 3},
        {"1", 4},
        {"1", 5},
        {"1", 6},
        {"1", 7},
        {"1", 9},
        {"1", 11},
        {"1", 12},
        {"1", 13},
        {"1", 14},
        {"1", 15},
        {"1", 17},
        {"1", 0xFFFFFFFF},
    };
    for (const auto &row : rows) {
        const CLongNumber number(row.text, row.radix);
        const std::string shown = row.text != nullptr ? row.text : "null";
        EXPECT_FALSE(number.IsNumber()) << shown << " in radix " << row.radix;
        EXPECT_EQ(number.BitLength(), 0U) << shown << " in radix " << row.radix;
        EXPECT_EQ(Write(number, 4, true), (SBinary{"0", true})) << shown << " in radix " << row.radix;
        EXPECT_EQ(Write(number, 0, false), (SBinary{"0", true})) << shown << " in radix " << row.radix;
    }
}

TEST(LongNumber, WritesANegativeNumberInTwosComplement)
{
    const CLongNumber number("-5", 10);
    EXPECT_EQ(number.BitLength(), 4U);
    EXPECT_EQ(Write(number, 8, false), (SBinary{"11111011", true}));
    EXPECT_EQ(Write(number, 8, true), (SBinary{"11111011", true}));
    EXPECT_EQ(Write(number, 4, false), (SBinary{"1011", true}));
    EXPECT_EQ(Write(number, 3, false), (SBinary{"011", true}));  // deliberate: the sign bit is not asked for
    EXPECT_EQ(Write(number, 2, false), (SBinary{"11", false}));
    EXPECT_EQ(Write(CLongNumber("-16#f", 2), 8, false).text, "11110001");
}

TEST(LongNumber, WritesMinusZeroAsZeros)
{
    const CLongNumber number("-0", 10);
    EXPECT_EQ(number.BitLength(), 1U);
    EXPECT_EQ(Write(number, 8, false), (SBinary{"00000000", true}));
    EXPECT_EQ(Write(number, 0, false), (SBinary{"", true}));
}

TEST(LongNumber, WritesZero)
{
    const CLongNumber number("0", 10);
    EXPECT_EQ(number.BitLength(), 1U);
    EXPECT_EQ(Write(number, 8, false), (SBinary{"0", true}));
    EXPECT_EQ(Write(number, 8, true), (SBinary{"00000000", true}));
}

TEST(LongNumber, WritesNoDigitsWhereNoneAreAskedFor)
{
    for (const int digits : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(Write(CLongNumber("5", 10), digits, false), (SBinary{"", false})) << digits;
        EXPECT_EQ(Write(CLongNumber("-5", 10), digits, true), (SBinary{"", false})) << digits;
        EXPECT_EQ(Write(CLongNumber("0", 10), digits, true), (SBinary{"", false})) << digits;
    }
}

TEST(LongNumber, CutsToTheLowDigitsAndSkipsTheirLeadingZeros)
{
    EXPECT_EQ(Write(CLongNumber("100101", 2), 4, true), (SBinary{"0101", false}));
    EXPECT_EQ(Write(CLongNumber("100101", 2), 4, false), (SBinary{"101", false}));
    EXPECT_EQ(Write(CLongNumber("100000", 2), 4, false), (SBinary{"0", false}));
}

// Deliberate: a word that is just full is followed by another, and every word but the highest counts as 32 bits.
TEST(LongNumber, CountsLeadingZeroDigitsByWholeWords)
{
    const struct {
        std::string digits;
        unsigned radix, length;
    } rows[] = {
        {std::string(30, '0') + '1', 2, 1},
        {std::string(31, '0') + '1', 2, 32},
        {std::string(32, '0') + '1', 2, 32},
        {std::string(63, '0') + '1', 2, 64},
        {std::string(9, '0') + '1', 8, 1},
        {std::string(10, '0') + '1', 8, 32},
        {std::string(6, '0') + '1', 16, 1},
        {std::string(7, '0') + '1', 16, 32},
        {std::string(7, '0') + '0', 16, 32},
        {std::string(700, '0') + '1', 10, 1},
        {"0", 16, 1},
        {"ffffffff", 16, 32},
        {"1ffffffff", 16, 33},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(CLongNumber(row.digits.c_str(), row.radix).BitLength(), row.length) << row.digits;
        EXPECT_EQ(CLongNumber(('-' + row.digits).c_str(), row.radix).BitLength(),
                  row.digits == "0" ? 1 : row.length + 1)
            << row.digits;
    }
    EXPECT_EQ(Write(CLongNumber("00000001", 16), 31, true), (SBinary{std::string(30, '0') + '1', false}));
}

namespace {

std::size_t ExpectedMagnitudeBits(const std::string &digits, unsigned radix)
{
    const std::string bits = reference::Strip(reference::FromRadix(digits, radix));
    const std::size_t significant = bits == "0" ? 0 : bits.size();
    const std::size_t digitBits = radix == 2 ? 1 : radix == 8 ? 3 : 4;
    const std::size_t below = radix == 10 ? 0 : digits.size() * digitBits / 32 * 32;
    return std::max(below, significant);
}

SBinary ExpectedBinary(const std::string &digits, unsigned radix, bool negative, std::size_t room, bool pad)
{
    const std::size_t needed = std::max<std::size_t>(ExpectedMagnitudeBits(digits, radix), negative ? 0 : 1);
    std::string bits = reference::Fit(reference::FromRadix(digits, radix), room);
    if (negative)
        bits = reference::Negate(bits);
    else if (!pad && room > 0)
        bits = reference::Strip(bits);
    return {bits, needed <= room};
}

}  // namespace

TEST(LongNumber, AgreesWithArithmeticOnTexts)
{
    std::mt19937 random(1);
    for (int round = 0; round < 4000; ++round) {
        const unsigned radix = std::array{2U, 8U, 10U, 16U}[reference::Below(random, 4)];
        const std::string zeros(reference::Below(random, 4) == 0 ? reference::Below(random, 40) : 0, '0');
        const std::string digits = zeros + reference::RandomDigits(random, radix, 1 + reference::Below(random, 70));
        const bool negative = reference::Below(random, 2) != 0;
        const CLongNumber number(((negative ? "-" : "") + digits).c_str(), radix);
        const std::size_t needed = ExpectedMagnitudeBits(digits, radix);
        ASSERT_EQ(number.BitLength(), needed + (negative || needed == 0 ? 1 : 0)) << digits << " radix " << radix;
        const std::size_t room =
            reference::Below(random, 2) != 0 ? reference::Below(random, 300) : needed + reference::Below(random, 3);
        for (const bool pad : {false, true})
            ASSERT_EQ(Write(number, static_cast<int>(room), pad), ExpectedBinary(digits, radix, negative, room, pad))
                << negative << ' ' << digits << " radix " << radix << " room " << room << " pad " << pad;
    }
}

TEST(LongNumber, AgreesWithArithmeticOnTextsWhereLongDecimalTextsAreCutIntoBlocks)
{
    std::mt19937 random(2);
    for (const std::size_t count : {607U, 608U, 609U, 1215U, 1216U, 1217U, 1824U, 1900U, 3100U}) {
        const std::string digits = reference::RandomDigits(random, 10, count);
        EXPECT_EQ(Write(CLongNumber(digits.c_str(), 10), 12000, false).text, reference::FromDecimal(digits)) << count;
    }
}

// 10^n has the digits of 5^n with n zeros behind; 2^n - 1 has n ones.
TEST(LongNumber, ReadsLongDecimalTexts)
{
    const std::string text = '1' + std::string(20000, '0');
    const std::string bits = Write(CLongNumber(text.c_str(), 10), 100000, false).text;
    EXPECT_EQ(bits.size(), 66439U);
    EXPECT_EQ(bits.size() - 1 - bits.rfind('1'), 20000U);
    EXPECT_EQ(bits.substr(0, 16), "1011110011110100");
}

TEST(LongNumber, ReadsLongTextsOfAnyBytes)
{
    for (const char fill : {'0', '7', 'f', 'x', '-', '#', ' ', '\x80', '\xff'}) {
        const std::string text(200000, fill);
        for (const unsigned radix : {2U, 8U, 10U, 16U}) {
            const CLongNumber number(text.c_str(), radix);
            std::string bits;
            number.ToBinaryText(bits, 64, true);
            EXPECT_LE(bits.size(), 64U);
        }
    }
}
