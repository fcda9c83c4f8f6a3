// The implementation of tesk::ISignalDataContainer.
#pragma once

#include <vector>

#include "signaldata/model/counted.h"
#include "signaldata/signaldata.h"

namespace tesk {

class CSignalDataContainerImp final : public TCountedData<ISignalDataContainer> {
public:
    long Add(ISignalData *data) override;
    long Remove(ISignalData *data) override;
    ISignalData *GetAt(unsigned index) override;
    ISignalData *FindByName(const char *name) override;
    ISignalData *FindByHandle(int handle) override;
    unsigned GetCount() override { return static_cast<unsigned>(m_signals.size()); }

private:
    using CSignals = std::vector<TReference<ISignalData>>;

    CSignals::iterator FirstNotBelow(int handle);

    CSignals m_signals;  // ascending by handle
};

}  // namespace tesk
