#include "tools/exchange/imported.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "base/ascii.h"
#include "core/stimulus.h"
#include "settings/timeunits.h"
#include "tools/quote.h"
#include "tools/timetext.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

constexpr long long LatestTime = 9'200'000'000'000'000'000;

// A text of TOML, which has the escapes of JSON.
std::string TomlText(const std::string &text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// A name in front of "=".
std::string TomlKey(const std::string &name)
{
    const bool isBare = !name.empty() && std::ranges::all_of(name, [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-';
    });
    return isBare ? name : TomlText(name);
}

// Whether a formula takes a text for a value and nothing else.
bool IsValueWord(const std::string &value)
{
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' || c == '.' || c == '+' ||
               c == '-';
    };
    return !value.empty() && std::ranges::all_of(value, isPlain);
}

// The value, if all signals' values are rows of std_logic of one length above 1; else 0.
std::size_t CommonWidth(const SImportedSignal &signal)
{
    std::size_t width = 0;
    for (const SImportedEvent &event : signal.events) {
        const std::string value = event.value.value_or("");
        if (!IsBitText(value) || (width != 0 && value.size() != width))
            return 0;
        width = value.size();
    }
    return width > 1 ? width : 0;
}

// Whether a formula is read as these events.
bool IsReadAs(const std::string &formula, const SImportedSignal &signal, long long resolution)
{
    const StimulusPtr stimulus(IStimulus::Create(formula.c_str(), 0, resolution, nullptr, false, false));
    if (stimulus == nullptr)
        return false;
    for (const SImportedEvent &event : signal.events) {
        SimpleString::CStr value;
        if (!stimulus->GetValue(event.time / resolution, value) || std::string(value) != event.value)
            return false;
    }
    return true;
}

const char *StrengthName(EStrength strength)
{
    return strength == EStrength::Deposit ? "deposit" : "drive";
}

// The bits of one digit of a base with a power of two, or the letter that stands for all of them; empty if it is none.
std::string DigitBits(char digit, std::size_t bitsOfDigit)
{
    const int number = DigitValue(digit);
    if (number < 1 << bitsOfDigit) {
        std::string bits;
        for (std::size_t bit = bitsOfDigit; bit-- > 0;)
            bits += (number >> bit & 1) != 0 ? '1' : '0';
        return bits;
    }
    constexpr std::string_view Letters = "XxZzUuWwLlHh-?";
    constexpr std::string_view Meanings = "XXZZUUWWLLHH--";
    const std::size_t letter = Letters.find(digit);
    return letter != Letters.npos ? std::string(bitsOfDigit, Meanings[letter]) : "";
}

std::optional<std::string> DigitsBits(std::string_view digits, std::size_t bitsOfDigit, std::size_t width)
{
    std::string bits;
    for (const char digit : digits) {
        if (digit == '_')
            continue;
        const std::string more = DigitBits(digit, bitsOfDigit);
        if (more.empty())
            return std::nullopt;
        bits += more;
    }
    if (bits.empty())
        return std::nullopt;
    if (width == 0)
        return bits;
    const char filling = bits[0] == '1' ? '0' : bits[0];
    return bits.size() > width ? bits.substr(bits.size() - width) : std::string(width - bits.size(), filling) + bits;
}

std::size_t BitsOfBase(std::string_view base)
{
    constexpr struct {
        std::string_view name;
        std::size_t bits;
    } Bases[] = {{"2", 1}, {"8", 3}, {"16", 4}, {"b", 1}, {"o", 3}, {"h", 4},
                 {"x", 4}, {"B", 1}, {"O", 3},  {"H", 4}, {"X", 4}};
    const auto *found = std::ranges::find(Bases, base, [](const auto &row) { return row.name; });
    return found != std::end(Bases) ? found->bits : 0;
}

// The width in front of a Verilog literal: 0 for none, nothing if it is no width.
std::optional<std::size_t> ReadWidth(std::string_view text)
{
    constexpr std::size_t WidestLiteral = 1 << 16;
    std::size_t width = 0;
    for (const char digit : text) {
        if (!IsDigit(digit) || width > WidestLiteral)
            return std::nullopt;
        width = 10 * width + static_cast<std::size_t>(digit - '0');
    }
    return width <= WidestLiteral ? std::optional(width) : std::nullopt;
}

// A number with or without a fraction times femtoseconds; exact where it has none.
std::optional<long long> Product(const std::string &number, Int128 length)
{
    long long whole = 0;
    const char *end = number.data() + number.size();
    if (const auto result = std::from_chars(number.data(), end, whole); result.ec == std::errc() && result.ptr == end)
        return whole <= LatestTime / length ? std::optional(static_cast<long long>(whole * length)) : std::nullopt;
    double value = 0;
    const auto result = std::from_chars(number.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    value *= static_cast<double>(length);
    return value < static_cast<double>(LatestTime) ? std::optional(static_cast<long long>(std::llround(value)))
                                                   : std::nullopt;
}

}  // namespace

std::optional<std::string> LiteralBits(const std::string &value)
{
    std::string_view text = value;
    if (const std::size_t mark = text.find('#'); mark != text.npos) {
        const std::size_t bits = BitsOfBase(text.substr(0, mark));
        const std::string_view digits = text.substr(mark + 1);
        return bits != 0 ? DigitsBits(digits.substr(0, digits.find('#')), bits, 0) : std::nullopt;
    }
    if (const std::size_t mark = text.find('\''); mark != text.npos && mark + 1 < text.size()) {
        const std::size_t bits = BitsOfBase(text.substr(mark + 1, 1));
        const auto width = ReadWidth(text.substr(0, mark));
        return bits != 0 && width ? DigitsBits(text.substr(mark + 2), bits, *width) : std::nullopt;
    }
    if (const std::size_t mark = text.find('"'); mark == 1 && text.ends_with('"') && text.size() > 3) {
        const std::size_t bits = BitsOfBase(text.substr(0, 1));
        return bits != 0 ? DigitsBits(text.substr(2, text.size() - 3), bits, 0) : std::nullopt;
    }
    return IsBitText(value) ? std::optional(value) : std::nullopt;
}

std::optional<long long> ReadImportedTime(const std::string &text, long long unit)
{
    const std::size_t begin = text.find_first_not_of(" \t");
    const std::size_t end = std::min(text.find_first_not_of("0123456789.", begin), text.size());
    if (begin == text.npos || end == begin || end - begin > 40)
        return std::nullopt;
    std::string name = text.substr(std::min(text.find_first_not_of(" \t", end), text.size()));
    name = name.substr(0, name.find_last_not_of(" \t") + 1);
    Int128 length = unit;
    if (!name.empty()) {
        const int known = UnitIDFromName(name.c_str());
        if (known < 0)
            return std::nullopt;
        length = UnitLength(known);
    }
    return Product(text.substr(begin, end - begin), length);
}

void CImported::Add(SImportFault fault)
{
    constexpr std::size_t MostKept = 1000;
    m_hasError = m_hasError || fault.severity == ESeverity::Error;
    if (m_faults.size() < MostKept)
        m_faults.push_back(std::move(fault));
    else
        ++m_more;
}

SImportedSignal *CImported::Find(const std::string &name)
{
    const auto found = m_places.find(name);
    return found != m_places.end() ? &m_signals[found->second] : nullptr;
}

SImportedSignal &CImported::Signal(const std::string &name)
{
    if (SImportedSignal *known = Find(name))
        return *known;
    m_places.emplace(name, m_signals.size());
    m_signals.push_back({name, {}, EStrength::Override, {}, 0, std::nullopt, 0});
    return m_signals.back();
}

// Without one that is told it is 1ps, unless a time is finer.
long long CImported::Resolution() const
{
    constexpr long long Picosecond = 1000;
    if (resolution)
        return *resolution;
    const auto isFine = [](long long time) { return time % Picosecond != 0; };
    for (const SImportedSignal &signal : m_signals) {
        if (isFine(signal.repeat) || isFine(signal.cancel.value_or(0)) ||
            std::ranges::any_of(signal.events, isFine, &SImportedEvent::time))
            return 1;
    }
    return Picosecond;
}

// Brings the events into the order of their times, the last of those at one time, and lets the signal go at most once, at
// the end. @return false if that cannot be, which is told
bool CImported::Simplify(SImportedSignal &signal)
{
    std::ranges::stable_sort(signal.events, {}, &SImportedEvent::time);
    std::vector<SImportedEvent> events;
    for (SImportedEvent &event : signal.events) {
        if (!events.empty() && events.back().time == event.time)
            events.pop_back();
        if (event.value || !events.empty())
            events.push_back(std::move(event));
    }
    if (!events.empty() && !events.back().value && signal.repeat == 0) {
        signal.cancel = std::min(signal.cancel.value_or(events.back().time), events.back().time);
        events.pop_back();
    }
    if (signal.cancel)
        std::erase_if(events, [&](const SImportedEvent &event) { return event.time >= *signal.cancel; });
    signal.events = std::move(events);
    const std::string who = "signal " + Quote(signal.name) + ": ";
    if (signal.events.empty()) {
        Warn(signal.line, who + "it never has a value, and is left out");
        return false;
    }
    if (!std::ranges::all_of(signal.events, [](const SImportedEvent &event) { return event.value.has_value(); })) {
        Refuse(signal.line, who + "it is let go and forced again, which a formula cannot say");
        return false;
    }
    if (signal.repeat != 0 && signal.events.back().time - signal.events.front().time >= signal.repeat) {
        Refuse(signal.line, who + "the period is shorter than its events, which overlap");
        return false;
    }
    return true;
}

// @return empty if it has none, which is told
std::string CImported::FormulaOf(const SImportedSignal &signal, long long ticks)
{
    std::string formula;
    for (const SImportedEvent &event : signal.events) {
        if (!IsValueWord(*event.value)) {
            Refuse(signal.line, "signal " + Quote(signal.name) + ": the value " + Quote(*event.value) +
                                    " cannot stand in a formula");
            return {};
        }
        formula += (formula.empty() ? "" : ", ") + *event.value + ' ' + TimeText(event.time);
    }
    if (signal.repeat != 0)
        formula += " -r " + TimeText(signal.repeat);
    if (signal.cancel)
        formula += " -cancel " + TimeText(*signal.cancel);
    if (IsReadAs(formula, signal, ticks))
        return formula;
    Refuse(signal.line, "signal " + Quote(signal.name) +
                            ": its values cannot be said in a formula at a resolution of " + TimeText(ticks));
    return {};
}

void CImported::WriteBench(std::ostream &out)
{
    const long long ticks = Resolution();
    out << "resolution = " << TomlText(TimeText(ticks)) << '\n';
    if (until)
        out << "until = " << TomlText(TimeText(*until)) << '\n';
    out << "\n[signals]\n";
    bool isEmpty = true;
    for (SImportedSignal &signal : m_signals) {
        if (!Simplify(signal))
            continue;
        if (signal.type.empty()) {
            if (const std::size_t width = CommonWidth(signal); width != 0)
                signal.type = "std_logic_vector(" + std::to_string(width - 1) + " downto 0)";
        }
        const std::string formula = FormulaOf(signal, ticks);
        if (formula.empty())
            continue;
        isEmpty = false;
        out << TomlKey(signal.name) << " = ";
        if (signal.type.empty() && signal.strength == EStrength::Override) {
            out << TomlText(formula) << '\n';
            continue;
        }
        out << "{ ";
        if (!signal.type.empty())
            out << "type = " << TomlText(signal.type) << ", ";
        out << "formula = " << TomlText(formula);
        if (signal.strength != EStrength::Override)
            out << ", strength = \"" << StrengthName(signal.strength) << '"';
        out << " }\n";
    }
    if (isEmpty && !m_hasError)
        Refuse(0, "no signal of it can be told");
    std::ranges::stable_sort(m_faults, {}, &SImportFault::line);
}

}  // namespace tesk
