// Identifier codes of a VCD file: from the code to the number of what it stands for. Internal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace NTARN::NImport {

/// Codes of up to three printable characters, which is what simulators give out first, index a table; others are hashed.
class CVcdCodes {
public:
    static constexpr std::uint32_t None = UINT32_MAX;

    std::uint32_t Find(std::string_view code) const
    {
        const std::uint32_t place = PlaceOf(code);
        if (place == None)
            return FindLong(code);
        return place < m_short.size() ? m_short[place] : None;
    }

    /// The number of a code, to be set; `None` for a new code.
    std::uint32_t &operator[](std::string_view code);

private:
    struct SHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view code) const { return std::hash<std::string_view>()(code); }
    };

    static constexpr std::size_t LongestShort = 3;

    /// A number of its own for each short code: its characters are digits from 1 to 94.
    static std::uint32_t PlaceOf(std::string_view code)
    {
        if (code.size() > LongestShort)
            return None;
        std::uint32_t place = 0;
        for (const char c : code) {
            const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(c)) - ' ';
            if (digit - 1 >= 94)
                return None;
            place = place * 95 + digit;
        }
        return place;
    }

    std::uint32_t FindLong(std::string_view code) const;

    std::vector<std::uint32_t> m_short;
    std::unordered_map<std::string, std::uint32_t, SHash, std::equal_to<>> m_long;
};

}  // namespace NTARN::NImport
