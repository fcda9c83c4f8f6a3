// The next time of each of many sequences, the least of them at hand.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace tesk {

/// Above the times stand the least of each 64 of them, above these the least of each 64 again, and so on. Whoever goes on
/// looks only at the groups on his way, and many that go on at once share it.
class CNextTimes {
public:
    /// Stands for the time of a sequence that has ended.
    static constexpr long long Never = std::numeric_limits<long long>::max();

    /// So many sequences from now on. Whatever else is done allocates nothing.
    void SetCount(std::size_t count)
    {
        m_levels.assign(1, std::vector<long long>(count, Never));
        while (m_levels.back().size() > Group)
            m_levels.emplace_back((m_levels.back().size() + Group - 1) / Group, Never);
    }

    /// Takes the time of each sequence, by its number, anew.
    template <class FTimeOf>
    void Fill(const FTimeOf &timeOf)
    {
        for (std::size_t i = 0; i < m_levels[0].size(); ++i)
            m_levels[0][i] = timeOf(i);
        for (std::size_t level = 1; level < m_levels.size(); ++level)
            for (std::size_t i = 0; i < m_levels[level].size(); ++i)
                m_levels[level][i] = LeastOf(m_levels[level - 1], i);
    }

    /// `Never` if there is none.
    long long Least() const { return LeastOf(m_levels.back(), 0); }

    /// Calls `goOn(number)`, which gives the time that follows, for each sequence with the least time, by rising numbers.
    template <class FGoOn>
    void Take(const FGoOn &goOn)
    {
        TakeGroup(m_levels.size() - 1, 0, Least(), goOn);
    }

private:
    static constexpr std::size_t Group = 64;

    static long long LeastOf(const std::vector<long long> &level, std::size_t group)
    {
        long long least = Never;
        const std::size_t end = std::min(level.size(), (group + 1) * Group);
        for (std::size_t i = group * Group; i < end; ++i)
            least = std::min(least, level[i]);
        return least;
    }

    // A level has a 64th of the entries of the one below, so that it does not go deep.
    template <class FGoOn>
    void TakeGroup(std::size_t level, std::size_t group, long long time, const FGoOn &goOn)
    {
        std::vector<long long> &times = m_levels[level];
        const std::size_t end = std::min(times.size(), (group + 1) * Group);
        for (std::size_t i = group * Group; i < end; ++i) {
            if (times[i] != time)
                continue;
            if (level == 0) {
                times[i] = goOn(i);
            } else {
                TakeGroup(level - 1, i, time, goOn);
                times[i] = LeastOf(m_levels[level - 1], i);
            }
        }
    }

    std::vector<std::vector<long long>> m_levels =
        std::vector<std::vector<long long>>(1);  // the times themselves first
};

}  // namespace tesk
