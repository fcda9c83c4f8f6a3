#include "platform/fst/fstreader.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

#include "platform/felvarbase.h"
#include "platform/files/regularfile.h"
#include "platform/fst/fstcount.h"
#include "platform/fst/fstwalk.h"
#include "platform/log.h"
#include "platform/types/dumptypes.h"

namespace NTARN {
namespace {

using Kestrin::KTypeInfo;

constexpr int FemtosecondScale = -15;

long long PowerOfTen(int exponent)
{
    long long power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

CFstFile Open(const std::string &path)
{
    CFstFile file(path);
    file.Unwrap();
    return file;
}

// A writer that was killed, or was told so, leaves the hierarchy in a file of its own.
CFstHierarchy OpenHierarchy(CFstFile &file, const SFstLayout &layout, const std::string &path)
{
    SFstLimits limits(file.PackedSize());
    CFstBuffer bytes;
    if (layout.hierarchy) {
        bytes = ReadFstHierarchy(file, *layout.hierarchy, limits);
    } else {
        bytes = ReadFstSidecar(path + ".hier");
        limits = SFstLimits(file.PackedSize() + bytes.size());
        if (bytes.empty())
            throw XFstDamage();
    }
    CFstHierarchy hierarchy(std::move(bytes), layout.isCut && !layout.hierarchy, limits);
    if (layout.geometry)
        CheckFstGeometry(file, *layout.geometry, hierarchy.Stores());
    return hierarchy;
}

// Times are not negative: where the time zero would make them so, they count from the first one.
long long TimeZero(const SFstLayout &layout)
{
    const auto begin = static_cast<long long>(layout.Begin());
    return layout.header.timeZero < -begin ? -begin : layout.header.timeZero;
}

// Whether a place is that of the first event at or after a time.
bool IsFirstFrom(std::span<const SFileEvent> events, std::size_t place, long long time)
{
    return place <= events.size() && (place == events.size() || events[place].time >= time) &&
           (place == 0 || events[place - 1].time < time);
}

void Warn(const std::string &text)
{
    Q71log_PrintFormattedString(2, "KERNEL", "", text.c_str());
}

}  // namespace

CFstReader::CFstReader(const std::string &path)
    : m_path(path), m_file(Open(path)), m_layout(ReadFstLayout(m_file)),
      m_hierarchy(OpenHierarchy(m_file, m_layout, path)), m_variables(m_hierarchy.Variables()),
      m_stores(m_hierarchy.Stores()), m_clock{TimeZero(m_layout), PowerOfTen(FemtosecondScale - m_layout.header.scale)},
      m_resolution(PowerOfTen(m_layout.header.scale - FemtosecondScale)), m_blocks(m_file, m_layout),
      m_values(m_blocks, m_stores, m_clock), m_separator(GetVHDLHierarchySeparator())
{
    GiveHandles();
    WarnOfOpening();
}

HSignalRange CFstReader::GetChildRange(int handle)
{
    const auto [variable, element] = Find(handle);
    if (variable == nullptr || element >= 0 || Width(*variable) == 1)
        return {};
    const int first = m_children[static_cast<std::size_t>(handle - 1)];
    return {first, first + static_cast<int>(Width(*variable) - 1)};
}

std::string CFstReader::GetName(int handle)
{
    const auto [variable, element] = Find(handle);
    if (variable == nullptr)
        return {};
    if (element < 0)
        return m_hierarchy.Path(*variable, m_separator);
    const SFstName name = m_hierarchy.Name(*variable);
    return "[" + std::to_string(name.left >= name.right ? name.left - element : name.left + element) + "]";
}

const KTypeInfo &CFstReader::GetType(int handle)
{
    static const KTypeInfo none("");
    static const KTypeInfo bit(Kestrin::StdLogicTypeText.data());
    static const KTypeInfo real(Kestrin::RealTypeText.data());
    const auto [variable, element] = Find(handle);
    if (variable == nullptr)
        return none;
    if (m_stores[variable->store].kind == SFstStore::EKind::Real)
        return real;
    return element >= 0 || Width(*variable) == 1 ? bit : BusType(m_hierarchy.Name(*variable));
}

KEventIterator CFstReader::EventsFrom(int handle, long long time)
{
    const auto [events, count] = Events(handle);
    const std::span all(events, count);
    for (std::size_t near = m_recent.place; events == m_recent.events && near <= m_recent.place + 1; ++near) {
        if (IsFirstFrom(all, near, time)) {
            m_recent.place = near;
            return {events, count, near};
        }
    }
    const auto event = std::ranges::lower_bound(all, time, {}, &SFileEvent::time);
    m_recent = {events, static_cast<std::size_t>(event - all.begin())};
    return {events, count, m_recent.place};
}

KEventIterator CFstReader::EventsEnd(int handle)
{
    const auto [events, count] = Events(handle);
    return {events, count, count};
}

std::string CFstReader::GetFullName(int handle, bool)
{
    const auto [variable, element] = Find(handle);
    if (variable == nullptr)
        return {};
    const std::string path = m_hierarchy.Path(*variable, m_separator);
    return element < 0 ? path : path + GetName(handle);
}

CFstReader::SPlace CFstReader::Find(int handle) const
{
    if (handle < 1)
        return {nullptr, -1};
    const auto place = static_cast<std::size_t>(handle - 1);
    if (place < m_variables.size())
        return {&m_variables[place], -1};
    const auto after = std::ranges::upper_bound(m_children, handle);
    if (after == m_children.begin())
        return {nullptr, -1};
    const SFstVariable &variable = m_variables[static_cast<std::size_t>(after - m_children.begin()) - 1];
    const int element = handle - *(after - 1);
    return static_cast<std::uint32_t>(element) < Width(variable) ? SPlace{&variable, element} : SPlace{nullptr, -1};
}

const KTypeInfo &CFstReader::BusType(const SFstName &name)
{
    const auto known = m_busTypes.find({name.left, name.right});
    if (known != m_busTypes.end())
        return known->second;
    const KTypeInfo type(Kestrin::BusTypeText(name.left, name.right).c_str());
    return m_busTypes.emplace(std::pair(name.left, name.right), type).first->second;
}

// A bus has no events of its own, its elements have.
std::pair<const SFileEvent *, std::size_t> CFstReader::Events(int handle)
{
    const auto [variable, element] = Find(handle);
    if (variable == nullptr || (element < 0 && Width(*variable) > 1))
        return {nullptr, 0};
    const SFstEvents &events = m_values.Events(variable->store);
    WarnOfDamage();
    if (events.begins.empty())
        return {nullptr, 0};
    const std::uint32_t *begin = &events.begins[static_cast<std::size_t>(std::max(element, 0))];
    return {events.events.data() + begin[0], begin[1] - begin[0]};
}

long long CFstReader::IdentifyChanges(long long element)
{
    const auto [variable, place] = Find(static_cast<int>(element));
    if (variable == nullptr || (place < 0 && Width(*variable) > 1) || !m_values.MayHaveEvents(variable->store))
        return -element;
    WarnOfDamage();
    const long long places = 2 * static_cast<long long>(CFstHierarchy::MostWidth);
    return m_values.Identify(variable->store) * places + std::max(place, 0);
}

// The stores of whole variables; nothing if one is none.
std::optional<std::vector<std::uint32_t>> CFstReader::StoresOf(std::span<const tesk::SElements> signals) const
{
    std::vector<std::uint32_t> stores;
    for (const tesk::SElements &signal : signals) {
        const auto [variable, element] = Find(static_cast<int>(signal.first));
        if (variable == nullptr || element > 0 || Width(*variable) != signal.count)
            return std::nullopt;
        stores.push_back(variable->store);
    }
    return stores;
}

std::unique_ptr<tesk::IChangeWalk> CFstReader::WalkChanges(std::span<const tesk::SElements> signals)
{
    const auto stores = StoresOf(signals);
    if (!stores || !AreFstBlocksInOrder(m_layout))
        return nullptr;
    return std::make_unique<CFstWalk>(m_blocks, m_stores, m_clock, *stores, [this] {
        FailIfUnreadable();
        WarnOfDamage();
    });
}

std::optional<std::vector<tesk::SChangeCount>> CFstReader::CountChanges(std::span<const tesk::SElements> signals,
                                                                        const tesk::SStretch &stretch,
                                                                        const tesk::FProgress &progress)
{
    const auto stores = StoresOf(signals);
    if (!stores)
        return std::nullopt;
    // Stores that share their events are counted once: a clock may have as many of them as a design has modules.
    std::unordered_map<std::uint32_t, std::uint32_t> counted;
    CFstCounter counter(m_blocks, m_stores, m_clock, stretch);
    for (const std::uint32_t store : *stores) {
        if (counted.try_emplace(m_values.Identify(store), store).second)
            counter.Add(store);
    }
    counter.Count(progress);
    FailIfUnreadable();
    WarnOfDamage();
    std::vector<tesk::SChangeCount> counts;
    for (const std::uint32_t store : *stores)
        counts.push_back(counter.CountOf(counted.at(m_values.Identify(store))));
    return counts;
}

tesk::ESignalDirection CFstReader::GetDirection(int handle)
{
    using tesk::ESignalDirection;
    constexpr ESignalDirection Directions[] = {ESignalDirection::Unknown, ESignalDirection::In,
                                               ESignalDirection::Out,     ESignalDirection::InOut,
                                               ESignalDirection::Out,     ESignalDirection::Unknown};
    const SFstVariable *variable = Find(handle).variable;
    return variable != nullptr && variable->direction < std::size(Directions) ? Directions[variable->direction]
                                                                              : ESignalDirection::Unknown;
}

void CFstReader::GiveHandles()
{
    if (m_variables.size() >= std::numeric_limits<int>::max())
        throw XFstDamage();
    std::uint64_t next = m_variables.size() + 1;
    m_roots.reserve(m_variables.size());
    m_children.reserve(m_variables.size());
    for (const SFstVariable &variable : m_variables) {
        m_roots.push_back(static_cast<int>(m_roots.size()) + 1);
        m_children.push_back(static_cast<int>(next));
        next += Width(variable) > 1 ? Width(variable) : 0;
        if (next > std::numeric_limits<int>::max())
            throw XFstDamage();
    }
}

void CFstReader::WarnOfOpening() const
{
    if (m_clock.timeZero != m_layout.header.timeZero)
        Warn("Waveform file `" + m_path + "' begins before time 0: its times are counted from its begin.");
    if (m_layout.isCut)
        Warn("Waveform file `" + m_path + "' is cut off: it is read up to time " +
             std::to_string(m_clock.Time(m_layout.End())) + ".");
    else if (m_layout.header.blocks > m_layout.changes.size())
        Warn("Waveform file `" + m_path + "' is damaged: some of its value changes are missing.");
    if (m_hierarchy.WideCount() > 0)
        Warn("Waveform file `" + m_path + "': signals of more than " + std::to_string(CFstHierarchy::MostWidth) +
             " bits are left out (" + std::to_string(m_hierarchy.WideCount()) + ").");
    if (m_hierarchy.TextCount() > 0)
        Warn("Waveform file `" + m_path + "': signals of text are left out (" +
             std::to_string(m_hierarchy.TextCount()) + ").");
}

// Where many signals are read together, that of which a part is missing for no fault of its own is not to be taken for whole.
void CFstReader::FailIfUnreadable() const
{
    if (m_blocks.ReadError() != 0)
        throw std::runtime_error(XFileUnreadable(m_blocks.ReadError()).TextFor(m_path));
}

void CFstReader::WarnOfDamage()
{
    if (m_hasWarned || !m_blocks.FirstDamage())
        return;
    m_hasWarned = true;
    if (m_blocks.ReadError() != 0)
        return TellUnreadable(m_path, m_blocks.ReadError());
    const char *const reason = m_blocks.IsTooMuch() ? "' claims more than a file of its size can hold" : "' is damaged";
    Warn("Waveform file `" + m_path + reason + ": value changes behind time " +
         std::to_string(m_clock.Time(*m_blocks.FirstDamage())) + " are left out.");
}

}  // namespace NTARN
