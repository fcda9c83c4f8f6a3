#include "tools/exchange/course.h"

#include <algorithm>
#include <cctype>

namespace tesk {

std::string FullBits(const SCourse &course, const std::string &value)
{
    std::string bits = value;
    std::ranges::transform(bits, bits.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (bits.size() >= course.width || bits.empty())
        return bits;
    const char filling = bits[0] == '1' ? '0' : bits[0];
    return std::string(course.width - bits.size(), filling) + bits;
}

long long LastTick(const SCourse &course)
{
    if (course.loop)
        return course.loop->end.value_or(course.loop->begin + course.loop->period);
    if (course.count)
        return course.count->begin;
    return course.changes.empty() ? 0 : course.changes.back().ticks;
}

}  // namespace tesk
