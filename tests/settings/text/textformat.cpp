#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "settings/cstr.h"

using SimpleString::CStr;

namespace {

template <typename... T>
std::string Formatted(const char *format, T... arguments)
{
    CStr text;
    EXPECT_TRUE(text.Format(format, arguments...));
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

// What a fresh string reserves: the bound, one for the zero, and one that every reservation adds.
template <typename... T>
int Bound(const char *format, T... arguments)
{
    CStr text;
    text.Format(format, arguments...);
    std::int32_t capacity;
    std::memcpy(&capacity, static_cast<const char *>(text) - 4, 4);
    return capacity - 2;
}

}  // namespace

TEST(Format, ReplacesTheText)
{
    CStr text("before");
    text.Format("%s-%d", "a", 5);
    EXPECT_STREQ(text, "a-5");
}

TEST(Format, KnowsThreeMarksOf64Bits)
{
    const long long value = -1234567890123456789;
    for (const char *format : {"%lld", "%I64d", "%qd"})
        EXPECT_EQ(Formatted(format, value), "-1234567890123456789") << format;
    for (const char *format : {"%llu", "%I64u", "%qu"})
        EXPECT_EQ(Formatted(format, ULLONG_MAX), "18446744073709551615") << format;
    for (const char *format : {"%llx", "%I64x", "%qx"})
        EXPECT_EQ(Formatted(format, ULLONG_MAX), "ffffffffffffffff") << format;
}

TEST(Format, KnowsTheMarksBehindFlagsWidthsAndPrecisions)
{
    EXPECT_EQ(Formatted("[%-5lld]", 42LL), "[42   ]");
    EXPECT_EQ(Formatted("[%-5I64d]", 42LL), "[42   ]");
    EXPECT_EQ(Formatted("[%08I64d]", 42LL), "[00000042]");
    EXPECT_EQ(Formatted("[%+.5I64d]", 42LL), "[+00042]");
    EXPECT_EQ(Formatted("[%*qd]", 6, 42LL), "[    42]");
    EXPECT_EQ(Formatted("[%#I64x]", 255LL), "[0xff]");
    EXPECT_EQ(Formatted("[%-*.*I64d]", 8, 3, 42LL), "[042     ]");
}

TEST(Format, TakesFurtherArgumentsBehindA64BitOne)
{
    EXPECT_EQ(Formatted("%I64d %s %d %I64d", 1LL << 40, "x", 7, -1LL), "1099511627776 x 7 -1");
}

TEST(Format, WritesWhatPrintfWrites)
{
    const struct {
        const char *format;
        double value;
    } reals[] = {{"%f", 1.5},   {"%.0f", 2.5},   {"%10.3f", 3.14159}, {"%e", 1e300},    {"%g", 1e-7},     {"%G", 1e-7},
                 {"%f", 1e300}, {"%+.2e", -1.0}, {"%-12gx", 2.0},     {"%f", HUGE_VAL}, {"%E", 12345.678}};
    for (const auto &row : reals) {
        char expected[400];
        std::snprintf(expected, sizeof expected, row.format, row.value);
        EXPECT_EQ(Formatted(row.format, row.value), expected) << row.format;
    }
    const char *integers[] = {"%d", "%i", "%5d", "%-5d|", "%05d", "%x", "%X", "%o", "%u", "%hd", "%+d", "% d", "%.3d"};
    for (const char *format : integers) {
        char expected[64];
        std::snprintf(expected, sizeof expected, format, 123);
        EXPECT_EQ(Formatted(format, 123), expected) << format;
    }
    EXPECT_EQ(Formatted("%c%C", 'a', 'b'), "ab");
    EXPECT_EQ(Formatted("100%% %d%%", 5), "100% 5%");
    EXPECT_EQ(Formatted("%.2s|%5s|%-5s|", "abc", "de", "fg"), "ab|   de|fg   |");
}

TEST(Format, SkipsModifiersWithoutAMeaning)
{
    EXPECT_EQ(Formatted("%Lf", 1.5), "1.500000");
    EXPECT_EQ(Formatted("%Fs", "far"), "far");
    EXPECT_EQ(Formatted("%Nd", 3), "3");
}

TEST(Format, TellsNarrowTextFromWideText)
{
    EXPECT_EQ(Formatted("%s %hs %hS", "a", "b", "c"), "a b c");
    EXPECT_EQ(Formatted("%S %ls %lS", L"a", L"b", L"c"), "a b c");
    EXPECT_EQ(Formatted("%hc%hC", 'x', 'y'), "xy");
}

TEST(Format, WritesANullTextInWords)
{
    EXPECT_EQ(Formatted("%s", static_cast<const char *>(nullptr)), "(null)");
    EXPECT_EQ(Formatted("%S", static_cast<const wchar_t *>(nullptr)), "(null)");
}

TEST(Format, StoresTheLengthSoFar)
{
    int length = -1;
    EXPECT_EQ(Formatted("abc%ndef", &length), "abcdef");
    EXPECT_EQ(length, 3);
    short shorts[2] = {-1, -1};
    Formatted("abc%hn", &shorts[0]);
    EXPECT_EQ(shorts[0], 3);
    EXPECT_EQ(shorts[1], -1);
    long long wide = -1;
    Formatted("abc%I64n", &wide);
    EXPECT_EQ(wide, 3);
}

TEST(Format, TakesNoArgumentForAnUnknownConversion)
{
    EXPECT_EQ(Formatted("%y%d", 5), "%y5");
    EXPECT_EQ(Formatted("%"), "%");
    EXPECT_EQ(Formatted("%5"), "%5");
    EXPECT_EQ(Formatted("%I64"), "%I64");
}

TEST(Format, MayUseTheStringItself)
{
    CStr text("abc");
    text.Format("%s%s", static_cast<const char *>(text), static_cast<const char *>(text));
    EXPECT_STREQ(text, "abcabc");
}

TEST(Format, LeavesOtherOwnersAlone)
{
    const CStr text("abc");
    CStr copy(text);
    copy.Format("%d", 1);
    EXPECT_STREQ(text, "abc");
}

TEST(Format, WritesMoreThanTheBoundWhereItMust)
{
    EXPECT_EQ(Formatted("%.300E", 1.0).size(), 306U);  // an item that adds nothing to the bound
    EXPECT_EQ(Formatted("%*d", -500, 1).size(), 500U);
}

TEST(FormatBound, StartsAt128AndAddsAnAllowanceForEachItem)
{
    EXPECT_EQ(Bound(""), 128);
    EXPECT_EQ(Bound("abc"), 131);
    EXPECT_EQ(Bound("%%"), 129);
    EXPECT_EQ(Bound("%c", 'a'), 130);
    EXPECT_EQ(Bound("%5c", 'a'), 133);
    EXPECT_EQ(Bound("%s", static_cast<const char *>(nullptr)), 134);
    EXPECT_EQ(Bound("%s", ""), 129);
    EXPECT_EQ(Bound("%s", "abcd"), 132);
    EXPECT_EQ(Bound("%.2s", "abcd"), 130);
    EXPECT_EQ(Bound("%9.2s", "abcd"), 137);
    EXPECT_EQ(Bound("%S", L"abcd"), 132);
    EXPECT_EQ(Bound("%d", 5), 160);
    EXPECT_EQ(Bound("%40d", 5), 168);
    EXPECT_EQ(Bound("%40.50d", 5), 218);
    EXPECT_EQ(Bound("%*d", 40, 5), 168);
    EXPECT_EQ(Bound("%#x", 5), 162);
    EXPECT_EQ(Bound("%I64d", 5LL), 160);
    EXPECT_EQ(Bound("%g", 1.0), 256);
    EXPECT_EQ(Bound("%e", 1.0), 256);
    EXPECT_EQ(Bound("%E", 1.0), 128);         // deliberate
    EXPECT_EQ(Bound("%f", 1.5), 128 + 8);     // "1.500000"
    EXPECT_EQ(Bound("%.2f", 1.5), 128 + 10);  // "1.50000000"
    EXPECT_EQ(Bound("%20f", 1.5), 128 + 20);
    EXPECT_EQ(Bound("%p", nullptr), 160);
}
