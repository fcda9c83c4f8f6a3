#include "tools/play/typeargument.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <vector>

#include "base/ascii.h"
#include "platform/kestrin.h"
#include "settings/typetext.h"
#include "tools/commands/commands.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"

namespace {

// Indices of the predefined types.
constexpr int Bit = 0;
constexpr int StdLogic = 1;
constexpr int StdUlogic = 2;
constexpr int Real = 4;
constexpr int Character = 5;

struct SNamedType {
    const char *name;
    int type;
};

struct SNamedInteger {
    const char *name;
    TArrayRange range;
};

struct SNamedVector {
    const char *name;
    const char *writtenName;
    int elementType;
};

constexpr std::array<SNamedType, 5> Scalars = {{
    {"bit", Bit},
    {"std_logic", StdLogic},
    {"std_ulogic", StdUlogic},
    {"real", Real},
    {"character", Character},
}};

constexpr int Largest = std::numeric_limits<int>::max();
constexpr std::array<SNamedInteger, 3> Integers = {{
    {"integer", {std::numeric_limits<int>::min(), Largest}},
    {"natural", {0, Largest}},
    {"positive", {1, Largest}},
}};

// The importers know an unsigned vector by its name in capitals.
constexpr std::array<SNamedVector, 6> Vectors = {{
    {"bit_vector", "bit_vector", Bit},
    {"std_logic_vector", "std_logic_vector", StdLogic},
    {"std_ulogic_vector", "std_ulogic_vector", StdUlogic},
    {"signed", "SIGNED", StdLogic},
    {"unsigned", "UNSIGNED", StdLogic},
    {"string", "string", Character},
}};

constexpr const char *Boolean = "e#7#booleans2 false true ";

const char *const WhatWouldDo =
    "use bit, boolean, character, integer, natural, positive, real, std_logic, std_ulogic, a vector such as "
    "std_logic_vector(7 downto 0), or a whole type description such as e#3#bitc2 01";

// The text of a writer of type descriptions, asked for its size first.
template <class TWriter>
std::string Written(TWriter write)
{
    unsigned size = 0;
    write(nullptr, &size);
    std::string text(size, 0);
    write(text.data(), &size);
    text.pop_back();  // the terminator
    return text;
}

std::string StdType(int index)
{
    return Written([=](char *buffer, unsigned *size) { return CreateStdTypeInfo(index, buffer, size); });
}

std::string VectorType(const SNamedVector &vector, TArrayRange range)
{
    const std::string element = StdType(vector.elementType);
    return Written([&](char *buffer, unsigned *size) {
        return CreateArrayTypeInfo(vector.writtenName, &range, 1, element.c_str(), buffer, size);
    });
}

std::string IntegerType(const std::string &name, TArrayRange range)
{
    return "i#" + std::to_string(name.size()) + "#" + name + "ric" + (range.left <= range.right ? 't' : 'd') +
           std::to_string(range.left) + " " + std::to_string(range.right);
}

bool IsWordPart(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-' || c == '+';
}

// Words in lower case, and any other character by itself.
std::vector<std::string> Tokens(const std::string &text)
{
    std::vector<std::string> tokens;
    bool isInWord = false;
    for (const char c : text) {
        if (!IsWordPart(c) || !isInWord)
            tokens.emplace_back();
        isInWord = IsWordPart(c);
        if (tesk::IsSpace(c))
            tokens.pop_back();
        else
            tokens.back() += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return tokens;
}

template <class TTable>
const typename TTable::value_type *Find(const TTable &table, const std::string &name)
{
    const auto found = std::ranges::find(table, name, [](const auto &entry) { return std::string(entry.name); });
    return found != table.end() ? &*found : nullptr;
}

std::vector<std::string> TypeNames()
{
    std::vector<std::string> names = {"boolean"};
    const auto add = [&](const auto &table) {
        for (const auto &entry : table)
            names.emplace_back(entry.name);
    };
    add(Scalars);
    add(Integers);
    add(Vectors);
    return names;
}

// Reads a type that is given by its name.
class CTypeNameReader {
public:
    explicit CTypeNameReader(const std::string &text) : m_text(text), m_tokens(Tokens(text)) {}

    std::string Read();

private:
    [[noreturn]] void Refuse(const std::string &why) const { throw CRefusal("type " + Quote(m_text) + ": " + why); }
    std::string Take();
    bool Take(const char *token);
    std::string ReadNamed(const std::string &name);
    std::string ReadVector(const SNamedVector &vector);
    std::string ReadInteger(const SNamedInteger &integer);
    TArrayRange ReadRange();
    int ReadBound();

    const std::string &m_text;
    const std::vector<std::string> m_tokens;
    std::size_t m_next = 0;
};

std::string CTypeNameReader::Read()
{
    std::string type = ReadNamed(Take());
    if (m_next < m_tokens.size())
        Refuse(Quote(m_tokens[m_next]) + " is too much; " + WhatWouldDo);
    return type;
}

// The next word or character, empty at the end.
std::string CTypeNameReader::Take()
{
    return m_next < m_tokens.size() ? m_tokens[m_next++] : std::string();
}

bool CTypeNameReader::Take(const char *token)
{
    if (m_next == m_tokens.size() || m_tokens[m_next] != token)
        return false;
    ++m_next;
    return true;
}

std::string CTypeNameReader::ReadNamed(const std::string &name)
{
    if (name == "boolean")
        return Boolean;
    if (const SNamedType *scalar = Find(Scalars, name))
        return StdType(scalar->type);
    if (const SNamedInteger *integer = Find(Integers, name))
        return ReadInteger(*integer);
    if (const SNamedVector *vector = Find(Vectors, name))
        return ReadVector(*vector);
    Refuse("no name of a type and no type description that can be read" + tesk::DidYouMean(name, TypeNames()) + "; " +
           WhatWouldDo);
}

// ( <range> )
std::string CTypeNameReader::ReadVector(const SNamedVector &vector)
{
    const std::string wanted = std::string("write ") + vector.name + "(7 downto 0)";
    if (!Take("("))
        Refuse("which elements does it have? " + wanted);
    const TArrayRange range = ReadRange();
    if (!Take(")"))
        Refuse("there is no \")\" behind the range; " + wanted);
    return VectorType(vector, range);
}

// range <range>, or nothing
std::string CTypeNameReader::ReadInteger(const SNamedInteger &integer)
{
    return IntegerType(integer.name, Take("range") ? ReadRange() : integer.range);
}

// <bound> to <bound>, or <bound> downto <bound>
TArrayRange CTypeNameReader::ReadRange()
{
    const int left = ReadBound();
    const std::string direction = Take();
    if (direction != "to" && direction != "downto")
        Refuse("a range is written 7 downto 0 or 0 to 7");
    const int right = ReadBound();
    const TArrayRange range = {left, right};
    if (direction == "to" ? left > right : left < right)
        Refuse("the range " + std::to_string(left) + " " + direction + " " + std::to_string(right) +
               " is empty; turn its direction or its bounds round");
    return range;
}

int CTypeNameReader::ReadBound()
{
    const std::string word = Take();
    int bound = 0;
    const std::from_chars_result result = std::from_chars(word.data(), word.data() + word.size(), bound);
    if (word.empty() || result.ec != std::errc() || result.ptr != word.data() + word.size())
        Refuse(Quote(word) + " is no bound of a range; use a whole number from -2147483648 to 2147483647");
    return bound;
}

}  // namespace

std::string ReadTypeArgument(const std::string &text)
{
    if (Kestrin::KTypeInfo::CheckTypeInfo(text.c_str()))
        return text;
    return CTypeNameReader(text).Read();
}
