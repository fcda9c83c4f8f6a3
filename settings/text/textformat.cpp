#include "settings/text/textformat.h"

#include <locale.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string_view>

#include "base/ascii.h"

namespace tesk {

namespace {

constexpr long long BaseBound = 128;
constexpr long long MaximumBound = 1 << 30;  // an absurd width must not ask for absurd room

// One conversion, from behind its '%' to its letter.
struct SItem {
    std::string flags;  // as written, without '#' counted twice
    int width = 0;
    int precision = 0;
    bool hasPrecision = false;
    bool is64 = false;
    bool isShort = false;
    bool isLong = false;
    char conversion = 0;    // 0 at the end of the format
    std::string_view text;  // the whole of it, '%' included
};

// The arguments still to come. A class, since a va_list cannot be passed by reference everywhere.
class CArguments {
public:
    explicit CArguments(va_list arguments) { va_copy(m_list, arguments); }
    CArguments(const CArguments &) = delete;
    CArguments &operator=(const CArguments &) = delete;
    ~CArguments() { va_end(m_list); }

    template <typename T>
    T Take()
    {
        return va_arg(m_list, T);
    }

private:
    va_list m_list;
};

// Digits as a number, 0 without any; what no field can be as wide as is cut.
int TakeNumber(const char *&at)
{
    long long number = 0;
    for (; tesk::IsDigit(*at); ++at)
        number = std::min<long long>(number * 10 + (*at - '0'), MaximumBound);
    return static_cast<int>(number);
}

void TakeFlags(const char *&at, SItem &item, CArguments &arguments)
{
    for (;; ++at) {
        if (*at == '*')
            item.width = arguments.Take<int>();
        else if (*at != 0 && std::strchr("#-+0 ", *at) != nullptr)
            item.flags += *at;
        else
            return;
    }
}

void TakePrecision(const char *&at, SItem &item, CArguments &arguments)
{
    if (*at != '.')
        return;
    ++at;
    item.hasPrecision = true;
    if (*at == '*') {
        ++at;
        item.precision = arguments.Take<int>();
        return;
    }
    item.precision = TakeNumber(at);
}

// A 64-bit mark needs a byte behind it; else it is no modifier.
bool TakeModifier64(const char *&at)
{
    for (const std::string_view mark : {"I64", "ll", "q"}) {
        if (std::strncmp(at, mark.data(), mark.size()) == 0 && at[mark.size()] != 0) {
            at += mark.size();
            return true;
        }
    }
    return false;
}

void TakeModifiers(const char *&at, SItem &item)
{
    if (TakeModifier64(at)) {
        item.is64 = true;
        return;
    }
    switch (*at) {
    case 'h': item.isShort = true; break;
    case 'l': item.isLong = true; break;
    case 'F':
    case 'L':
    case 'N': break;  // no meaning
    default: return;
    }
    ++at;
}

// `at` stands behind the '%' and moves behind the item.
SItem TakeItem(const char *&at, CArguments &arguments)
{
    SItem item;
    const char *begin = at - 1;
    TakeFlags(at, item, arguments);
    if (item.width == 0)
        item.width = TakeNumber(at);
    TakePrecision(at, item, arguments);
    TakeModifiers(at, item);
    item.conversion = *at;
    if (*at != 0)
        ++at;
    item.text = std::string_view(begin, static_cast<std::size_t>(at - begin));
    return item;
}

// Prints one value into `text` with the item's flags, width and precision and the length modifier and
// conversion of this platform.
template <typename T>
void Print(std::string &text, const SItem &item, const char *conversion, T value)
{
    std::string format = "%" + item.flags + "*";
    if (item.hasPrecision)
        format += ".*";
    format += conversion;
    const auto print = [&](char *buffer, std::size_t size) {
        return item.hasPrecision ? std::snprintf(buffer, size, format.c_str(), item.width, item.precision, value)
                                 : std::snprintf(buffer, size, format.c_str(), item.width, value);
    };
    char small[128];
    const int length = print(small, sizeof small);
    if (length < 0)
        return;  // a wide character that the locale cannot write
    if (static_cast<std::size_t>(length) < sizeof small) {
        text.append(small, static_cast<std::size_t>(length));
        return;
    }
    const std::size_t old = text.size();
    text.resize(old + static_cast<std::size_t>(length) + 1);
    print(text.data() + old, static_cast<std::size_t>(length) + 1);
    text.pop_back();
}

long long NumberBound(long long least, const SItem &item)
{
    return std::max(least, static_cast<long long>(item.width) + item.precision);
}

long long TextBound(long long length, const SItem &item)
{
    if (item.precision != 0)
        length = std::min<long long>(length, item.precision);
    return std::max<long long>(length, item.width);
}

long long FormatCharacter(std::string &text, const SItem &item, CArguments &arguments)
{
    const int value = arguments.Take<int>();
    const bool wide = !item.isShort && (item.isLong || item.conversion == 'C');
    if (wide)
        Print(text, item, "lc", static_cast<std::wint_t>(value));
    else
        Print(text, item, "c", value);
    return TextBound(2, item);
}

long long FormatString(std::string &text, const SItem &item, CArguments &arguments)
{
    const bool wide = !item.isShort && (item.isLong || item.conversion == 'S');
    const void *value = arguments.Take<const void *>();
    if (value == nullptr) {
        Print(text, item, "s", "(null)");
        return TextBound(6, item);
    }
    if (wide) {
        const wchar_t *wideText = static_cast<const wchar_t *>(value);
        Print(text, item, "ls", wideText);
        return TextBound(std::max<long long>(1, static_cast<long long>(std::wcslen(wideText))), item);
    }
    const char *narrowText = static_cast<const char *>(value);
    Print(text, item, "s", narrowText);
    return TextBound(std::max<long long>(1, static_cast<long long>(std::strlen(narrowText))), item);
}

long long FormatInteger(std::string &text, const SItem &item, CArguments &arguments)
{
    if (item.is64) {
        Print(text, item, (std::string("ll") + item.conversion).c_str(), arguments.Take<long long>());
        return NumberBound(32, item);
    }
    // A `long` has 32 bits in formats, as on the library's first platform.
    const std::string conversion = (item.isShort ? std::string("h") : std::string()) + item.conversion;
    Print(text, item, conversion.c_str(), arguments.Take<int>());
    return NumberBound(32, item);
}

// While it lives, this thread writes numbers as in the "C" locale. Formulas and saved settings have a decimal point
// wherever the host sets a comma.
class CPlainNumbers {
public:
    CPlainNumbers()
    {
        static const locale_t s_plain = newlocale(LC_ALL_MASK, "C", locale_t{});
        m_former = uselocale(s_plain);
    }
    CPlainNumbers(const CPlainNumbers &) = delete;
    CPlainNumbers &operator=(const CPlainNumbers &) = delete;
    ~CPlainNumbers() { uselocale(m_former); }

private:
    locale_t m_former;
};

long long FormatReal(std::string &text, const SItem &item, CArguments &arguments)
{
    const CPlainNumbers plain;
    const double value = arguments.Take<double>();
    Print(text, item, std::string(1, item.conversion).c_str(), value);
    if (item.conversion == 'E')
        return 0;  // deliberate: the base bound covers a single one
    if (item.conversion == 'f')
        return std::max(0, std::snprintf(nullptr, 0, "%*.*f", item.width, item.precision + 6, value));
    return NumberBound(128, item);
}

void StoreLength(std::size_t length, const SItem &item, CArguments &arguments)
{
    void *target = arguments.Take<void *>();
    if (item.is64)
        *static_cast<long long *>(target) = static_cast<long long>(length);
    else if (item.isShort)
        *static_cast<short *>(target) = static_cast<short>(length);
    else
        *static_cast<int *>(target) = static_cast<int>(length);
}

// Appends the item's text and gives its allowance in the bound.
long long FormatItem(std::string &text, const SItem &item, CArguments &arguments)
{
    switch (item.conversion) {
    case 'c':
    case 'C': return FormatCharacter(text, item, arguments);
    case 's':
    case 'S': return FormatString(text, item, arguments);
    case 'd':
    case 'i':
    case 'o':
    case 'u':
    case 'x':
    case 'X': return FormatInteger(text, item, arguments);
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'f': return FormatReal(text, item, arguments);
    case 'p': Print(text, item, "p", arguments.Take<void *>()); return NumberBound(32, item);
    case 'n': StoreLength(text.size(), item, arguments); return 0;
    default: text += item.text; return 0;  // no conversion: it stands for itself
    }
}

}  // namespace

SFormattedText FormatText(const char *format, va_list argumentList)
{
    SFormattedText result{{}, BaseBound};
    CArguments arguments(argumentList);
    for (const char *at = format != nullptr ? format : ""; *at != 0;) {
        if (*at != '%' || at[1] == '%') {
            result.text += *at;
            at += *at == '%' ? 2 : 1;
            ++result.bound;
            continue;
        }
        ++at;
        const SItem item = TakeItem(at, arguments);
        result.bound += 2 * std::count(item.flags.begin(), item.flags.end(), '#');
        result.bound += FormatItem(result.text, item, arguments);
        result.bound = std::min(result.bound, MaximumBound);
    }
    return result;
}

}  // namespace tesk
