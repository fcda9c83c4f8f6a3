// The types of signals: what is built for them, and what follows from them.
#include <cstring>
#include <new>
#include <utility>

#include "base/limits.h"
#include "platform/crt.h"
#include "signal/tree/countsignals.h"
#include "signal/tree/signalchildren.h"
#include "signal/tree/signalimp.h"

namespace tesk {

namespace {

struct SStdType {
    const char *name;
    std::size_t compared;  // characters of the identifier that count, one more than the name has for the whole of it
    int code;
};

constexpr SStdType StdTypes[] = {
    {"std_logic", 10, 1},        {"std_ulogic", 11, 1},        {"bit", 4, 0},
    {"std_logic_vector", 16, 7}, {"std_ulogic_vector", 17, 7}, {"bit_vector", 10, 6},
};

int StdTypeOf(const char *identifier)
{
    for (const SStdType &type : StdTypes)
        if (_strnicmp(identifier, type.name, type.compared) == 0)
            return type.code;
    return 0;
}

}  // namespace

const Kestrin::KTypeInfo *CSignalImp::EffectiveType()
{
    if (m_typeInfo)
        return &*m_typeInfo;
    const Kestrin::KTypeInfo *parentType = m_parent.Get() != nullptr ? m_parent.Get()->GetTypeInfo() : nullptr;
    if (KindOf(parentType) != Kestrin::ETypeKind::Array)
        return nullptr;
    return parentType->GetArrayElementKTypeInfo();
}

long CSignalImp::SetTypeInfo(const Kestrin::KTypeInfo &type)
try {
    const Kestrin::KTypeInfo *effective = EffectiveType();
    if (effective != nullptr && std::strcmp(effective->GetTypeInfoString(), type.GetTypeInfoString()) == 0)
        return S_OK;
    return ChangeType(type);
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

// Deliberate: an equal description is applied too.
long CSignalImp::SetTypeInfoString(const char *type)
try {
    return ChangeType(Kestrin::KTypeInfo(type));
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CSignalImp::ChangeType(const Kestrin::KTypeInfo &type)
{
    m_stdType = 0;
    return CountSignals(type) <= MaxSignals ? ApplyType(type) : E_FAIL;
}

long CSignalImp::ApplyType(const Kestrin::KTypeInfo &type)
{
    const Kestrin::KTypeInfo kept(type);  // `type` may be a part of the type that goes
    if (BuildFor(kept) < 0)
        return E_FAIL;
    m_typeInfo = kept;
    FollowType();
    return S_OK;
}

void CSignalImp::SetTypeOnly(const char *type)
{
    if (type != nullptr)
        m_typeInfo = Kestrin::KTypeInfo(type);
    else
        m_typeInfo.reset();
    FollowType();
}

long CSignalImp::GetTypeIdentifier(char *buffer, unsigned size)
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    const char *identifier = type != nullptr ? type->GetTypeIdentifier() : nullptr;
    if (identifier == nullptr || *identifier == 0)
        return E_FAIL;
    const std::size_t length = std::strlen(identifier);
    if (buffer == nullptr || length >= size)
        return E_OUTOFMEMORY;
    std::memcpy(buffer, identifier, length + 1);
    return S_OK;
}

long CSignalImp::BuildFor(const Kestrin::KTypeInfo &type)
{
    switch (KindOf(type)) {
    case Kestrin::ETypeKind::Invalid: return E_FAIL;
    case Kestrin::ETypeKind::Array: return TakeBuilt(ChildrenMaker().OfArray(type));
    case Kestrin::ETypeKind::Record: return TakeBuilt(ChildrenMaker().OfRecord(type));
    default: return BuildWave(type);
    }
}

CChildrenMaker CSignalImp::ChildrenMaker()
{
    return CChildrenMaker([this](const Kestrin::KTypeInfo &type) -> TReference<ISignal> {
        TReference<CSignalImp> child = NewSignal(this);
        if (child->ApplyType(type) < 0)
            return nullptr;
        return child;
    });
}

long CSignalImp::TakeBuilt(TReference<ISignalContainer> children)
{
    if (children == nullptr)
        return E_FAIL;
    TakeChildren(std::move(children));
    return S_OK;
}

// Deliberate: a scalar of fewer than 4 bytes gets a fresh wave each time, since its wave is 4 wide.
long CSignalImp::BuildWave(const Kestrin::KTypeInfo &type)
{
    const unsigned size = type.GetScalarSize_OldFormat();
    if (m_children == nullptr && GetValueSize() == size)
        return S_OK;
    const long result = MakeOwnWave(size);
    if (result >= 0)
        m_children.reset();
    return result;
}

long CSignalImp::MakeOwnWave(unsigned size)
{
    ISignalWave *wave = nullptr;
    const long result = CreateSignalWave(size, &wave);
    if (result < 0)
        return result;
    m_wave.reset(wave);
    SetFlag(WaveShared, false);
    return S_OK;
}

void CSignalImp::DeriveStdType()
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    const char *identifier = type != nullptr ? type->GetTypeIdentifier() : nullptr;
    if (identifier != nullptr && *identifier != 0)
        m_stdType = StdTypeOf(identifier);
    m_spare = false;
}

void CSignalImp::FollowType()
{
    constexpr int Composite = 4, Decimal = 3;
    DeriveStdType();
    if (m_stdType != 0)
        SetDisplayMode(0);
    else
        SetDisplayMode(m_children != nullptr ? Composite : Decimal);
}

}  // namespace tesk
