#include <gmock/gmock.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "platform/types/typesamples.h"

using Kestrin::KTypeInfo;

namespace {

std::string ValueText(const std::string &type, const std::string &bytes)
{
    return KTypeInfo(type.c_str()).GetValueString_OldFormat(bytes.data(), 10, 0, -1, false);
}

// The bytes that a text stands for, or "refused". The buffer behind them is checked to stay as it was.
std::string ValueBytes(const std::string &type, const std::string &text, std::size_t size = 64)
{
    const KTypeInfo info(type.c_str());
    std::vector<char> buffer(size + 16, '\x5A');
    const bool isValue = info.GetBytes_OldFormat(text.c_str(), buffer.data(), static_cast<unsigned>(size), 2, 0);
    const std::size_t written = isValue ? info.GetSimpleSize_OldFormat() : 0;
    for (std::size_t i = written; i < buffer.size(); ++i)
        EXPECT_EQ(buffer[i], '\x5A') << type << " wrote behind its value of " << text << " at " << i;
    return isValue ? std::string(buffer.data(), written) : "refused";
}

std::string Bytes(std::uint64_t value, unsigned size)
{
    std::string bytes;
    for (unsigned i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

std::string RealBytes(double value)
{
    return Bytes(std::bit_cast<std::uint64_t>(value), 8);
}

}  // namespace

// A literal that begins with a quote is a character, and the character may be a blank.
TEST(Literals, AreCutAtBlanksButNotBehindAQuote)
{
    const struct {
        std::string text;
        std::vector<std::string> literals;
    } rows[] = {
        {"s3 idle run stop ", {"idle", "run", "stop"}},
        {"s3 '  '! '\" ", {"' ", "'!", "'\""}},
        {"s2 '' '( ", {"''", "'("}},
        {"s2 ' ' 'a' ", {"' '", "'a'"}},
        {"s3 ''' '  b ", {"'''", "' ", "b"}},
        {"s2 ' b ", {"'", "b"}},
        {"s3 a  b ", {"a", "", "b"}},
        {"s0 ", {}},
        {"c3 ' ,", {"'", " ", ","}},
    };
    for (const auto &row : rows) {
        const std::string text = "e#1#e" + row.text;
        ASSERT_EQ(KTypeInfo(text.c_str()).GetKind(), 1) << text;
        for (std::size_t i = 0; i <= row.literals.size(); ++i)
            EXPECT_EQ(ValueText(text, Bytes(i, 1)), i < row.literals.size() ? row.literals[i] : "")
                << text << " at " << i;
    }
}

TEST(ValueText, IsThatOfTheType)
{
    const struct {
        std::string type, bytes, text;
    } rows[] = {
        {StdLogic, Bytes(0, 1), "U"},
        {StdLogic, Bytes(8, 1), "-"},
        {StdLogic, Bytes(9, 1), ""},
        {StdLogic, Bytes(255, 1), ""},
        {State, Bytes(1, 1), "run"},
        {Mixed, Bytes(0, 1), "'a"},
        {Mixed, Bytes(1, 1), "b"},
        {Integer, Bytes(42, 4), "42"},
        {Integer, Bytes(0xFFFFFFFF, 4), "-1"},
        {Integer, Bytes(0x80000000, 4), "-2147483648"},
        {"i#3#bitrict0 1", Bytes(42, 4), "42"},  // bounds are not tested
        {Time, Bytes(0x8000000000000000, 8), "-9223372036854775808"},
        {Time, Bytes(123456789012345, 8), "123456789012345"},
        {Real, RealBytes(1.5), "1.5"},
        {Memory, std::string("\0\1\0\1\1\1\0\0", 8), "01011100"},
        {Memory, std::string("\0\1\0\1\1\2\0\0", 8), ""},
        {ArrayOf(State), std::string("\1\0\2", 3), "(run,idle,stop)"},
        {ArrayOf(State), std::string("\1\3\2", 3), ""},
        {ArrayOf(Mixed), std::string("\1\0\2", 3), "(b,'a,idle)"},
        {ArrayOf(Integer), Bytes(1, 4) + Bytes(0xFFFFFFFE, 4) + Bytes(3, 4), "(1,-2,3)"},
        {ArrayOf(Time, "rict0 0"), Bytes(7, 8), "(7)"},
        {ArrayOf(Bit, "rict1 0"), "", ""},
        {ArrayOf(Integer, "rict1 0"), "", "()"},
        {ArrayOf("e#1#es2 a b ", "rict0 1"), std::string("\1\0", 2), "ba"},  // words of one character
        {"va#8#reg[3:0]1 ricd3 0 e#3#regc4 01ZX", std::string("\0\1\2\3", 4), "01ZX"},
        {Bus, std::string(8, '\0'), ""},
        {Grid, std::string(64, '\0'), ""},
        {"nonsense", std::string(8, '\0'), ""},
        {"a#1#a1 riut0 2147483647 " + Bit, std::string(8, '\0'), ""},  // unconstrained: it has no values
    };
    for (const auto &row : rows)
        EXPECT_EQ(ValueText(row.type, row.bytes), row.text) << row.type;
}

TEST(ValueText, OfNothingIsEmpty)
{
    EXPECT_EQ(KTypeInfo(Bit.c_str()).GetValueString_OldFormat(nullptr, 10, 0, -1, false), "");
}

TEST(ValueText, DoesNotDependOnRadixOptionsWidthOrFlag)
{
    const KTypeInfo type(Integer.c_str());
    const std::string bytes = Bytes(42, 4);
    for (const int radix : {0, 2, 8, 10, 16, -1}) {
        EXPECT_EQ(type.GetValueString_OldFormat(bytes.data(), radix, 0, -1, false), "42") << radix;
        EXPECT_EQ(type.GetValueString_OldFormat(bytes.data(), radix, 2, 8, true), "42") << radix;
        std::string read(4, '\0');
        EXPECT_TRUE(type.GetBytes_OldFormat("42", read.data(), 4, radix, 2)) << radix;
        EXPECT_EQ(read, bytes) << radix;
    }
}

TEST(ValueText, OfARealHasSixDigitsOrAsManyAsItNeeds)
{
    const struct {
        double value;
        const char *text;
    } rows[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {0.1, "0.1"},
        {1.0 / 3, "0.3333333333333333"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1e6, "1e+06"},
        {1234567.0, "1234567"},
        {-2.5e-9, "-2.5e-09"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "4.94066e-324"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ValueText(Real, RealBytes(row.value)), row.text);
}

TEST(ValueBytes, AreReadFromTheTextOfAValue)
{
    const struct {
        std::string type, text, bytes;
    } rows[] = {
        {StdLogic, "-", Bytes(8, 1)},
        {State, "stop", Bytes(2, 1)},
        {"e#1#ec3 aba", "a", Bytes(0, 1)},  // the first of two that are alike
        {Integer, "-42", Bytes(0xFFFFFFD6, 4)},
        {"i#3#bitrict0 1", "42", Bytes(42, 4)},
        {Time, "9223372036854775807", Bytes(0x7FFFFFFFFFFFFFFF, 8)},
        {Real, "1e+06", RealBytes(1e6)},
        {Real, "3", RealBytes(3)},
        {Real, "4.94066e-324", Bytes(1, 8)},
        {Real, "-inf", Bytes(0xFFF0000000000000, 8)},
        {Memory, "01011100", std::string("\0\1\0\1\1\1\0\0", 8)},
        {ArrayOf(State), "(run,idle,stop)", std::string("\1\0\2", 3)},
        {ArrayOf(Integer), "(1,-2,3)", Bytes(1, 4) + Bytes(0xFFFFFFFE, 4) + Bytes(3, 4)},
        {ArrayOf("e#1#es4 ', '( ') x "), "(',,'),'()", std::string("\0\2\1", 3)},
        {ArrayOf(Bit, "rict1 0"), "", ""},
        {ArrayOf(Integer, "rict1 0"), "()", ""},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ValueBytes(row.type, row.text), row.bytes) << row.type << " of " << row.text;
}

TEST(ValueBytes, AreRefusedForATextThatIsNoValue)
{
    const struct {
        std::string type;
        std::vector<std::string> texts;
    } rows[] = {
        {StdLogic, {"", "u", "00", " 0"}},
        {State, {"", "Run", "ru", "run ", "(run)"}},
        {Integer, {"", "-", "+1", " 1", "1 ", "1.0", "0x10", "2147483648", "-2147483649"}},
        {Time, {"", "1 ns", "1e3", "9223372036854775808"}},
        {Real, {"", "1.5x", "1e999", "1,5", "."}},
        {Memory, {"", "0101110", "010111000", "0101110X"}},
        {ArrayOf(State), {"", "(", "()", "(run,idle)", "(run,idle,stop,run)", "(run,idle,stop", "run,idle,stop"}},
        {ArrayOf(State), {"(run,idle,stop,)", "(run,,stop)", "(run;idle;stop)"}},
        {ArrayOf(Integer, "rict1 0"), {"", "(1)"}},
        {ArrayOf(Bit, "rict1 0"), {"0", "()"}},
        {"a#1#a1 riut0 2147483647 " + Bit, {"", "0"}},
        {Bus, {"", "(0,0)"}},
        {ArrayOf(Bus), {""}},
        {Grid, {"0"}},
        {"nonsense", {"", "0"}},
    };
    for (const auto &row : rows)
        for (const std::string &text : row.texts)
            EXPECT_EQ(ValueBytes(row.type, text), "refused") << row.type << " of " << text;
}

TEST(ValueBytes, AreRefusedWhereTheyDoNotFit)
{
    const struct {
        std::string type, text;
        std::size_t size;
    } rows[] = {{StdLogic, "1", 1},
                {Integer, "1", 4},
                {Real, "1", 8},
                {Memory, "00000001", 8},
                {ArrayOf(Integer), "(1,2,3)", 12}};
    for (const auto &row : rows) {
        EXPECT_NE(ValueBytes(row.type, row.text, row.size), "refused") << row.type;
        EXPECT_EQ(ValueBytes(row.type, row.text, row.size - 1), "refused") << row.type;
        EXPECT_EQ(ValueBytes(row.type, row.text, 0), "refused") << row.type;
    }
}

TEST(ValueBytes, AreRefusedWithoutATextOrABuffer)
{
    char buffer = 0;
    EXPECT_FALSE(KTypeInfo(Bit.c_str()).GetBytes_OldFormat(nullptr, &buffer, 1, 2, 0));
    EXPECT_FALSE(KTypeInfo(Bit.c_str()).GetBytes_OldFormat("0", nullptr, 1, 2, 0));
}

// The claim is only compared: nothing is looped over or allocated for it.
TEST(ValueBytes, OfAnEnormousArrayAreRefusedAtOnce)
{
    char buffer = 0;
    for (const std::string &element : {Bit, Integer}) {
        const std::string type = ArrayOf(element, "rict1 1000000000");
        EXPECT_FALSE(KTypeInfo(type.c_str()).GetBytes_OldFormat("(1,2)", &buffer, UINT_MAX, 2, 0)) << type;
        EXPECT_FALSE(KTypeInfo(type.c_str()).GetBytes_OldFormat("01", &buffer, 1, 2, 0)) << type;
    }
}

TEST(ValueBytes, TakeTwoBytesAbove256Literals)
{
    const auto enumeration = [](int literals) {
        std::string text = "e#1#es" + std::to_string(literals) + " ";
        for (int i = 0; i < literals; ++i)
            text += "L" + std::to_string(i) + " ";
        return text;
    };
    EXPECT_EQ(ValueBytes(enumeration(256), "L255"), Bytes(255, 1));
    EXPECT_EQ(ValueBytes(enumeration(257), "L256"), Bytes(256, 2));
    EXPECT_EQ(ValueText(enumeration(257), Bytes(256, 2)), "L256");
    EXPECT_EQ(ValueText(enumeration(257), Bytes(257, 2)), "");
    EXPECT_EQ(ValueBytes(ArrayOf(enumeration(300)), "(L299,L0,L1)"), Bytes(299, 2) + Bytes(0, 2) + Bytes(1, 2));
    EXPECT_EQ(ValueBytes(enumeration(65537), "L65535"), Bytes(65535, 2));
    EXPECT_EQ(ValueBytes(enumeration(65537), "L65536"), "refused");  // no two bytes hold this position
}

TEST(ValueBytes, ComeBackFromTheirText)
{
    std::mt19937_64 random(1);
    const struct {
        std::string type;
        unsigned literals;
    } elements[] = {{Bit, 2},     {StdLogic, 9}, {State, 3}, {Mixed, 3},
                    {Integer, 0}, {Time, 0},     {Real, 0},  {"i#1#irict0 1", 0}};
    for (int round = 0; round < 4000; ++round) {
        const auto &element = elements[random() % std::size(elements)];
        const std::uint64_t count = random() % 6;
        const bool isArray = random() % 2 != 0;
        const std::string type = isArray ? ArrayOf(element.type, "ricd" + std::to_string(count) + " 1") : element.type;
        std::string bytes;
        for (std::uint64_t i = 0; i < (isArray ? count : 1); ++i) {
            std::uint64_t value = element.literals != 0 ? random() % element.literals : random();
            if (element.type == Real && std::isnan(std::bit_cast<double>(value)))
                value = 0;  // all of them have one text
            bytes += Bytes(value, KTypeInfo(type.c_str()).GetScalarSize_OldFormat());
        }
        ASSERT_EQ(ValueBytes(type, ValueText(type, bytes)), bytes) << type << ": " << ValueText(type, bytes);
    }
}
