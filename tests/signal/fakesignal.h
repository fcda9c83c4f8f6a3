// A signal that a host might have written, for tests of what keeps signals: nothing but fields.
#pragma once

#include <functional>

#include "signal/signaltools.h"

class CFakeSignal final : public tesk::TComponent<ISignal, IID_ISignal> {
public:
    CFakeSignal(const char *name, int handle) : m_name(name), m_handle(handle), m_wave(NewWave()) {}

    const char *GetName() override { return m_name; }
    void SetName(const char *name) override { m_name = name; }
    int GetHandle() override { return m_handle; }
    void SetHandle(int handle) override { m_handle = handle; }
    ISignal *GetParent() override { return m_parent; }
    void SetParent(ISignal *parent) override { m_parent = parent; }
    ISignalContainer *GetChildren() override { return m_children.get(); }
    ISignalWave *GetWave() override { return m_wave.get(); }
    unsigned GetValueSize() override { return m_wave != nullptr ? m_wave->GetValueWidth() : 0; }
    long CreateSignalIterator(ISignalIterator **out) override
    {
        return m_children != nullptr ? m_children->CreateIterator(out) : E_FAIL;
    }
    long CreateEventIterator(IEventIterator **out) override
    {
        return m_givesIterators ? m_wave->CreateEventIterator(out) : E_FAIL;
    }
    long SaveToStream(ISignalStream * /*stream*/) override
    {
        ++m_saved;
        return m_result;
    }
    long ExportToList(ISignalListWriter * /*writer*/, int index) override
    {
        ++m_exported;
        m_exportIndex = index;
        return m_result;
    }

    // Nothing asks for the rest.
    long GetFullName(char *, unsigned) override { return E_NOTIMPL; }
    Kestrin::KTypeInfo *GetTypeInfo() override { return nullptr; }
    long SetTypeInfo(const Kestrin::KTypeInfo &) override { return E_NOTIMPL; }
    long SetTypeInfoString(const char *) override { return E_NOTIMPL; }
    int GetStdType() override { return 0; }
    void SetTypeOnly(const char *) override {}
    void SetMaxTime(long long) override {}
    long GetTypeIdentifier(char *, unsigned) override { return E_NOTIMPL; }
    int GetMode() override { return 0; }
    void SetMode(int) override {}
    int GetColor() override { return 0; }
    void SetColor(int) override {}
    const char *GetStimulatorInfo() override { return ""; }
    void SetStimulatorInfo(const char *) override {}
    int GetDisplayMode() override { return 0; }
    long SetDisplayMode(int) override { return E_NOTIMPL; }
    int GetDisplayRadix() override { return 0; }
    long ShareWave(ISignalWave *) override { return E_NOTIMPL; }
    bool OwnsWave() override { return true; }
    void Refresh() override {}
    void SetValueTextOption(bool) override {}
    bool GetValueTextOption() override { return false; }
    const char *GetValueText(const void *) override { return nullptr; }
    const char *GetEventText(IEvent *) override { return nullptr; }
    const char *GetValueTextAt(long long, int) override { return nullptr; }
    long Reserved(int) override { return 0; }
    const char *GetProperty(const char *) override { return nullptr; }
    void SetProperty(const char *, const char *) override {}
    long GetStimulator(int *, int *, char *, unsigned) override { return E_NOTIMPL; }
    void SetStimulator(int, int, const char *) override {}
    int GetHotKey() override { return 0; }
    void SetHotKey(int) override {}
    bool GetSpareFlag() override { return false; }
    long CreateBusEventIterator(IBusEventIterator **) override { return E_NOTIMPL; }
    long ParseValue(const char *, void *, unsigned) override { return E_NOTIMPL; }
    long LoadFromStream(ISignalStream *, ISignalContainer *, ISignal *) override { return E_NOTIMPL; }
    long AttachFromDatabase(NTARN::IDatabaseReader *, ISignalContainer *, ISignal *, int) override { return E_NOTIMPL; }
    long AttachFromList(ISignalListReader *, ISignalContainer *, ISignal *, int) override { return E_NOTIMPL; }
    const char *GetInitialValueText(bool) override { return m_initialValueText ? m_initialValueText() : nullptr; }
    long long GetMaxTime() override { return 0; }
    bool IsVBus() override { return false; }

    const char *m_name;  // may be null
    int m_handle;
    ISignal *m_parent = nullptr;
    TReference<ISignalWave> m_wave;
    TReference<ISignalContainer> m_children;
    bool m_givesIterators = true;
    std::function<const char *()> m_initialValueText;
    long m_result = S_OK;  // of saving and exporting
    int m_saved = 0;
    int m_exported = 0;
    int m_exportIndex = 0;
};

using FakePtr = TReference<CFakeSignal>;

inline FakePtr NewFake(const char *name, int handle = -1)
{
    return tesk::Share(new CFakeSignal(name, handle));
}

/// Gives a fake signal children instead of its wave.
inline FakePtr NewFakeBus(const char *name, const std::vector<CFakeSignal *> &children)
{
    FakePtr bus = NewFake(name);
    bus->m_wave.reset();
    bus->m_children = MakeContainer();
    for (CFakeSignal *child : children)
        bus->m_children->Add(child);
    return bus;
}
