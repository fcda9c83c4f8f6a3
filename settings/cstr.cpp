#include "settings/cstr.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "base/ascii.h"
#include "settings/text/textformat.h"

namespace SimpleString {

namespace {

// The words in front of the text.
struct SHeader {
    std::int32_t length;      // bytes with the terminating zero; an empty text has 1
    std::int32_t references;  // strings that share the block
    std::int32_t capacity;    // bytes for text, the terminating zero included
};
static_assert(sizeof(SHeader) == 12, "callers read the three words in front of the text");

constexpr unsigned WholeText = 0xFFFFFFFF;

SHeader &Header(char *text)
{
    return *reinterpret_cast<SHeader *>(text - sizeof(SHeader));
}

// A block of its own with one reference and no text yet.
char *NewBlock(int capacity)
{
    char *block = static_cast<char *>(::operator new[](sizeof(SHeader) + static_cast<std::size_t>(capacity)));
    new (block) SHeader{1, 1, capacity};
    char *text = block + sizeof(SHeader);
    *text = 0;
    return text;
}

// Its first reference is never given back, so it lives until the process ends.
char *EmptyBlock()
{
    static char *const block = NewBlock(1);
    return block;
}

// Lengths are 32-bit words; what does not fit cannot be stored.
int CheckedLength(std::size_t length)
{
    constexpr std::size_t Limit = INT_MAX - sizeof(SHeader) - 2;
    if (length > Limit)
        throw std::bad_alloc();
    return static_cast<int>(length);
}

}  // namespace

CStr::CStr() : m_text(EmptyBlock())
{
    ++Header(m_text).references;
}

CStr::CStr(const char *text, unsigned count) : CStr()
{
    if (text == nullptr)
        return;
    const int length = CheckedLength(count == WholeText ? std::strlen(text) : count);
    if (length == 0)
        return;
    char *block = NewBlock(length + 1);
    Release();
    m_text = block;
    std::memcpy(m_text, text, static_cast<std::size_t>(length));
    SetLength(length);
}

CStr::CStr(char fill, int count) : CStr()
{
    if (count < 1)
        return;
    char *block = NewBlock(CheckedLength(static_cast<std::size_t>(count)) + 1);
    Release();
    m_text = block;
    std::memset(m_text, fill, static_cast<std::size_t>(count));
    SetLength(count);
}

CStr::CStr(int leftLength, const char *left, int rightLength, const char *right) : CStr()
{
    const std::size_t leftBytes = left != nullptr ? static_cast<std::size_t>(std::max(leftLength, 0)) : 0;
    const std::size_t rightBytes = right != nullptr ? static_cast<std::size_t>(std::max(rightLength, 0)) : 0;
    const int total = CheckedLength(leftBytes + rightBytes);
    if (total < 1)
        return;
    char *block = NewBlock(total + 1);
    Release();
    m_text = block;
    if (leftBytes != 0)
        std::memcpy(m_text, left, leftBytes);
    if (rightBytes != 0)
        std::memcpy(m_text + leftBytes, right, rightBytes);
    SetLength(total);
}

CStr::CStr(const CStr &other) : m_text(other.m_text)
{
    ++Header(m_text).references;
}

CStr::~CStr()
{
    Release();
}

CStr &CStr::operator=(const CStr &other)
{
    char *shared = other.m_text;
    ++Header(shared).references;  // first, so that assigning a string to itself is safe
    Release();
    m_text = shared;
    return *this;
}

CStr &CStr::operator=(const char *text)
{
    if (text == nullptr || *text == 0) {
        Release();
        ShareEmptyBlock();
        return *this;
    }
    const int length = CheckedLength(std::strlen(text));
    EnsureCapacity(length + 1, length + 1);
    std::memmove(m_text, text, static_cast<std::size_t>(length));  // `text` may be a part of this very text
    SetLength(length);
    return *this;
}

CStr &CStr::operator+=(const CStr &other)
{
    Append(other.m_text, other.GetLength());
    return *this;
}

CStr &CStr::operator+=(const char *text)
{
    if (text != nullptr)
        Append(text, CheckedLength(std::strlen(text)));
    return *this;
}

CStr &CStr::operator+=(char c)
{
    const int length = CheckedLength(static_cast<std::size_t>(GetLength()) + 1);
    EnsureCapacity(length + 1, length + 1);
    m_text[length - 1] = c;
    SetLength(length);
    return *this;
}

void CStr::Reserve(int wanted)
{
    if (!IsShared() && wanted <= Header(m_text).capacity)
        return;
    Reallocate(wanted < 0 ? 0 : CheckedLength(static_cast<std::size_t>(wanted)) + 1);
}

void CStr::Empty()
{
    if (IsEmpty())
        return;
    Release();
    ShareEmptyBlock();
}

void CStr::TrimLeft()
{
    const int length = GetLength();
    const int white = static_cast<int>(std::find_if_not(m_text, m_text + length, tesk::IsSpace) - m_text);
    if (white == 0)
        return;
    Reserve(-1);
    std::memmove(m_text, m_text + white, static_cast<std::size_t>(length - white));
    SetLength(length - white);
}

void CStr::TrimRight()
{
    int length = GetLength();
    while (length > 0 && tesk::IsSpace(m_text[length - 1]))
        --length;
    if (length == GetLength())
        return;
    Reserve(-1);
    SetLength(length);
}

bool CStr::Format(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
    return true;
}

bool CStr::FormatV(const char *format, va_list arguments)
{
    // Composed aside first: an argument may point into this very text.
    const tesk::SFormattedText formatted = tesk::FormatText(format, arguments);
    const int bound = CheckedLength(static_cast<std::size_t>(formatted.bound));
    const int length = CheckedLength(std::strlen(formatted.text.c_str()));
    if (IsShared() || Header(m_text).capacity < bound + 1)
        Reserve(bound + 1);
    EnsureCapacity(length + 1, length + 1);  // the bound does not cover every argument
    std::memcpy(m_text, formatted.text.c_str(), static_cast<std::size_t>(length));
    SetLength(length);
    return true;
}

CStr CStr::Left(int count) const
{
    if (count > GetLength())
        return *this;
    return CStr(m_text, static_cast<unsigned>(std::max(count, 0)));
}

CStr CStr::Right(int count) const
{
    if (count > GetLength())
        return *this;
    count = std::max(count, 0);
    return CStr(m_text + (GetLength() - count), static_cast<unsigned>(count));
}

CStr CStr::Mid(int first) const
{
    if (first >= GetLength())
        return CStr();
    if (first < 1)
        return *this;
    return CStr(m_text + first, static_cast<unsigned>(GetLength() - first));
}

CStr CStr::Mid(int first, int count) const
{
    first = std::clamp(first, 0, GetLength());
    count = std::clamp(count, 0, GetLength() - first);
    if (count == GetLength())
        return *this;
    return CStr(m_text + first, static_cast<unsigned>(count));
}

int CStr::Find(const char *text) const
{
    if (IsEmpty() || text == nullptr)
        return -1;
    const char *found = std::strstr(m_text, text);
    return found == nullptr ? -1 : static_cast<int>(found - m_text);
}

int CStr::Compare(const char *text) const
{
    if (text == nullptr)
        return IsEmpty() ? 0 : 1;
    const int order = std::strcmp(m_text, text);
    return (order > 0) - (order < 0);
}

void CStr::SetAt(int index, char c)
{
    if (index < 0 || index >= GetLength() || m_text[index] == c)
        return;
    Reserve(-1);
    m_text[index] = c;
}

char *CStr::GetBuffer(int minimum)
{
    if (minimum < 1)
        return m_text;
    const int capacity = CheckedLength(static_cast<std::size_t>(minimum)) + 1;
    EnsureCapacity(capacity, capacity);
    return m_text;
}

void CStr::ReleaseBuffer(int length)
{
    Reserve(-1);
    const int room = Header(m_text).capacity - 1;
    if (length < 0)
        length = static_cast<int>(strnlen(m_text, static_cast<std::size_t>(room)));
    SetLength(std::min(length, room));
}

int CStr::GetLength() const
{
    return Header(m_text).length - 1;
}

// Gives back the reference; `m_text` must be set anew behind it.
void CStr::Release()
{
    if (--Header(m_text).references < 1)
        ::operator delete[](m_text - sizeof(SHeader));
}

void CStr::ShareEmptyBlock()
{
    m_text = EmptyBlock();
    ++Header(m_text).references;
}

bool CStr::IsShared() const
{
    return Header(m_text).references > 1;
}

// Moves the text to a block of its own whose capacity is at least the old one.
void CStr::Reallocate(int capacity)
{
    const SHeader old = Header(m_text);
    char *block = NewBlock(std::max(capacity, static_cast<int>(old.capacity)));
    std::memcpy(block, m_text, static_cast<std::size_t>(old.length));
    Header(block).length = old.length;
    Release();
    m_text = block;
}

// Makes the block private with at least `needed` bytes; a new block gets `capacity` bytes.
void CStr::EnsureCapacity(int needed, int capacity)
{
    if (IsShared() || Header(m_text).capacity < needed)
        Reallocate(capacity);
}

void CStr::SetLength(int length)
{
    Header(m_text).length = length + 1;
    m_text[length] = 0;
}

// `text` may be a part of this very text.
void CStr::Append(const char *text, int count)
{
    if (count == 0)
        return;
    const bool isOwn = text >= m_text && text < m_text + GetLength();
    const std::ptrdiff_t offset = isOwn ? text - m_text : 0;
    const int length = CheckedLength(static_cast<std::size_t>(GetLength()) + static_cast<std::size_t>(count));
    EnsureCapacity(length + 1, length + 2);
    if (isOwn)
        text = m_text + offset;
    std::memcpy(m_text + GetLength(), text, static_cast<std::size_t>(count));
    SetLength(length);
}

CStr operator+(const CStr &left, const CStr &right)
{
    return CStr(left.GetLength(), left, right.GetLength(), right);
}

CStr operator+(const CStr &left, const char *right)
{
    return left + CStr(right);
}

CStr operator+(const char *left, const CStr &right)
{
    return CStr(left) + right;
}

}  // namespace SimpleString
