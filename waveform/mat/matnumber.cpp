#include "waveform/mat/matnumber.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tesk {

namespace {

constexpr int MantissaBits = 53;
constexpr int ExponentBias = 1023;

// A finite number other than 0, without its sign: 1.m times 2 to the power of `exponent`.
struct SParts {
    explicit SParts(double value)
    {
        mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(std::fabs(value), &exponent), MantissaBits));
        --exponent;
    }

    std::uint64_t mantissa;  // bit 52 is set
    int exponent = 0;
};

int BitLength(std::uint64_t number)
{
    return number == 0 ? 0 : 64 - __builtin_clzll(number);
}

// In two's complement: from the last bit up, the bits stay until the first 1, which also stays.
void Negate(std::string &bits)
{
    const std::size_t lastOne = bits.rfind('1');
    if (lastOne == std::string::npos)
        return;
    for (std::size_t i = 0; i < lastOne; ++i)
        bits[i] = bits[i] == '1' ? '0' : '1';
}

// The bits of `number` times 2 to the power of `shift`, which fits.
std::string WriteBits(std::uint64_t number, long long shift, int width)
{
    std::string bits(static_cast<std::size_t>(width), '0');
    for (long long place = shift; number != 0; number >>= 1, ++place) {
        if ((number & 1) != 0)
            bits[static_cast<std::size_t>(width - 1 - place)] = '1';
    }
    return bits;
}

// The magnitude, cut to `room` bits.
std::string MagnitudeBits(double value, int width, int fraction, int room)
{
    const std::string largest =
        std::string(static_cast<std::size_t>(width - room), '0') + std::string(static_cast<std::size_t>(room), '1');
    if (std::isinf(value))
        return largest;
    const SParts parts(value);
    std::uint64_t number = parts.mantissa;
    long long shift = parts.exponent - (MantissaBits - 1LL) + fraction;
    if (shift < -MantissaBits)
        number = 0;  // less than a half of the lowest bit
    else if (shift < 0)
        number = (number + (std::uint64_t(1) << (-shift - 1))) >> -shift;
    shift = std::max(shift, 0LL);
    return number != 0 && BitLength(number) + shift > room ? largest : WriteBits(number, shift, width);
}

std::string NegativeBits(double value, int width, int fraction)
{
    std::string bits = MagnitudeBits(value, width, fraction, width);
    if (bits.front() == '1')  // the smallest number, or below it
        return '1' + std::string(static_cast<std::size_t>(width - 1), '0');
    Negate(bits);
    return bits;
}

// The elements of a VHDL number other than 0 without its sign, highest first; empty if it does not fit.
//
// `top` is the biased exponent of the highest element: a number that needs this element does not fit, also where it
// would be no sign.
std::string VhdlMagnitude(double value, const SNumberForm &form)
{
    if (std::isinf(value))
        return "";
    const SParts parts(value);
    const long long exponent = parts.exponent + ExponentBias;
    long long top = static_cast<long long>(form.width) - form.fraction + ExponentBias - 1;
    if (exponent >= top)
        return "";
    std::uint64_t mantissa = parts.mantissa;
    const long long used = form.width - (top - exponent);  // bits of the mantissa that have an element
    const long long roundingBit = MantissaBits - 1 - used;
    if (roundingBit >= 0 && roundingBit < MantissaBits)
        mantissa += mantissa & (std::uint64_t(1) << roundingBit);
    if (BitLength(mantissa) > MantissaBits) {
        if (exponent + 1 >= top)
            return "";
        mantissa >>= 1;
        --top;
    }
    std::string elements(static_cast<std::size_t>(form.width), '0');
    for (long long i = top - exponent, bit = MantissaBits - 1; i < form.width && bit >= 0; ++i, --bit)
        elements[static_cast<std::size_t>(i)] = (mantissa >> bit & 1) != 0 ? '1' : '0';
    return elements;
}

std::string VhdlElements(double value, const SNumberForm &form)
{
    const std::size_t width = static_cast<std::size_t>(form.width);
    if (std::isnan(value))
        return std::string(width, 'X');
    if (value == 0 || (value < 0 && !form.isSigned && form.width > 1))
        return std::string(width, '0');
    if (form.width == 1)
        return "1";
    std::string elements = VhdlMagnitude(value, form);
    if (elements.empty())
        return (value < 0 ? '1' : '0') + std::string(width - 1, value < 0 ? '0' : '1');
    if (value < 0)
        Negate(elements);
    return elements;
}

}  // namespace

std::string SaturateToBits(double value, const SNumberForm &form)
{
    if (form.width == 1)
        return std::isnan(value) || value == 0 ? "0" : "1";
    if (std::isnan(value) || value == 0 || (value < 0 && !form.isSigned))
        return std::string(static_cast<std::size_t>(form.width), '0');
    if (value < 0)
        return NegativeBits(value, form.width, form.fraction);
    return MagnitudeBits(value, form.width, form.fraction, form.width - (form.isSigned ? 1 : 0));
}

std::string VerilogNumberText(double value, const SNumberForm &form)
{
    const std::string bits = SaturateToBits(value < 0 && !form.isSigned ? 0 : value, form);
    return bits.find('1') != std::string::npos ? bits : "";
}

std::string VhdlNumberText(double value, const SNumberForm &form)
{
    const std::string elements = VhdlElements(value, form);
    return elements.substr(std::min(elements.find_first_not_of('0'), elements.size()));
}

}  // namespace tesk
