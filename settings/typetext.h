// Writers of type descriptions, the compact texts that Kestrin::KTypeInfo reads: predefined types, arrays, records and
// enumerations, with the small classes that hand over bounds, fields and literals.
#pragma once

#include "base/export.h"

/// The bounds of one dimension. The direction follows from them: "to" if `left` is below `right`, else "downto".
struct TArrayRange {
    int left;
    int right;
};

/// One literal of an enumeration. Owns its text.
class TESK_API TEnumValue {
public:
    TEnumValue() = default;
    /// A null `text` is none.
    TEnumValue(const char *text);
    /// Copies the text.
    TEnumValue(const TEnumValue &other);
    /// Deliberate: copies the pointer alone, and what this object had is not freed, since it may be shared in the same
    /// way. Both objects then have one text, and only one of them may be destroyed or set.
    TEnumValue &operator=(const TEnumValue &other);
    ~TEnumValue();

    /// A text not longer than the one it replaces goes into the same storage; null leaves the object without a text.
    void Set(const char *text);
    /// @return null while there is no text
    const char *Get() const { return m_text; }
    /// Length of the text in bytes, 0 while there is none.
    int GetLen() const;

private:
    char *m_text = nullptr;
};

/// One field of a record: its name and its type description. Owns both texts.
class TESK_API TRecordField {
public:
    TRecordField() = default;
    /// A null text is none.
    TRecordField(const char *name, const char *type);
    /// Copies the texts.
    TRecordField(const TRecordField &other);
    /// Deliberate: copies the pointers alone, see `TEnumValue::operator=`.
    TRecordField &operator=(const TRecordField &other);
    ~TRecordField();

    /// A text not longer than the one it replaces goes into the same storage; null leaves the field without a name.
    void SetFieldName(const char *text);
    /// As `SetFieldName`, for the type description.
    void SetTypeInfo(const char *text);
    void SetBoth(const char *name, const char *type);
    /// @return null while there is none
    const char *GetFieldName() const { return m_name; }
    /// @return null while there is none
    const char *GetTypeInfo() const { return m_type; }

private:
    char *m_name = nullptr;
    char *m_type = nullptr;
};

// Each writer answers 0, or for any failure 0x80070057 as a negative 32-bit number: a null argument other than the
// buffer, a literal, name or type that is not set, a buffer that is too small.
//
// A null `buffer` asks for the size: `*size` receives the length of the text with its terminator. With a `buffer`,
// `*size` tells its room and stays as it is; nothing is written if the text and its terminator do not fit.

/// Writes a predefined type.
/// @param index  0 bit, 1 std_logic, 2 std_ulogic, 3 integer, 4 real, 5 character, 6 bit_vector, 7 std_logic_vector,
///               8 std_ulogic_vector; the vectors are unconstrained. Any other fails
TESK_API long CreateStdTypeInfo(int index, char *buffer, unsigned *size);

/// Writes an array type, for instance "a#15#mem(7 downto 0)1 ricd7 0 e#3#bitc2 01".
/// @param name         without ranges; fails if it has more than 259 bytes together with them
/// @param ranges       one for each of `count` dimensions. Deliberate: equal bounds are "downto"
/// @param elementType  a type description, which is taken as it stands
TESK_API long CreateArrayTypeInfo(const char *name, TArrayRange *ranges, unsigned count, const char *elementType,
                                  char *buffer, unsigned *size);

/// Writes a record type, for instance "r#1#r1 x e#3#bitc2 01".
TESK_API long CreateRecordTypeInfo(const char *name, TRecordField *fields, unsigned count, char *buffer,
                                   unsigned *size);

/// Writes an enumeration type: "e#2#stc2 ab" if every literal is one character long, else "e#2#sts2 idle run ".
TESK_API long CreateEnumTypeInfo(const char *name, TEnumValue *values, unsigned count, char *buffer, unsigned *size);
