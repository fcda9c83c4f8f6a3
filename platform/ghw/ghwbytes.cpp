#include "platform/ghw/ghwbytes.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/files/leb128.h"

namespace NTARN {
namespace {

constexpr std::uint64_t WindowSize = 1 << 16;

}  // namespace

CGhwBytes::CGhwBytes(const std::string &path) : m_file(OpenRegularFile(path)), m_size(SizeOfFile(m_file))
{
    Seek(0);
}

void CGhwBytes::Seek(std::uint64_t position)
{
    if (position > m_size)
        throw XGhwCut();
    m_window.clear();
    m_next = 0;
    m_windowEnd = position;
}

std::uint32_t CGhwBytes::Number()
{
    // Nearly all are short.
    const std::uint8_t first = Byte();
    if (first < 0x80)
        return first;
    --m_next;
    SLeb128 taken;
    if (!TakeLeb128([this] { return Byte(); }, taken) || taken.number > std::numeric_limits<std::uint32_t>::max())
        throw XGhwDamage();
    return static_cast<std::uint32_t>(taken.number);
}

std::int64_t CGhwBytes::Signed()
{
    SLeb128 taken;
    if (!TakeLeb128([this] { return Byte(); }, taken))
        throw XGhwDamage();
    return taken.Signed();
}

std::uint32_t CGhwBytes::Count()
{
    const std::uint32_t count = Number();
    if (count > Left())
        throw XGhwDamage();
    return count;
}

std::uint64_t CGhwBytes::Fixed(unsigned size)
{
    std::uint64_t number = 0;
    for (unsigned i = 0; i < size; ++i) {
        const std::uint64_t byte = Byte();
        number = m_isBigEndian ? number << 8 | byte : number | byte << (8 * i);
    }
    return number;
}

void CGhwBytes::Fill()
{
    m_window.resize(static_cast<std::size_t>(std::min(WindowSize, m_size - m_windowEnd)));
    const ssize_t count = m_file.ReadAt(m_windowEnd, m_window.data(), m_window.size());
    m_error = count < 0 ? errno : m_error;
    m_window.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    m_next = 0;
    m_windowEnd += m_window.size();
    if (count < 0)
        throw XGhwReadFault{{}, m_error};
    if (m_window.empty())
        throw XGhwCut();
}

}  // namespace NTARN
