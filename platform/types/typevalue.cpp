#include "platform/types/typevalue.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <unordered_map>

#include "base/bytes.h"

namespace Kestrin {

namespace {

constexpr std::size_t MostLiteralsInOneByte = 256;
constexpr std::size_t MostLiteralsInTwoBytes = 65536;

// The number that is the whole text.
template <class T>
std::optional<T> ReadNumber(std::string_view text)
{
    T number{};
    const char *end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return number;
}

// As "%g", with more than its six digits where they are needed to read the same number back.
std::string RealText(double value)
{
    constexpr int FewestDigits = 6;
    char buffer[32];
    std::string_view text;
    for (int digits = FewestDigits; digits <= std::numeric_limits<double>::max_digits10; ++digits) {
        const char *end =
            std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::general, digits).ptr;
        text = std::string_view(buffer, static_cast<std::size_t>(end - buffer));
        if (ReadNumber<double>(text) == value)
            break;
    }
    return std::string(text);
}

// Turns texts into values of one type. Literals are found through a table, so that long arrays of large enumerations
// stay cheap.
class CScalarReader {
public:
    explicit CScalarReader(const STypeDescription &type) : m_type(type), m_size(ScalarSize(type))
    {
        const std::size_t count = std::min(type.literals.size(), MostLiteralsInTwoBytes);
        for (std::size_t position = 0; position < count; ++position)
            m_positions.emplace(type.literals[position], position);
    }

    bool AppendBytes(std::string_view text, std::string &bytes) const
    {
        const std::optional<std::uint64_t> value = Read(text);
        if (value)
            tesk::AppendLittleEndian(*value, m_size, bytes);
        return value.has_value();
    }

private:
    std::optional<std::uint64_t> Read(std::string_view text) const
    {
        switch (m_type.kind) {
        case ETypeKind::Enumeration: return ReadLiteral(text);
        case ETypeKind::Integer: return ReadBits<std::int32_t, std::uint32_t>(text);
        case ETypeKind::Real: return ReadBits<double, std::uint64_t>(text);
        case ETypeKind::Physical: return ReadBits<std::int64_t, std::uint64_t>(text);
        default: return std::nullopt;
        }
    }

    std::optional<std::uint64_t> ReadLiteral(std::string_view text) const
    {
        const auto found = m_positions.find(text);
        if (found == m_positions.end())
            return std::nullopt;
        return found->second;
    }

    template <class T, class TBits>
    static std::optional<std::uint64_t> ReadBits(std::string_view text)
    {
        const std::optional<T> number = ReadNumber<T>(text);
        if (!number)
            return std::nullopt;
        return std::bit_cast<TBits>(*number);
    }

    const STypeDescription &m_type;
    const unsigned m_size;
    std::unordered_map<std::string_view, std::uint64_t> m_positions;
};

// Elements in a row, a character each.
bool ReadRow(const CScalarReader &reader, std::size_t count, std::string_view text, std::string &bytes)
{
    if (text.size() != count)
        return false;
    for (std::size_t i = 0; i < count; ++i)
        if (!reader.AppendBytes(text.substr(i, 1), bytes))
            return false;
    return true;
}

// Bytes of the element in front of the next comma. The character behind a quote may itself be one.
std::size_t ListElementSize(std::string_view rest)
{
    return std::min(rest.find(',', rest.starts_with('\'') ? 2 : 0), rest.size());
}

// (a,b,c)
bool ReadList(const CScalarReader &reader, std::size_t count, std::string_view text, std::string &bytes)
{
    if (text.size() < 2 || text.front() != '(' || text.back() != ')')
        return false;
    std::string_view rest = text.substr(1, text.size() - 2);
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) {
            if (!rest.starts_with(','))
                return false;
            rest.remove_prefix(1);
        }
        const std::size_t size = ListElementSize(rest);
        if (!reader.AppendBytes(rest.substr(0, size), bytes))
            return false;
        rest.remove_prefix(size);
    }
    return rest.empty();
}

}  // namespace

bool IsScalar(const STypeDescription &type)
{
    return ScalarSize(type) > 0;
}

unsigned ScalarSize(const STypeDescription &type)
{
    switch (type.kind) {
    case ETypeKind::Enumeration: return type.literals.size() > MostLiteralsInOneByte ? 2 : 1;
    case ETypeKind::Integer: return 4;
    case ETypeKind::Real:
    case ETypeKind::Physical: return 8;
    default: return 0;
    }
}

std::string ScalarText(const STypeDescription &type, const unsigned char *bytes)
{
    const std::uint64_t value = tesk::LoadLittleEndian(bytes, ScalarSize(type));
    switch (type.kind) {
    case ETypeKind::Enumeration:
        return value < type.literals.size() ? std::string(type.literals[value]) : std::string();
    case ETypeKind::Integer: return std::to_string(static_cast<std::int32_t>(value));
    case ETypeKind::Real: return RealText(std::bit_cast<double>(value));
    case ETypeKind::Physical: return std::to_string(static_cast<std::int64_t>(value));
    default: return {};
    }
}

std::string ArrayText(const STypeDescription &element, const unsigned char *bytes, std::size_t count)
{
    const bool isRow = element.hasOnlyCharacters;
    std::string text(isRow ? "" : "(");
    for (std::size_t i = 0; i < count; ++i) {
        const std::string elementText = ScalarText(element, bytes + i * ScalarSize(element));
        if (elementText.empty())
            return {};
        if (!isRow && i > 0)
            text += ',';
        text += elementText;
    }
    return isRow ? text : text + ')';
}

bool ScalarBytes(const STypeDescription &type, std::string_view text, std::string &bytes)
{
    return CScalarReader(type).AppendBytes(text, bytes);
}

bool ArrayBytes(const STypeDescription &element, std::size_t count, std::string_view text, std::string &bytes)
{
    const CScalarReader reader(element);
    return element.hasOnlyCharacters ? ReadRow(reader, count, text, bytes) : ReadList(reader, count, text, bytes);
}

}  // namespace Kestrin
