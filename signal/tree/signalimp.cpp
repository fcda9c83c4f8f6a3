#include "signal/tree/signalimp.h"

#include <cstring>

#include "signal/tree/handlemanager.h"
#include "signal/tree/signalsprovider.h"
#include "signal/tree/signaltext.h"
#include "signal/tree/signalwalk.h"

namespace tesk {

// The container takes a signal that is removed out of the handle manager. A signal that ends in another way, for
// instance because the type of its parent changed, must not be found there either, nor by its name in a list that it
// has left. A child that somebody else holds must not lead to its parent any more; one of this library is told by its
// link.
CSignalImp::~CSignalImp()
{
    CHandleManager::Forget(this);
    CSignalsProvider::Forget(this);
    ForEachChild(*this, [this](ISignal &child) {
        if (child.GetParent() == this)
            child.SetParent(nullptr);
    });
}

void CSignalImp::SetFlag(unsigned flag, bool on)
{
    m_flags = on ? m_flags | flag : m_flags & ~flag;
}

void CSignalImp::LinkTo(ISignal *parent)
{
    auto *const known = dynamic_cast<CSignalImp *>(parent);
    m_parent.Set(parent, known != nullptr ? &known->m_parent : nullptr);
}

long CSignalImp::GetFullName(char *buffer, unsigned size)
{
    if (buffer == nullptr || size == 0)
        return E_INVALIDARG;
    buffer[0] = 0;
    if (m_parent.Get() != nullptr) {
        const long result = m_parent.Get()->GetFullName(buffer, size);
        if (result < 0)
            return result;
    }
    const std::size_t used = std::strlen(buffer);
    const std::size_t length = std::strlen(m_name);
    // Deliberate: a name that would just fit is refused, one byte has to stay free.
    if (used + 1 + length + 1 > size)
        return E_OUTOFMEMORY;
    std::memcpy(buffer + used, static_cast<const char *>(m_name), length + 1);
    return S_OK;
}

long CSignalImp::ShareWave(ISignalWave *wave)
{
    if (m_children != nullptr || m_wave == nullptr)
        return E_FAIL;
    if (wave == nullptr)
        return OwnsWave() ? S_OK : MakeOwnWave(GetValueSize());
    m_wave = Share(wave);
    SetFlag(WaveShared, true);
    return S_OK;
}

long CSignalImp::Reserved(int /*ignored*/)
{
    return S_OK;
}

long CSignalImp::CreateSignalIterator(ISignalIterator **out)
{
    return m_children != nullptr ? m_children->CreateIterator(out) : E_FAIL;
}

long CSignalImp::CreateEventIterator(IEventIterator **out)
{
    return m_wave != nullptr ? m_wave->CreateEventIterator(out) : E_FAIL;
}

long CSignalImp::CreateBusEventIterator(IBusEventIterator **out)
{
    return m_children != nullptr ? ::CreateBusEventIterator(this, out) : E_FAIL;
}

// None for a signal without a type.
std::optional<CSignalText> CSignalImp::Texts()
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    return type != nullptr ? std::optional(CSignalText(*this, *type)) : std::nullopt;
}

const char *CSignalImp::GetValueText(const void *value)
{
    const auto texts = Texts();
    return texts ? texts->OfValue(value) : nullptr;
}

const char *CSignalImp::GetEventText(IEvent *event)
{
    const auto texts = Texts();
    return texts ? texts->OfEvent(event) : nullptr;
}

const char *CSignalImp::GetValueTextAt(long long time, int mode)
{
    const auto texts = Texts();
    return texts ? texts->At(time, mode) : nullptr;
}

const char *CSignalImp::GetInitialValueText(bool flag)
{
    const auto texts = Texts();
    return texts ? texts->OfFirst(flag) : nullptr;
}

long CSignalImp::ParseValue(const char *text, void *buffer, unsigned size)
{
    const auto texts = Texts();
    return texts ? texts->Parse(text, buffer, size) : E_FAIL;
}

}  // namespace tesk
