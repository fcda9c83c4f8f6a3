// The implementation of ISignalContainer.
#pragma once

#include "signal/tree/component.h"
#include "signal/tree/signalsprovider.h"

namespace tesk {

class CSignalContainerImp final : public TComponent<ISignalContainer, IID_ISignalContainer> {
public:
    explicit CSignalContainerImp(TReference<IHandleManager> manager);
    ~CSignalContainerImp() override { m_provider.Clear(); }

    long InsertBefore(ISignal *signal, ISignal *before) override { return m_provider.InsertBefore(signal, before); }
    long Add(ISignal *signal) override { return m_provider.Add(signal); }
    long Remove(ISignal *signal) override { return m_provider.Remove(signal); }
    long Replace(ISignal *oldSignal, ISignal *newSignal) override { return m_provider.Replace(oldSignal, newSignal); }
    long CreateStdSignal(unsigned type, ISignal **out) override { return ::CreateStdSignal(type, nullptr, out); }
    long CreateSignal(const char *type, ISignal **out) override { return ::CreateSignal(type, nullptr, out); }
    void Clear() override { m_provider.Clear(); }
    unsigned GetCount() override { return m_provider.GetCount(); }
    long SetHandles(const char *name, const int *handles, unsigned count) override;
    long Find(const char *name, ISignal **out) override;
    long CreateIterator(ISignalIterator **out) override;
    long GetAt(unsigned index, ISignal **out) override { return m_provider.GetAt(index, out); }
    long GetHandleManager(IHandleManager **out) override;
    long SetHandleManager(IHandleManager *manager) override;
    long Load(ISignalStream *stream, ISignal *parent) override;
    long Save(ISignalStream *stream) override { return m_provider.Save(stream); }
    long LoadFromDatabase(NTARN::IDatabaseReader *reader) override;
    long LoadFromList(ISignalListReader *reader) override;
    long Export(ISignalListWriter *writer) override { return m_provider.Export(writer); }
    long AddFromDatabase(NTARN::IDatabaseReader *reader, ISignal *parent, int handle, ISignal **out) override;
    long AddFromList(ISignalListReader *reader, ISignal *parent, int index, ISignal **out) override;
    long long GetMaxTime() override { return m_maxTime; }

private:
    bool LoadOne(ISignalStream &stream, ISignal *parent);
    unsigned AssignHandles(ISignal &signal, const int *handles, unsigned count);
    void Bind(ISignal &leaf, int handle);
    void NoteMaxTime(ISignal &signal);

    long long m_maxTime = 0;
    TReference<IHandleManager> m_handleManager;  // stands before m_provider, whose Clear asks for it
    CSignalsProvider m_provider;
};

}  // namespace tesk
