#include "platform/ghw/ghwchanges.h"

#include <limits>
#include <new>
#include <span>
#include <utility>

#include "platform/ghw/ghwpass.h"

namespace NTARN {
namespace {

// A packed change: how many of the file's times lie between it and the one before, in groups of 7 bits; and the value, a
// byte or in such groups, the sign lowest, or 8 bytes of a real.
constexpr unsigned RealSize = 8;

std::uint64_t Fold(std::uint64_t value)
{
    return value << 1 ^ (value >> 63 != 0 ? ~std::uint64_t{0} : 0);
}

std::uint64_t Unfold(std::uint64_t folded)
{
    return folded >> 1 ^ ((folded & 1) != 0 ? ~std::uint64_t{0} : 0);
}

unsigned GroupCount(std::uint64_t number)
{
    return number < 0x80 ? 1 : static_cast<unsigned>(std::bit_width(number) + 6) / 7;
}

unsigned ValueSize(EGhwValue kind, std::uint64_t raw)
{
    switch (kind) {
    case EGhwValue::Byte: return 1;
    case EGhwValue::Real: return RealSize;
    default: return GroupCount(Fold(raw));
    }
}

std::uint8_t *PutGroups(std::uint8_t *to, std::uint64_t number)
{
    for (; number >= 0x80; number >>= 7)
        *to++ = static_cast<std::uint8_t>(number | 0x80);
    *to++ = static_cast<std::uint8_t>(number);
    return to;
}

std::uint8_t *PutValue(std::uint8_t *to, EGhwValue kind, std::uint64_t raw)
{
    if (kind == EGhwValue::Byte) {
        *to++ = static_cast<std::uint8_t>(raw);
        return to;
    }
    if (kind != EGhwValue::Real)
        return PutGroups(to, Fold(raw));
    for (unsigned i = 0; i < RealSize; ++i)
        *to++ = static_cast<std::uint8_t>(raw >> (8 * i));
    return to;
}

// Takes changes off the front of a run. The run is of our own making and holds whole changes.
class CRun {
public:
    CRun(const std::uint8_t *at, EGhwValue kind) : m_at(at), m_kind(kind) {}

    std::uint64_t TakeGroups()
    {
        std::uint64_t number = 0;
        for (unsigned bits = 0;; bits += 7) {
            const std::uint8_t byte = *m_at++;
            number |= std::uint64_t{byte & 0x7FU} << bits;
            if (byte < 0x80)
                return number;
        }
    }

    std::uint64_t TakeValue()
    {
        if (m_kind == EGhwValue::Byte)
            return *m_at++;
        if (m_kind != EGhwValue::Real)
            return Unfold(TakeGroups());
        std::uint64_t raw = 0;
        for (unsigned i = 0; i < RealSize; ++i)
            raw |= std::uint64_t{*m_at++} << (8 * i);
        return raw;
    }

private:
    const std::uint8_t *m_at;
    EGhwValue m_kind;
};

}  // namespace

// The first pass: how large the runs become. A list that does not end may be counted too; its room stays empty.
class CGhwChanges::CSizes {
public:
    explicit CSizes(CGhwChanges &owner) : m_owner(owner), m_last(owner.m_values.size()), m_sizes(owner.m_values.size())
    {}

    void BeginList(long long time)
    {
        m_time = time;
        m_isNewTime = m_owner.m_times.empty() || m_owner.m_times.back() != time;
        m_place = static_cast<std::uint32_t>(m_owner.m_times.size() - (m_isNewTime ? 0 : 1));
    }

    void Change(std::uint32_t element, std::uint64_t raw)
    {
        std::uint32_t &last = m_last[element];
        m_sizes[element] += GroupCount(m_place - last) + ValueSize(m_owner.m_values[element], raw);
        last = m_place;
    }

    bool EndList()
    {
        if (m_owner.m_times.size() == std::numeric_limits<std::uint32_t>::max())
            throw XGhwDamage();
        if (m_isNewTime)
            m_owner.m_times.push_back(m_time);
        ++m_owner.m_listCount;
        return true;
    }

    // Lays the runs one behind the other.
    void LayOut() const
    {
        std::uint64_t end = 0;
        m_owner.m_runs.reserve(m_sizes.size() + 1);
        for (const std::uint64_t size : m_sizes) {
            m_owner.m_runs.push_back(end);
            end += size;
        }
        m_owner.m_runs.push_back(end);
    }

private:
    CGhwChanges &m_owner;
    long long m_time = 0;
    bool m_isNewTime = false;
    std::uint32_t m_place = 0;          // of the time
    std::vector<std::uint32_t> m_last;  // of each element the place of its last change's time
    std::vector<std::uint64_t> m_sizes;
};

// The second pass: fills the runs.
class CGhwChanges::CPacker {
public:
    explicit CPacker(CGhwChanges &owner)
        : m_owner(owner), m_last(owner.m_values.size()), m_next(owner.m_runs.begin(), owner.m_runs.end() - 1)
    {}

    // The file may have changed since: nothing is taken for granted.
    void BeginList(long long time)
    {
        if (m_time < m_owner.m_times.size() && m_owner.m_times[m_time] != time && m_listCount > 0)
            ++m_time;
        if (m_time >= m_owner.m_times.size() || m_owner.m_times[m_time] != time)
            throw XGhwDamage();
    }

    void Change(std::uint32_t element, std::uint64_t raw)
    {
        const EGhwValue kind = m_owner.m_values[element];
        const std::uint64_t step = m_time - m_last[element];
        if (GroupCount(step) + ValueSize(kind, raw) > m_owner.m_runs[element + 1] - m_next[element])
            throw XGhwDamage();
        std::uint8_t *begin = m_owner.m_packed.data() + m_next[element];
        const std::uint8_t *end = PutValue(PutGroups(begin, step), kind, raw);
        m_next[element] += static_cast<std::uint64_t>(end - begin);
        m_last[element] = m_time;
        ++m_owner.m_counts[element];
    }

    bool EndList() { return ++m_listCount < m_owner.m_listCount; }

private:
    CGhwChanges &m_owner;
    std::uint32_t m_time = 0;  // place of the time
    std::uint64_t m_listCount = 0;
    std::vector<std::uint32_t> m_last;
    std::vector<std::uint64_t> m_next;  // of each element where its next change goes
};

CGhwChanges::CGhwChanges(CGhwBytes &bytes, const std::vector<EGhwValue> &values)
    : m_bytes(bytes), m_values(values), m_begin(bytes.Position())
{
    CSizes sizes(*this);
    try {
        CGhwPass(m_bytes, m_values, sizes).Run();
    } catch (const tesk::XByteFault &) {
        throw;
    } catch (const XGhwCut &) {
        m_state = EState::Cut;
    } catch (const XGhwDamage &) {
        m_state = EState::Damaged;
    }
    sizes.LayOut();
}

const std::vector<SFileEvent> &CGhwChanges::Events(std::uint32_t element)
{
    const auto [place, isNew] = m_events.try_emplace(element);
    if (!isNew)
        return place->second;
    try {
        Pack();
        place->second = Unpack(element);
    } catch (const std::bad_alloc &) {
        m_hasLost = true;
    }
    return place->second;
}

void CGhwChanges::Pack()
{
    if (m_isPacked)
        return;
    m_isPacked = true;
    m_counts.resize(m_values.size());
    if (m_listCount == 0)
        return;
    try {
        m_packed.resize(static_cast<std::size_t>(m_runs.back()));
        CPacker packer(*this);
        m_bytes.Seek(m_begin);
        CGhwPass(m_bytes, m_values, packer).Run();
    } catch (const XGhwDamage &) {
        m_hasLost = true;
    }
}

std::vector<SFileEvent> CGhwChanges::Unpack(std::uint32_t element) const
{
    std::vector<SFileEvent> events;
    if (m_counts[element] == 0)
        return events;
    events.reserve(m_counts[element]);
    CRun run(m_packed.data() + m_runs[element], m_values[element]);
    std::size_t time = 0;
    for (std::uint32_t i = 0; i < m_counts[element]; ++i) {
        time += static_cast<std::size_t>(run.TakeGroups());
        const std::uint64_t raw = run.TakeValue();
        events.push_back({m_times[time], static_cast<std::uint32_t>(raw), static_cast<std::uint32_t>(raw >> 32)});
    }
    return events;
}

}  // namespace NTARN
