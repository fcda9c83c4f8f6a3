#include "platform/ghw/ghwbytes.h"

#include <algorithm>
#include <cerrno>
#include <limits>

namespace NTARN {
namespace {

constexpr std::uint64_t WindowSize = 1 << 16;

}  // namespace

CGhwWindow::CGhwWindow(const std::string &path) : m_file(OpenRegularFile(path)), m_size(SizeOfFile(m_file)) {}

std::span<const std::uint8_t> CGhwWindow::More()
{
    m_part.resize(static_cast<std::size_t>(std::min(WindowSize, m_size - m_end)));
    const ssize_t count = m_file.ReadAt(m_end, m_part.data(), m_part.size());
    if (count < 0) {
        m_error = errno;
        throw tesk::XByteFault{{}, m_error};
    }
    if (count == 0)
        throw XGhwCut();
    m_end += static_cast<std::uint64_t>(count);
    return std::span(m_part).first(static_cast<std::size_t>(count));
}

void CGhwBytes::Seek(std::uint64_t position)
{
    if (position > Size())
        throw XGhwCut();
    Drop();
    Source().Seek(position);
}

std::uint32_t CGhwBytes::Number()
{
    const std::uint64_t number = Varint();
    if (number > std::numeric_limits<std::uint32_t>::max())
        throw XGhwDamage();
    return static_cast<std::uint32_t>(number);
}

std::uint32_t CGhwBytes::Count()
{
    const std::uint32_t count = Number();
    if (count > Left())
        throw XGhwDamage();
    return count;
}

}  // namespace NTARN
