// Samples of one signal, imported from a text table or a MAT-file.
#pragma once

#include <unordered_map>
#include <vector>

#include "base/export.h"
#include "core/fileformulaargs.h"

class ISignal;

/// One sample.
struct SampleEvent {
    long long m_time = 0;  ///< ticks
    union {
        double m_real;           ///< of a real column
        char *m_text = nullptr;  ///< of any other, from `_strdup`, owned by the column; null for no usable value
    };
};

/// All samples of one signal. It frees their texts when it goes.
struct TESK_API CSampleColumn {
    CSampleColumn() = default;
    CSampleColumn(const CSampleColumn &) = delete;
    CSampleColumn &operator=(const CSampleColumn &) = delete;
    ~CSampleColumn();

    CFileFormulaArgs m_args;            ///< the formula
    long long m_startTime = 0;          ///< ticks; when the stimulator is applied
    double m_interval = 0;              ///< femtoseconds per time unit of the file
    std::vector<SampleEvent> m_events;  ///< in strictly rising time once imported
    int m_useCount = 1;                 ///< 1 for `g_SampleColumns` and 1 for each stimulus
    bool m_isReal = false;              ///< values are doubles
    bool m_isInteger = false;           ///< values are decimal text of a whole-number type
    bool m_fromMatFile = false;
};

/// The columns that are loaded, by handle. They belong to the map.
TESK_API extern std::unordered_map<int, CSampleColumn *> g_SampleColumns;
/// The next handle; never 0.
TESK_API extern int g_NextSampleHandle;

/// Tells how values of a signal's type are written, and sets the flags of the column for it.
/// @param signal  only its type is looked at
/// @param width   receives the number of bits; 1 of a type without bits
/// @param radix   receives the base of the numbers; negative for a signed kind
TESK_API void ClassifyValueType(ISignal *signal, CSampleColumn &column, int &width, int &radix);
