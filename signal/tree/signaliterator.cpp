#include "signal/tree/signaliterator.h"

namespace tesk {

long CSignalIteratorImp::Next(unsigned count, ISignal **out, unsigned *fetched)
{
    unsigned stored = 0;
    while (stored < count && m_signals.GetAt(m_current, &out[stored]) >= 0) {
        ++m_current;
        ++stored;
    }
    if (fetched != nullptr)
        *fetched = stored;
    return stored > 0 ? S_OK : S_FALSE;
}

}  // namespace tesk
