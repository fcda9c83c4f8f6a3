// The events of a group of scalars in a stretch of time, as bytes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace Morvel {

/// Up to so many neighbouring scalars are a group: a bit for each of them in a word.
constexpr unsigned MaxGroup = 64;

/// What the scalars of a group have in common. Bit 0 of a word stands for the last scalar.
struct SGroupForm {
    std::uint8_t count = 1;      ///< 1 to `MaxGroup`
    std::uint8_t valueSize = 1;  ///< bytes of a raw value, 1 to 8
    std::uint8_t low =
        0;  ///< of values of 1 byte: what a bit 0 stands for; an even number, and a bit 1 is the next one
};

/// The bit of each scalar of a group.
constexpr std::uint64_t AllOf(unsigned count)
{
    return ~std::uint64_t{0} >> (MaxGroup - count);
}

/// What stands in front of so many events.
void AppendChunkHead(const SGroupForm &form, std::size_t events, std::string &bytes);

/// Makes the bytes of events.
class CGroupEncoder {
public:
    /// @param bytes  what the events are appended to
    CGroupEncoder(const SGroupForm &form, std::string &bytes) : m_form(form), m_bytes(bytes) {}

    /// Adds an event whose values are `low` or the one behind it.
    /// @param time     number of a time, not before that of the last event
    /// @param changed  the scalars that have it, at least one
    /// @param bits     of theirs
    void AddWord(std::uint32_t time, std::uint64_t changed, std::uint64_t bits);
    /// @param values  raw, by bit; only those of `changed` count
    void AddValues(std::uint32_t time, std::uint64_t changed, std::span<const std::uint64_t, MaxGroup> values);

private:
    void AppendHead(std::uint32_t time, std::uint64_t form);

    SGroupForm m_form;
    std::string &m_bytes;
    std::uint32_t m_time = 0;
    std::uint64_t m_known = 0;  // whose bits stand in m_bits
    std::uint64_t m_bits = 0;
};

/// Reads the bytes, the head included, without trusting them. They must stay where they are.
class CGroupDecoder {
public:
    /// @param times  numbers of times are below
    CGroupDecoder(const SGroupForm &form, std::string_view bytes, std::uint32_t times);

    /// Goes to the next event. @return false at the end, or where the bytes are wrong
    bool Next();
    /// After the end: whether the bytes were right.
    bool IsGood() const { return m_isGood; }

    unsigned Count() const { return m_form.count; }
    /// Number of the time.
    std::uint32_t Time() const { return m_time; }
    /// The scalars that have the event.
    std::uint64_t Changed() const { return m_changed; }
    /// Whether all values are `Low` or the one behind it, as `Bits` tells.
    bool IsWord() const { return m_values == nullptr; }
    std::uint64_t Bits() const { return m_bits; }
    unsigned Low() const { return m_form.low; }
    /// The raw value of a scalar that has the event.
    std::uint64_t Value(unsigned bit) const
    {
        if (IsWord())
            return m_form.low + (m_bits >> bit & 1);
        const int rank = std::popcount(m_changed & ((std::uint64_t{1} << bit) - 1));
        return tesk::LoadLittleEndian(m_values + static_cast<unsigned>(rank) * m_form.valueSize, m_form.valueSize);
    }

private:
    bool Fail();
    bool TakeEvent(std::uint64_t form);
    bool TakeBit(std::uint64_t form);
    bool TakeToggle();
    bool TakeWord();
    bool TakeValues();

    const char *m_next;
    const char *m_end;
    const char *m_values = nullptr;  // of the event, raw
    std::uint64_t m_changed = 0;
    std::uint64_t m_known = 0;  // whose bits stand in m_bits
    std::uint64_t m_bits = 0;
    std::uint32_t m_left = 0;  // events
    std::uint32_t m_time = 0;
    std::uint32_t m_times;
    SGroupForm m_form;
    bool m_isGood = true;
};

}  // namespace Morvel
