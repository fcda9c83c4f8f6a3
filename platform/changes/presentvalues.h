// The values that signals have at the place where a walk stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/changes/changewalk.h"

namespace tesk {

/// Signals of bits, kept as one position in a byte each, and reals.
class CPresentValues {
public:
    /// @return the number of the signal
    std::size_t AddBits(std::size_t width)
    {
        m_positions.resize(m_positions.size() + width, IChangeWalk::NoPosition);
        return Add();
    }
    std::size_t AddReal() { return Add(); }

    /// Without any for a real.
    std::span<std::uint8_t> Positions(std::size_t signal)
    {
        return std::span(m_positions).subspan(m_begins[signal], m_begins[signal + 1] - m_begins[signal]);
    }
    void SetReal(std::size_t signal, std::uint64_t bits)
    {
        if (m_reals.size() <= signal)
            m_reals.resize(m_begins.size());
        m_reals[signal] = bits;
    }

    const CElementValues &Values(std::size_t signal)
    {
        m_values.resize(m_begins.size() - 1);
        CElementValues &values = m_values[signal];
        const std::span<const std::uint8_t> positions = Positions(signal);
        if (positions.empty()) {
            values.assign(1, signal < m_reals.size() ? m_reals[signal] : std::nullopt);
            return values;
        }
        values.clear();
        for (const std::uint8_t position : positions)
            values.push_back(position != IChangeWalk::NoPosition ? std::optional<std::uint64_t>(position)
                                                                 : std::nullopt);
        return values;
    }

private:
    std::size_t Add()
    {
        m_begins.push_back(m_positions.size());
        return m_begins.size() - 2;
    }

    std::vector<std::uint8_t> m_positions;
    std::vector<std::size_t> m_begins{0};  // of each signal in m_positions
    std::vector<std::optional<std::uint64_t>> m_reals;
    std::vector<CElementValues> m_values;  // of those that were asked for
};

}  // namespace tesk
