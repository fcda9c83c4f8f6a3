#include <gmock/gmock.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "platform/types/typesamples.h"

using Kestrin::KTypeInfo;
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

TEST(TypeInfo, LetsFieldNamesInExtendedFormHoldBlanks)
{
    for (const std::string name : {"\\a b\\", "\\a\\\\ b\\", "\\a", "\\\\", "a\\b", ""}) {
        const KTypeInfo type(("r#1#r2 " + name + " " + Bit + " next " + Bit).c_str());
        ASSERT_EQ(type.GetNbOfFields(), 2) << name;
        EXPECT_EQ(type.GetFieldName(0), name);
        EXPECT_STREQ(type.GetFieldName(1), "next");
    }
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
