// A waveform file in memory, for tests of what compares files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "waveform/files/waveformfile.h"

inline const char *const NineStates = "e#9#std_logicc9 UX01ZWLH-";
inline const char *const FourStates = "e#3#regc4 01ZX";
inline const char *const Integers = "i#7#integerrict-2147483648 2147483647";
inline const char *const Reals = "f#4#realrrct-1.79769e+308 1.79769e+308";

/// "va#10#v[left:right]..." as the readers describe vectors.
inline std::string VectorType(int left, int right, const std::string &element)
{
    const std::string name = "v(" + std::to_string(left) + ':' + std::to_string(right) + ')';
    return "a#" + std::to_string(name.size()) + '#' + name + "1 ric" + (left > right ? "d" : "t") +
           std::to_string(left) + ' ' + std::to_string(right) + ' ' + element;
}

/// Raw values by rising time.
using CElementEvents = std::vector<std::pair<long long, std::uint64_t>>;

class CMemoryFile final : public tesk::IWaveformFile {
public:
    CMemoryFile(long long resolution, long long endTime) : m_resolution(resolution), m_endTime(endTime) {}

    /// @param elements  the events of each element, left bound first
    void Add(const std::string &path, const std::string &type, const std::vector<CElementEvents> &elements)
    {
        m_signals.push_back({path, Kestrin::KTypeInfo(type.c_str()), static_cast<long long>(m_elements.size()),
                             static_cast<long long>(elements.size())});
        for (const CElementEvents &events : elements) {
            m_identities.push_back(static_cast<long long>(m_elements.size()));
            m_elements.push_back(events);
        }
    }

    /// Another name of a signal.
    void AddAlias(const std::string &path, std::size_t of)
    {
        const tesk::SFileSignal original = m_signals.at(of);
        std::vector<CElementEvents> elements;
        for (long long i = 0; i < original.elementCount; ++i)
            elements.push_back(m_elements[static_cast<std::size_t>(original.firstElement + i)]);
        Add(path, original.type.GetTypeInfoString(), elements);
        for (long long i = 0; i < original.elementCount; ++i)
            m_identities[static_cast<std::size_t>(m_signals.back().firstElement + i)] = original.firstElement + i;
    }

    long long GetResolution() override { return m_resolution; }
    long long GetEndTime() override { return m_endTime; }
    std::optional<int> FindSignal(const char *) override { return std::nullopt; }
    long MakeSignal(int, bool, ISignal **) override { return -1; }
    const std::vector<tesk::SFileSignal> &GetSignals() override { return m_signals; }
    long long IdentifyEvents(long long element) override { return m_identities.at(static_cast<std::size_t>(element)); }
    std::unique_ptr<tesk::IElementWalk> Walk(long long element) override
    {
        return std::make_unique<CWalk>(m_elements.at(static_cast<std::size_t>(element)));
    }

private:
    class CWalk final : public tesk::IElementWalk {
    public:
        explicit CWalk(const CElementEvents &events) : m_events(events) {}
        bool Next(long long &time, std::uint64_t &value) override
        {
            if (m_next == m_events.size())
                return false;
            time = m_events[m_next].first;
            value = m_events[m_next++].second;
            return true;
        }

    private:
        const CElementEvents &m_events;
        std::size_t m_next = 0;
    };

    long long m_resolution;
    long long m_endTime;
    std::vector<tesk::SFileSignal> m_signals;
    std::vector<CElementEvents> m_elements;
    std::vector<long long> m_identities;
};
