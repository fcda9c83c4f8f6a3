// Signals, containers and what fills them, for tests of the signal model.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "signal/memorystream.h"
#include "signal/reference.h"

inline constexpr const char *BitType = "e#3#bitc2 01";
inline constexpr const char *StdLogicType = "e#9#std_logicc9 UX01ZWLH-";
inline constexpr const char *IntegerType = "i#7#integerrict-2147483648 2147483647";
inline constexpr const char *RealType = "f#4#realrrct-1.79769e+308 1.79769e+308";

/// An array type of the given ranges, such as "ricd7 0".
inline std::string ArrayType(const std::string &name, int dimensions, const std::string &ranges,
                             const std::string &element)
{
    return "a#" + std::to_string(name.size()) + "#" + name + std::to_string(dimensions) + " " + ranges + " " + element;
}

/// An array type with one dimension, left bound to right bound.
inline std::string ArrayType(const std::string &name, int left, int right, const std::string &element = StdLogicType)
{
    const std::string way = left > right ? "d" : "t";
    return ArrayType(name, 1, "ric" + way + std::to_string(left) + " " + std::to_string(right), element);
}

/// A vector of std_logic, `length` long.
inline std::string VectorType(int length)
{
    const std::string left = std::to_string(length - 1);
    return ArrayType("std_logic_vector(" + left + " downto 0)", 1, "ricd" + left + " 0", StdLogicType);
}

struct SField {
    std::string name;
    std::string type;
};

inline std::string RecordType(const std::vector<SField> &fields)
{
    std::string text = "r#3#rec" + std::to_string(fields.size());
    for (const SField &field : fields)
        text += " " + field.name + " " + field.type;
    return text;
}

inline TReference<ISignal> MakeSignal(const std::string &type, ISignal *parent = nullptr)
{
    ISignal *signal = nullptr;
    CreateSignal(type.c_str(), parent, &signal);
    return TReference<ISignal>(signal);
}

inline TReference<ISignal> MakeNamed(const std::string &name, const std::string &type)
{
    TReference<ISignal> signal = MakeSignal(type);
    signal->SetName(name.c_str());
    return signal;
}

inline TReference<ISignal> MakeEmpty()
{
    ISignal *signal = nullptr;
    CreateEmptySignal(&signal);
    return TReference<ISignal>(signal);
}

inline TReference<IHandleManager> MakeManager()
{
    IHandleManager *manager = nullptr;
    CreateHandleManager(&manager);
    return TReference<IHandleManager>(manager);
}

inline TReference<ISignalContainer> MakeContainer(IHandleManager *manager = nullptr)
{
    ISignalContainer *container = nullptr;
    CreateSignalContainer(&container, manager);
    return TReference<ISignalContainer>(container);
}

/// Adds a signal of which the container then is the only owner.
inline ISignal *AddNamed(ISignalContainer &container, const std::string &name, const std::string &type)
{
    const TReference<ISignal> signal = MakeNamed(name, type);
    ISignal *added = signal.get();
    container.Add(added);
    return added;
}

inline ISignal *ChildAt(ISignalContainer *container, unsigned index)
{
    ISignal *child = nullptr;
    if (container != nullptr)
        container->GetAt(index, &child);
    return child;
}

inline std::vector<std::string> NamesIn(ISignalContainer *container)
{
    std::vector<std::string> names;
    for (unsigned i = 0; container != nullptr && i < container->GetCount(); ++i)
        names.emplace_back(ChildAt(container, i)->GetName());
    return names;
}

inline ISignal *FindIn(ISignalContainer &container, const char *name)
{
    ISignal *signal = nullptr;
    container.Find(name, &signal);
    return signal;
}

inline std::string PropertyOf(ISignal &signal, const char *name)
{
    const char *value = signal.GetProperty(name);
    return value != nullptr ? value : "(none)";
}

inline std::string OrNone(const char *text)
{
    return text != nullptr ? text : "(none)";
}

/// Adds an event with a 4-byte value.
inline void AddEvent(ISignal &signal, long long time, int value)
{
    signal.GetWave()->AddEvent(time, 0, &value, sizeof value);
}

inline std::string Word(unsigned number)
{
    return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8 & 0xFF)};
}

inline std::string Pair(const std::string &key, const std::string &value)
{
    return Word(static_cast<unsigned>(key.size())) + key + Word(static_cast<unsigned>(value.size())) + value;
}

/// One row of a list.
struct SListRow {
    std::string name;
    std::string type;
    bool isBus = false;
    int elements = 0;
    std::vector<int> children;
    int mode = 0;
    long long maxTime = 0;
    std::map<std::string, std::string> properties;
};

/// A list of signals in memory.
class CMemoryList final : public ISignalListReader {
public:
    int GetCount() override { return static_cast<int>(top.size()); }
    int GetChild(int parentHandle, int index) override
    {
        ++childrenAskedFor;
        const std::vector<int> &children = rows[parentHandle].children;
        return static_cast<std::size_t>(index) < children.size() ? children[static_cast<std::size_t>(index)] : -1;
    }
    int GetTop(int index) override { return top[static_cast<std::size_t>(index)]; }
    void GetInfo(int id, bool *isBus, int *elements, const char **name, int *mode, long long *maxTime) override
    {
        const SListRow &row = rows[id];
        *isBus = row.isBus;
        *elements = row.elements;
        *name = row.name.c_str();
        *mode = row.mode;
        *maxTime = row.maxTime;
    }
    const char *GetProperty(int id, const char *name) override
    {
        const auto entry = rows[id].properties.find(name);
        return entry != rows[id].properties.end() ? entry->second.c_str() : nullptr;
    }
    const char *GetTypeInfo(int id) override { return rows[id].type.empty() ? nullptr : rows[id].type.c_str(); }

    void AddBus(int id, const std::string &name, const std::string &type, const std::vector<int> &children)
    {
        SListRow &row = rows[id];
        row.name = name;
        row.type = type;
        row.isBus = true;
        row.elements = static_cast<int>(children.size());
        row.children = children;
    }
    void AddLeaf(int id, const std::string &name, const std::string &type = StdLogicType)
    {
        rows[id].name = name;
        rows[id].type = type;
    }

    std::vector<int> top;
    std::map<int, SListRow> rows;
    int childrenAskedFor = 0;
};

/// One signal of a database.
struct SDatabaseSignal {
    std::string name;
    std::string type;
    NTARN::HSignalRange children;
    int mode = 0;
    long long endTime = 0;
};

/// A waveform database in memory, without events.
class CMemoryDatabase final : public NTARN::IDatabaseReader {
public:
    long long GetEndTime() override { return endTime; }
    long long GetResolution() override { return 1000; }
    const int *RootHandlesBegin() override { return roots.data(); }
    const int *RootHandlesEnd() override { return roots.data() + roots.size(); }
    NTARN::HSignalRange GetChildRange(int handle) override { return signals[handle].children; }
    std::string GetName(int handle) override { return signals[handle].name; }
    const Kestrin::KTypeInfo &GetType(int handle) override
    {
        const auto [entry, isNew] = m_types.try_emplace(handle, signals[handle].type.c_str());
        return entry->second;
    }
    NTARN::KEventIterator EventsFrom(int, long long) override { return {nullptr, 0, 0}; }
    NTARN::KEventIterator EventsEnd(int) override { return {nullptr, 0, 0}; }
    int GetMode(int handle) override { return signals[handle].mode; }
    std::string GetFullName(int handle, bool) override { return "top/" + signals[handle].name; }
    long long GetSignalEndTime(int handle) override { return signals[handle].endTime; }

    std::vector<int> roots;
    std::map<int, SDatabaseSignal> signals;
    long long endTime = 0;

private:
    std::map<int, Kestrin::KTypeInfo> m_types;
};
