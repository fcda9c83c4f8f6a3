#include "platform/vcdcodes.h"

namespace NTARN::NImport {

std::uint32_t &CVcdCodes::operator[](std::string_view code)
{
    const std::uint32_t place = PlaceOf(code);
    if (place == None)
        return m_long.try_emplace(std::string(code), None).first->second;
    if (place >= m_short.size())
        m_short.resize(place + 1, None);
    return m_short[place];
}

std::uint32_t CVcdCodes::FindLong(std::string_view code) const
{
    const auto found = m_long.find(code);
    return found != m_long.end() ? found->second : None;
}

}  // namespace NTARN::NImport
