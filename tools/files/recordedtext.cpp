#include "tools/files/recordedtext.h"

#include <algorithm>
#include <array>

#include "base/bytes.h"
#include "platform/changes/changewalk.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;
using Kestrin::KTypeInfo;

constexpr std::uint64_t MostLiterals = 1 << 16;

const KTypeInfo &ScalarOf(const KTypeInfo &type)
{
    const KTypeInfo *element = type.GetArrayElementKTypeInfo();
    return element != nullptr ? *element : type;
}

// Whether each literal is one letter, so that those of a vector can stand in a row.
bool HasLetters(const KTypeInfo &type)
{
    if (KindOf(type) != ETypeKind::Enumeration)
        return false;
    for (std::uint64_t position = 0; position < MostLiterals; ++position) {
        const std::string literal = ScalarText(type, position);
        if (literal.size() != 1)
            return literal.empty() && position > 0;
    }
    return true;
}

}  // namespace

std::string ScalarText(const KTypeInfo &type, std::uint64_t value)
{
    std::array<unsigned char, 8> bytes{};
    StoreLittleEndian(value, bytes.data(), bytes.size());
    return type.GetValueString_OldFormat(bytes.data(), 0, 0, 0, false);
}

CRecordedText::CRecordedText(const KTypeInfo &type)
    : m_scalar(ScalarOf(type)), m_isArray(!type.IsScalar()),
      m_isEnumeration(KindOf(m_scalar) == ETypeKind::Enumeration), m_isRow(m_isArray && HasLetters(m_scalar))
{}

const std::string &CRecordedText::Literal(std::uint64_t position)
{
    if (position >= m_literals.size())
        m_literals.resize(position + 1);
    std::string &literal = m_literals[position];
    if (literal.empty())
        literal = ScalarText(m_scalar, position);
    return literal;
}

std::string CRecordedText::Scalar(std::uint64_t value)
{
    return m_isEnumeration && value < MostLiterals ? Literal(value) : ScalarText(m_scalar, value);
}

std::optional<std::string> CRecordedText::TextOfPositions(std::span<const std::uint8_t> positions)
{
    if (!m_isRow && m_isArray) {
        CElementValues values;
        for (const std::uint8_t position : positions)
            values.push_back(position != IChangeWalk::NoPosition ? std::optional<std::uint64_t>(position)
                                                                 : std::nullopt);
        return Text(values);
    }
    if (std::ranges::all_of(positions, [](std::uint8_t position) { return position == IChangeWalk::NoPosition; }))
        return std::nullopt;
    if (!m_isArray)
        return Literal(positions.front());
    std::string text;
    text.reserve(positions.size());
    for (const std::uint8_t position : positions)
        text += position != IChangeWalk::NoPosition ? Literal(position) : std::string("X");
    return text;
}

std::optional<std::string> CRecordedText::Text(const std::vector<std::optional<std::uint64_t>> &values)
{
    if (std::ranges::none_of(values, [](const auto &value) { return value.has_value(); }))
        return std::nullopt;
    if (!m_isArray)
        return Scalar(*values.front());
    std::string text;
    text.reserve(values.size());
    for (const auto &value : values) {
        if (!m_isRow)
            text += text.empty() ? '(' : ',';
        if (value)
            text += Scalar(*value);
        else
            text += 'X';
    }
    return m_isRow ? text : text + ')';
}

}  // namespace tesk
