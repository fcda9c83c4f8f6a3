#include "settings/typetext.h"

#include <gmock/gmock.h>

#include <climits>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "settings/typewriters.h"

using Kestrin::KTypeInfo;

namespace {

const char *const Bit = "e#3#bitc2 01";

}  // namespace

TEST(StdTypeText, IsThatOfTheIndex)
{
    const char *const texts[] = {
        "e#3#bitc2 01",
        "e#9#std_logicc9 UX01ZWLH-",
        "e#10#std_ulogicc9 UX01ZWLH-",
        "i#7#integerrict-2147483648 2147483647",
        "f#4#realrrct-1.79769e+308 1.79769e+308",
        nullptr,  // character
        "a#10#bit_vector1 riut0 2147483647 eBIT c2 01",
        "a#16#std_logic_vector1 riut0 2147483647 estd_logic c9 UX01ZWLH-",
        "a#17#std_ulogic_vector1 riut0 2147483647 estd_ulogic c9 UX01ZWLH-",
    };
    for (int index = 0; index < 9; ++index) {
        if (texts[index] != nullptr) {
            EXPECT_EQ(StdText(index), texts[index]);
        }
    }
}

TEST(StdTypeText, IsRefusedOutsideTheTable)
{
    for (const int index : {-1, 9, INT_MAX, INT_MIN}) {
        char buffer[64] = "x";
        unsigned size = sizeof buffer;
        EXPECT_EQ(CreateStdTypeInfo(index, buffer, &size), InvalidArgument) << index;
        EXPECT_EQ(size, sizeof buffer);
        EXPECT_STREQ(buffer, "x");
    }
}

TEST(StdTypeText, TellsItsSize)
{
    unsigned size = 0;
    EXPECT_EQ(CreateStdTypeInfo(1, nullptr, &size), 0);
    EXPECT_EQ(size, 26U);
}

TEST(StdTypeText, NeedsRoomForItsTerminator)
{
    char buffer[32] = "x";
    unsigned size = 25;
    EXPECT_EQ(CreateStdTypeInfo(1, buffer, &size), InvalidArgument);
    EXPECT_STREQ(buffer, "x");
    size = 26;
    EXPECT_EQ(CreateStdTypeInfo(1, buffer, &size), 0);
    EXPECT_EQ(size, 26U);
    EXPECT_STREQ(buffer, "e#9#std_logicc9 UX01ZWLH-");
    size = 0;
    EXPECT_EQ(CreateStdTypeInfo(1, buffer, &size), InvalidArgument);
}

TEST(StdTypeText, OfCharacterHoldsEachOfIts256Literals)
{
    std::string expected = "e#9#characters256 "
                           "NUL SOH STX ETX EOT ENQ ACK BEL BS HT LF VT FF CR SO SI "
                           "DLE DC1 DC2 DC3 DC4 NAK SYN ETB CAN EM SUB ESC FSP GSP RSP USP ";
    for (int code = 32; code <= 126; ++code)
        expected += std::string("'") + static_cast<char>(code) + " ";
    expected += "DEL ";
    for (int code = 128; code <= 159; ++code)
        expected += "C" + std::to_string(code) + " ";
    const int upper[] = {
        0xE1, 0xED, 0xF3, 0xFA, 0xF1, 0xD1, 0xAA, 0xBA, 0xBF, 0xA8, 0xAC, 0xBD, 0xBC, 0xA1, 0xAB, 0xAF,
        0x97, 0x98, 0x99, 0xFE, 0xB3, 0xB4, 0xB5, 0xB8, 0xB9, 0xA0, 0xA6, 0xA9, 0xAD, 0xBB, 0xBE, 0xC0,
        0xC1, 0xC2, 0xC3, 0xC8, 0xFD, 0xCA, 0xCB, 0xCC, 0xAE, 0xD0, 0xD7, 0xDD, 0xDE, 0xCD, 0xF0, 0xCE,
        0xCF, 0xD2, 0xD3, 0xD4, 0xD5, 0xD8, 0xD9, 0xDA, 0xDB, 0xE3, 0xF5, 0x9A, 0x9B, 0x9C, 0x9D, 0x9E,
        0x80, 0xDF, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8A, 0x8B, 0x8C, 0x8D, 0x8E, 0x8F,
        0x14, 0xB1, 0xF8, 0x7F, 0x9F, 0x15, 0xF7, 0x95, 0xB0, 0xB7, 0x94, 0x93, 0x92, 0xB2, 0x91, 0x90,
    };
    for (const int code : upper)
        expected += std::string("'") + static_cast<char>(code) + " ";
    EXPECT_EQ(StdText(5), expected);
}

// The literal of code 32 is a quote and a blank, and so looks like the end of one.
TEST(StdTypeText, OfCharacterReadsBackByteForByte)
{
    const KTypeInfo type(StdText(5).c_str());
    ASSERT_EQ(type.GetKind(), 1);
    EXPECT_STREQ(type.GetTypeIdentifier(), "character");
    EXPECT_EQ(type.GetScalarSize_OldFormat(), 1U);
    const auto literal = [&](int position) {
        const auto byte = static_cast<unsigned char>(position);
        return type.GetValueString_OldFormat(&byte, 10, 0, -1, false);
    };
    EXPECT_EQ(literal(0), "NUL");
    EXPECT_EQ(literal(31), "USP");
    for (int code = 32; code <= 126; ++code)
        EXPECT_EQ(literal(code), std::string("'") + static_cast<char>(code));
    EXPECT_EQ(literal(127), "DEL");
    EXPECT_EQ(literal(128), "C128");
    EXPECT_EQ(literal(159), "C159");
    EXPECT_EQ(literal(160), "'\xE1");
    EXPECT_EQ(literal(240), "'\x14");
    EXPECT_EQ(literal(255), "'\x90");
    for (int code = 0; code < 256; ++code) {
        unsigned char read = 0;
        EXPECT_TRUE(type.GetBytes_OldFormat(literal(code).c_str(), &read, 1, 2, 0)) << code;
        EXPECT_EQ(read, code);
    }
}

TEST(StdTypeText, OfEachTypeCanBeRead)
{
    const int kinds[] = {1, 1, 1, 2, 3, 1, 4, 4, 4};
    for (int index = 0; index < 9; ++index) {
        const KTypeInfo type(StdText(index).c_str());
        EXPECT_EQ(type.GetKind(), kinds[index]) << index;
        EXPECT_TRUE(type.IsSimple()) << index;
        EXPECT_EQ(type.GetNbOfElements(), index < 6 ? 1 : 2147483648) << index;
    }
}

// 0x80070057 is a negative number, also where a long has 64 bits.
TEST(TypeText, IsRefusedWithANegativeCode)
{
    EXPECT_LT(CreateStdTypeInfo(0, nullptr, nullptr), 0);
    EXPECT_EQ(static_cast<std::uint32_t>(CreateStdTypeInfo(0, nullptr, nullptr)), 0x80070057U);
}

TEST(TypeText, IsRefusedForANullArgument)
{
    unsigned size = 7;
    TArrayRange range = {7, 0};
    TRecordField field("x", Bit);
    TEnumValue value("a");
    EXPECT_EQ(CreateArrayTypeInfo(nullptr, &range, 1, Bit, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateArrayTypeInfo("a", nullptr, 1, Bit, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateArrayTypeInfo("a", nullptr, 0, Bit, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateArrayTypeInfo("a", &range, 1, nullptr, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateArrayTypeInfo("a", &range, 1, Bit, nullptr, nullptr), InvalidArgument);
    EXPECT_EQ(CreateRecordTypeInfo(nullptr, &field, 1, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateRecordTypeInfo("r", nullptr, 0, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateRecordTypeInfo("r", &field, 1, nullptr, nullptr), InvalidArgument);
    EXPECT_EQ(CreateEnumTypeInfo(nullptr, &value, 1, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateEnumTypeInfo("e", nullptr, 0, nullptr, &size), InvalidArgument);
    EXPECT_EQ(CreateEnumTypeInfo("e", &value, 1, nullptr, nullptr), InvalidArgument);
    EXPECT_EQ(size, 7U);
}

TEST(TypeText, IsRefusedWhereALiteralOrAFieldIsNotSet)
{
    unsigned size = 7;
    TRecordField fields[] = {{"x", Bit}, {}};
    EXPECT_EQ(CreateRecordTypeInfo("r", fields, 2, nullptr, &size), InvalidArgument);
    fields[1].SetFieldName("y");
    EXPECT_EQ(CreateRecordTypeInfo("r", fields, 2, nullptr, &size), InvalidArgument);
    fields[1].SetBoth(nullptr, Bit);
    EXPECT_EQ(CreateRecordTypeInfo("r", fields, 2, nullptr, &size), InvalidArgument);
    TEnumValue values[] = {"a", {}};
    EXPECT_EQ(CreateEnumTypeInfo("e", values, 2, nullptr, &size), InvalidArgument);
    EXPECT_EQ(size, 7U);
}

TEST(ArrayTypeText, HasTheRangesInItsNameAndInItsList)
{
    const struct {
        std::vector<TArrayRange> ranges;
        const char *text;
    } rows[] = {
        {{{7, 0}}, "a#15#mem(7 downto 0)1 ricd7 0 e#3#bitc2 01"},
        {{{0, 7}}, "a#11#mem(0 to 7)1 rict0 7 e#3#bitc2 01"},
        {{{0, 3}, {1, 1}}, "a#22#mem(0 to 3,1 downto 1)2 rict0 3 ricd1 1 e#3#bitc2 01"},  // equal bounds go down
        {{{-4, -1}}, "a#13#mem(-4 to -1)1 rict-4 -1 e#3#bitc2 01"},
        {{{INT_MAX, INT_MIN}}, "a#34#mem(2147483647 downto -2147483648)1 ricd2147483647 -2147483648 e#3#bitc2 01"},
        {{}, "a#5#mem()0  e#3#bitc2 01"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ArrayText("mem", row.ranges, Bit), row.text);
}

TEST(ArrayTypeText, TakesANameWithRangesOfUpTo259Bytes)
{
    const std::string longest(259 - std::string("(7 downto 0)").size(), 'n');
    EXPECT_EQ(ArrayText(longest, {{7, 0}}, Bit), "a#259#" + longest + "(7 downto 0)1 ricd7 0 e#3#bitc2 01");
    EXPECT_EQ(ArrayText(longest + "n", {{7, 0}}, Bit), "refused");
    EXPECT_EQ(ArrayText("n", std::vector<TArrayRange>(100000, {7, 0}), Bit), "refused");
    EXPECT_EQ(ArrayText(std::string(1000000, 'n'), {}, Bit), "refused");
}

TEST(RecordTypeText, JoinsTheFieldsWithBlanks)
{
    EXPECT_EQ(RecordText("r", {{"x", Bit}}), "r#1#r1 x e#3#bitc2 01");
    EXPECT_EQ(RecordText("bus", {{"x", Bit}, {"y", "e#2#sts2 idle run "}}),
              "r#3#bus2 x e#3#bitc2 01 y e#2#sts2 idle run ");
    EXPECT_EQ(RecordText("r", {}), "r#1#r0 ");
}

TEST(EnumTypeText, HasNoSeparatorsWhereEveryLiteralIsOneCharacter)
{
    EXPECT_EQ(EnumText("st", {"a", "b"}), "e#2#stc2 ab");
    EXPECT_EQ(EnumText("st", {" "}), "e#2#stc1  ");
    EXPECT_EQ(EnumText("st", {}), "e#2#stc0 ");
}

TEST(EnumTypeText, EndsWithABlankWhereALiteralIsLongerOrEmpty)
{
    EXPECT_EQ(EnumText("st", {"idle", "run"}), "e#2#sts2 idle run ");
    EXPECT_EQ(EnumText("st", {"a", "run"}), "e#2#sts2 a run ");
    EXPECT_EQ(EnumText("st", {"a", ""}), "e#2#sts2 a  ");
}

TEST(TypeText, CountsANameInBytes)
{
    EXPECT_EQ(EnumText("\xC3\xA4 #", {"a"}), "e#4#\xC3\xA4 #c1 a");
    EXPECT_EQ(EnumText("", {"a"}), "e#0#c1 a");
}

// -- The classes that hand over literals and fields.

TEST(EnumValue, HasNoTextAtFirst)
{
    const TEnumValue value;
    EXPECT_EQ(value.Get(), nullptr);
    EXPECT_EQ(value.GetLen(), 0);
    EXPECT_EQ(TEnumValue(nullptr).Get(), nullptr);
    EXPECT_EQ(sizeof(TEnumValue), sizeof(char *));
}

TEST(EnumValue, OwnsACopyOfItsText)
{
    char text[] = "idle";
    const TEnumValue value(text);
    text[0] = 'x';
    EXPECT_STREQ(value.Get(), "idle");
    EXPECT_EQ(value.GetLen(), 4);
}

TEST(EnumValue, KeepsItsStorageForATextThatIsNotLonger)
{
    TEnumValue value("idle");
    const char *storage = value.Get();
    for (const char *text : {"stop", "run", "", ""}) {
        value.Set(text);
        EXPECT_EQ(static_cast<const void *>(value.Get()), storage) << text;
        EXPECT_STREQ(value.Get(), text);
    }
    value.Set("something longer");
    EXPECT_STREQ(value.Get(), "something longer");
    EXPECT_EQ(value.GetLen(), 16);
}

TEST(EnumValue, TakesAPartOfItsOwnText)
{
    TEnumValue value("something");
    value.Set(value.Get() + 4);
    EXPECT_STREQ(value.Get(), "thing");
}

TEST(EnumValue, LosesItsTextForNull)
{
    TEnumValue value("idle");
    value.Set(nullptr);
    EXPECT_EQ(value.Get(), nullptr);
    EXPECT_EQ(value.GetLen(), 0);
    value.Set("run");
    EXPECT_STREQ(value.Get(), "run");
}

TEST(EnumValue, CopiesItsTextWhenItIsCopied)
{
    const TEnumValue value("idle");
    const TEnumValue copy(value);
    EXPECT_STREQ(copy.Get(), "idle");
    EXPECT_NE(static_cast<const void *>(copy.Get()), value.Get());
    EXPECT_EQ(TEnumValue(TEnumValue()).Get(), nullptr);
}

// Deliberate: only one of the two may be destroyed, so this one never is.
TEST(EnumValue, SharesItsTextWhenItIsAssigned)
{
    const TEnumValue value("idle");
    alignas(TEnumValue) unsigned char place[sizeof(TEnumValue)];
    auto *assigned = new (place) TEnumValue;
    *assigned = value;
    EXPECT_EQ(static_cast<const void *>(assigned->Get()), value.Get());
}

TEST(RecordField, HasNoTextsAtFirst)
{
    const TRecordField field;
    EXPECT_EQ(field.GetFieldName(), nullptr);
    EXPECT_EQ(field.GetTypeInfo(), nullptr);
    EXPECT_EQ(sizeof(TRecordField), 2 * sizeof(char *));
}

TEST(RecordField, OwnsCopiesOfItsTexts)
{
    TRecordField field("x", Bit);
    EXPECT_STREQ(field.GetFieldName(), "x");
    EXPECT_STREQ(field.GetTypeInfo(), Bit);
    field.SetBoth("long name", "e#1#ac1 b");
    EXPECT_STREQ(field.GetFieldName(), "long name");
    EXPECT_STREQ(field.GetTypeInfo(), "e#1#ac1 b");
    const TRecordField copy(field);
    EXPECT_STREQ(copy.GetFieldName(), "long name");
    EXPECT_STREQ(copy.GetTypeInfo(), "e#1#ac1 b");
}

TEST(RecordField, KeepsItsStorageForATextThatIsNotLonger)
{
    TRecordField field("name", Bit);
    const void *name = field.GetFieldName();
    const void *type = field.GetTypeInfo();
    field.SetFieldName("x");
    field.SetTypeInfo("e#1#ac1 b");
    EXPECT_EQ(name, field.GetFieldName());
    EXPECT_EQ(type, field.GetTypeInfo());
    EXPECT_STREQ(field.GetFieldName(), "x");
    EXPECT_STREQ(field.GetTypeInfo(), "e#1#ac1 b");
    field.SetFieldName(nullptr);
    EXPECT_EQ(field.GetFieldName(), nullptr);
    EXPECT_STREQ(field.GetTypeInfo(), "e#1#ac1 b");
}

// Deliberate, as for literals.
TEST(RecordField, SharesItsTextsWhenItIsAssigned)
{
    const TRecordField field("x", Bit);
    alignas(TRecordField) unsigned char place[sizeof(TRecordField)];
    auto *assigned = new (place) TRecordField;
    *assigned = field;
    EXPECT_EQ(static_cast<const void *>(assigned->GetFieldName()), field.GetFieldName());
    EXPECT_EQ(static_cast<const void *>(assigned->GetTypeInfo()), field.GetTypeInfo());
}
