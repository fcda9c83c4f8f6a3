// Reads a plain formula into a CStimulus.
//
// formula: chunk { "," chunk }
// chunk:   item { blanks item }
// item:    value [ [ "@" ] time ], or "-r" time, or "-cancel" [ "@" ] time
// time:    number [ blanks ] [ unit ]
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "core/plain/tokenviews.h"
#include "core/stimulus.h"
#include "settings/cstr.h"

class CStimulus::CFormulaReader {
public:
    /// What became of a formula or a part of one; the numbers are what `CStimulus::Parse` gives.
    enum class EReading {
        Refused = 0,
        Narrow = 1,
        Wide = -1,  ///< read, and of binary values one has more than one character
    };

    CFormulaReader(CStimulus &stimulus, bool binaryValues, bool rawValues)
        : m_stimulus(stimulus), m_binaryValues(binaryValues), m_rawValues(rawValues)
    {}

    EReading ReadFormula(std::string_view formula);

private:
    // The rules take their tokens off the front of the chunk.
    EReading ReadChunk(tesk::CChunkTokens &chunk);
    void ReadRepeat(tesk::CChunkTokens &chunk);
    void ReadCancel(tesk::CChunkTokens &chunk);
    EReading ReadEvent(std::string_view value, tesk::CChunkTokens &chunk);
    static EReading Join(EReading left, EReading right);
    const SimpleString::CStr &ValueText(std::string_view value);
    void AddEvent(std::unique_ptr<CSimpleStimulus> event);
    void FindPlaces();

    CStimulus &m_stimulus;
    bool m_binaryValues;
    bool m_rawValues;
    std::array<SimpleString::CStr, 2> m_values;  // that were read last, to be shared
    unsigned m_nextValue = 0;                    // which of them goes next
    // Times rise in most formulas. From the first that does not on m_places has the place of each event by its time.
    bool m_areTimesRising = true;
    std::unordered_map<long long, std::size_t> m_places;
};
