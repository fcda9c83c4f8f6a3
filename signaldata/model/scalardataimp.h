// The implementation of tesk::IScalarData.
#pragma once

#include <array>
#include <vector>

#include "signaldata/model/counted.h"
#include "signaldata/scalardata.h"

namespace tesk {

class CScalarDataImp final : public TCountedData<IScalarData> {
public:
    explicit CScalarDataImp(int handle) : m_handle(handle) {}

    long AddSignal(int handle) override;
    long RemoveSignal(int handle) override;
    long SetHandle(int handle) override;
    long SetValue(const void *value, unsigned size) override;
    long ResetValue(unsigned size) override;
    int GetHandle() override { return m_handle; }
    unsigned GetValueSize() override { return m_valueSize; }
    long GetValue(void *buffer, unsigned size) override;
    const void *GetValuePtr() override { return m_value.data(); }
    unsigned GetSignalCount() override { return static_cast<unsigned>(m_signals.size()); }
    int GetSignal(unsigned index) override;

    /// How often a caller has changed the handle of any scalar: what is sorted by handle must then be looked at again.
    static unsigned long long HandleChanges() { return s_handleChanges; }

private:
    static inline unsigned long long s_handleChanges = 0;

    int m_handle;
    std::array<unsigned char, 10> m_value{};  // inline, so that reading a value costs no allocation
    unsigned m_valueSize = 0;                 // bytes of m_value in use
    std::vector<int> m_signals;               // ascending, no duplicates
};

}  // namespace tesk
