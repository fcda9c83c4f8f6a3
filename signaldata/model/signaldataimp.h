// The implementation of tesk::ISignalData.
#pragma once

#include <optional>
#include <vector>

#include "platform/kestrin.h"
#include "settings/cstr.h"
#include "signal/tree/properties.h"
#include "signaldata/model/counted.h"
#include "signaldata/signaldata.h"

namespace tesk {

class CSignalDataImp final : public TCountedData<ISignalData> {
public:
    long SetFullName(const char *name) override;
    long SetTypeInfo(const char *type) override;
    void SetHandle(int handle) override { m_handle = handle; }
    void SetMode(int mode) override { m_mode = mode; }
    void SetMaxTime(long long time) override { m_maxTime = time; }
    long SetProperty(const char *name, const char *value) override;
    long AddScalar(int handle) override;
    long Init(ISignalListReader *reader, int id) override;
    long Reserved(int ignored) override;
    ISignalData *FindByName(const char *name) override;
    Kestrin::KTypeInfo *GetTypeInfo() override { return m_typeInfo ? &*m_typeInfo : nullptr; }
    ISignalData *GetChild(unsigned index) override;
    int GetScalar(unsigned index) override;
    void ClearScalars() override;
    const char *GetFullName() override { return m_fullName; }
    const char *GetName() override { return m_fullName + m_pathLength; }
    bool GetPath(char *buffer, unsigned size) override;
    Kestrin::KTypeInfo *GetTypeInfo2() override { return GetTypeInfo(); }
    int GetHandle() override { return m_handle; }
    int GetMode() override { return m_mode; }
    long long GetMaxTime() override { return m_maxTime; }
    unsigned GetChildCount() override { return static_cast<unsigned>(m_children.size()); }
    unsigned GetScalarCount() override { return static_cast<unsigned>(m_scalars.size()); }
    void *GetReserved() override { return nullptr; }
    const char *GetProperty(const char *name) override { return m_properties.Find(name); }

private:
    void Reset();
    long InitBelow(ISignalListReader &reader, int id, CSignalDataImp &root);
    long InitChildren(ISignalListReader &reader, int id, int elements, CSignalDataImp &root);

    SimpleString::CStr m_fullName;
    std::size_t m_pathLength = 0;  // characters in front of the name
    int m_handle = -1;
    int m_mode = 0;
    long long m_maxTime = -1;
    CPropertyTable m_properties;
    std::optional<Kestrin::KTypeInfo> m_typeInfo;
    std::vector<TReference<CSignalDataImp>> m_children;
    std::vector<int> m_scalars;  // ascending if they came so
};

}  // namespace tesk
