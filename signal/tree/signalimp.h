// The implementation of ISignal.
//
// Its operations stand in several files: signalimp.cpp structure and texts, signaltype.cpp types, signalproperties.cpp
// what is kept in the property table, signalstream.cpp the saved forms, signalattach.cpp the end of loading.
#pragma once

#include <optional>

#include "platform/kestrin.h"
#include "settings/cstr.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "signal/tree/parentlink.h"
#include "signal/tree/properties.h"

namespace tesk {

class CChildrenMaker;
class CSignalText;

class CSignalImp final : public TComponent<ISignal, IID_ISignal> {
public:
    /// A signal without type and wave.
    explicit CSignalImp(ISignal *parent) { LinkTo(parent); }
    ~CSignalImp() override;

    const char *GetName() override { return m_name; }
    void SetName(const char *name) override { m_name = name; }
    long GetFullName(char *buffer, unsigned size) override;
    Kestrin::KTypeInfo *GetTypeInfo() override { return m_typeInfo ? &*m_typeInfo : nullptr; }
    long SetTypeInfo(const Kestrin::KTypeInfo &type) override;
    long SetTypeInfoString(const char *type) override;
    int GetStdType() override { return m_stdType; }
    void SetTypeOnly(const char *type) override;
    void SetMaxTime(long long time) override { m_maxTime = time; }
    long GetTypeIdentifier(char *buffer, unsigned size) override;
    unsigned GetValueSize() override { return m_wave != nullptr ? m_wave->GetValueWidth() : 0; }
    int GetMode() override;
    void SetMode(int mode) override;
    int GetHandle() override { return m_handle; }
    void SetHandle(int handle) override;
    int GetColor() override;
    void SetColor(int color) override;
    const char *GetStimulatorInfo() override { return m_stimulatorInfo; }
    void SetStimulatorInfo(const char *info) override { m_stimulatorInfo = info; }
    int GetDisplayMode() override;
    long SetDisplayMode(int mode) override;
    int GetDisplayRadix() override;
    long ShareWave(ISignalWave *wave) override;
    bool OwnsWave() override { return (m_flags & WaveShared) == 0; }
    void Refresh() override {}
    void SetValueTextOption(bool on) override;
    bool GetValueTextOption() override { return (m_flags & ValueTextOption) != 0; }
    const char *GetValueText(const void *value) override;
    const char *GetEventText(IEvent *event) override;
    const char *GetValueTextAt(long long time, int mode) override;
    long Reserved(int ignored) override;
    const char *GetProperty(const char *name) override { return m_properties.Find(name); }
    void SetProperty(const char *name, const char *value) override;
    long GetStimulator(int *type, int *strength, char *formula, unsigned size) override;
    void SetStimulator(int type, int strength, const char *formula) override;
    int GetHotKey() override;
    void SetHotKey(int key) override;
    bool GetSpareFlag() override { return m_spare; }
    ISignal *GetParent() override { return m_parent.Get(); }
    ISignalContainer *GetChildren() override { return m_children.get(); }
    ISignalWave *GetWave() override { return m_wave.get(); }
    long CreateSignalIterator(ISignalIterator **out) override;
    long CreateEventIterator(IEventIterator **out) override;
    long CreateBusEventIterator(IBusEventIterator **out) override;
    long ParseValue(const char *text, void *buffer, unsigned size) override;
    long LoadFromStream(ISignalStream *stream, ISignalContainer *container, ISignal *parent) override;
    long SaveToStream(ISignalStream *stream) override;
    long AttachFromDatabase(NTARN::IDatabaseReader *reader, ISignalContainer *container, ISignal *parent,
                            int elements) override;
    long AttachFromList(ISignalListReader *reader, ISignalContainer *container, ISignal *parent, int elements) override;
    long ExportToList(ISignalListWriter *writer, int index) override;
    const char *GetInitialValueText(bool flag) override;
    void SetParent(ISignal *parent) override { LinkTo(parent); }
    long long GetMaxTime() override { return m_maxTime; }
    bool IsVBus() override { return (m_flags & VBus) != 0; }

    /// Applies a type that is known to describe no more signals than may be made.
    /// @return S_OK; E_FAIL, and the old type, wave and children stay
    long ApplyType(const Kestrin::KTypeInfo &type);
    /// The work of `LoadFromStream` behind the number of properties.
    long LoadBehindCount(ISignalStream &stream, unsigned count, ISignalContainer &container, ISignal *parent);

private:
    // Bits of m_flags.
    static constexpr unsigned VBus = 1;
    static constexpr unsigned WaveShared = 2;
    static constexpr unsigned ValueTextOption = 4;

    void SetFlag(unsigned flag, bool on);
    void LinkTo(ISignal *parent);
    std::optional<CSignalText> Texts();

    // signaltype.cpp
    const Kestrin::KTypeInfo *EffectiveType();
    long ChangeType(const Kestrin::KTypeInfo &type);
    long BuildFor(const Kestrin::KTypeInfo &type);
    CChildrenMaker ChildrenMaker();
    long TakeBuilt(TReference<ISignalContainer> children);
    long BuildWave(const Kestrin::KTypeInfo &type);
    long MakeOwnWave(unsigned size);
    void DeriveStdType();
    void FollowType();

    // signalattach.cpp
    template <typename AddChild>
    bool AttachChildren(ISignalContainer &container, int elements, AddChild addChild);
    static long CreateChildContainer(ISignalContainer &container, TReference<ISignalContainer> &children);
    void TakeChildren(TReference<ISignalContainer> children);
    void FinishLoading(ISignalContainer &container);
    void EnterContainer(ISignalContainer &container);

    // signalstream.cpp
    bool LoadProperties(ISignalStream &stream, unsigned count);
    long LoadChildren(ISignalStream &stream, ISignalContainer &container);

    // signalproperties.cpp
    void SetFormula(int type, int strength, const char *formula);

    SimpleString::CStr m_name;
    std::optional<Kestrin::KTypeInfo> m_typeInfo;
    int m_stdType = 0;  // see GetStdType
    int m_handle = -1;  // simulator handle
    unsigned m_flags = 0;
    bool m_spare = false;  // cleared by every change of type, set by nothing
    long long m_maxTime = 0;
    CPropertyTable m_properties;
    SimpleString::CStr m_stimulatorInfo;
    CParentLink m_parent;
    TReference<ISignalWave> m_wave;
    TReference<ISignalContainer> m_children;
};

/// A new signal and the first reference to it. Raises std::bad_alloc.
inline TReference<CSignalImp> NewSignal(ISignal *parent)
{
    return Share(new CSignalImp(parent));
}

}  // namespace tesk
