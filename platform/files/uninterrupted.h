// System calls that a signal may come between.
#pragma once

#include <cerrno>

namespace tesk {

/// Calls until no signal interrupts the call. @return what it returned
template <class TCall>
auto Uninterrupted(TCall call)
{
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR)
            return result;
    }
}

}  // namespace tesk
