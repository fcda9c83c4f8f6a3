#include "platform/fst/fstevents.h"

#include <cstdint>
#include <limits>
#include <numeric>

namespace NTARN {
namespace {

constexpr std::uint8_t NoValue = 255;

std::uint8_t Element(const SFstValue &value, std::size_t element, bool isPort)
{
    if (value.isPacked)
        return static_cast<std::uint8_t>(2 + (value.bytes[element / 8] >> (7 - element % 8) & 1));
    return isPort ? FstPortValue(value.bytes[element]) : FstValue(value.bytes[element]);
}

}  // namespace

long long SFstClock::Time(std::uint64_t time) const
{
    const auto ticks = static_cast<long long>(time);
    long long moved = 0;
    if (__builtin_add_overflow(ticks, timeZero, &moved))
        moved = std::numeric_limits<long long>::max();  // times are not negative
    const long long rest = moved % divisor;
    return moved / divisor - (rest < 0 ? 1 : 0);
}

CFstEventMaker::CFstEventMaker(const SFstStore &store, const SFstClock &clock, bool isBigEndian)
    : m_store(store), m_clock(clock), m_isBigEndian(isBigEndian), m_next(store.Width())
{}

void CFstEventMaker::AddInitial(const SFstInitial &initial)
{
    m_previous.assign(m_next.size(), NoValue);
    m_lastTime = initial.time;
    if (!initial.letters.empty())
        AddValue(m_clock.Time(initial.time), {initial.letters, false});
}

void CFstEventMaker::AddChain(SFstSpan bytes, const CFstTimes &times)
{
    CFstChain chain(bytes, m_store);
    while (!chain.AtEnd()) {
        std::uint64_t timeIndex = 0;
        const SFstValue value = chain.Next(timeIndex);
        if (timeIndex >= times.Count() || times.At(timeIndex) < m_lastTime)
            throw XFstDamage();
        m_lastTime = times.At(timeIndex);
        AddValue(m_clock.Time(m_lastTime), value);
    }
}

void CFstEventMaker::EndCounting()
{
    m_isCounting = false;
    m_made.begins.assign(m_next.size() + 1, 0);
    std::partial_sum(m_next.begin(), m_next.end(), m_made.begins.begin() + 1);
    m_made.events = std::vector<SFileEvent>(m_made.begins.back());
    m_next.assign(m_made.begins.begin(), m_made.begins.end() - 1);
}

// One bit and a real keep every value that is written, a bus those that are new to an element.
void CFstEventMaker::AddValue(long long time, const SFstValue &value)
{
    if (m_store.kind == SFstStore::EKind::Real)
        return AddEvent(0, time, FstReal(value.bytes, m_isBigEndian));
    const bool isPort = m_store.kind == SFstStore::EKind::Port;
    if (m_next.size() == 1)
        return AddEvent(0, time, Element(value, 0, isPort));
    for (std::size_t i = 0; i < m_next.size(); ++i)
        AddElement(i, time, Element(value, i, isPort));
}

void CFstEventMaker::AddElement(std::size_t element, long long time, std::uint8_t value)
{
    if (value == m_previous[element])
        return;
    m_previous[element] = value;
    AddEvent(element, time, value);
}

void CFstEventMaker::AddEvent(std::size_t element, long long time, std::uint64_t value)
{
    std::size_t &next = m_next[element];
    if (!m_isCounting)
        m_made.events[next] = {time, static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)};
    ++next;
}

}  // namespace NTARN
