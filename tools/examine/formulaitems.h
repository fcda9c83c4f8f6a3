// A plain formula word by word, with the place of each word: the reading that the library gives it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/timeunits.h"

namespace tesk {

/// A word, or a group in brackets or quotes, where it stands in the formula.
struct SFormulaWord {
    std::string_view text;
    std::size_t column = 0;  ///< byte of the formula, from 0
    int part = 0;            ///< between commas, from 1
};

/// A time as the library reads it.
struct SFormulaTime {
    SFormulaWord word;        ///< the number, with the unit if that stands apart: "10 ns"
    bool isAbsolute = false;  ///< written with "@"
    bool isReadable = false;  ///< one that cannot be read counts as 0
    bool hasNumber = false;   ///< "ns" alone has none, and counts as 0
    bool hasUnit = false;     ///< without one it counts picoseconds
    double number = 0;        ///< as written
    int unit = 0;             ///< id
    STimeValue value;
};

/// An event, "-r" or "-cancel".
struct SFormulaItem {
    enum class EKind { Event, Repeat, Cancel };
    EKind kind = EKind::Event;
    SFormulaWord word;           ///< the value of an event, or the switch
    bool isFirstOfPart = false;  ///< nothing stands before it in its part
    std::optional<SFormulaTime> time;
};

/// Takes a plain formula apart as the library does.
/// @param formula     outlives the items
/// @param resolution  femtoseconds per tick
std::vector<SFormulaItem> ReadFormulaItems(std::string_view formula, long long resolution);

/// One word read as a time.
SFormulaTime ReadFormulaTime(const SFormulaWord &word, long long resolution);

}  // namespace tesk
