// The walk over the signals of a container.
#pragma once

#include "signal/tree/component.h"
#include "signal/tree/signalsprovider.h"

namespace tesk {

class CSignalIteratorImp final : public TComponent<ISignalIterator, IID_ISignalIterator> {
public:
    explicit CSignalIteratorImp(const CSignalsProvider &signals) : m_signals(signals) {}

    long Next(unsigned count, ISignal **out, unsigned *fetched) override;
    void Reset() override { m_current = 0; }

private:
    const CSignalsProvider &m_signals;  // the container's; no reference held
    unsigned m_current = 0;             // index of the next signal
};

}  // namespace tesk
