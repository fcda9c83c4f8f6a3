#include "waveform/table/realtext.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <limits>

#include "base/ascii.h"

namespace tesk {

namespace {

bool StartsWithLower(std::string_view text, std::string_view word)
{
    const auto equal = [](char left, char right) { return (left | ('a' - 'A')) == right; };
    return text.size() >= word.size() && std::ranges::equal(text.substr(0, word.size()), word, equal);
}

// The common case: digits with or without a point, so few that number and power of ten are exact, which makes their
// quotient the nearest number (IEEE 754). @return false for any other text
bool ReadPlain(std::string_view text, double &number)
{
    constexpr std::size_t MostDigits = 15;
    static constexpr std::array<double, MostDigits + 1> Powers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (FLT_EVAL_METHOD != 0 || text.empty() || text.size() > MostDigits)
        return false;
    long long digits = 0;
    std::size_t behindPoint = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsDigit(text[i]))
            digits = digits * 10 + (text[i] - '0');
        else if (text[i] == '.' && behindPoint == text.size() && text.size() > 1)
            behindPoint = i + 1;
        else
            return false;
    }
    number = static_cast<double>(digits) / Powers[text.size() - behindPoint];
    return true;
}

// Whether a number that is out of range is too large: the place of its first digit other than 0, together with the
// exponent, lies in front of the point.
bool IsHuge(std::string_view number, bool isHex)
{
    const std::size_t mark = std::min(number.find_first_of(isHex ? "pP" : "eE"), number.size());
    const std::string_view digits = number.substr(0, mark);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t first = std::min(digits.find_first_not_of("0."), digits.size());
    const long long place = (static_cast<long long>(point) - static_cast<long long>(first)) * (isHex ? 4 : 1);

    std::string_view exponent = number.substr(std::min(mark + 1, number.size()));
    const bool isNegative = exponent.starts_with('-');
    if (isNegative || exponent.starts_with('+'))
        exponent.remove_prefix(1);
    long long value = 0;
    constexpr long long Limit = std::numeric_limits<long long>::max() / 2;
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), value).ec == std::errc::result_out_of_range)
        value = Limit;
    value = std::min(value, Limit);
    return (isNegative ? -value : value) + place > 0;
}

}  // namespace

bool ReadReal(std::string_view text, double &number)
{
    while (!text.empty() && IsSpace(text.front()))
        text.remove_prefix(1);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0;
    if (ReadPlain(text, value)) {
        number = isNegative ? -value : value;
        return true;
    }
    const bool isHex = StartsWithLower(text, "0x");
    if (isHex)
        text.remove_prefix(2);
    if (text.starts_with('-') || (StartsWithLower(text, "infi") && !StartsWithLower(text, "infinity")))
        return false;

    const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), value,
                                                          isHex ? std::chars_format::hex : std::chars_format::general);
    if (result.ec == std::errc::invalid_argument)
        return false;
    if (result.ec == std::errc::result_out_of_range)
        value = IsHuge(text, isHex) ? std::numeric_limits<double>::infinity() : 0.0;
    number = isNegative ? -value : value;
    return true;
}

}  // namespace tesk
