// How many signals a type describes.
#pragma once

#include "base/limits.h"
#include "platform/kestrin.h"

namespace tesk {

/// The number of signals below a signal of this type, at most one more than `MaxSignals`. A long name counts for several
/// signals, so that the memory for names is bounded too.
long long CountSignals(const Kestrin::KTypeInfo &type);

}  // namespace tesk
