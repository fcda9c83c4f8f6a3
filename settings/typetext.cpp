#include "settings/typetext.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iterator>
#include <limits>
#include <new>
#include <span>
#include <string>
#include <string_view>

#include "platform/types/dumptypes.h"

namespace {

constexpr long InvalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr std::size_t LongestNameWithRanges = 259;

// -- Owned texts

// @return null for none, and when memory runs out
char *Copy(const char *text)
{
    if (text == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    char *copy = new (std::nothrow) char[size];
    if (copy != nullptr)
        std::memcpy(copy, text, size);
    return copy;
}

void Assign(char *&owned, const char *text)
{
    if (owned != nullptr && text != nullptr && std::strlen(text) <= std::strlen(owned)) {
        std::memmove(owned, text, std::strlen(text) + 1);  // it may be a part of the old text
        return;
    }
    char *copy = Copy(text);
    delete[] owned;
    owned = copy;
}

// -- Writing

// The rule of a caller's buffer.
long HandOut(std::string_view text, char *buffer, unsigned *size)
{
    if (text.size() >= std::numeric_limits<unsigned>::max())
        return InvalidArgument;
    const unsigned needed = static_cast<unsigned>(text.size()) + 1;
    if (buffer == nullptr) {
        *size = needed;
        return 0;
    }
    if (needed > *size)
        return InvalidArgument;
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = 0;
    return 0;
}

// <kind>#<len>#<name>
std::string Begin(char kind, std::string_view name)
{
    return kind + ("#" + std::to_string(name.size()) + "#").append(name);
}

// Deliberate: equal bounds go down.
bool IsUpward(const TArrayRange &range)
{
    return range.left < range.right;
}

std::string NameWithRanges(const char *name, const TArrayRange *ranges, unsigned count)
{
    std::string text = std::string(name) + "(";
    for (unsigned i = 0; i < count && text.size() <= LongestNameWithRanges; ++i) {
        text += i > 0 ? "," : "";
        text += std::to_string(ranges[i].left) + (IsUpward(ranges[i]) ? " to " : " downto ") +
                std::to_string(ranges[i].right);
    }
    return text + ")";
}

std::string RangeList(const TArrayRange *ranges, unsigned count)
{
    std::string text;
    for (unsigned i = 0; i < count; ++i) {
        text += i > 0 ? " " : "";
        text += std::string("ric") + (IsUpward(ranges[i]) ? 't' : 'd') + std::to_string(ranges[i].left) + " " +
                std::to_string(ranges[i].right);
    }
    return text;
}

// -- Predefined types

// The literals of the type "character", in the order of their positions: names for the codes 0 to 31, ...
constexpr std::string_view ControlNames[] = {
    "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "HT", "LF",  "VT",  "FF",  "CR",  "SO",  "SI",
    "DLE", "DC1", "DC2", "DC3", "DC4", "NAK", "SYN", "ETB", "CAN", "EM", "SUB", "ESC", "FSP", "GSP", "RSP", "USP"};
// ... and these bytes for the last 96. Deliberate: they do not rise, and some are no letters.
constexpr std::string_view UpperCharacters = "\xE1\xED\xF3\xFA\xF1\xD1\xAA\xBA\xBF\xA8\xAC\xBD\xBC\xA1\xAB\xAF"
                                             "\x97\x98\x99\xFE\xB3\xB4\xB5\xB8\xB9\xA0\xA6\xA9\xAD\xBB\xBE\xC0"
                                             "\xC1\xC2\xC3\xC8\xFD\xCA\xCB\xCC\xAE\xD0\xD7\xDD\xDE\xCD\xF0\xCE"
                                             "\xCF\xD2\xD3\xD4\xD5\xD8\xD9\xDA\xDB\xE3\xF5\x9A\x9B\x9C\x9D\x9E"
                                             "\x80\xDF\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8D\x8E\x8F"
                                             "\x14\xB1\xF8\x7F\x9F\x15\xF7\x95\xB0\xB7\x94\x93\x92\xB2\x91\x90";
static_assert(UpperCharacters.size() == 96);

std::string CharacterTypeText()
{
    std::string text = "e#9#characters256 ";
    for (std::string_view name : ControlNames)
        text.append(name).append(" ");
    for (char code = ' '; code <= '~'; ++code)
        text.append("'").append(1, code).append(" ");
    text += "DEL ";
    for (int code = 128; code < 160; ++code)
        text += "C" + std::to_string(code) + " ";
    for (char letter : UpperCharacters)
        text.append("'").append(1, letter).append(" ");
    return text;
}

constexpr int CharacterType = 5;
// Deliberate: the vectors name their elements in the short form.
constexpr std::string_view StdTypes[] = {
    "e#3#bitc2 01",
    Kestrin::StdLogicTypeText,
    "e#10#std_ulogicc9 UX01ZWLH-",
    "i#7#integerrict-2147483648 2147483647",
    Kestrin::RealTypeText,
    {},  // character
    "a#10#bit_vector1 riut0 2147483647 eBIT c2 01",
    "a#16#std_logic_vector1 riut0 2147483647 estd_logic c9 UX01ZWLH-",
    "a#17#std_ulogic_vector1 riut0 2147483647 estd_ulogic c9 UX01ZWLH-",
};

}  // namespace

TEnumValue::TEnumValue(const char *text) : m_text(Copy(text)) {}

TEnumValue::TEnumValue(const TEnumValue &other) : m_text(Copy(other.m_text)) {}

TEnumValue &TEnumValue::operator=(const TEnumValue &other) = default;

TEnumValue::~TEnumValue()
{
    delete[] m_text;
}

void TEnumValue::Set(const char *text)
{
    Assign(m_text, text);
}

int TEnumValue::GetLen() const
{
    return m_text != nullptr ? static_cast<int>(std::strlen(m_text)) : 0;
}

TRecordField::TRecordField(const char *name, const char *type) : m_name(Copy(name)), m_type(Copy(type)) {}

TRecordField::TRecordField(const TRecordField &other) : TRecordField(other.m_name, other.m_type) {}

TRecordField &TRecordField::operator=(const TRecordField &other) = default;

TRecordField::~TRecordField()
{
    delete[] m_name;
    delete[] m_type;
}

void TRecordField::SetFieldName(const char *text)
{
    Assign(m_name, text);
}

void TRecordField::SetTypeInfo(const char *text)
{
    Assign(m_type, text);
}

void TRecordField::SetBoth(const char *name, const char *type)
{
    SetFieldName(name);
    SetTypeInfo(type);
}

long CreateStdTypeInfo(int index, char *buffer, unsigned *size)
try {
    if (size == nullptr || index < 0 || index >= static_cast<int>(std::size(StdTypes)))
        return InvalidArgument;
    if (index == CharacterType)
        return HandOut(CharacterTypeText(), buffer, size);
    return HandOut(StdTypes[index], buffer, size);
} catch (const std::exception &) {  // out of memory
    return InvalidArgument;
}

long CreateArrayTypeInfo(const char *name, TArrayRange *ranges, unsigned count, const char *elementType, char *buffer,
                         unsigned *size)
try {
    if (name == nullptr || ranges == nullptr || elementType == nullptr || size == nullptr)
        return InvalidArgument;
    const std::string fullName = NameWithRanges(name, ranges, count);
    if (fullName.size() > LongestNameWithRanges)
        return InvalidArgument;
    std::string text = Begin('a', fullName) + std::to_string(count) + " ";
    text.append(RangeList(ranges, count)).append(" ").append(elementType);
    return HandOut(text, buffer, size);
} catch (const std::exception &) {
    return InvalidArgument;
}

long CreateRecordTypeInfo(const char *name, TRecordField *fields, unsigned count, char *buffer, unsigned *size)
try {
    if (name == nullptr || fields == nullptr || size == nullptr)
        return InvalidArgument;
    std::string text = Begin('r', name) + std::to_string(count) + " ";
    for (unsigned i = 0; i < count; ++i) {
        if (fields[i].GetFieldName() == nullptr || fields[i].GetTypeInfo() == nullptr)
            return InvalidArgument;
        text.append(i > 0 ? " " : "").append(fields[i].GetFieldName()).append(" ").append(fields[i].GetTypeInfo());
    }
    return HandOut(text, buffer, size);
} catch (const std::exception &) {
    return InvalidArgument;
}

long CreateEnumTypeInfo(const char *name, TEnumValue *values, unsigned count, char *buffer, unsigned *size)
try {
    if (name == nullptr || values == nullptr || size == nullptr)
        return InvalidArgument;
    const std::span<const TEnumValue> literals(values, count);
    if (!std::ranges::all_of(literals, &TEnumValue::Get))
        return InvalidArgument;
    const bool areWords = std::ranges::any_of(
        literals, [](int length) { return length != 1; }, &TEnumValue::GetLen);
    std::string text = Begin('e', name) + (areWords ? 's' : 'c') + std::to_string(count) + " ";
    for (const TEnumValue &literal : literals)
        text.append(literal.Get()).append(areWords ? " " : "");
    return HandOut(text, buffer, size);
} catch (const std::exception &) {
    return InvalidArgument;
}
