#include "tools/writers/valuekind.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

#include "platform/kestrin.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

template <typename T>
bool IsNumber(const std::string &value)
{
    T number;
    const char *end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

bool AllValues(const STrace &trace, bool (*test)(const std::string &))
{
    return std::ranges::all_of(trace.changes,
                               [test](const SChange &change) { return !change.value || test(*change.value); });
}

// Whether a value is one of 32 bits.
bool IsInteger(const std::string &value)
{
    return IsNumber<std::int32_t>(value);
}

std::size_t WidestValue(const STrace &trace)
{
    std::size_t width = 1;
    for (const SChange &change : trace.changes)
        width = std::max(width, change.value.value_or("").size());
    return width;
}

}  // namespace

SValueKind KindOfValues(const STrace &trace)
{
    const Kestrin::KTypeInfo type(trace.type.c_str());
    if (IsBitVectorType(trace.type))
        return {EValueKind::Bits, static_cast<std::size_t>(type.GetNbOfElements())};
    if (KindOf(type) == Kestrin::ETypeKind::Integer && AllValues(trace, IsInteger))
        return {EValueKind::Integer, 32};
    if (KindOf(type) == Kestrin::ETypeKind::Real && AllValues(trace, IsNumber<double>))
        return {EValueKind::Real, 64};
    if (AllValues(trace, IsBitText))
        return {EValueKind::Bits, WidestValue(trace)};
    if (AllValues(trace, IsNumber<long long>))
        return {EValueKind::Integer, AllValues(trace, IsInteger) ? 32U : 64U};
    if (AllValues(trace, IsNumber<double>))
        return {EValueKind::Real, 64};
    return {EValueKind::Text, 1};
}

}  // namespace tesk
