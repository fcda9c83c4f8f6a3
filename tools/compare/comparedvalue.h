// Values of signals of two sides, brought into one form.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "tools/compare/comparepolicy.h"

namespace tesk {

/// The values of the elements of a signal, one behind the other. Rows of the same bytes are the same values. A level is one
/// byte, its letter; of anything else an element has `NumberSize` bytes.
using CComparedRow = std::string;

enum class EComparedKind { Levels, Integer, Real, Literal };

/// Elements of one kind.
struct SComparedForm {
    EComparedKind kind = EComparedKind::Levels;
    std::size_t width = 1;  ///< elements

    bool operator==(const SComparedForm &) const = default;
};

constexpr std::size_t NumberSize = 9;  ///< whether there is a value, then 8 bytes of it

constexpr std::size_t ElementSize(EComparedKind kind)
{
    return kind == EComparedKind::Levels ? 1 : NumberSize;
}

/// Elements without a value: unknown levels, and of anything else no value.
CComparedRow EmptyRow(const SComparedForm &form, const SComparePolicy &policy);

/// The letter by which a level is kept. @param letter  one of std_logic, or x or z as a dump has it; 0 for no other one
char ComparedLevel(char letter, const SComparePolicy &policy);

/// Write a number into an element.
void WriteInteger(long long number, char *element);
void WriteReal(double number, char *element);

/// Whether what is expected of an element, and what was got, are no difference.
bool MatchesElement(const SComparePolicy &policy, EComparedKind kind, const char *expected, const char *got);

/// The same of all elements of two rows of one length.
bool MatchesRow(const SComparePolicy &policy, EComparedKind kind, const CComparedRow &expected,
                const CComparedRow &got);

/// Texts of literals, numbered.
class CLiteralTexts {
public:
    std::uint64_t Number(const std::string &text);
    /// @param number  one that `Number` gave
    const std::string &Text(std::uint64_t number) const { return m_texts.at(static_cast<std::size_t>(number)); }

private:
    std::map<std::string, std::uint64_t> m_numbers;
    std::vector<std::string> m_texts;
};

/// A row as a user reads it: levels as their letters, several numbers in parentheses; "none" is no value.
std::string RowText(const SComparedForm &form, const CComparedRow &row, const CLiteralTexts &literals);

/// Brings raw values of one scalar type into the form in which they are compared.
class CValueForm {
public:
    CValueForm(const Kestrin::KTypeInfo &scalar, const SComparePolicy &policy, CLiteralTexts &literals);

    EComparedKind Kind() const { return m_kind; }
    /// Whether raw values that are the same are so in the form in which they are compared.
    bool operator==(const CValueForm &other) const;

    /// Writes elements into a row.
    void Write(std::span<const std::optional<std::uint64_t>> values, char *row) const;
    /// The same of levels, given as positions; `IChangeWalk::NoPosition` is none.
    void Write(std::span<const std::uint8_t> positions, char *row) const;
    /// Writes an integer as the levels of a vector, most significant one first. One that does not fit differs from all levels.
    void WriteAsLevels(std::optional<std::uint64_t> value, std::span<char> levels) const;

private:
    void ReadLiterals(const Kestrin::KTypeInfo &scalar, CLiteralTexts &literals);
    void WriteNumber(std::optional<std::uint64_t> value, char *element) const;
    long long IntegerOf(std::uint64_t value) const;

    EComparedKind m_kind = EComparedKind::Literal;
    SComparePolicy m_policy;
    bool m_isWide = false;                 // an integer of 64 bits
    char m_unknown;                        // a level without a value
    std::array<char, 256> m_levels;        // of each position
    std::vector<std::uint64_t> m_numbers;  // of each position, those of the literals
};

}  // namespace tesk
