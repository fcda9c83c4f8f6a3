// Random choices that repeat with their seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>

namespace soak {

class CDice {
public:
    explicit CDice(std::uint64_t seed) : m_random(seed) {}

    /// 0 to `limit` - 1. @param limit  1 or more
    std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(m_random() % limit); }
    bool Chance(std::size_t percent) { return Below(100) < percent; }
    /// A number as text.
    std::string Number(std::size_t limit) { return std::to_string(Below(limit)); }
    const char *Pick(std::initializer_list<const char *> choices) { return choices.begin()[Below(choices.size())]; }
    /// Letters in a row.
    std::string Letters(std::size_t count, const std::string &alphabet)
    {
        std::string letters;
        for (std::size_t i = 0; i < count; ++i)
            letters += alphabet[Below(alphabet.size())];
        return letters;
    }

private:
    std::mt19937_64 m_random;
};

}  // namespace soak
