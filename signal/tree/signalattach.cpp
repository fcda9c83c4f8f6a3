// The end of loading a signal: its children, its wave, its place in a container and at a handle.
#include <exception>
#include <utility>

#include "base/limits.h"
#include "base/wrap.h"
#include "platform/tarn.h"
#include "signal/tree/signalimp.h"

namespace tesk {

// `addChild(ISignalContainer &, int)` adds one element. Deliberate: any failure fails the whole signal.
template <typename AddChild>
bool CSignalImp::AttachChildren(ISignalContainer &container, int elements, AddChild addChild)
{
    if (elements <= 0)
        return true;
    TReference<ISignalContainer> children;
    if (elements > MaxSignals || CreateChildContainer(container, children) < 0)
        return false;
    for (int i = 0; i < elements; ++i)
        if (addChild(*children, i) < 0)
            return false;
    TakeChildren(std::move(children));
    return true;
}

long CSignalImp::AttachFromDatabase(NTARN::IDatabaseReader *reader, ISignalContainer *container, ISignal *parent,
                                    int elements)
try {
    if (reader == nullptr || container == nullptr)
        return E_INVALIDARG;
    SetParent(parent);
    const int first = elements > 0 ? reader->GetChildRange(m_handle).first : 0;
    const auto addChild = [&](ISignalContainer &children, int i) {
        ISignal *child = nullptr;
        return children.AddFromDatabase(reader, this, static_cast<int>(WrapAdd(first, i)), &child);
    };
    if (!AttachChildren(*container, elements, addChild))
        return E_FAIL;
    FinishLoading(*container);
    return S_OK;
} catch (const std::exception &) {  // a damaged file
    return E_FAIL;
}

long CSignalImp::AttachFromList(ISignalListReader *reader, ISignalContainer *container, ISignal *parent, int elements)
{
    if (reader == nullptr || container == nullptr)
        return E_INVALIDARG;
    SetStimulatorInfo(reader->GetProperty(m_handle, "Stimulator"));
    const char *isBus = reader->GetProperty(m_handle, "VBus");
    SetFlag(VBus, isBus != nullptr && ReadInt(isBus) != 0);
    SetParent(parent);
    const auto addChild = [&](ISignalContainer &children, int i) {
        ISignal *child = nullptr;
        return children.AddFromList(reader, this, i, &child);
    };
    if (!AttachChildren(*container, elements, addChild))
        return E_FAIL;
    FinishLoading(*container);
    return S_OK;
}

// The children of this signal share the handle manager of the container in which it stands.
long CSignalImp::CreateChildContainer(ISignalContainer &container, TReference<ISignalContainer> &children)
{
    IHandleManager *manager = nullptr;
    container.GetHandleManager(&manager);
    const TReference<IHandleManager> held(manager);
    ISignalContainer *made = nullptr;
    const long result = CreateSignalContainer(&made, manager);
    if (result >= 0)
        children.reset(made);
    return result;
}

void CSignalImp::TakeChildren(TReference<ISignalContainer> children)
{
    m_wave.reset();
    SetFlag(WaveShared, false);
    m_children = std::move(children);
}

void CSignalImp::FinishLoading(ISignalContainer &container)
{
    DeriveStdType();
    const Kestrin::KTypeInfo *type = EffectiveType();
    if (m_children == nullptr && type != nullptr)
        BuildWave(*type);
    if (m_children != nullptr && m_handle != -1)
        SetHandle(-1);  // only leaves keep handles
    EnterContainer(container);
}

// Gives the creator's reference up: from here on the container holds the only one.
void CSignalImp::EnterContainer(ISignalContainer &container)
{
    const int handle = m_handle;
    const SimpleString::CStr name = m_name;
    container.Add(this);
    Release();
    if (handle != -1)
        container.SetHandles(name, &handle, 1);
}

}  // namespace tesk
