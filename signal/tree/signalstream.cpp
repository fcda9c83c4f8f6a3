// The saved forms of a signal: the byte stream, and the export to a list.
#include <algorithm>
#include <string>
#include <utility>

#include "base/wrap.h"
#include "signal/tree/loadlevel.h"
#include "signal/tree/signalimp.h"
#include "signal/tree/streamform.h"

namespace tesk {

namespace {

constexpr const char *Stimulator = "Stimulator";
constexpr const char *VBusName = "VBus";

// Writes pairs of texts, no more than were announced.
class CPairWriter {
public:
    explicit CPairWriter(ISignalStream &stream) : m_stream(stream) {}

    // @return false if the stream did not take the number
    bool Announce(std::size_t count)
    {
        m_left = std::min(count, LargestWord);
        return WriteWord(m_stream, m_left) >= 0;
    }

    // @return false if a write failed; all four of a pair are made in any case
    bool Write(const char *key, const char *value)
    {
        if (m_left == 0)
            return true;
        --m_left;
        const bool keyWritten = WriteText(m_stream, key);
        const bool valueWritten = WriteText(m_stream, value);
        return keyWritten && valueWritten;
    }

private:
    ISignalStream &m_stream;
    std::size_t m_left = 0;
};

}  // namespace

long CSignalImp::SaveToStream(ISignalStream *stream)
{
    if (stream == nullptr)
        return E_FAIL;
    // Deliberate: a loaded signal has these two in its table as well, and so saves them twice.
    const bool hasInfo = !m_stimulatorInfo.IsEmpty();
    CPairWriter pairs(*stream);
    if (!pairs.Announce(m_properties.size() + (hasInfo ? 1 : 0) + (IsVBus() ? 1 : 0)))
        return E_FAIL;
    for (const auto &[key, value] : m_properties)
        if (!pairs.Write(key, value))
            break;  // deliberate: what follows is still tried, and its result is the result
    if (hasInfo)
        pairs.Write(Stimulator, m_stimulatorInfo);
    if (IsVBus())
        pairs.Write(VBusName, "1");
    return m_children != nullptr ? m_children->Save(stream) : WriteWord(*stream, 0);
}

long CSignalImp::LoadFromStream(ISignalStream *stream, ISignalContainer *container, ISignal *parent)
{
    if (stream == nullptr || container == nullptr)
        return E_INVALIDARG;
    unsigned count = 0;
    if (ReadWord(*stream, count) < 0)
        return E_FAIL;
    return LoadBehindCount(*stream, count, *container, parent);
}

long CSignalImp::LoadBehindCount(ISignalStream &stream, unsigned count, ISignalContainer &container, ISignal *parent)
try {
    const CLoadLevel level;
    if (level.IsRefused() || !LoadProperties(stream, count))
        return E_FAIL;
    const long result = LoadChildren(stream, container);
    if (result < 0)
        return result;
    SetParent(parent);
    FinishLoading(container);
    return S_OK;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

// Deliberate: "Name", "Handle" and "MaxTime" go to the table alone.
bool CSignalImp::LoadProperties(ISignalStream &stream, unsigned count)
{
    std::string key, value;
    for (; count > 0; --count) {
        if (!ReadText(stream, key) || !ReadText(stream, value))
            return false;
        m_properties.Set(key.c_str(), value.c_str());
        if (_stricmp(key.c_str(), Stimulator) == 0)
            SetStimulatorInfo(value.c_str());
        else if (_stricmp(key.c_str(), VBusName) == 0)
            SetFlag(VBus, ReadInt(value.c_str()) != 0);
    }
    return true;
}

long CSignalImp::LoadChildren(ISignalStream &stream, ISignalContainer &container)
{
    TReference<ISignalContainer> children;
    const long result = CreateChildContainer(container, children);
    if (result < 0)
        return result;
    if (children->Load(&stream, this) >= 0)
        TakeChildren(std::move(children));
    else if (CLoadLevel::IsRefused())
        return E_FAIL;
    return S_OK;  // a count of 0, which `Load` refuses, makes a leaf
}

long CSignalImp::ExportToList(ISignalListWriter *writer, int index)
{
    if (writer == nullptr)
        return E_FAIL;
    const int handle = GetHandle();
    const int parentHandle = GetParent() != nullptr ? GetParent()->GetHandle() : -1;
    const int childCount = m_children != nullptr ? static_cast<int>(m_children->GetCount()) : 0;
    long long maxTime = GetMaxTime();
    const bool added = m_children != nullptr
                           ? writer->AddBus(handle, childCount, m_name, parentHandle, index, GetMode(), &maxTime)
                           : writer->AddSignal(handle, m_name, parentHandle, index, GetMode(), &maxTime);
    if (!added || !writer->SetProperty(handle, Stimulator, GetStimulatorInfo()))
        return E_FAIL;
    if (IsVBus() && !writer->SetProperty(handle, VBusName, "1"))
        return E_FAIL;
    for (int i = 0; i < childCount; ++i) {
        ISignal *child = nullptr;
        if (m_children->GetAt(static_cast<unsigned>(i), &child) < 0)
            return E_FAIL;
        const long result = child->ExportToList(writer, i);
        if (result < 0)
            return result;
    }
    return S_OK;
}

}  // namespace tesk
