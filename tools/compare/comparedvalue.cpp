#include "tools/compare/comparedvalue.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "base/bytes.h"
#include "base/stdlogic.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;
using Kestrin::KTypeInfo;

// An integer that does not fit its levels. Only one side of a pair has integers, so that it never meets itself.
constexpr char NoLevel = '?';
constexpr double LostInDump = 1e-15;  // of a real with 16 digits
constexpr unsigned MostLiterals = 1 << 16;

std::string LiteralAt(const KTypeInfo &scalar, unsigned position)
{
    std::array<unsigned char, 2> bytes;
    StoreLittleEndian(position, bytes.data(), bytes.size());
    return scalar.GetValueString_OldFormat(bytes.data(), 0, 0, 0, false);
}

std::vector<std::string> LiteralsOf(const KTypeInfo &scalar)
{
    std::vector<std::string> literals;
    for (unsigned position = 0; position < MostLiterals; ++position) {
        std::string literal = LiteralAt(scalar, position);
        if (literal.empty())
            break;
        literals.push_back(std::move(literal));
    }
    return literals;
}

bool IsWord(std::string_view text, std::string_view word)
{
    return std::ranges::equal(text, word, {},
                              [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
}

// A boolean is a level, as it is in a dump.
bool IsBoolean(const std::vector<std::string> &literals)
{
    return literals.size() == 2 && IsWord(literals[0], "false") && IsWord(literals[1], "true");
}

bool IsUnknown(EComparedKind kind, const char *element)
{
    return kind == EComparedKind::Levels ? std::string_view("xXUW-").find(*element) != std::string_view::npos
                                         : *element == 0;
}

std::uint64_t NumberIn(const char *element)
{
    std::uint64_t number = 0;
    std::memcpy(&number, element + 1, sizeof number);
    return number;
}

void StoreNumber(std::optional<std::uint64_t> number, char *element)
{
    const std::uint64_t stored = number.value_or(0);
    *element = number ? 1 : 0;
    std::memcpy(element + 1, &stored, sizeof stored);
}

bool AreNear(const SComparePolicy &policy, const char *expected, const char *got)
{
    const bool haveValues = *expected != 0 && *got != 0;
    const auto one = std::bit_cast<double>(NumberIn(expected));
    const auto other = std::bit_cast<double>(NumberIn(got));
    const double tolerance = policy.realTolerance.value_or(LostInDump * std::max(std::abs(one), std::abs(other)));
    return haveValues && std::isfinite(one) && std::isfinite(other) && std::abs(one - other) <= tolerance;
}

std::string RealText(double value)
{
    std::array<char, 40> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::string ElementText(EComparedKind kind, const char *element, const CLiteralTexts &literals)
{
    if (*element == 0)
        return "none";
    const std::uint64_t number = NumberIn(element);
    switch (kind) {
    case EComparedKind::Real: return RealText(std::bit_cast<double>(number));
    case EComparedKind::Literal: return literals.Text(number);
    default: return std::to_string(static_cast<long long>(number));
    }
}

}  // namespace

char ComparedLevel(char letter, const SComparePolicy &policy)
{
    if (!policy.hasNineStates)
        return FourStateLetter(letter);
    const char level = letter == 'x' ? 'X' : letter == 'z' ? 'Z' : letter;
    return StdLogicLetters.find(level) != std::string_view::npos ? level : '\0';
}

CComparedRow EmptyRow(const SComparedForm &form, const SComparePolicy &policy)
{
    const bool isLevels = form.kind == EComparedKind::Levels;
    return CComparedRow(form.width * ElementSize(form.kind), isLevels ? ComparedLevel('X', policy) : '\0');
}

void WriteInteger(long long number, char *element)
{
    StoreNumber(static_cast<std::uint64_t>(number), element);
}

void WriteReal(double number, char *element)
{
    const double one =
        std::isnan(number) ? std::numeric_limits<double>::quiet_NaN() : number + 0.0;  // no negative zero
    StoreNumber(std::bit_cast<std::uint64_t>(one), element);
}

bool MatchesElement(const SComparePolicy &policy, EComparedKind kind, const char *expected, const char *got)
{
    if (std::memcmp(expected, got, ElementSize(kind)) == 0)
        return true;
    if (policy.ignoresUnknown && IsUnknown(kind, expected))
        return true;
    return kind == EComparedKind::Real && AreNear(policy, expected, got);
}

bool MatchesRow(const SComparePolicy &policy, EComparedKind kind, const CComparedRow &expected, const CComparedRow &got)
{
    if (expected == got)
        return true;
    const std::size_t size = ElementSize(kind);
    for (std::size_t i = 0; i < expected.size(); i += size) {
        if (!MatchesElement(policy, kind, expected.data() + i, got.data() + i))
            return false;
    }
    return true;
}

std::uint64_t CLiteralTexts::Number(const std::string &text)
{
    const auto [entry, isNew] = m_numbers.try_emplace(text, m_texts.size());
    if (isNew)
        m_texts.push_back(text);
    return entry->second;
}

std::string RowText(const SComparedForm &form, const CComparedRow &row, const CLiteralTexts &literals)
{
    if (form.kind == EComparedKind::Levels)
        return row;
    std::string text;
    for (std::size_t i = 0; i < row.size(); i += NumberSize)
        text += (i == 0 ? "" : ",") + ElementText(form.kind, row.data() + i, literals);
    return form.width == 1 ? text : '(' + text + ')';
}

CValueForm::CValueForm(const KTypeInfo &scalar, const SComparePolicy &policy, CLiteralTexts &literals)
    : m_policy(policy), m_unknown(ComparedLevel('X', policy))
{
    m_levels.fill(m_unknown);
    switch (KindOf(scalar)) {
    case ETypeKind::Real: m_kind = EComparedKind::Real; break;
    case ETypeKind::Integer: m_kind = EComparedKind::Integer; break;
    case ETypeKind::Physical:
        m_kind = EComparedKind::Integer;
        m_isWide = true;
        break;
    default: ReadLiterals(scalar, literals);
    }
}

void CValueForm::ReadLiterals(const KTypeInfo &scalar, CLiteralTexts &literals)
{
    const std::vector<std::string> texts = LiteralsOf(scalar);
    const auto isLevel = [&](const std::string &text) {
        return text.size() == 1 && ComparedLevel(text[0], m_policy) != '\0';
    };
    if (IsBoolean(texts) ||
        (!texts.empty() && texts.size() <= m_levels.size() && std::ranges::all_of(texts, isLevel))) {
        m_kind = EComparedKind::Levels;
        for (std::size_t i = 0; i < texts.size(); ++i)
            m_levels[i] = IsBoolean(texts) ? "01"[i] : ComparedLevel(texts[i][0], m_policy);
        return;
    }
    for (const std::string &text : texts)
        m_numbers.push_back(literals.Number(text));
}

bool CValueForm::operator==(const CValueForm &other) const
{
    return m_kind == other.m_kind && m_isWide == other.m_isWide && m_levels == other.m_levels &&
           m_numbers == other.m_numbers;
}

long long CValueForm::IntegerOf(std::uint64_t value) const
{
    return m_isWide ? static_cast<long long>(value) : static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

void CValueForm::WriteNumber(std::optional<std::uint64_t> value, char *element) const
{
    const bool isLiteral = m_kind == EComparedKind::Literal;
    if (!value || (isLiteral && *value >= m_numbers.size()))
        StoreNumber(std::nullopt, element);
    else if (isLiteral)
        StoreNumber(m_numbers[static_cast<std::size_t>(*value)], element);
    else if (m_kind == EComparedKind::Real)
        WriteReal(std::bit_cast<double>(*value), element);
    else
        WriteInteger(IntegerOf(*value), element);
}

void CValueForm::Write(std::span<const std::optional<std::uint64_t>> values, char *row) const
{
    if (m_kind == EComparedKind::Levels) {
        for (const auto &value : values)
            *row++ = value && *value < m_levels.size() ? m_levels[static_cast<std::size_t>(*value)] : m_unknown;
        return;
    }
    for (const auto &value : values) {
        WriteNumber(value, row);
        row += NumberSize;
    }
}

void CValueForm::Write(std::span<const std::uint8_t> positions, char *row) const
{
    for (const std::uint8_t position : positions)
        *row++ = m_levels[position];
}

void CValueForm::WriteAsLevels(std::optional<std::uint64_t> value, std::span<char> levels) const
{
    if (!value) {
        std::ranges::fill(levels, m_unknown);
        return;
    }
    const long long number = IntegerOf(*value);
    const long long above = levels.size() >= 63 ? 0 : number >> levels.size();  // what the levels have no place for
    const bool isNegative = above == -1 && (number >> (levels.size() - 1)) == -1;
    if (above != 0 && !isNegative) {
        std::ranges::fill(levels, NoLevel);
        return;
    }
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[levels.size() - 1 - i] = (number >> std::min<std::size_t>(i, 63) & 1) != 0 ? '1' : '0';
}

}  // namespace tesk
