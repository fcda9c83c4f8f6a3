// SimpleString::CStr, the reference-counted, copy-on-write byte string of the library.
#pragma once

#include <cstdarg>

#include "base/export.h"

namespace SimpleString {

/// A byte string. Copying costs one increment: copies share a block, and a block with more than one owner is
/// never written to. Counts are plain integers, so a string and its copies belong to one thread.
///
/// The object is one pointer to the first character. Directly in front of the text stand three 32-bit signed
/// words: the length in bytes with the terminating zero, the number of owners, and the capacity in bytes with
/// the terminating zero. All empty strings share one block that is never released, unless an operation below
/// says that it leaves an empty text in a block of its own.
///
/// Running out of memory raises `std::bad_alloc`; nothing else fails.
class TESK_API CStr {
public:
    /// Shares the empty block.
    CStr();
    /// Copies `count` bytes, zeros among them included, or with the default `count` the whole zero-terminated
    /// text. A null `text` or no bytes share the empty block.
    CStr(const char *text, unsigned count = 0xFFFFFFFF);
    /// `count` times `fill`; a `count` below 1 shares the empty block.
    CStr(char fill, int count);
    /// The concatenation of two pieces in one allocation. A negative length counts as 0.
    CStr(int leftLength, const char *left, int rightLength, const char *right);
    CStr(const CStr &other);
    ~CStr();

    CStr &operator=(const CStr &other);
    /// Copies the text into the block, a new one only if this one is shared or too small. A null or empty
    /// `text` shares the empty block.
    CStr &operator=(const char *text);

    CStr &operator+=(const CStr &other);
    CStr &operator+=(const char *text);
    CStr &operator+=(char c);

    /// Makes the block private with room for `wanted` bytes and one more. A private block with room for `wanted`
    /// bytes stays as it is; a capacity never shrinks, so `Reserve(-1)` only unshares.
    void Reserve(int wanted);
    /// Shares the empty block; a string without text stays as it is.
    void Empty();
    /// Removes leading white space (`isspace` of the "C" locale). An empty rest stays in a block of its own.
    void TrimLeft();
    /// Removes trailing white space, as `TrimLeft`.
    void TrimRight();

    /// Replaces the text with a printf-style composition. "I64", "ll" and "q" mark 64-bit integers; `L`, `F` and
    /// `N` are skipped, so `%Lf` takes a double; `%S` and `%ls` take wide text, `%s`, `%hs` and `%hS` narrow text.
    /// The block gets room for an upper bound of the result, at least 130 bytes. @return true
    bool Format(const char *format, ...);
    /// The work of `Format`. `arguments` is not consumed.
    bool FormatV(const char *format, va_list arguments);

    /// The first `count` characters, none if negative. A `count` above the length shares the block.
    CStr Left(int count) const;
    /// The last `count` characters, none if negative. A `count` above the length shares the block.
    CStr Right(int count) const;
    /// From `first` to the end, nothing from the end on; a `first` below 1 shares the block.
    CStr Mid(int first) const;
    /// `count` characters from `first`, both brought into range first; the whole text shares the block.
    CStr Mid(int first, int count) const;

    /// Index of the first occurrence of `text`, or -1. An empty string finds nothing.
    int Find(const char *text) const;
    /// Compares byte by byte, unsigned: -1, 0 or 1. A null `text` is below every string with text.
    int Compare(const char *text) const;

    /// Replaces one character; unshares only if it really changes. An index outside the text changes nothing.
    void SetAt(int index, char c);
    /// Makes the block private with room for `minimum` characters and a zero and gives its text for writing until
    /// `ReleaseBuffer`. A `minimum` below 1 just gives the text, shared or not, for reading.
    char *GetBuffer(int minimum);
    /// Ends what `GetBuffer` began: unshares, sets the length, that of the zero-terminated text if -1, and writes
    /// the zero. The length is cut at the room there is.
    void ReleaseBuffer(int length = -1);

    /// The text, stable until the next change of this string.
    operator const char *() const { return m_text; }
    /// Number of bytes without the terminating zero.
    int GetLength() const;
    bool IsEmpty() const { return GetLength() == 0; }

private:
    TESK_LOCAL void Release();
    TESK_LOCAL void ShareEmptyBlock();
    TESK_LOCAL bool IsShared() const;
    TESK_LOCAL void Reallocate(int capacity);
    TESK_LOCAL void EnsureCapacity(int needed, int capacity);
    TESK_LOCAL void SetLength(int length);
    TESK_LOCAL void Append(const char *text, int count);

    char *m_text;
};

TESK_API CStr operator+(const CStr &left, const CStr &right);
TESK_API CStr operator+(const CStr &left, const char *right);
TESK_API CStr operator+(const char *left, const CStr &right);

}  // namespace SimpleString
