#include "tools/files/vcdtext.h"

#include "settings/timeunits.h"
#include "tools/timetext.h"

SVcdTimeScale VcdTimeScale(long long resolution)
{
    const int unit = CoarsestWholeUnit(resolution);
    long long factor = resolution / static_cast<long long>(UnitLength(unit));
    int scale = 1;
    while (scale < 100 && factor % 10 == 0) {
        scale *= 10;
        factor /= 10;
    }
    const char *name = unit == 5 ? "s" : tesk::UnitNameFromID(static_cast<unsigned>(unit));
    return {std::to_string(scale) + name, factor};
}

std::string VcdTimeStamp(long long ticks, const SVcdTimeScale &scale)
{
    return '#' + std::to_string(static_cast<unsigned long long>(ticks) * static_cast<unsigned long long>(scale.factor));
}

std::string VcdCode(std::size_t index)
{
    std::string code;
    do {
        code += static_cast<char>('!' + index % 94);
        index /= 94;
    } while (index != 0);
    return code;
}

std::string VcdBits(unsigned long long number, int width)
{
    std::string bits;
    for (int i = width - 1; i >= 0; --i)
        bits += ((number >> i) & 1) != 0 ? '1' : '0';
    return bits;
}

std::string VcdEscapedText(const std::string &text)
{
    static constexpr char Hex[] = "0123456789abcdef";
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > ' ' && byte < 0x7F && c != '\\')
            escaped += c;
        else
            escaped += std::string("\\x") + Hex[byte >> 4] + Hex[byte & 15];
    }
    return escaped;
}
