#include "waveform/table/tablereader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tesk {

namespace {

constexpr std::size_t BlockSize = 256 * 1024;
constexpr double LeastSample = 64 * 1024;  // bytes from which the rest of a file can be told

// 0 for what has no size, such as a pipe.
double SizeOf(const CFile &file)
{
    struct stat status {};
    return file.Status(status) && S_ISREG(status.st_mode) ? static_cast<double>(status.st_size) : 0;
}

}  // namespace

CTableReader::CTableReader(const CFile &file) : m_file(file), m_fileSize(SizeOf(file)), m_buffer(BlockSize + Slack)
{
    SetContent(0);
    m_position = m_end;
}

// Goes on behind a token of which only the front had been read. @return where it begins now
char *CTableReader::ReadOn(char *token)
{
    do {
        const bool isMore = RefillBehind(token);
        token = m_buffer.data();
        if (!isMore)
            break;
        while (KindOf(*m_position) == Value)
            ++m_position;
    } while (m_position == m_end);
    return token;
}

void CTableReader::SkipLine()
{
    do
        m_position = std::find_if(m_position, m_end, [](char c) { return KindOf(c) == LineEnd; });
    while (m_position == m_end && Refill());
}

std::size_t CTableReader::EstimateTotal(std::size_t count) const
{
    const double consumed = m_bytesRead - static_cast<double>(m_end - m_position);
    if (consumed < LeastSample)
        return 0;
    return static_cast<std::size_t>(static_cast<double>(count) * m_fileSize / consumed * 1.02);
}

bool CTableReader::Refill()
{
    return RefillBehind(m_end);
}

// Reads a further block behind what is to be kept, which moves to the front. @return false at the end of the file
bool CTableReader::RefillBehind(char *keep)
{
    const std::size_t kept = static_cast<std::size_t>(m_end - keep);
    std::memmove(m_buffer.data(), keep, kept);
    if (m_buffer.size() - Slack - kept < BlockSize / 2)
        m_buffer.resize(m_buffer.size() * 2);
    const std::size_t room = m_buffer.size() - Slack - kept;
    const ssize_t read = m_error == 0 ? m_file.ReadFully(m_buffer.data() + kept, room) : 0;
    m_error = read < 0 ? errno : m_error;
    const auto count = static_cast<std::size_t>(std::max<ssize_t>(read, 0));
    m_bytesRead += static_cast<double>(count);
    SetContent(kept + count);
    m_position = m_buffer.data() + kept;
    return count != 0;
}

void CTableReader::SetContent(std::size_t length)
{
    m_end = m_buffer.data() + length;
    *m_end = '\n';
}

}  // namespace tesk
