#include "core/basedliteral.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>
#include <string>

#include "core/stimulus.h"
#include "settings/number/binarynumbers.h"

namespace {

std::optional<std::string> Convert(const char *text, unsigned defaultRadix = 0, int width = -1, bool atLeast = true)
{
    SimpleString::CStr bits = "kept";
    if (ConvertBasedValue(text, defaultRadix, width, bits, atLeast))
        return std::string(bits);
    EXPECT_STREQ(bits, "kept") << text;
    return std::nullopt;
}

// The value of the one event of a formula.
std::string ValueOf(const char *formula, int width, bool binaryValues, bool rawValues)
{
    CStimulus stimulus(width);
    if (stimulus.Parse(formula, 0, nullptr, binaryValues, rawValues) == 0)
        return "refused";
    SimpleString::CStr value;
    stimulus.GetValue(0, value);
    return std::string(value);
}

}  // namespace

TEST(BasedLiteral, HasALetterOrANumberForItsRadix)
{
    const struct {
        const char *text;
        const char *bits;
    } rows[] = {
        {"B\"101\"", "101"}, {"b\"0101\"", "101"}, {"O\"17\"", "1111"},    {"o\"17\"", "1111"}, {"D\"10\"", "1010"},
        {"d\"10\"", "1010"}, {"X\"1f\"", "11111"}, {"x\"F\"", "1111"},     {"2#101", "101"},    {"8#17", "1111"},
        {"10#10", "1010"},   {"16#1F", "11111"},   {"16#0F", "1111"},      {"x\"00\"", "0"},    {"2#0", "0"},
        {" 16#F", "1111"},   {"x\"F", "1111"},     {"x\"1F\"zz", "11111"}, {"x\"1\"F\"", "1"},  {"16#F\"", "1111"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Convert(row.text), row.bits) << row.text;
}

TEST(BasedLiteral, IsNotEveryWord)
{
    for (const char *text : {static_cast<const char *>(nullptr),
                             "",
                             "1",
                             "1010",
                             "F",
                             "-1",
                             "x",
                             "abc",
                             "h\"1\"",
                             "\"1\"",
                             "\"\"",
                             "'1'",
                             "-x\"F\"",
                             "3#12",
                             "0#1",
                             "12#1",
                             "#1",
                             "-#1",
                             "a#1",
                             "--16#1",
                             "16#",
                             "-16#",
                             "\"a#b\"",
                             "'#1'",
                             "\"16#F",
                             "x\"1\"#F",
                             "x\"1\"#",
                             "4294967312#1",
                             "18446744073709551632#1",
                             "99999999999999999999#1",
                             "d\"1Z\"",
                             "10#1Z",
                             "10#x",
                             "d\"\""})
        EXPECT_EQ(Convert(text), std::nullopt) << (text != nullptr ? text : "null");
}

TEST(BasedLiteral, HasNoRadixInFrontOfAQuotedMark)
{
    EXPECT_EQ(Convert("x\"1#F\""), "1#F");
    EXPECT_EQ(Convert("16'#'", 2), "16'#'");
    EXPECT_EQ(Convert("16'#'#F"), "1111");
}

TEST(BasedLiteral, ReadsAWordInTheDefaultRadix)
{
    const struct {
        const char *text;
        unsigned radix;
        const char *bits;
    } rows[] = {{"1010", 2, "1010"},   {"1010", 8, "1000001000"}, {"10", 10, "1010"}, {"fF", 16, "11111111"},
                {"1Z", 2, "1Z"},       {"1Z", 8, "001ZZZ"},       {"-", 16, "----"},  {"16#F", 2, "1111"},
                {"x\"F\"", 2, "1111"}, {"16#", 2, "0"},           {"", 2, ""}};
    for (const auto &row : rows)
        EXPECT_EQ(Convert(row.text, row.radix), row.bits) << row.text;
    EXPECT_EQ(Convert("abc", 10), std::nullopt);
    EXPECT_EQ(Convert("12", 3), std::nullopt);
    EXPECT_EQ(Convert("12", 0xFFFFFFFF), std::nullopt);
}

TEST(BasedLiteral, IsNotPaddedToTheWidth)
{
    EXPECT_EQ(Convert("16#0F", 0, 8, true), "1111");
    EXPECT_EQ(Convert("16#0F", 0, 8, false), "1111");
}

TEST(BasedLiteral, IsCutToTheWidthUnlessItMayBeLonger)
{
    EXPECT_EQ(Convert("x\"F5\"", 0, 4, false), "101");
    EXPECT_EQ(Convert("x\"F5\"", 0, 4, true), "11110101");
    EXPECT_EQ(Convert("x\"F5\"", 0, 0, false), "");
    EXPECT_EQ(Convert("x\"F5\"", 0, -2, false), "");
    EXPECT_EQ(Convert("x\"F5\"", 0, -2, true), "11110101");
    EXPECT_EQ(Convert("x\"F5\"", 0, 2147483647, false), "11110101");
    EXPECT_EQ(Convert("x\"F5\"", 0, 2147483647, true), "11110101");
}

TEST(BasedLiteral, KeepsAMinusInFrontOfTheRadix)
{
    EXPECT_EQ(Convert("-16#5"), "-101");
    EXPECT_EQ(Convert("-2#1Z"), "-1Z");
}

TEST(BasedLiteral, TakesAMinusInFrontOfTheDigitsForTwosComplement)
{
    EXPECT_EQ(Convert("x\"-5\""), "11111011");  // two characters of four bits
    EXPECT_EQ(Convert("16#-5", 0, 6, true), "111011");
    EXPECT_EQ(Convert("-16#-5", 0, 6, true), "-111011");
}

TEST(BasedLiteral, ExpandsStateLetters)
{
    EXPECT_EQ(Convert("x\"1Z\""), "0001ZZZZ");
    EXPECT_EQ(Convert("16#fX"), "1111XXXX");
    EXPECT_EQ(Convert("o\"7Z\""), "111ZZZ");
    EXPECT_EQ(Convert("b\"1Z\""), "1Z");
    EXPECT_EQ(Convert("b\"anything\""), "anything");
    for (const char letter : std::string("-HLUWXZxz")) {
        EXPECT_EQ(Convert((std::string("x\"") + letter + "Z\"").c_str()), std::string(4, letter) + "ZZZZ");
        EXPECT_EQ(Convert((std::string("o\"") + letter + "Z\"").c_str()), std::string(3, letter) + "ZZZ");
    }
}

TEST(BasedLiteral, KeepsDigitsThatCannotBeExpanded)
{
    EXPECT_EQ(Convert("o\"8\""), "8");
    EXPECT_EQ(Convert("o\"1Z9\""), "1Z9");
    EXPECT_EQ(Convert("x\"Zg\""), "Zg");
    EXPECT_EQ(Convert("x\"hl\""), "hl");  // small letters but x and z are none of the states
    EXPECT_EQ(Convert("16#FF#"), "FF#");
    EXPECT_EQ(Convert("x\"\""), "");
}

TEST(BasedLiteral, MayHaveARadixOfItsOwnInsideTheQuotes)
{
    EXPECT_EQ(Convert("x\"2#11\""), "11");
    EXPECT_EQ(Convert("x\"3#1\""), "3#1");
}

TEST(BasedLiteral, MayBeConvertedInPlace)
{
    SimpleString::CStr text = "x\"F\"";
    EXPECT_TRUE(ConvertBasedValue(text, 0, -1, text, true));
    EXPECT_STREQ(text, "1111");
}

TEST(BasedLiteral, AgreesWithArithmeticOnTexts)
{
    const struct {
        unsigned radix;
        std::array<const char *, 3> openings;
    } rows[] = {
        {2, {"b\"", "B\"", "2#"}}, {8, {"o\"", "O\"", "8#"}}, {10, {"d\"", "D\"", "10#"}}, {16, {"x\"", "X\"", "16#"}}};
    std::mt19937 random(1);
    for (int round = 0; round < 4000; ++round) {
        const auto &row = rows[reference::Below(random, 4)];
        const std::string digits = reference::RandomDigits(random, row.radix, 1 + reference::Below(random, 60));
        const std::string bits = reference::Strip(reference::FromRadix(digits, row.radix));
        const std::string text =
            row.openings[reference::Below(random, 3)] + digits + (reference::Below(random, 2) != 0 ? "\"" : "");
        const std::size_t width = 1 + reference::Below(random, 100);
        ASSERT_EQ(Convert(text.c_str()), bits) << text;
        ASSERT_EQ(Convert(text.c_str(), 0, static_cast<int>(width), true), bits) << text;
        ASSERT_EQ(Convert(text.c_str(), 0, static_cast<int>(width), false),
                  reference::Strip(reference::Fit(bits, width)))
            << text << " width " << width;
        ASSERT_EQ(Convert(digits.c_str(), row.radix), bits) << digits;
    }
}

TEST(BasedLiteral, TakesLongTextsOfAnyBytes)
{
    for (const char fill : {'0', '7', 'f', 'Z', 'q', '-', '#', '"', '\'', ' ', '\xff'}) {
        for (const char *opening : {"", "x\"", "o\"", "16#", "10#", "2#", "-8#"}) {
            const std::string text = opening + std::string(30000, fill);
            SimpleString::CStr bits;
            for (const unsigned radix : {0U, 2U, 10U, 16U})
                ConvertBasedValue(text.c_str(), radix, 64, bits, true);
        }
    }
}

TEST(EventValue, IsConvertedOnlyForBinaryValuesThatAreNotRaw)
{
    EXPECT_EQ(ValueOf("x\"F\" 0ns", -1, true, false), "1111");
    EXPECT_EQ(ValueOf("x\"F\" 0ns", -1, true, true), "x\"F\"");
    EXPECT_EQ(ValueOf("x\"F\" 0ns", -1, false, false), "x\"F\"");
    EXPECT_EQ(ValueOf("x\"F\" 0ns", 2, true, false), "1111");
    EXPECT_EQ(ValueOf("16#-1 0ns", 6, true, false), "111111");
}

TEST(EventValue, StaysAsWrittenWhereItIsNoBasedLiteral)
{
    for (const char *value : {"1010", "3#12", "idle", "h\"1\"", "d\"1Z\""})
        EXPECT_EQ(ValueOf(value, -1, true, false), value);
    EXPECT_EQ(ValueOf("\"x#1\"", -1, true, false), "\"x#1\"");
}

TEST(EventValue, IsRefusedWhereTheLiteralHoldsNothing)
{
    EXPECT_EQ(ValueOf("x\"\" 0ns", -1, true, false), "refused");
}
