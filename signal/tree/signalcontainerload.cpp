// Filling a container from a byte stream, a waveform database or a list of signals.
#include <algorithm>
#include <exception>
#include <string>
#include <unordered_map>

#include "base/wrap.h"
#include "platform/tarn.h"
#include "signal/tree/loadlevel.h"
#include "signal/tree/signalcontainer.h"
#include "signal/tree/signalimp.h"
#include "signal/tree/streamform.h"

namespace tesk {

namespace {

constexpr unsigned StdLogic = 1;

TReference<CSignalImp> NewStdLogic()
{
    ISignal *signal = nullptr;
    CreateStdSignal(StdLogic, nullptr, &signal);
    return TReference<CSignalImp>(static_cast<CSignalImp *>(signal));
}

int CountChildren(const NTARN::HSignalRange &range)
{
    if (range.first == -1 || range.last == -1)
        return 0;
    const long long count = static_cast<long long>(range.last) - range.first + 1;
    return static_cast<int>(std::clamp(count, 0LL, MaxSignals + 1));
}

// Counts what a database would make, before anything is made: handles that share their children describe more signals
// than they are.
class CDatabaseCount {
public:
    explicit CDatabaseCount(NTARN::IDatabaseReader &reader) : m_reader(reader) {}

    /// Counts a signal and all below it, those of the calls before included.
    /// @return false if they are more than MaxSignals below one, or nest too deep
    bool Add(int handle)
    {
        m_total += Count(handle, 1);
        return m_total <= MaxSignals + 1;
    }

private:
    static constexpr long long TooMany = MaxSignals + 2;

    long long Count(int handle, int depth)
    {
        const NTARN::HSignalRange children =
            handle != -1 ? m_reader.GetChildRange(handle) : NTARN::HSignalRange{-1, -1};
        const int elements = CountChildren(children);
        if (elements == 0)
            return 1;
        if (const auto known = m_counts.find(handle); known != m_counts.end())
            return known->second;
        long long count = depth < MaxNesting && elements <= MaxSignals ? 1 : TooMany;
        for (int i = 0; i < elements && count < TooMany; ++i)
            count += Count(static_cast<int>(tesk::WrapAdd(children.first, i)), depth + 1);
        return m_counts[handle] = std::min(count, TooMany);
    }

    NTARN::IDatabaseReader &m_reader;
    std::unordered_map<int, long long> m_counts;  // of signals with children
    long long m_total = 0;
};

// Whether a row of a list stands for something that is no signal.
bool IsNoSignal(ISignalListReader &reader, int id)
{
    for (const char *property : {"Expression", "EmptyRow"}) {
        const char *value = reader.GetProperty(id, property);
        if (value != nullptr && tesk::ReadInt(value) != 0)
            return true;
    }
    return false;
}

struct SRow {
    bool isBus = false;
    int elements = 0;
    const char *name = nullptr;
    int mode = 0;
    long long maxTime = 0;
};

}  // namespace

void CSignalContainerImp::NoteMaxTime(ISignal &signal)
{
    m_maxTime = std::max(m_maxTime, signal.GetMaxTime());
}

long CSignalContainerImp::Load(ISignalStream *stream, ISignal *parent)
try {
    if (stream == nullptr)
        return E_INVALIDARG;
    unsigned count = 0;
    const long result = ReadWord(*stream, count);
    if (result < 0)
        return result;
    if (count == 0)
        return E_FAIL;
    m_maxTime = 0;
    for (unsigned i = 0; i < count; ++i)
        if (!LoadOne(*stream, parent))
            return E_FAIL;
    return S_OK;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

// A signal that cannot be loaded is passed over. Where the stream has ended none is made: a damaged stream may claim
// 65,535 of them at every level.
// @return false if the load is to be given up as a whole
bool CSignalContainerImp::LoadOne(ISignalStream &stream, ISignal *parent)
{
    unsigned properties = 0;
    if (ReadWord(stream, properties) < 0)
        return true;
    TReference<CSignalImp> signal = NewStdLogic();
    if (signal == nullptr)
        return true;
    if (signal->LoadBehindCount(stream, properties, *this, parent) < 0)
        return !CLoadLevel::IsRefused();
    NoteMaxTime(*signal.release());  // the container's by now
    return true;
}

long CSignalContainerImp::LoadFromDatabase(NTARN::IDatabaseReader *reader)
try {
    if (reader == nullptr)
        return E_INVALIDARG;
    CDatabaseCount count(*reader);
    if (!std::all_of(reader->RootHandlesBegin(), reader->RootHandlesEnd(), [&](int root) { return count.Add(root); }))
        return E_FAIL;
    for (const int *handle = reader->RootHandlesBegin(); handle != reader->RootHandlesEnd(); ++handle) {
        ISignal *signal = nullptr;
        if (AddFromDatabase(reader, nullptr, *handle, &signal) < 0)
            return E_FAIL;
    }
    m_maxTime = reader->GetEndTime();
    return S_OK;
} catch (const std::exception &) {  // a damaged file
    return E_FAIL;
}

long CSignalContainerImp::AddFromDatabase(NTARN::IDatabaseReader *reader, ISignal *parent, int handle, ISignal **out)
try {
    if (out == nullptr)
        return E_INVALIDARG;
    *out = nullptr;
    const CLoadLevel level;
    if (reader == nullptr || handle == -1 || level.IsRefused())
        return E_FAIL;
    if (level.IsOutermost() && !CDatabaseCount(*reader).Add(handle))
        return E_FAIL;
    const std::string name = parent != nullptr ? reader->GetName(handle) : reader->GetFullName(handle, false);
    const int elements = CountChildren(reader->GetChildRange(handle));
    TReference<CSignalImp> signal = NewSignal(nullptr);
    signal->SetName(name.c_str());
    signal->SetHandle(handle);
    signal->SetMode(reader->GetMode(handle));
    signal->SetMaxTime(reader->GetSignalEndTime(handle));
    signal->SetTypeInfo(reader->GetType(handle));
    if (signal->AttachFromDatabase(reader, this, parent, elements) < 0)
        return E_FAIL;
    *out = signal.release();  // this container's by now
    return S_OK;
} catch (const std::exception &) {  // a damaged file
    return E_FAIL;
}

long CSignalContainerImp::LoadFromList(ISignalListReader *reader)
{
    if (reader == nullptr)
        return E_INVALIDARG;
    const int count = reader->GetCount();
    for (int i = 0; i < count; ++i) {
        ISignal *signal = nullptr;
        const long result = AddFromList(reader, nullptr, i, &signal);
        if (result == E_INVALIDARG)
            continue;
        if (result < 0)
            return E_FAIL;
        NoteMaxTime(*signal);
    }
    return S_OK;
}

long CSignalContainerImp::AddFromList(ISignalListReader *reader, ISignal *parent, int index, ISignal **out)
try {
    if (out == nullptr)
        return E_FAIL;
    *out = nullptr;
    const CLoadLevel level;
    if (reader == nullptr || level.IsRefused())
        return E_FAIL;
    const int id = parent != nullptr ? reader->GetChild(parent->GetHandle(), index) : reader->GetTop(index);
    if (id == -1)
        return E_FAIL;
    SRow row;
    reader->GetInfo(id, &row.isBus, &row.elements, &row.name, &row.mode, &row.maxTime);
    const SimpleString::CStr name(row.name);  // the texts of a list live until its next call
    if (IsNoSignal(*reader, id))
        return E_INVALIDARG;
    const char *type = reader->GetTypeInfo(id);
    if (type == nullptr)
        return E_FAIL;
    TReference<CSignalImp> signal = NewSignal(nullptr);
    signal->SetName(name);
    signal->SetHandle(id);
    signal->SetMode(row.mode);
    signal->SetMaxTime(row.maxTime);
    signal->SetTypeOnly(type);
    if (signal->AttachFromList(reader, this, parent, row.isBus ? row.elements : 0) < 0)
        return E_FAIL;
    *out = signal.release();  // this container's by now
    return S_OK;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

}  // namespace tesk
