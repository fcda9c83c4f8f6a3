// The alphabet of an enumerated signal, extended identifiers, gate-level state letters.
#pragma once

#include <memory>

#include "platform/export.h"

namespace tesk {

/// The alphabet of an enumerated signal: one character for each value.
class TESK_API CSimpleScalarInfo {
public:
    /// @param count  number of values; all characters are 0 until they are added. A negative one holds none
    explicit CSimpleScalarInfo(int count);
    /// A deep copy.
    CSimpleScalarInfo(const CSimpleScalarInfo &other);
    /// Deliberate: both objects share one table afterwards, so that a value added to one is seen through the other.
    CSimpleScalarInfo &operator=(const CSimpleScalarInfo &other) = default;
    ~CSimpleScalarInfo() = default;

    /// Sets the character of one value. @return false if `index` is out of range
    bool AddEnumValue(int index, char value);
    int GetElementsCount() const { return m_count; }
    /// @return the character of one value, 0 for an `index` out of range
    char GetElementValue(int index) const;

protected:
    /// Gives this object a new table for `m_count` values, with a zero behind them.
    void AllocateTable();

private:
    bool IsInRange(int index) const { return index >= 0 && index < m_count; }

    int m_count;                      // number of values
    std::shared_ptr<char[]> m_table;  // one character for each, and a zero
};

}  // namespace tesk

/// Steps over an extended identifier, "\...\", at the start of `text`; "\\" inside it stands for one backslash.
/// @return what stands behind it, the end of `text` if it is not closed; `text` itself if there is none
TESK_API const char *SkipExtendedID(const char *text);

/// The std_logic letter of a gate-level state letter, 0 for an unknown one. Case matters: 'U' is a level, 'u' is not.
TESK_API char GateLevel2StdLogic(char letter);

/// As `GateLevel2StdLogic`, the position in the alphabet "UX01ZWLH-", -1 for an unknown letter.
TESK_API int GateLevel2StdLogicIndex(char letter);
