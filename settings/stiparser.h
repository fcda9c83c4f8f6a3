// CStiParser, the text that keeps a signal's stimulator, and the text of a hot-key stimulator.
#pragma once

#include <array>
#include <memory>
#include <string_view>

#include "base/export.h"
#include "settings/cstr.h"

/// The stimulator information string: seven fields, each but the last ended by ":", such as
/// "FRM:FRM:Drive:"a:b":info:1:10ns;20ns".
///
/// They are the code of the dialog that made the stimulator, the stimulator type "FRM" or "KEY", the strength, the
/// dialog's own data, in double quotes where it holds ":", an information string, active "1" or "0", and the states, a
/// text for `CStimState::Create`. The fields of a new object are null.
class TESK_API CStiParser {
public:
    CStiParser() = default;
    /// Copies the fields as they are, null ones included; unlike assignment it refuses nothing.
    CStiParser(const CStiParser &other);
    /// Builds from the other's type number, strength value, active mark and texts as `Init` does. Deliberate: where
    /// that `Init` fails, for an unknown type or strength, this object silently stays as it was.
    CStiParser &operator=(const CStiParser &other);
    ~CStiParser() = default;

    /// Reads a text. Colons in a row count as one, so a field cannot be empty: those behind it move up. The first three
    /// fields are required and lose leading white space; the others are "", "", "0" and "" if they are missing.
    ///
    /// The strength "Default" and every unknown one become "Override". Deliberate: before the first `InitResources`
    /// that is every strength, so a caller that wants strengths honoured runs it first.
    /// @return false for a null or empty text, and nothing changes; false if a required field is missing, and those
    ///         before it are stored, the others null
    bool Init(const char *text);

    /// Builds from values; a null text counts as "".
    /// @param stimType  0 "FRM", 1 "KEY"
    /// @param strength  a value with a name, see `StrengthName`
    /// @return false for another type or strength; nothing changes then
    bool Init(const char *dialogId, int stimType, int strength, const char *dialogData, const char *infoString,
              bool active, const char *stimStates);

    /// Writes the text. Empty fields are written, but do not read back.
    /// @return false, with `text` unchanged, if one of the first five fields is null
    bool MergeStimInfo(SimpleString::CStr &text) const;

    // Each gives the field as text, valid until the object changes; null if there is none.

    const char *GetDialogID() const { return m_fields[DialogID]; }
    /// @param type  receives 0 for "FRM", 1 for "KEY" in any letter case, -1 for others; may be null
    const char *GetStimType(int *type) const;
    /// @param value  receives the value of the strength, see `StrengthValue`; may be null
    const char *GetStrength(int *value) const;
    const char *GetDialogData() const { return m_fields[DialogData]; }
    const char *GetInfoString() const { return m_fields[InfoString]; }
    /// @param active  receives whether the field, read as a number, is not 0; may be null
    const char *GetActive(bool *active) const;
    const char *GetStimStates() const { return m_fields[StimStates]; }

    /// Fills the tables of strengths and dialogs; only the first call does something.
    static void InitResources();
    /// @return "Default" for 512, "Override" for 1, "Deposit" for 8, "Drive" for 16; null for another value
    static const char *StrengthName(int value);
    /// @param name  in any letter case; may be null
    /// @return -1 for an unknown name. Deliberate: it does not run `InitResources`, before which no name is known
    static int StrengthValue(const char *name);
    /// @param code  such as "FRM", in any letter case; may be null
    /// @return the name of the dialog, such as "Formula"; null for an unknown code
    static const char *DialogName(const char *code);

    /// Compares the seven fields, ignoring case; a null field equals only a null one.
    friend TESK_API bool operator==(const CStiParser &left, const CStiParser &right);

private:
    enum EField { DialogID, StimType, Strength, DialogData, InfoString, Active, StimStates, FieldCount };
    using CFields = std::array<const char *, FieldCount>;

    TESK_LOCAL bool CopyFields(const CFields &fields);
    TESK_LOCAL const char *EndField(std::string_view field);
    TESK_LOCAL const char *TakeOptional(std::string_view &rest, const char *absent);

    std::unique_ptr<char[]> m_buffer;
    CFields m_fields{};  // into the buffer, or static text
};

TESK_API bool operator==(const CStiParser &left, const CStiParser &right);

/// Writes the text of a hot-key stimulator, such as "65/force".
/// @param key   written as the platform's `long`: where that has 32 bits, 0xFFFFFFFF is written "-1"
/// @param data  the stimulator; null is written "(null)"
TESK_API void MergeHotKeyData(unsigned long key, const char *data, SimpleString::CStr &text);

/// Reads the text of a hot-key stimulator. What stands behind a further "/" is dropped.
/// @param text  a null one fails
/// @param key   receives the number, read as the platform's `long`, also if there is no stimulator behind it; left
///              alone if there is no number either; may be null
/// @param data  receives the stimulator; emptied on failure
/// @return false if there is no stimulator
TESK_API bool ParseHotKeyData(const char *text, unsigned long *key, SimpleString::CStr &data);
