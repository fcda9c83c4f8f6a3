// How much a type description, a stream, a list or a database can make the signal model build.
#pragma once

namespace tesk {

/// Signals below one signal.
inline constexpr long long MaxSignals = 1LL << 24;

/// Whether a signal may have so many elements.
constexpr bool IsElementCount(long long count)
{
    return count >= 0 && count <= MaxSignals;
}

/// Signals inside one another that are loaded from outside. Type descriptions have a smaller limit of their own.
inline constexpr int MaxNesting = 256;

}  // namespace tesk
