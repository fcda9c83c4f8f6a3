// The values of recorded signals as texts.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/kestrin.h"

namespace tesk {

/// Writes the values of one signal of a file as `tesk play` shows them: the literals of an enumeration, numbers, the letters
/// of a vector in a row, "(a,b)" for any other array.
class CRecordedText {
public:
    /// @param type  of the signal
    explicit CRecordedText(const Kestrin::KTypeInfo &type);

    /// @param values  the raw value of each element; none of one that has no event yet, which shows as X
    /// @return nothing if no element has a value
    std::optional<std::string> Text(const std::vector<std::optional<std::uint64_t>> &values);

    /// The same of positions in an enumeration, as `IChangeWalk::GetPositions` gives them.
    std::optional<std::string> TextOfPositions(std::span<const std::uint8_t> positions);

private:
    std::string Scalar(std::uint64_t value);
    const std::string &Literal(std::uint64_t position);

    Kestrin::KTypeInfo m_scalar;
    bool m_isArray;
    bool m_isEnumeration;
    bool m_isRow;
    std::vector<std::string> m_literals;  // by position, those that were asked for
};

/// The text of one scalar value. @param value  raw: a position in an enumeration, an integer, or the bits of a double
std::string ScalarText(const Kestrin::KTypeInfo &type, std::uint64_t value);

}  // namespace tesk
