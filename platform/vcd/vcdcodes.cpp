#include "platform/vcd/vcdcodes.h"

namespace NTARN::NImport {

std::uint32_t &CVcdCodes::operator[](std::string_view code)
{
    constexpr std::size_t PlacesPerCode = 32;
    constexpr std::size_t AlwaysPlaced = 1024;
    if (const auto found = m_hashed.find(code); found != m_hashed.end())
        return found->second;
    const std::uint32_t place = PlaceOf(code);
    if (place < m_table.size() && m_table[place] != None)
        return m_table[place];
    ++m_count;
    if (place >= PlacesPerCode * (m_count + AlwaysPlaced))
        return m_hashed.try_emplace(std::string(code), None).first->second;
    if (place >= m_table.size())
        m_table.resize(place + 1, None);
    return m_table[place];
}

std::uint32_t CVcdCodes::FindHashed(std::string_view code) const
{
    const auto found = m_hashed.find(code);
    return found != m_hashed.end() ? found->second : None;
}

}  // namespace NTARN::NImport
