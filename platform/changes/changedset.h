// The signals that change at one time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tesk {

/// Collects numbers, each once, and gives them in rising order. To look for the few among millions it has a bit for each
/// 64 of them that have one.
class CChangedSet {
public:
    explicit CChangedSet(std::size_t count) : m_bits((count + 63) / 64), m_words((m_bits.size() + 63) / 64) {}

    void Mark(std::size_t number)
    {
        m_bits[number / 64] |= std::uint64_t{1} << number % 64;
        m_words[number / 4096] |= std::uint64_t{1} << number / 64 % 64;
    }

    /// Moves what is marked to `numbers`.
    void Take(std::vector<std::uint32_t> &numbers)
    {
        numbers.clear();
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            for (; m_words[i] != 0; m_words[i] &= m_words[i] - 1)
                TakeWord(64 * i + static_cast<std::size_t>(std::countr_zero(m_words[i])), numbers);
        }
    }

private:
    void TakeWord(std::size_t word, std::vector<std::uint32_t> &numbers)
    {
        for (std::uint64_t &bits = m_bits[word]; bits != 0; bits &= bits - 1)
            numbers.push_back(static_cast<std::uint32_t>(64 * word + static_cast<std::size_t>(std::countr_zero(bits))));
    }

    std::vector<std::uint64_t> m_bits;
    std::vector<std::uint64_t> m_words;  // of m_bits that are not 0
};

}  // namespace tesk
