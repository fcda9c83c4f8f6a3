// CSimpleFormulaParser, which splits a plain formula for a composite signal into one formula for each element.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/export.h"
#include "settings/cstr.h"

/// Splits a plain formula for a vector, record or array signal.
class TESK_API CSimpleFormulaParser {
public:
    /// Splits `formula`: "01 0ns, 10 5ns" gives "0 0ns,1 5ns" and "1 0ns,0 5ns". Repeat and cancel times go to each
    /// element. Times are read at the resolution `g_simRes`.
    /// @param elements     receives `width` formulas, the leftmost element's first; an element without an event gets
    ///                     an empty one. Filled as far as possible where a part of the formula is refused, left alone where the
    ///                     formula as a whole is
    /// @param width        number of elements, 0 to 2^24
    /// @param isBitVector  a value is one bit string, a character for each element; otherwise it is an aggregate such
    ///                     as "(1, 0, 1)", a sub-value for each
    /// @param simRes       not read
    /// @param startTime    ticks; when the stimulator is applied
    /// @return 1; -1 if a value was too long and lost its leading bits; 0 failure
    int Run(const char *formula, std::vector<SimpleString::CStr> &elements, int width, bool isBitVector,
            long long simRes, long long startTime);

private:
    enum class ESplit;
    struct SValue;

    std::size_t Width() const { return static_cast<std::size_t>(m_width); }
    TESK_LOCAL ESplit splitToken(std::string_view chunk, bool isCharacterType,
                                 std::vector<std::string> &elements) const;
    TESK_LOCAL bool FitValue(bool isCharacterType, SValue &value) const;
    TESK_LOCAL void FitLongNumber(SValue &value) const;
    TESK_LOCAL bool FitNumber(SValue &value) const;
    TESK_LOCAL static void AppendSubValues(std::string_view values, std::string_view time,
                                           std::vector<std::string> &elements);
    TESK_LOCAL static void AppendCharacters(const SValue &value, std::string_view time,
                                            std::vector<std::string> &elements);

    int m_width = 0;
    bool m_isBitVector = false;
};
