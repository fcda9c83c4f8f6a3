#include "waveform/tablereader.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::size_t BlockSize = 256 * 1024;

enum EByte : unsigned char { Value, Separator, LineEnd };

constexpr std::array<EByte, 256> Bytes = [] {
    std::array<EByte, 256> bytes{};
    for (const char c : {' ', ',', '\t', ';'})
        bytes[static_cast<unsigned char>(c)] = Separator;
    for (const char c : {'\n', '\r'})
        bytes[static_cast<unsigned char>(c)] = LineEnd;
    return bytes;
}();

EByte ByteAt(const char *position)
{
    return Bytes[static_cast<unsigned char>(*position)];
}

// The line end behind what has been read ends every run of the other kinds.
char *SkipAll(EByte kind, char *position)
{
    while (ByteAt(position) == kind)
        ++position;
    return position;
}

// 0 for what has no size, such as a pipe.
double SizeOf(std::FILE *file)
{
    const bool hasSize = std::fseek(file, 0, SEEK_END) == 0;
    const long size = hasSize ? std::ftell(file) : 0;
    std::rewind(file);
    return static_cast<double>(std::max(size, 0L));
}

}  // namespace

CTableReader::CTableReader(std::FILE *file) : m_file(file), m_fileSize(SizeOf(file)), m_buffer(BlockSize + 1)
{
    SetContent(0);
    m_position = m_token = m_end;
}

CTableReader::EPiece CTableReader::Next()
{
    do
        m_position = SkipAll(Separator, m_position);
    while (m_position == m_end && Refill(m_position));
    m_token = m_position;
    if (m_position == m_end)
        return EPiece::FileEnd;
    if (ByteAt(m_position) == LineEnd) {
        ++m_position;
        return EPiece::LineEnd;
    }
    do
        m_position = SkipAll(Value, m_position);
    while (m_position == m_end && Refill(m_token));
    return EPiece::Token;
}

std::size_t CTableReader::EstimateTotal(std::size_t count) const
{
    const double consumed = m_bytesRead - static_cast<double>(m_end - m_position);
    return consumed > 0 ? static_cast<std::size_t>(static_cast<double>(count) * m_fileSize / consumed * 1.02) : 0;
}

// Reads a further block behind what is to be kept, which moves to the front. @return false at the end of the file
bool CTableReader::Refill(char *keep)
{
    const std::size_t kept = static_cast<std::size_t>(m_end - keep);
    std::memmove(m_buffer.data(), keep, kept);
    if (m_buffer.size() - 1 - kept < BlockSize / 2)
        m_buffer.resize(m_buffer.size() * 2);
    const std::size_t count = std::fread(m_buffer.data() + kept, 1, m_buffer.size() - 1 - kept, m_file);
    m_bytesRead += static_cast<double>(count);
    SetContent(kept + count);
    m_token = m_buffer.data();
    m_position = m_buffer.data() + kept;
    return count != 0;
}

void CTableReader::SetContent(std::size_t length)
{
    m_end = m_buffer.data() + length;
    *m_end = '\n';
}
