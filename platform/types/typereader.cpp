#include "platform/types/typereader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/extendedid.h"

namespace Kestrin {

namespace {

constexpr int DeepestNesting = 64;

// Each rule takes its text off the front of `rest` and answers whether it was there.

bool Take(std::string_view &rest, char c)
{
    if (rest.empty() || rest.front() != c)
        return false;
    rest.remove_prefix(1);
    return true;
}

// One of two letters: `chosen` tells whether it was the second.
bool TakeEither(std::string_view &rest, char first, char second, bool &chosen)
{
    chosen = Take(rest, second);
    return chosen || Take(rest, first);
}

std::string_view TakeBytes(std::string_view &rest, std::size_t count)
{
    const std::string_view bytes = rest.substr(0, count);
    rest.remove_prefix(bytes.size());
    return bytes;
}

// A decimal number; one that T cannot hold is none.
template <class T>
bool TakeNumber(std::string_view &rest, T &number)
{
    const char *end = rest.data() + rest.size();
    const std::from_chars_result result = std::from_chars(rest.data(), end, number);
    if (result.ec != std::errc())
        return false;
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(number))  // "inf" and "nan"
            return false;
    }
    rest.remove_prefix(static_cast<std::size_t>(result.ptr - rest.data()));
    return true;
}

// <word> up to a blank, which is taken too.
bool TakeWord(std::string_view &rest, std::string_view &word)
{
    const std::size_t size = rest.find(' ');
    if (size == std::string_view::npos)
        return false;
    word = TakeBytes(rest, size);
    return Take(rest, ' ');
}

// #<len>#<name>
bool TakeCountedName(std::string_view &rest, std::string &name)
{
    std::size_t size = 0;
    if (!Take(rest, '#') || !TakeNumber(rest, size) || !Take(rest, '#') || size > rest.size())
        return false;
    name = TakeBytes(rest, size);
    return true;
}

// Bytes of the literal in front of the next separating blank. One that begins with a quote is a character with the
// character behind it, which may itself be a blank: "' " with or without a closing quote.
std::size_t LiteralSize(std::string_view rest)
{
    const bool isBlank = rest.substr(0, 3) == "'  " || rest.substr(0, 3) == "' '";
    return rest.find(' ', isBlank ? 2 : 0);
}

bool TakeLiteral(std::string_view &rest, std::string_view &literal)
{
    const std::size_t size = LiteralSize(rest);
    if (size == std::string_view::npos)
        return false;
    literal = TakeBytes(rest, size);
    return Take(rest, ' ');
}

// A field's name and the blank behind it. Only a name in extended form holds blanks.
bool TakeFieldName(std::string_view &rest, std::string &name)
{
    const std::size_t size = tesk::ExtendedLength(rest);
    std::string_view word;
    if (size > 0 && size < rest.size() && rest[size] == ' ') {
        word = TakeBytes(rest, size);
        rest.remove_prefix(1);
    } else if (!TakeWord(rest, word)) {
        return false;
    }
    name = word;
    return true;
}

// r<kind><mode><direction><left> <right>
template <class T>
bool TakeRange(std::string_view &rest, char kind, TTypeRange<T> &range)
{
    bool unconstrained = false;
    if (!Take(rest, 'r') || !Take(rest, kind) || !TakeEither(rest, 'c', 'u', unconstrained) ||
        !TakeEither(rest, 't', 'd', range.downto))
        return false;
    range.constrained = !unconstrained;
    return TakeNumber(rest, range.left) && Take(rest, ' ') && TakeNumber(rest, range.right);
}

}  // namespace

/// Reads one description after the other off the front of a text.
class CTypeReader {
public:
    explicit CTypeReader(std::string_view text) : m_rest(text) {}

    /// One description and all inside it. @param depth  number of arrays and records around it
    /// @return null if there is none
    std::shared_ptr<STypeDescription> Read(int depth);
    bool IsAtEnd() const { return m_rest.empty(); }

private:
    bool ReadKind(STypeDescription &type, int depth);
    bool ReadEnumeration(STypeDescription &type);
    bool ReadCharacters(STypeDescription &type);
    bool ReadWords(STypeDescription &type);
    bool ReadInteger(STypeDescription &type);
    bool ReadReal(STypeDescription &type);
    bool ReadPhysical(STypeDescription &type);
    bool ReadArray(STypeDescription &type, int depth);
    bool ReadRecord(STypeDescription &type, int depth);
    std::optional<KTypeInfo> ReadInner(int depth);

    std::string_view m_rest;
};

std::shared_ptr<STypeDescription> CTypeReader::Read(int depth)
{
    if (depth > DeepestNesting)
        return nullptr;
    const std::string_view start = m_rest;
    auto type = std::make_shared<STypeDescription>();
    type->isVerilog = Take(m_rest, 'v');
    type->isSignedVerilog = type->isVerilog && Take(m_rest, 's');
    if (!ReadKind(*type, depth))
        return nullptr;
    type->text = start.substr(0, start.size() - m_rest.size());
    for (std::string_view &literal : type->literals) {
        const auto place = static_cast<std::size_t>(literal.data() - start.data());
        literal = std::string_view(type->text).substr(place, literal.size());
    }
    return type;
}

bool CTypeReader::ReadKind(STypeDescription &type, int depth)
{
    if (Take(m_rest, 'e'))
        return ReadEnumeration(type);
    if (Take(m_rest, 'i'))
        return ReadInteger(type);
    if (Take(m_rest, 'f'))
        return ReadReal(type);
    if (Take(m_rest, 'p'))
        return ReadPhysical(type);
    if (Take(m_rest, 'a'))
        return ReadArray(type, depth);
    return Take(m_rest, 'r') && ReadRecord(type, depth);
}

// e#<len>#<name> or, short, e<name> and a blank; then the literals.
bool CTypeReader::ReadEnumeration(STypeDescription &type)
{
    type.kind = ETypeKind::Enumeration;
    if (!m_rest.empty() && m_rest.front() != '#') {
        std::string_view name;
        if (!TakeWord(m_rest, name) || name.empty())
            return false;
        type.identifier = name;
    } else if (!TakeCountedName(m_rest, type.identifier)) {
        return false;
    }
    bool areWords = false;
    if (!TakeEither(m_rest, 'c', 's', areWords) || !(areWords ? ReadWords(type) : ReadCharacters(type)))
        return false;
    type.hasOnlyCharacters =
        std::ranges::all_of(type.literals, [](std::string_view literal) { return literal.size() == 1; });
    return true;
}

// <count> <characters>
bool CTypeReader::ReadCharacters(STypeDescription &type)
{
    std::size_t count = 0;
    if (!TakeNumber(m_rest, count) || !Take(m_rest, ' ') || count > m_rest.size())
        return false;
    for (std::size_t i = 0; i < count; ++i)
        type.literals.push_back(TakeBytes(m_rest, 1));
    return true;
}

// <count> <literal> ... <literal> and a blank
bool CTypeReader::ReadWords(STypeDescription &type)
{
    std::size_t count = 0;
    if (!TakeNumber(m_rest, count) || !Take(m_rest, ' '))
        return false;
    for (std::size_t i = 0; i < count; ++i)
        if (!TakeLiteral(m_rest, type.literals.emplace_back()))
            return false;
    return true;
}

// A value has 4 bytes, and so have the bounds.
bool CTypeReader::ReadInteger(STypeDescription &type)
{
    type.kind = ETypeKind::Integer;
    TTypeRange<std::int32_t> range;
    if (!TakeCountedName(m_rest, type.identifier) || !TakeRange(m_rest, 'i', range))
        return false;
    type.range = {range.constrained, range.downto, range.left, range.right};
    return true;
}

bool CTypeReader::ReadReal(STypeDescription &type)
{
    type.kind = ETypeKind::Real;
    return TakeCountedName(m_rest, type.identifier) && TakeRange(m_rest, 'r', type.realRange);
}

bool CTypeReader::ReadPhysical(STypeDescription &type)
{
    type.kind = ETypeKind::Physical;
    return TakeCountedName(m_rest, type.identifier) && TakeRange(m_rest, 'i', type.range);
}

// #<len>#<name><dimensions> <ranges> <element>
bool CTypeReader::ReadArray(STypeDescription &type, int depth)
{
    type.kind = ETypeKind::Array;
    unsigned count = 0;
    if (!TakeCountedName(m_rest, type.identifier) || !TakeNumber(m_rest, count) || !Take(m_rest, ' '))
        return false;
    for (unsigned i = 0; i < count; ++i)
        if ((i > 0 && !Take(m_rest, ' ')) || !TakeRange(m_rest, 'i', type.dimensions.emplace_back()))
            return false;
    if (!Take(m_rest, ' '))
        return false;
    type.element = ReadInner(depth);
    return type.element.has_value();
}

// #<len>#<name><count> <field> <field> ...
bool CTypeReader::ReadRecord(STypeDescription &type, int depth)
{
    type.kind = ETypeKind::Record;
    unsigned count = 0;
    if (!TakeCountedName(m_rest, type.identifier) || !TakeNumber(m_rest, count) || !Take(m_rest, ' '))
        return false;
    for (unsigned i = 0; i < count; ++i) {
        std::string name;
        if ((i > 0 && !Take(m_rest, ' ')) || !TakeFieldName(m_rest, name))
            return false;
        const std::optional<KTypeInfo> field = ReadInner(depth);
        if (!field)
            return false;
        type.fields.push_back({std::move(name), *field});
    }
    return true;
}

std::optional<KTypeInfo> CTypeReader::ReadInner(int depth)
{
    const std::shared_ptr<STypeDescription> type = Read(depth + 1);
    if (type == nullptr)
        return std::nullopt;
    return KTypeInfo(type);
}

std::shared_ptr<const STypeDescription> ReadTypeDescription(const char *text)
{
    const std::string_view whole = text != nullptr ? text : "";
    CTypeReader reader(whole);
    std::shared_ptr<STypeDescription> type = reader.Read(0);
    if (type != nullptr && reader.IsAtEnd())
        return type;
    type = std::make_shared<STypeDescription>();
    type->text = whole;
    return type;
}

}  // namespace Kestrin
