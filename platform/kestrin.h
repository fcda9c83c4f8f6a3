// Type descriptions: Kestrin::KTypeInfo, which takes the text that describes a signal type apart and turns values into
// text and back. The stand-alone implementation of the suite's type-description library.
#pragma once

#include <memory>
#include <string>

#include "base/export.h"

namespace Kestrin {

struct STypeDescription;

/// The kinds of types, as `KTypeInfo::GetKind` numbers them.
enum class ETypeKind { Invalid, Enumeration, Integer, Real, Array, Record, Physical };

/// A signal type, read from its description, for instance
///
///     e#9#std_logicc9 UX01ZWLH-                                          an enumeration
///     i#7#integerrict-2147483648 2147483647                              an integer; f a real, p a physical type
///     a#15#mem(7 downto 0)1 ricd7 0 e#3#bitc2 01                         an array
///     r#3#bus2 valid e#3#bitc2 01 data i#7#naturalrict0 2147483647       a record
///
/// An element may be written short, `eBIT c2 01`. A leading `v` marks a Verilog type and `vs` a signed one. Bounds of
/// integers and of array indices fit 32 bits, those of physical types 64 bits. Up to 64 arrays and records may lie
/// inside one another.
///
/// Objects are immutable and cheap: copies share what was read, and so do objects that are made from the same text one
/// after the other. Every pointer that an object hands out stays valid as long as the object or a copy of it lives.
class TESK_API KTypeInfo {
public:
    /// Reads a description. A text that `CheckTypeInfo` refuses gives an object of kind 0.
    explicit KTypeInfo(const char *text);
    KTypeInfo(const KTypeInfo &other) = default;
    KTypeInfo &operator=(const KTypeInfo &other) = default;

    /// @return whether `text` is a description as a whole, with nothing behind it. A null text is none.
    static bool CheckTypeInfo(const char *text);

    /// @return the number of an `ETypeKind`; `KindOf` gives it by name
    int GetKind() const;
    /// Whether it is an enumeration, an integer, a real or a physical type.
    bool IsScalar() const;
    /// Whether it is a scalar or a one-dimensional array of scalars. Only such a type has values here.
    bool IsSimple() const;
    /// Whether the description itself begins with `v`; the elements of a Verilog array answer for themselves.
    bool IsVerilog() const;
    /// A Verilog type is signed if it begins with `vs`; any other if it is an integer, or an array whose name begins
    /// with "signed" in any letter case.
    bool IsSigned() const;
    /// The text it was made from, readable or not; "" if that was null.
    const char *GetTypeInfoString() const;
    /// The name, such as "std_logic"; that of an array as it stands, with its ranges. "" of an invalid type.
    const char *GetTypeIdentifier() const;

    /// @return null if this is no array
    const KTypeInfo *GetArrayElementKTypeInfo() const;
    /// The description of the element as it stands inside this one. @return null if this is no array
    const char *GetArrayElementTypeInfo() const;
    /// 0 if this is no array.
    int GetNbOfDimensions() const;
    /// Gives the bounds of one dimension, counted from 0, and its direction: 0 "to", 1 "downto".
    /// @return false if there is no such dimension; the three are then 0
    bool GetArrayDimensionRanges(int dimension, int &left, int &right, int &direction) const;

    /// 0 if this is no record.
    int GetNbOfFields() const;
    /// @return null if there is no such field; the same for the two below
    const char *GetFieldName(int index) const;
    /// The description of a field's type as it stands inside this one.
    const char *GetFieldTypeInfo(int index) const;
    const KTypeInfo *GetFieldKTypeInfo(int index) const;

    /// The product of the lengths of all dimensions, at most 2^63 - 1. A range against its direction has length 0. 1 of
    /// a scalar or a record, 0 of an invalid type.
    long long GetNbOfElements() const;

    // Values, "old format", little-endian: an enumeration is its position in 1 byte, in 2 above 256 literals; an
    // integer 4 bytes; a real an 8-byte double; a physical value an 8-byte integer. The elements of an array stand one
    // behind the other, left bound first.

    /// Bytes of one scalar; of an array those of its element; 0 where that is no scalar.
    unsigned GetScalarSize_OldFormat() const;
    /// Scalar size times elements, at most 0xFFFFFFFF; 0 where the type is not simple.
    unsigned GetSimpleSize_OldFormat() const;
    /// A value as text: an enumeration as its literal, an integer or a physical value in decimal, a real with "%g" and
    /// as many more digits as it needs to read back the same. An array whose literals all have one character is these
    /// characters in a row, any other array `(a,b,c)`.
    /// @param value    `GetSimpleSize_OldFormat` bytes
    /// @param radix    this and the rest are there for the sake of the call's shape and change nothing
    /// @return "" if `value` is null or holds a position without a literal, or if the type has no values
    std::string GetValueString_OldFormat(const void *value, int radix, int options, int width, bool flag) const;
    /// The way back: reads `text`, in exactly the form above, into value bytes. Literals keep their letter case. The
    /// bounds of a number's type are not tested, so that whatever a wave holds can be written down and read again.
    /// @param size     room in `buffer`; bytes behind the value stay as they are
    /// @param radix    this and `options` change nothing
    /// @return false, with `buffer` untouched, if the text is no value of this type, the value does not fit `size`, or
    ///         the type has no values
    bool GetBytes_OldFormat(const char *text, void *buffer, unsigned size, int radix, int options) const;

private:
    friend class CTypeReader;
    TESK_LOCAL explicit KTypeInfo(std::shared_ptr<const STypeDescription> description);

    std::shared_ptr<const STypeDescription> m_description;  // never null
};

inline ETypeKind KindOf(const KTypeInfo &type)
{
    return static_cast<ETypeKind>(type.GetKind());
}

/// @return `Invalid` for null
inline ETypeKind KindOf(const KTypeInfo *type)
{
    return type != nullptr ? KindOf(*type) : ETypeKind::Invalid;
}

}  // namespace Kestrin
