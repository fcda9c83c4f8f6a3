// One of two files that are compared: its changes by rising time, told to the comparison.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/saturate.h"
#include "tools/compare/comparison.h"
#include "tools/compare/signalpairs.h"
#include "waveform/files/filewalk.h"

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
    /// @param file    must outlive the walk, as `forms` must
    CSideWalk(IWaveformFile &file, ECompareSide side, const CTickMap &ticks, const CSideForms &forms);

    /// Signals that share their events have one source.
    std::size_t SourceOf(std::size_t signal);
    /// Has a part of a pair of the comparison changed with its source. To be called before the walk begins.
    void Feed(std::size_t pair, const SComparedForm &form, const SPairPart &part);

    /// Goes to the next change. @return false at the end
    bool Next();
    /// Ticks of the comparison.
    long long Time() const { return m_time; }
    /// Tells the comparison of the change.
    void Tell(CComparison &comparison) const;
    /// Whether the change changes a value that the comparison has. @return the pair
    std::optional<std::size_t> FindChange(const CComparison &comparison) const;

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

    void Write(const SUse &use, char *row) const;

    IWaveformFile &m_file;
    ECompareSide m_side;
    CTickMap m_ticks;
    const CSideForms &m_forms;
    std::map<std::pair<std::string, std::vector<long long>>, std::size_t> m_known;  // sources by type and events
    std::vector<std::optional<std::size_t>> m_sourceOf;
    std::vector<SFileSignal> m_sources;
    std::vector<std::vector<SUse>> m_uses;  // of each source
    std::optional<CFileWalk> m_walk;        // made when the first change is asked for
    long long m_time = -1;
};

}  // namespace tesk
