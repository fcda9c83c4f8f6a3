// Which lane of a variable belongs to a signal.
#pragma once

#include <optional>

#include "settings/cstr.h"
#include "waveform/mat/matvariable.h"

namespace Kestrin {
class KTypeInfo;
}

namespace tesk {

/// The variable of a formula: a name and up to two indices behind it, "v(3)" or "v(1)(3)".
struct SMatTarget {
    /// @param signal  the text of the formula
    /// @return false if an index has no beginning or no name in front of it
    bool Read(const SimpleString::CStr &signal);

    SimpleString::CStr name;
    int index1 = -1;  ///< -1 for none
    int index2 = -1;
};

/// Takes the lower bound of a type's first dimension off an index; of a type that is no array nothing.
long long CorrectIndex(long long index, const Kestrin::KTypeInfo &type);

/// Finds the lane of the values, not counting one of times. It may lie outside the variable.
/// @param type    of the signal
/// @param matrix  the variable
/// @return nothing if the type, the indices and the variable do not fit together
std::optional<long long> FindLane(const SMatTarget &target, const Kestrin::KTypeInfo &type, const SMatMatrix &matrix);

}  // namespace tesk
