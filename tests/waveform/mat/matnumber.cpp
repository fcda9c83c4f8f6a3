#include "waveform/mat/matnumber.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

std::string Verilog(double value, int width, int fraction = 0, bool isSigned = false)
{
    return tesk::VerilogNumberText(value, {width, fraction, isSigned});
}

std::string Vhdl(double value, int width, int fraction = 0, bool isSigned = false)
{
    return tesk::VhdlNumberText(value, {width, fraction, isSigned});
}

// A number without a limit to its size: bits, lowest first. Slow and plain.
using Natural = std::vector<bool>;

Natural PowerOfTwo(std::size_t exponent)
{
    Natural number(exponent + 1);
    number[exponent] = true;
    return number;
}

bool BitOf(const Natural &number, std::size_t place)
{
    return place < number.size() && number[place];
}

int Compare(const Natural &left, const Natural &right)
{
    for (std::size_t i = std::max(left.size(), right.size()); i-- > 0;) {
        if (BitOf(left, i) != BitOf(right, i))
            return BitOf(left, i) ? 1 : -1;
    }
    return 0;
}

Natural Sum(const Natural &left, const Natural &right)
{
    Natural sum;
    int carry = 0;
    for (std::size_t i = 0; i < std::max(left.size(), right.size()) || carry != 0; ++i) {
        carry += BitOf(left, i) + BitOf(right, i);
        sum.push_back(carry % 2 != 0);
        carry /= 2;
    }
    return sum;
}

Natural MinusOne(Natural number)
{
    for (std::size_t i = 0; i < number.size(); ++i) {
        number[i] = !number[i];
        if (!number[i])
            break;
    }
    return number;
}

// The magnitude of a value times 2 to the power of `fraction`, rounded half up to a whole number: exact, for an integer is
// taken times 2 to a power and divided by 2 again and again.
Natural Scaled(double value, int fraction)
{
    int exponent = 0;
    double mantissa = std::ldexp(std::frexp(std::fabs(value), &exponent), 53);
    exponent += fraction - 53;
    Natural number;
    for (; mantissa >= 1; mantissa = std::floor(mantissa / 2))
        number.push_back(std::fmod(mantissa, 2) != 0);
    if (exponent >= 0) {
        number.insert(number.begin(), static_cast<std::size_t>(exponent), false);
        return number;
    }
    const std::size_t places = static_cast<std::size_t>(-exponent);
    number = Sum(number, PowerOfTwo(places - 1));
    number.erase(number.begin(), number.begin() + static_cast<std::ptrdiff_t>(std::min(places, number.size())));
    return number;
}

// Cut to what `room` bits hold, or one more than that for the magnitude of a negative number.
Natural Cut(const Natural &number, int room, bool isNegative)
{
    const Natural bound = PowerOfTwo(static_cast<std::size_t>(room));
    if (Compare(number, bound) < 0)
        return number;
    return isNegative ? bound : MinusOne(bound);
}

std::string Bits(Natural number, int width, bool isNegative)
{
    const std::size_t count = static_cast<std::size_t>(width);
    number.resize(count);
    if (isNegative) {  // inverted, and 1 added
        number.flip();
        number = Sum(number, PowerOfTwo(0));
        number.resize(count);
    }
    std::string text;
    for (std::size_t i = count; i-- > 0;)
        text += number[i] ? '1' : '0';
    return text;
}

// `room` is the number of bits of a magnitude.
std::string Ideal(double value, int width, int fraction, int room)
{
    return Bits(Cut(Scaled(value, fraction), room, value < 0), width, value < 0);
}

std::string IdealVerilog(double value, int width, int fraction, bool isSigned)
{
    std::string text;
    if (width == 1)
        text = value != 0 && (isSigned || value > 0) ? "1" : "0";
    else if (!isSigned)
        text = Ideal(std::max(value, 0.0), width, fraction, width);
    else
        text = Ideal(value, width, fraction, width - 1);
    return text.find('1') == std::string::npos ? "" : text;
}

std::string IdealVhdl(double value, int width, int fraction, bool isSigned)
{
    std::string text;
    if (width == 1)
        text = value != 0 ? "1" : "0";
    else
        text = Ideal(isSigned ? value : std::max(value, 0.0), width, fraction, width - 1);
    const std::size_t begin = text.find('1');
    return begin == std::string::npos ? "" : text.substr(begin);
}

void ExpectIdeal(double value, int width, int fraction)
{
    for (const bool isSigned : {false, true}) {
        ASSERT_EQ(Verilog(value, width, fraction, isSigned), IdealVerilog(value, width, fraction, isSigned))
            << value << " width " << width << " fraction " << fraction << " signed " << isSigned;
        ASSERT_EQ(Vhdl(value, width, fraction, isSigned), IdealVhdl(value, width, fraction, isSigned))
            << value << " width " << width << " fraction " << fraction << " signed " << isSigned;
    }
}

TEST(MatNumber, IsWrittenForVhdlWithoutLeadingZeros)
{
    const struct {
        double value;
        int width, fraction;
        bool isSigned;
        const char *text;
    } rows[] = {
        {0.0, 8, 0, false, ""},           {-0.0, 8, 0, true, ""},
        {5.0, 8, 0, false, "101"},        {5.0, 8, 0, true, "101"},
        {1.25, 8, 2, false, "101"},       {1.0, 8, -1, false, "1"},
        {0.5, 8, 0, false, "1"},          {0.49999999999999994, 8, 0, false, ""},
        {6.5, 8, 0, true, "111"},         {-1.0, 8, 0, true, "11111111"},
        {-5.0, 8, 0, true, "11111011"},   {-5.0, 8, 0, false, ""},
        {127.0, 8, 0, false, "1111111"},  {127.5, 8, 0, false, "1111111"},
        {300.0, 8, 0, false, "1111111"},  {300.0, 8, 0, true, "1111111"},
        {-300.0, 8, 0, true, "10000000"}, {-128.0, 8, 0, true, "10000000"},
        {-127.0, 8, 0, true, "10000001"}, {NoNumber, 4, 0, true, "XXXX"},
        {Infinite, 4, 0, false, "111"},   {-Infinite, 4, 0, true, "1000"},
        {-Infinite, 4, 0, false, ""},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Vhdl(row.value, row.width, row.fraction, row.isSigned), row.text) << row.value;
}

TEST(MatNumber, IsWrittenForVerilogWithAllBits)
{
    const struct {
        double value;
        int width, fraction;
        bool isSigned;
        const char *text;
    } rows[] = {
        {0.0, 8, 0, false, ""},           {5.0, 8, 0, false, "00000101"},   {1.25, 8, 2, false, "00000101"},
        {255.0, 8, 0, false, "11111111"}, {255.4, 8, 0, false, "11111111"}, {255.5, 8, 0, false, "11111111"},
        {1e300, 8, 0, false, "11111111"}, {127.0, 8, 0, true, "01111111"},  {127.5, 8, 0, true, "01111111"},
        {-5.0, 8, 0, true, "11111011"},   {-128.0, 8, 0, true, "10000000"}, {-1e300, 8, 0, true, "10000000"},
        {-5.0, 8, 0, false, ""},          {-0.4, 8, 0, true, ""},           {NoNumber, 8, 0, false, ""},
        {NoNumber, 8, 0, true, ""},       {Infinite, 4, 0, false, "1111"},  {Infinite, 4, 0, true, "0111"},
        {-Infinite, 4, 0, true, "1000"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Verilog(row.value, row.width, row.fraction, row.isSigned), row.text) << row.value;
}

TEST(MatNumber, OfOneBitIsWhetherItIsZero)
{
    for (const double value : {0.25, 1.0, 300.0, 1e-300, Infinite}) {
        EXPECT_EQ(Vhdl(value, 1), "1") << value;
        EXPECT_EQ(Verilog(value, 1), "1") << value;
        EXPECT_EQ(Vhdl(-value, 1, 0, true), "1") << value;
        EXPECT_EQ(Verilog(-value, 1, 0, true), "1") << value;
    }
    EXPECT_EQ(Vhdl(0, 1), "");
    EXPECT_EQ(Verilog(0, 1), "");
}

TEST(MatNumber, OfOneBitWithoutSignIsDeliberatelyOneOnlyInVhdlWhenNegative)
{
    EXPECT_EQ(Vhdl(-1, 1), "1");
    EXPECT_EQ(Verilog(-1, 1), "");
}

TEST(MatNumber, OfOneBitThatIsNoneIsUnknownInVhdlAndZeroInVerilog)
{
    EXPECT_EQ(Vhdl(NoNumber, 1), "X");
    EXPECT_EQ(Verilog(NoNumber, 1), "");
}

TEST(MatNumber, IsSaturatedWithAllBits)
{
    EXPECT_EQ(tesk::SaturateToBits(0, {4, 0, false}), "0000");
    EXPECT_EQ(tesk::SaturateToBits(-1, {4, 0, false}), "0000");
    EXPECT_EQ(tesk::SaturateToBits(99, {4, 0, false}), "1111");
    EXPECT_EQ(tesk::SaturateToBits(-99, {4, 0, true}), "1000");
}

TEST(MatNumber, HasAnyWidthAndFraction)
{
    const int far = std::numeric_limits<int>::max();
    EXPECT_EQ(Verilog(1, 8, far), "11111111");
    EXPECT_EQ(Verilog(1, 8, -far), "");
    EXPECT_EQ(Vhdl(1, 8, far), "1111111");
    EXPECT_EQ(Vhdl(-1, 8, far, true), "10000000");
    EXPECT_EQ(Vhdl(1, 8, -far - 1), "");
    EXPECT_EQ(Vhdl(1e308, 8, -far - 1), "");
    EXPECT_EQ(Vhdl(5e-324, 8, 1074), "1");
    EXPECT_EQ(Verilog(5e-324, 8, 1074), "00000001");
    EXPECT_EQ(Verilog(1, 1 << 20).size(), std::size_t(1) << 20);
    EXPECT_EQ(Vhdl(NoNumber, 1 << 20).size(), std::size_t(1) << 20);
}

// The bits of a number of quarters of the lowest bit, rounded half up by the magnitude and cut to `room` bits.
std::string QuarterBits(int quarters, int width, int room)
{
    const int whole = (std::abs(quarters) + 2) / 4;
    const int cut = quarters < 0 ? -std::min(whole, 1 << room) : std::min(whole, (1 << room) - 1);
    std::string text;
    for (int bit = width - 1; bit >= 0; --bit)
        text += (cut >> bit & 1) != 0 ? '1' : '0';
    return text;
}

std::string QuarterText(int quarters, int width, bool isSigned, bool isVerilog)
{
    if (width == 1)
        return quarters > 0 || (quarters < 0 && (isSigned || !isVerilog)) ? "1" : "";
    const int room = isSigned || !isVerilog ? width - 1 : width;
    const std::string bits = QuarterBits(isSigned ? quarters : std::max(quarters, 0), width, room);
    const std::size_t begin = bits.find('1');
    if (begin == std::string::npos)
        return "";
    return isVerilog ? bits : bits.substr(begin);
}

TEST(MatNumber, AgreesWithExactArithmeticForAllSmallWidths)
{
    for (int width = 1; width <= 10; ++width) {
        const int last = (4 << width) + 8;  // beyond the range on both sides
        for (int quarters = -last; quarters <= last; ++quarters) {
            for (const bool isSigned : {false, true}) {
                const std::string verilog = QuarterText(quarters, width, isSigned, true);
                const std::string vhdl = QuarterText(quarters, width, isSigned, false);
                for (int fraction = -2; fraction <= width + 2; ++fraction) {
                    const double value = std::ldexp(quarters, -fraction - 2);
                    ASSERT_EQ(Verilog(value, width, fraction, isSigned), verilog) << value << " " << width << isSigned;
                    ASSERT_EQ(Vhdl(value, width, fraction, isSigned), vhdl) << value << " " << width << isSigned;
                }
            }
        }
    }
}

TEST(MatNumber, AgreesWithExactArithmeticAtRandom)
{
    std::mt19937_64 random(7);
    for (int round = 0; round < 400; ++round) {
        const int width = static_cast<int>(random() % 2000) + 1;
        const int fraction = static_cast<int>(random() % 2200) - 100;
        const int exponent = static_cast<int>(random() % (static_cast<unsigned>(width) + 120)) - 60 - fraction;
        const double mantissa = static_cast<double>(random() >> (random() % 60)) / 4;
        const double value = std::ldexp(mantissa, std::clamp(exponent - 10, -1000, 900));
        ASSERT_NO_FATAL_FAILURE(ExpectIdeal(random() % 2 == 0 ? value : -value, width, fraction));
    }
}

TEST(MatNumber, AgreesWithExactArithmeticOnAnyDouble)
{
    std::mt19937_64 random(8);
    for (int round = 0; round < 400; ++round) {
        const std::uint64_t pattern = random();
        double value = 0;
        std::memcpy(&value, &pattern, sizeof value);
        if (!std::isfinite(value))
            continue;
        ASSERT_NO_FATAL_FAILURE(
            ExpectIdeal(value, static_cast<int>(random() % 200) + 1, static_cast<int>(random() % 3000) - 1500));
    }
}

}  // namespace
