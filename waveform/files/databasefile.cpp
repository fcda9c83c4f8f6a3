#include "waveform/files/databasefile.h"

#include <cstdint>
#include <utility>

#include "base/limits.h"
#include "signal/signal.h"
#include "waveform/files/elementswalk.h"
#include "waveform/tarnstimulus.h"

namespace tesk {

namespace {

class CDatabaseWalk final : public IElementWalk {
public:
    CDatabaseWalk(NTARN::IDatabaseReader &reader, int handle)
        : m_next(reader.EventsFrom(handle, 0)), m_end(reader.EventsEnd(handle))
    {}

    bool Next(long long &time, std::uint64_t &value) override
    {
        if (m_next == m_end)
            return false;
        time = *m_next;
        for (; !(m_next == m_end) && *m_next == time; ++m_next)
            value = std::uint64_t{m_next.extValue()} << 32 | m_next.value();
        return true;
    }

private:
    NTARN::KEventIterator m_next;
    NTARN::KEventIterator m_end;
};

// The events of elements, where the reader keeps them.
class CEventRanges {
public:
    void Add(NTARN::IDatabaseReader &reader, int handle)
    {
        const NTARN::SFileEvent *const first = reader.EventsFrom(handle, 0).event();
        const NTARN::SFileEvent *const last = (--reader.EventsEnd(handle)).event();
        m_elements.push_back({first, first != nullptr ? last + 1 : nullptr});
    }

    bool HasNext(std::size_t element) const { return m_elements[element].next != m_elements[element].end; }
    long long NextTime(std::size_t element) const { return m_elements[element].next->time; }
    void Take(std::size_t element)
    {
        SRange &range = m_elements[element];
        const long long time = range.next->time;
        while (range.next != range.end && range.next->time == time)
            ++range.next;
    }
    std::uint64_t Value(std::size_t element) const
    {
        const NTARN::SFileEvent &event = m_elements[element].next[-1];
        return std::uint64_t{event.extValue} << 32 | event.value;
    }

private:
    struct SRange {
        const NTARN::SFileEvent *next;
        const NTARN::SFileEvent *end;
    };

    std::vector<SRange> m_elements;
};

}  // namespace

CDatabaseFile::CDatabaseFile(Reader &reader)
    : m_reader(reader), m_changes(dynamic_cast<IChangeSource *>(&reader)),
      m_directions(dynamic_cast<IDirectionSource *>(&reader))
{}

CDatabaseFile::CDatabaseFile(std::unique_ptr<Reader> reader) : CDatabaseFile(*reader)
{
    m_owned = std::move(reader);
}

std::optional<int> CDatabaseFile::FindSignal(const char *name)
{
    const int handle = FindTarnSignalHandle(&m_reader, name, -1, nullptr, {});
    return handle != -1 ? std::optional(handle) : std::nullopt;
}

long CDatabaseFile::MakeSignal(int handle, bool, ISignal **signal)
{
    return CreateSignal(m_reader.GetType(handle), nullptr, signal);
}

const std::vector<SFileSignal> &CDatabaseFile::GetSignals()
{
    if (m_signals)
        return *m_signals;
    m_signals.emplace();
    for (const int *handle = m_reader.RootHandlesBegin(); handle != m_reader.RootHandlesEnd(); ++handle)
        AddSignals(*handle, m_reader.GetFullName(*handle, false), 0);
    return *m_signals;
}

ESignalDirection CDatabaseFile::DirectionOf(int handle) const
{
    return m_directions != nullptr ? m_directions->GetDirection(handle) : ESignalDirection::Unknown;
}

// What has no elements is left out: it never has a value.
void CDatabaseFile::AddSignals(int handle, const std::string &path, int depth)
{
    const Kestrin::KTypeInfo &type = m_reader.GetType(handle);
    const NTARN::HSignalRange children = m_reader.GetChildRange(handle);
    if (type.IsScalar())
        m_signals->push_back({path, type, handle, 1, DirectionOf(handle)});
    else if (children.first < 0 || depth > MaxNesting)
        return;
    else if (type.IsSimple())
        m_signals->push_back({path, type, children.first, children.last - children.first + 1, DirectionOf(handle)});
    else
        for (int child = children.first; child <= children.last; ++child)
            AddSignals(child, path + (KindOf(type) == Kestrin::ETypeKind::Record ? "." : "") + m_reader.GetName(child),
                       depth + 1);
}

long long CDatabaseFile::IdentifyEvents(long long element)
{
    if (m_changes != nullptr)
        return m_changes->IdentifyChanges(element);
    const NTARN::SFileEvent *event = m_reader.EventsFrom(static_cast<int>(element), 0).event();
    return event != nullptr ? static_cast<long long>(reinterpret_cast<std::intptr_t>(event)) : -element;
}

std::unique_ptr<IElementsWalk> CDatabaseFile::WalkTogether(long long first, std::size_t count, std::size_t)
{
    CEventRanges ranges;
    for (std::size_t i = 0; i < count; ++i)
        ranges.Add(m_reader, static_cast<int>(first + static_cast<long long>(i)));
    return MakeElementsWalk(std::move(ranges), count);
}

std::unique_ptr<IChangeWalk> CDatabaseFile::WalkChanges(const std::vector<SFileSignal> &signals)
{
    return m_changes != nullptr ? m_changes->WalkChanges(ElementsOf(signals)) : nullptr;
}

std::optional<std::vector<SChangeCount>> CDatabaseFile::CountChanges(const std::vector<SFileSignal> &signals,
                                                                     const SStretch &stretch, const FProgress &progress)
{
    if (m_changes == nullptr)
        return std::nullopt;
    return m_changes->CountChanges(ElementsOf(signals), stretch, progress);
}

std::unique_ptr<IElementWalk> CDatabaseFile::Walk(long long element)
{
    return std::make_unique<CDatabaseWalk>(m_reader, static_cast<int>(element));
}

}  // namespace tesk
