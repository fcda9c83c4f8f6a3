// Reads a plain formula into a CStimulus.
//
// formula: chunk { "," chunk }
// chunk:   item { blanks item }
// item:    value [ [ "@" ] time ], or "-r" time, or "-cancel" [ "@" ] time
// time:    number [ blanks ] [ unit ]
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "core/stimulus.h"

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
    // The rules take their text off the front of `rest`.
    EReading ReadChunk(std::string_view chunk);
    void ReadRepeat(std::string_view &rest);
    void ReadCancel(std::string_view &rest);
    EReading ReadEvent(std::string_view value, std::string_view &rest);
    static EReading Join(EReading left, EReading right);
    void AddEvent(std::unique_ptr<CSimpleStimulus> event);

    CStimulus &m_stimulus;
    bool m_binaryValues;
    bool m_rawValues;
    std::map<long long, std::size_t> m_places;  // time of an event to its place in the list
};
