#include "signal/tree/valuescratch.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace tesk {

namespace {

constexpr std::size_t ValueSizeAtStart = 102400;
constexpr std::size_t TextPerValue = 4;

// More than the leaves of any signal hold together.
constexpr unsigned long long LargestValue = 1ULL << 28;

}  // namespace

CValueScratch &ValueScratch()
{
    static CValueScratch scratch;
    return scratch;
}

CValueScratch::CValueScratch()
    : m_value(std::make_unique<unsigned char[]>(ValueSizeAtStart)), m_valueSize(ValueSizeAtStart),
      m_text(std::make_unique_for_overwrite<char[]>(TextPerValue * ValueSizeAtStart)),
      m_textSize(TextPerValue * ValueSizeAtStart)
{
    m_text[0] = 0;
}

bool CValueScratch::ReserveValue(unsigned long long needed)
{
    if (needed > LargestValue)
        return false;
    if (needed > m_valueSize) {
        m_value = std::make_unique<unsigned char[]>(needed);
        m_valueSize = needed;
    }
    return true;
}

bool CValueScratch::ReserveBoth(unsigned long long needed)
{
    const bool grows = needed > m_valueSize;
    if (!ReserveValue(needed))
        return false;
    if (grows && m_depth == 0)
        Restart();
    if (grows)
        MakeRoom(TextPerValue * m_valueSize - m_length - 1);
    return true;
}

void CValueScratch::Restart()
{
    m_start = 0;
    m_length = 0;
    m_text[0] = 0;
}

// Makes room for `length` characters and a zero at the cursor. A text that is being made moves to the beginning of the
// buffer, or into a larger one; one that is complete is given up.
void CValueScratch::MakeRoom(std::size_t length)
{
    if (length < m_textSize - m_start - m_length)
        return;
    if (m_depth == 0) {
        Restart();
    } else {
        std::memmove(m_text.get(), m_text.get() + m_start, m_length + 1);
        m_start = 0;
    }
    if (length < m_textSize - m_length)
        return;
    const std::size_t size = std::max(2 * m_textSize, m_length + length + 1);
    std::unique_ptr<char[]> larger = std::make_unique_for_overwrite<char[]>(size);
    std::memcpy(larger.get(), m_text.get(), m_length + 1);
    m_text = std::move(larger);
    m_textSize = size;
}

const char *CValueScratch::Put(std::string_view text)
{
    MakeRoom(text.size());
    char *cursor = m_text.get() + m_start + m_length;
    std::memcpy(cursor, text.data(), text.size());
    cursor[text.size()] = 0;
    return cursor;
}

void CValueScratch::Append(std::string_view text)
{
    Put(text);
    m_length += text.size();
}

void CValueScratch::DropLast()
{
    --m_length;
    m_text[m_start + m_length] = 0;
}

CTextLevel::CTextLevel() : m_scratch(ValueScratch()), m_nested(m_scratch.m_nested)
{
    if (!m_nested) {
        m_scratch.Restart();
    } else if (m_scratch.m_depth == 0) {  // deliberate: an abandoned text left the marker set
        m_scratch.m_start += m_scratch.m_length;
        m_scratch.m_length = 0;
    }
    m_scratch.m_nested = true;
    ++m_scratch.m_depth;
    m_start = m_scratch.m_length;
}

CTextLevel::~CTextLevel()
{
    m_scratch.m_nested = m_nested;
    --m_scratch.m_depth;
}

const char *CTextLevel::Text() const
{
    return m_scratch.m_text.get() + m_scratch.m_start + m_start;
}

const char *CTextLevel::NoText()
{
    m_scratch.m_length = m_start;
    m_scratch.m_text[m_scratch.m_start + m_start] = 0;
    return nullptr;
}

const char *CTextLevel::Abandon()
{
    if (m_scratch.m_depth > 1)  // the outer text shows an empty place
        NoText();
    m_nested = true;
    return nullptr;
}

}  // namespace tesk
