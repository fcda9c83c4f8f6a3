// Identifier codes of a VCD file: from the code to the number of what it stands for.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace NTARN::NImport {

/// Codes of up to three printable characters, which is what simulators give out first, index a table, as long as the
/// table stays in proportion to the number of codes; others are hashed.
class CVcdCodes {
public:
    static constexpr std::uint32_t None = UINT32_MAX;

    std::uint32_t Find(std::string_view code) const
    {
        const std::uint32_t place = PlaceOf(code);
        if (place < m_table.size() && m_table[place] != None)
            return m_table[place];
        return m_hashed.empty() ? None : FindHashed(code);
    }

    /// The number of a code, to be set; `None` for a new code.
    std::uint32_t &operator[](std::string_view code);

private:
    struct SHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view code) const { return std::hash<std::string_view>()(code); }
    };

    static constexpr std::size_t LongestPlaced = 3;

    /// A number of its own for each short code: its characters are digits from 1 to 94, the first the lowest, since
    /// that is the one that most simulators count up first. `None` for others.
    static std::uint32_t PlaceOf(std::string_view code)
    {
        if (code.size() > LongestPlaced)
            return None;
        std::uint32_t place = 0;
        for (std::size_t i = code.size(); i > 0; --i) {
            const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(code[i - 1])) - ' ';
            if (digit - 1 >= 94)
                return None;
            place = place * 95 + digit;
        }
        return place;
    }

    std::uint32_t FindHashed(std::string_view code) const;

    std::vector<std::uint32_t> m_table;
    std::unordered_map<std::string, std::uint32_t, SHash, std::equal_to<>> m_hashed;
    std::size_t m_count = 0;  // codes that were asked for
};

}  // namespace NTARN::NImport
