// Object literals of JavaScript, of which JSON is a part: what WaveDrom reads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk {

struct SJsMember;

/// A literal and where it stands.
struct SJsValue {
    enum class EKind { Null, Boolean, Number, Text, Array, Object };

    EKind kind = EKind::Null;
    int line = 0;       ///< from 1
    double number = 0;  ///< of a number, or 1 for true
    std::string text;   ///< of a text; of a number as it is written
    std::vector<SJsValue> elements;
    std::vector<SJsMember> members;

    /// @return null if there is none of that name, or this is no object
    const SJsValue *Find(std::string_view name) const;
    bool Is(EKind other) const { return kind == other; }
};

/// A literal by its name in another.
struct SJsMember {
    std::string name;
    SJsValue value;
};

/// Why a text is none.
struct SJsFault {
    int line = 0;  ///< 0 if it is one
    std::string why;
};

/// Reads a literal with comments, names without quotes, texts in single quotes and commas at the end, which JSON does not have.
/// Literals may lie 64 deep inside one another.
SJsFault ReadJsValue(std::string_view text, SJsValue &value);

}  // namespace tesk
