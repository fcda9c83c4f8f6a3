// The alphabet of an enumerated signal.
#pragma once

#include <memory>

#include "base/export.h"

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
