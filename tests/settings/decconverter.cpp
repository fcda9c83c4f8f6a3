#include "settings/decconverter.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "settings/number/binarynumbers.h"

namespace {

std::optional<long long> Value(const char *text, int radix)
{
    TKc_decConverter converter;
    if (!converter.Convert(text, radix))
        return std::nullopt;
    return converter.GetValue();
}

std::optional<long long> Value(const char *text)
{
    TKc_decConverter converter;
    if (!converter.Convert(text))
        return std::nullopt;
    return converter.GetValue();
}

struct SBinary {
    std::string text;
    bool fits;

    bool operator==(const SBinary &other) const = default;
};

void PrintTo(const SBinary &binary, std::ostream *out)
{
    *out << '"' << binary.text << "\" fits=" << binary.fits;
}

SBinary Binary(const char *text, int radix, int width)
{
    TKc_decConverter converter;
    EXPECT_TRUE(converter.Convert(text, radix)) << text;
    SimpleString::CStr bits = "?";
    const bool fits = converter.MakeBin(width, bits);
    return {static_cast<const char *>(bits), fits};
}

}  // namespace

TEST(DecConverter, ReadsEachRadix)
{
    const struct {
        const char *text;
        int radix;
        long long value;
    } rows[] = {
        {"ff", 16, 255},  {"  FF  ", 16, 255}, {"\t1f\n", 16, 31}, {"12", 8, 10},   {"101", 2, 5}, {"12", 10, 12},
        {"-12", 10, -12}, {"-1F", 16, -31},    {"-101", 2, -5},    {"-17", 8, -15}, {"0", 2, 0},   {"-0", 16, 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Value(row.text, row.radix), row.value) << row.text << " in radix " << row.radix;
}

TEST(DecConverter, RefusesATextThatIsNoNumber)
{
    const struct {
        const char *text;
        int radix;
    } rows[] = {
        {nullptr, 10}, {"", 10},  {" \t\n", 10}, {"19", 8},  {"2", 2},          {"g", 16},
        {"-", 16},     {"-", 2},  {"--1", 2},    {"+1", 2},  {"- 1", 2},        {"1 1", 2},
        {"16#f", 16},  {"x", 16}, {"12", 3},     {"12", 12}, {"1", 4},          {"1", 0},
        {"1", 1},      {"1", -1}, {"1", 17},     {"1", 32},  {"1", 2147483647}, {"1", -2147483647 - 1},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Value(row.text, row.radix), std::nullopt) << (row.text ? row.text : "null") << ' ' << row.radix;
}

// Deliberate: radix 10 checks nothing.
TEST(DecConverter, StopsAtTheFirstByteThatIsNoDecimalDigit)
{
    EXPECT_EQ(Value("12abc", 10), 12);
    EXPECT_EQ(Value("abc", 10), 0);
    EXPECT_EQ(Value("-", 10), 0);
    EXPECT_EQ(Value("+7", 10), 7);
}

TEST(DecConverter, HoldsTheSmallestNumber)
{
    EXPECT_EQ(Value("-9223372036854775808", 10), std::numeric_limits<long long>::min());
    EXPECT_EQ(Value("9223372036854775807", 10), std::numeric_limits<long long>::max());
    EXPECT_EQ(Binary("-9223372036854775808", 10, 64), (SBinary{'1' + std::string(63, '0'), true}));
}

TEST(DecConverter, IgnoresDigitsThatDoNotFit64Bits)
{
    EXPECT_EQ(Value("F0000000000000012", 16), 18);
    EXPECT_EQ(Value("8000000000000000", 16), std::numeric_limits<long long>::min());
    EXPECT_EQ(Value("-8000000000000000", 16), std::numeric_limits<long long>::min());
    EXPECT_EQ(Value(("1" + std::string(64, '0')).c_str(), 2), 0);
    EXPECT_EQ(Value(std::string(64, '1').c_str(), 2), -1);
    EXPECT_EQ(Value("7000000000000000000005", 8), 5);                   // 22 digits
    EXPECT_EQ(Value("777777777777777777777", 8), 9223372036854775807);  // 21 digits
}

TEST(DecConverter, ReadsARadixInFrontOfAHash)
{
    EXPECT_EQ(Value("16#FF"), 255);
    EXPECT_EQ(Value(" 2#-101 "), -5);
    EXPECT_EQ(Value("16# ff"), 255);
    EXPECT_EQ(Value("10#12x"), 12);
    EXPECT_EQ(Value("16x#ff"), 255);
    for (const char *text :
         {static_cast<const char *>(nullptr), "", " ", "FF", "16#", "16#FF#", "#FF", "3#1", "x#1", "-16#1"})
        EXPECT_EQ(Value(text), std::nullopt) << (text ? text : "null");
}

TEST(DecConverter, ForgetsTheNumberBeforeItReadsAnother)
{
    TKc_decConverter converter;
    for (const char *refused : {"", "x", "-"}) {
        ASSERT_TRUE(converter.Convert("-5", 10));
        EXPECT_FALSE(converter.Convert(refused, 16));
        EXPECT_EQ(converter.GetValue(), 0);
    }
}

TEST(DecConverter, IsCopiedByAssignment)
{
    TKc_decConverter converter;
    ASSERT_TRUE(converter.Convert("-5", 10));
    TKc_decConverter copy;
    copy = converter;
    EXPECT_EQ(copy.GetValue(), -5);
}

TEST(DecConverter, WritesBinaryDigits)
{
    EXPECT_EQ(Binary("5", 10, -1), (SBinary{"101", true}));
    EXPECT_EQ(Binary("5", 10, 8), (SBinary{"00000101", true}));
    EXPECT_EQ(Binary("5", 10, 3), (SBinary{"101", true}));
    EXPECT_EQ(Binary("5", 10, 2), (SBinary{"01", false}));
    EXPECT_EQ(Binary("5", 10, 0), (SBinary{"", false}));
    EXPECT_EQ(Binary("5", 10, -2), (SBinary{"", false}));
    EXPECT_EQ(Binary("0", 10, -1), (SBinary{"", true}));
    EXPECT_EQ(Binary("0", 10, 0), (SBinary{"", true}));
    EXPECT_EQ(Binary("0", 10, 4), (SBinary{"0000", true}));
    EXPECT_EQ(Binary("-1", 10, 4), (SBinary{"1111", true}));
    EXPECT_EQ(Binary("-1", 10, -1), (SBinary{std::string(64, '1'), true}));
    EXPECT_EQ(Binary("-9", 10, 4), (SBinary{"0111", true}));  // deliberate: the magnitude fits
    EXPECT_EQ(Binary("-17", 10, 4), (SBinary{"1111", false}));
    EXPECT_EQ(Binary("-1", 10, 66), (SBinary{"00" + std::string(64, '1'), true}));  // deliberate: no sign beyond 64
}

namespace {

// Of the magnitude's bits, computed in twice the width.
SBinary ExpectedBinary(unsigned long long magnitude, bool negative, int width)
{
    __extension__ using TWide = unsigned __int128;
    const TWide value = negative ? (TWide{1} << 64) - magnitude : magnitude;
    std::string bits;
    for (int bit = 63; bit >= 0; --bit)
        bits += (value >> bit & 1) != 0 ? '1' : '0';
    const std::size_t first = bits.find('1');
    bits = first == std::string::npos ? "" : bits.substr(first);
    if (width == -1)
        return {bits, true};
    const bool cut = bits.size() > static_cast<std::size_t>(width);
    const bool fits = !cut || width >= 64 || magnitude >> width == 0;
    return {reference::Fit(bits, static_cast<std::size_t>(width)), fits};
}

}  // namespace

TEST(DecConverter, AgreesWithWiderArithmetic)
{
    std::mt19937_64 random(6);
    for (int round = 0; round < 20000; ++round) {
        const unsigned long long magnitude = (random() >> (1 + random() % 63));
        const bool negative = random() % 2 != 0;
        const int width = static_cast<int>(random() % 70) - 1;
        const std::string text = (negative ? "-" : "") + std::to_string(magnitude);
        ASSERT_EQ(Binary(text.c_str(), 10, width), ExpectedBinary(magnitude, negative, width)) << text << ' ' << width;
    }
}

TEST(DecConverter, AgreesWithTheLowDigitsInPowersOfTwo)
{
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        const unsigned radix = std::array{2U, 8U, 16U}[reference::Below(random, 3)];
        const std::size_t used = radix == 2 ? 64 : radix == 8 ? 21 : 16;
        const std::string digits = reference::RandomDigits(random, radix, 1 + reference::Below(random, 80));
        const std::string low = digits.size() > used ? digits.substr(digits.size() - used) : digits;
        ASSERT_EQ(Binary(digits.c_str(), static_cast<int>(radix), 64).text,
                  reference::Fit(reference::FromRadix(low, radix), 64))
            << digits << ' ' << radix;
    }
}
