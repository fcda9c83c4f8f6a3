#include "signaldata/model/signaldataimp.h"

#include <algorithm>
#include <cstring>

#include "core/scalarinfo.h"
#include "platform/felvarbase.h"
#include "platform/types/dumptypes.h"
#include "signal/signal.h"
#include "signal/tree/loadlevel.h"
#include "signal/tree/signalsprovider.h"

namespace tesk {

namespace {

constexpr const char *TypeByDefault = Kestrin::StdLogicTypeText.data();

bool IsSameName(const char *left, const char *right)
{
    const SNameLess less;
    return !less(left, right) && !less(right, left);
}

// Length of what stands in front of the last component of a path.
std::size_t PathLength(const char *fullName)
{
    const char separator = GetVHDLHierarchySeparator();
    const char *last = separator != 0 ? std::strrchr(fullName, separator) : nullptr;
    if (last == nullptr || last < SkipExtendedID(fullName))
        return 0;
    return static_cast<std::size_t>(last + 1 - fullName);
}

}  // namespace

long CSignalDataImp::SetFullName(const char *name)
{
    if (name == nullptr)
        return E_INVALIDARG;
    m_fullName = name;
    m_pathLength = PathLength(m_fullName);
    return S_OK;
}

long CSignalDataImp::SetTypeInfo(const char *type)
try {
    if (!Kestrin::KTypeInfo::CheckTypeInfo(type))
        return E_INVALIDARG;
    m_typeInfo = Kestrin::KTypeInfo(type);
    return S_OK;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CSignalDataImp::SetProperty(const char *name, const char *value)
{
    if (name == nullptr || value == nullptr)
        return E_FAIL;
    const SimpleString::CStr text(value);  // it may be the text that goes
    m_properties.Set(name, text);
    return S_OK;
}

// Deliberate: what the search finds missing is appended, not inserted.
long CSignalDataImp::AddScalar(int handle)
{
    if (handle < 0)
        return E_INVALIDARG;
    const auto place = std::lower_bound(m_scalars.begin(), m_scalars.end(), handle);
    if (place == m_scalars.end() || *place != handle)
        m_scalars.push_back(handle);
    return S_OK;
}

void CSignalDataImp::Reset()
{
    m_fullName.Empty();
    m_pathLength = 0;
    m_handle = -1;
    m_mode = 0;
    m_maxTime = -1;
    m_properties.Clear();
    m_typeInfo.reset();
    m_children.clear();
    m_scalars.clear();
}

long CSignalDataImp::Init(ISignalListReader *reader, int id)
try {
    return reader != nullptr ? InitBelow(*reader, id, *this) : E_INVALIDARG;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

// Fills this object and its children. Handles of leaves go to `root`.
long CSignalDataImp::InitBelow(ISignalListReader &reader, int id, CSignalDataImp &root)
{
    const CLoadLevel level;
    Reset();
    if (id == -1 || level.IsRefused())
        return E_FAIL;
    bool isBus = false;
    int elements = 0, mode = 0;
    const char *name = nullptr;
    long long maxTime = 0;
    reader.GetInfo(id, &isBus, &elements, &name, &mode, &maxTime);
    SetFullName(name);
    SetMode(mode);
    SetMaxTime(maxTime);
    const char *type = reader.GetTypeInfo(id);
    if (SetTypeInfo(type != nullptr ? type : TypeByDefault) < 0)
        return E_FAIL;
    for (const char *property : {"Stimulator", "VBus"})
        SetProperty(property, reader.GetProperty(id, property));
    if (!isBus || elements == 0)
        return root.AddScalar(id);
    return InitChildren(reader, id, elements, root);
}

long CSignalDataImp::InitChildren(ISignalListReader &reader, int id, int elements, CSignalDataImp &root)
{
    for (int i = 0; i < elements; ++i) {
        m_children.emplace_back(new CSignalDataImp);
        if (m_children.back()->InitBelow(reader, reader.GetChild(id, i), root) < 0)
            return E_FAIL;
    }
    return S_OK;
}

long CSignalDataImp::Reserved(int /*ignored*/)
{
    return E_NOTIMPL;
}

ISignalData *CSignalDataImp::FindByName(const char *name)
{
    if (name == nullptr)
        return nullptr;
    if (IsSameName(m_fullName, name))
        return this;
    for (const auto &child : m_children)
        if (ISignalData *found = child->FindByName(name); found != nullptr)
            return found;
    return nullptr;
}

ISignalData *CSignalDataImp::GetChild(unsigned index)
{
    return index < m_children.size() ? m_children[index].get() : nullptr;
}

int CSignalDataImp::GetScalar(unsigned index)
{
    return index < m_scalars.size() ? m_scalars[index] : -1;
}

void CSignalDataImp::ClearScalars()
{
    m_scalars.clear();
    for (const auto &child : m_children)
        child->ClearScalars();
}

bool CSignalDataImp::GetPath(char *buffer, unsigned size)
{
    if (buffer == nullptr)
        return false;
    buffer[0] = 0;
    if (size < m_pathLength)
        return false;
    std::memcpy(buffer, m_fullName, m_pathLength);
    buffer[m_pathLength] = 0;
    return true;
}

long CreateSignalData(ISignalData **data)
{
    return HandOutNewData<CSignalDataImp>(data);
}

}  // namespace tesk
