// One pass over the value changes of a GHW file.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "platform/ghw/ghwhierarchy.h"
#include "platform/ghw/ghwsection.h"

namespace NTARN {

/// Hands every change to a sink, which has the operations
///
///     void BeginList(long long time);                          changes at this time follow; times do not fall
///     void Change(std::uint32_t element, std::uint64_t raw);   raw: the position, the integer, the bits of the real
///     bool EndList();                                          whether to go on
template <class TSink>
class CGhwPass {
public:
    CGhwPass(CGhwBytes &bytes, const std::vector<EGhwValue> &values, TSink &sink)
        : m_bytes(bytes), m_values(values), m_sink(sink)
    {}

    /// Reads up to the end of the file, or until the sink has enough.
    /// @throw XGhwDamage
    void Run()
    {
        for (;;) {
            const std::uint32_t tag = TakeGhwTag(m_bytes);
            if (tag == GhwTag("DIR"))
                return PassDirectory();
            if (tag != GhwTag("SNP") && tag != GhwTag("CYC"))
                throw XGhwDamage();
            if (!(tag == GhwTag("SNP") ? ReadSnapshot() : ReadCycles()))
                return;
        }
    }

private:
    // The values of all elements at one time.
    bool ReadSnapshot()
    {
        ExpectGhwZeros(m_bytes);
        BeginList(m_bytes.Long());
        for (std::size_t i = 0; i < m_values.size(); ++i)
            ReadValue(i);
        if (!m_sink.EndList())
            return false;
        ExpectGhwTag(m_bytes, GhwTag("ESN"));
        return true;
    }

    // Lists of changes, behind each the way to the next time; -1 ends them.
    bool ReadCycles()
    {
        BeginList(m_bytes.Long());
        for (;;) {
            ReadList();
            if (!m_sink.EndList())
                return false;
            const std::int64_t step = m_bytes.Signed();
            if (step == -1)
                break;
            if (step < 0 || step > std::numeric_limits<std::int64_t>::max() - m_time)
                throw XGhwDamage();
            BeginList(static_cast<std::uint64_t>(m_time + step));
        }
        ExpectGhwTag(m_bytes, GhwTag("ECY"));
        return true;
    }

    // Elements by rising numbers, each told by the distance from the one before; 0 ends the list.
    void ReadList()
    {
        std::uint64_t element = 0;
        for (std::uint32_t step = m_bytes.Number(); step != 0; step = m_bytes.Number()) {
            element += step;
            if (element > m_values.size())
                throw XGhwDamage();
            ReadValue(static_cast<std::size_t>(element - 1));
        }
    }

    void ReadValue(std::size_t element)
    {
        m_sink.Change(static_cast<std::uint32_t>(element), TakeValue(m_values[element]));
    }

    std::uint64_t TakeValue(EGhwValue value)
    {
        switch (value) {
        case EGhwValue::Byte: return m_bytes.Byte();
        case EGhwValue::Integer: return TakeInteger();
        case EGhwValue::Long: return static_cast<std::uint64_t>(m_bytes.Signed());
        case EGhwValue::Real: return m_bytes.Long();
        default: throw XGhwDamage();
        }
    }

    std::uint64_t TakeInteger()
    {
        const std::int64_t value = m_bytes.Signed();
        if (value != static_cast<std::int32_t>(value))
            throw XGhwDamage();
        return static_cast<std::uint32_t>(value);
    }

    void BeginList(std::uint64_t time)
    {
        const auto next = static_cast<std::int64_t>(time);
        if (next < m_time)
            throw XGhwDamage();
        m_time = next;
        m_sink.BeginList(next);
    }

    // Where the sections are, and where that is told: of no use to who has read them all.
    void PassDirectory()
    {
        m_bytes.Word();
        for (std::uint64_t left = std::uint64_t{8} * m_bytes.Word(); left > 0; --left)
            m_bytes.Byte();
        ExpectGhwTag(m_bytes, GhwTag("EOD"));
        ExpectGhwTag(m_bytes, GhwTag("TAI"));
        m_bytes.Long();
    }

    CGhwBytes &m_bytes;
    const std::vector<EGhwValue> &m_values;
    TSink &m_sink;
    std::int64_t m_time = 0;
};

}  // namespace NTARN
