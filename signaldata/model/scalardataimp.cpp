#include "signaldata/model/scalardataimp.h"

#include <algorithm>
#include <cstring>

namespace tesk {

long CScalarDataImp::AddSignal(int handle)
try {
    if (handle < 0)
        return E_INVALIDARG;
    const auto place = std::ranges::lower_bound(m_signals, handle);
    if (place == m_signals.end() || *place != handle)
        m_signals.insert(place, handle);
    return S_OK;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CScalarDataImp::RemoveSignal(int handle)
{
    const auto place = std::ranges::lower_bound(m_signals, handle);
    if (place == m_signals.end() || *place != handle)
        return E_FAIL;
    m_signals.erase(place);
    return S_OK;
}

long CScalarDataImp::SetHandle(int handle)
{
    if (handle < 0)
        return E_INVALIDARG;
    m_handle = handle;
    ++s_handleChanges;
    return S_OK;
}

long CScalarDataImp::SetValue(const void *value, unsigned size)
{
    if (size > m_value.size() || (value == nullptr && size != 0))
        return E_INVALIDARG;
    if (size != 0)
        std::memmove(m_value.data(), value, size);  // `value` may be this very value
    m_valueSize = size;
    return S_OK;
}

long CScalarDataImp::ResetValue(unsigned size)
{
    m_value.fill(0);
    m_valueSize = std::min(size, static_cast<unsigned>(m_value.size()));
    return S_OK;
}

long CScalarDataImp::GetValue(void *buffer, unsigned size)
{
    if (size < m_valueSize || (buffer == nullptr && m_valueSize != 0))
        return E_INVALIDARG;
    if (m_valueSize != 0)
        std::memcpy(buffer, m_value.data(), m_valueSize);
    return S_OK;
}

int CScalarDataImp::GetSignal(unsigned index)
{
    return index < m_signals.size() ? m_signals[index] : -1;
}

}  // namespace tesk
