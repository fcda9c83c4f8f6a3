#include "platform/fst/fstevents.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <numeric>

#include "platform/fst/fstlimits.h"

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

CFstEventMaker::CFstEventMaker(const SFstStore &store, const SFstClock &clock, bool isBigEndian, std::uint64_t most)
    : m_store(store), m_clock(clock), m_isBigEndian(isBigEndian), m_width(store.Width()),
      m_most(std::min<std::uint64_t>(most, std::numeric_limits<std::uint32_t>::max()))
{
    m_made.begins.resize(m_width + 1);
}

void CFstEventMaker::AddInitial(const SFstInitial &initial)
{
    m_previous.assign(m_width, NoValue);
    m_bits.clear();
    m_count = 0;
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
    std::partial_sum(m_made.begins.begin(), m_made.begins.end(), m_made.begins.begin());
    m_made.events = std::vector<SFileEvent>(m_made.begins.back());
}

// Each element's next event would go where those of the element behind it begin.
SFstEvents CFstEventMaker::Take()
{
    std::shift_right(m_made.begins.begin(), m_made.begins.end(), 1);
    m_made.begins.front() = 0;
    return std::move(m_made);
}

// One bit and a real keep every value that is written, a bus those that are new to an element.
void CFstEventMaker::AddValue(long long time, const SFstValue &value)
{
    if (m_store.kind == SFstStore::EKind::Real)
        return AddEvent(0, time, FstReal(value.bytes, m_isBigEndian));
    if (m_width == 1)
        return AddEvent(0, time, Element(value, 0, m_store.kind == SFstStore::EKind::Port));
    if (value.isPacked && !m_bits.empty())
        return AddBits(time, value.bytes);
    LeaveBits();
    AddLetters(time, value);
    if (value.isPacked)
        m_bits.assign(value.bytes.begin(), value.bytes.end());
}

void CFstEventMaker::AddLetters(long long time, const SFstValue &value)
{
    const bool isPort = m_store.kind == SFstStore::EKind::Port;
    for (std::size_t i = 0; i < m_width; ++i)
        AddElement(i, time, Element(value, i, isPort));
}

// Of bits behind bits only those that differ are looked at: a value may be a million bits wide.
void CFstEventMaker::AddBits(long long time, SFstSpan bits)
{
    for (std::size_t i = 0; i < bits.size(); ++i) {
        unsigned changed = m_bits[i] ^ bits[i];
        m_bits[i] = bits[i];
        for (; changed != 0; changed &= changed - 1) {
            const auto bit = static_cast<unsigned>(std::countr_zero(changed));
            if (const std::size_t element = 8 * i + 7 - bit; element < m_width)
                AddEvent(element, time, 2 + (bits[i] >> bit & 1U));
        }
    }
}

void CFstEventMaker::LeaveBits()
{
    if (m_bits.empty())
        return;
    for (std::size_t i = 0; i < m_width; ++i)
        m_previous[i] = Element({m_bits, true}, i, false);
    m_bits.clear();
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
    if (m_count++ == m_most)
        throw XFstTooMuch{{}, "changes"};
    if (m_isCounting) {
        ++m_made.begins[element + 1];
        return;
    }
    std::uint32_t &next = m_made.begins[element];
    m_made.events[next++] = {time, static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)};
}

}  // namespace NTARN
