#include "platform/vcd/vcdtext.h"

#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t BufferSize = std::size_t{1} << 18;
constexpr std::size_t Sentinels = 2 + NTARN::NImport::VcdGroup;

}  // namespace

namespace NTARN::NImport {

CVcdText::CVcdText(const std::string &fileName, FOnRead onRead)
try : m_fileName(fileName), m_input(fileName), m_onRead(std::move(onRead)), m_buffer(BufferSize + Sentinels) {
    m_buffer[0] = ' ';
    m_next = m_end = m_buffer.data();
} catch (const tesk::XInputFault &fault) {
    throw std::runtime_error(fileName + ": " + fault.what());
}

char CVcdText::NextByte()
{
    std::string_view none;
    return SkipBlanks(none) ? *m_next : '\0';
}

void CVcdText::SkipLine()
{
    std::string_view none;
    for (;;) {
        const auto *const lineEnd =
            static_cast<const char *>(std::memchr(m_next, '\n', static_cast<std::size_t>(m_end - m_next)));
        m_next = lineEnd != nullptr ? lineEnd : m_end;
        const char *begin = m_end;
        if (lineEnd != nullptr || !Refill(begin, none))
            return;
    }
}

// The word that begins at `begin` reaches the end of the buffer: reads on until it ends.
void CVcdText::CompleteWord(const char *&begin, std::string_view &kept)
{
    while (m_next == m_end && Refill(begin, kept)) {
        while (!IsVcdBlank(*m_next))
            ++m_next;
    }
}

// Reads more behind what stands from `begin`, or from `kept`, to the end; both move along.
// @return false at the end of the file
bool CVcdText::Refill(const char *&begin, std::string_view &kept)
{
    if (m_atEnd)
        return false;
    const char *const keep = kept.empty() ? begin : kept.data();
    const auto length = static_cast<std::size_t>(m_end - keep);
    const std::ptrdiff_t word = begin - keep;
    if (length > LongestWord)
        throw SVcdFault{"a value has more than " + std::to_string(LongestWord) + " bytes"};
    std::memmove(m_buffer.data(), keep, length);
    if (length > m_buffer.size() / 2)
        m_buffer.resize(2 * m_buffer.size());
    char *const front = m_buffer.data();
    const std::size_t added = Read(front + length, m_buffer.size() - Sentinels - length);
    if (!kept.empty())
        kept = {front, kept.size()};
    begin = front + word;
    m_next = front + length;
    m_end = m_next + added;
    front[length + added] = ' ';
    front[length + added + 1] = 0;
    m_atEnd = added == 0;
    return !m_atEnd;
}

std::size_t CVcdText::Read(char *to, std::size_t room)
try {
    const std::size_t added = m_input.Read(to, room);
    m_lastByte = added > 0 ? to[added - 1] : m_lastByte;
    m_onRead(m_input);
    return added;
} catch (const tesk::XUnpackFault &fault) {
    throw SVcdFault{fault.what()};
} catch (const tesk::XInputFault &fault) {
    throw std::runtime_error(m_fileName + ": " + fault.what());
}

}  // namespace NTARN::NImport
