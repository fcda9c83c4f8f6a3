// Keeps the loading of signals within bounds, whatever a stream, a list or a database claims.
#pragma once

#include "base/limits.h"

namespace tesk {

/// One signal that is being loaded; its children are loaded while it lives.
class CLoadLevel {
public:
    CLoadLevel()
    {
        if (s_depth++ == 0) {
            s_signals = 0;
            s_refused = false;
        }
        if (s_depth > MaxNesting || ++s_signals > MaxSignals + 1)
            s_refused = true;
    }
    CLoadLevel(const CLoadLevel &) = delete;
    CLoadLevel &operator=(const CLoadLevel &) = delete;
    ~CLoadLevel() { --s_depth; }

    static bool IsOutermost() { return s_depth == 1; }
    /// Whether the outermost signal of this load, or the last load, nests too deep or has too many signals below it.
    /// The load is then to be given up as a whole: going on behind the place would find nothing sensible there.
    static bool IsRefused() { return s_refused; }

private:
    static inline int s_depth = 0;
    static inline long long s_signals = 0;
    static inline bool s_refused = false;
};

}  // namespace tesk
