// One of two files that are compared: its changes by rising time, told to the comparison.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/saturate.h"
#include "tools/compare/comparison.h"
#include "tools/compare/signalpairs.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

/// The kind of a signal's elements, and how they are brought into the form that is compared.
class CSideForms {
public:
    CSideForms(IWaveformFile &file, const SComparePolicy &policy, CLiteralTexts &literals);

    const CValueForm &Of(std::size_t signal) const { return *m_ofSignals[signal]; }
    std::vector<EComparedKind> Kinds() const;

private:
    std::map<std::string, CValueForm> m_forms;  // by the description of the scalar type
    std::vector<const CValueForm *> m_ofSignals;
};

/// Times of a file as those of who compares.
class CTickMap {
public:
    /// @param file, here  femtoseconds per tick
    /// @param offset      ticks here, of the beginning of the file
    CTickMap(long long file, long long here, long long offset = 0)
        : m_factor(file / std::gcd(file, here)), m_divisor(here / std::gcd(file, here)), m_offset(offset)
    {}

    /// Times that are no whole number of ticks are rounded down; those beyond the last tick are that.
    long long operator()(long long time) const
    {
        return AddSaturating(m_offset, MultiplySaturating(time, m_factor) / m_divisor);
    }

private:
    long long m_factor;
    long long m_divisor;
    long long m_offset;
};

class CSideWalk {
public:
    /// A pair that changes with a source, and where what stands for that is found.
    struct SFed {
        std::size_t pair;
        std::size_t begin;
        std::size_t end;
    };

    /// @param file    must outlive the walk, as `forms` must
    CSideWalk(IWaveformFile &file, ECompareSide side, const CTickMap &ticks, const CSideForms &forms);

    /// Signals that share their events have one source.
    std::size_t SourceOf(std::size_t signal);
    /// Has a part of a pair of the comparison changed with its source. To be called pair by pair, before the walk begins.
    void Feed(std::size_t pair, const SComparedForm &form, const SPairPart &part);

    /// Where changes follow, and when the next ones do at the earliest, in ticks of the comparison. Begins the walk.
    std::optional<long long> NextTime();
    /// Goes to the changes at that time. To be called where there is one.
    void Step();
    /// The sources that have changed then, each once.
    std::span<const std::uint32_t> Changed() const { return m_changed; }
    /// What such a source feeds, by rising pairs.
    std::span<const SFed> FedBy(std::size_t source) const
    {
        return std::span(m_fed).subspan(m_fedBegins[source], m_fedBegins[source + 1] - m_fedBegins[source]);
    }

    /// Tells the comparison of all changes.
    void Tell(CComparison &comparison) const;
    /// The same of one pair. @param time  ticks of the comparison
    void Tell(CComparison &comparison, std::size_t source, const SFed &fed, long long time) const;
    /// Whether a change changes a value that the comparison has. @return the pair
    std::optional<std::size_t> FindChange(const CComparison &comparison) const;

    /// What a source has now, as `IChangeWalk` gives it.
    const CElementValues &GetValues(std::size_t source) const { return m_walk->GetValues(source); }
    std::span<const std::uint8_t> GetPositions(std::size_t source) const { return m_walk->GetPositions(source); }

private:
    // Elements of a source, and where they stand in a pair.
    struct SUse {
        std::size_t pair;
        std::size_t element;
        std::size_t count;
        std::size_t offset;  // bytes in the row
        std::size_t levels;  // of the whole pair, if an integer is compared with a vector; else 0
        const CValueForm *form;
    };

    void Begin();
    void Write(std::size_t source, const SUse &use, char *row) const;

    IWaveformFile &m_file;
    ECompareSide m_side;
    CTickMap m_ticks;
    const CSideForms &m_forms;
    std::map<std::pair<std::string, std::vector<long long>>, std::size_t> m_known;  // sources by type and events
    std::vector<std::optional<std::size_t>> m_sourceOf;
    std::vector<SFileSignal> m_sources;
    std::vector<std::vector<SUse>> m_usesOf;  // of each source, until the walk begins
    std::vector<SUse> m_uses;                 // the same, one source behind the other
    std::vector<SFed> m_fed;
    std::vector<std::size_t> m_fedBegins;  // of each source
    std::unique_ptr<IChangeWalk> m_walk;   // made when the first change is asked for
    std::span<const std::uint32_t> m_changed;
    bool m_hasNext = false;
    long long m_nextFileTime = 0;
    long long m_time = -1;
};

}  // namespace tesk
