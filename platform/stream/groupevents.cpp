#include "platform/stream/groupevents.h"

#include <limits>

#include "platform/stream/varint.h"

namespace Morvel {

namespace {

// The two lowest bits of an event's head; those above are the step in time. Only the values of a single scalar are told
// by the form itself: it is the bit.
enum EForm : std::uint64_t {
    FormToggle = 0,  // the mask of those that change to their other bit
    FormWord = 1,    // the mask and the bits
    FormValues = 2,  // the mask and the raw values
};
constexpr unsigned FormBits = 2;

}  // namespace

void AppendChunkHead(const SGroupForm &form, std::size_t events, std::string &bytes)
{
    AppendVarint(bytes, events);
    if (form.valueSize == 1)
        bytes += static_cast<char>(form.low);
}

void CGroupEncoder::AppendHead(std::uint32_t time, std::uint64_t form)
{
    AppendVarint(m_bytes, std::uint64_t{time - m_time} << FormBits | form);
    m_time = time;
}

void CGroupEncoder::AddWord(std::uint32_t time, std::uint64_t changed, std::uint64_t bits)
{
    bits &= changed;
    if (m_form.count == 1) {
        AppendHead(time, bits);
        return;
    }
    const bool isToggle = (changed & ~m_known) == 0 && bits == ((m_bits ^ changed) & changed);
    AppendHead(time, isToggle ? FormToggle : FormWord);
    AppendVarint(m_bytes, changed);
    if (!isToggle)
        AppendVarint(m_bytes, bits);
    m_known |= changed;
    m_bits = (m_bits & ~changed) | bits;
}

void CGroupEncoder::AddValues(std::uint32_t time, std::uint64_t changed,
                              std::span<const std::uint64_t, MaxGroup> values)
{
    AppendHead(time, FormValues);
    if (m_form.count > 1)
        AppendVarint(m_bytes, changed);
    m_known &= ~changed;
    for (; changed != 0; changed &= changed - 1)
        tesk::AppendLittleEndian(values[static_cast<std::size_t>(std::countr_zero(changed))], m_form.valueSize,
                                 m_bytes);
}

CGroupDecoder::CGroupDecoder(const SGroupForm &form, std::string_view bytes, std::uint32_t times)
    : m_next(bytes.data()), m_end(bytes.data() + bytes.size()), m_times(times), m_form(form)
{
    std::uint64_t events = 0;
    m_isGood = TakeVarint(m_next, m_end, events) && events > 0 && events <= std::numeric_limits<std::uint32_t>::max();
    m_left = m_isGood ? static_cast<std::uint32_t>(events) : 0;
    if (form.valueSize != 1 || !m_isGood)
        return;
    m_isGood = m_next != m_end && (*m_next & 1) == 0;
    if (m_isGood)
        m_form.low = static_cast<std::uint8_t>(*m_next++);
}

bool CGroupDecoder::Fail()
{
    m_isGood = false;
    return false;
}

bool CGroupDecoder::Next()
{
    if (!m_isGood)
        return false;
    if (m_left == 0)
        return m_next == m_end ? false : Fail();
    --m_left;
    std::uint64_t head = 0;
    if (!TakeVarint(m_next, m_end, head) || head >> FormBits >= m_times - m_time)
        return Fail();
    m_time += static_cast<std::uint32_t>(head >> FormBits);
    m_values = nullptr;
    const std::uint64_t form = head & ((1U << FormBits) - 1);
    return (m_form.count == 1 ? TakeBit(form) : TakeEvent(form)) || Fail();
}

bool CGroupDecoder::TakeBit(std::uint64_t form)
{
    m_changed = 1;
    m_bits = form;
    return form < FormValues ? m_form.valueSize == 1 : form == FormValues && TakeValues();
}

bool CGroupDecoder::TakeEvent(std::uint64_t form)
{
    if (!TakeVarint(m_next, m_end, m_changed) || m_changed == 0 || (m_changed & ~AllOf(m_form.count)) != 0)
        return false;
    switch (form) {
    case FormToggle: return m_form.valueSize == 1 && TakeToggle();
    case FormWord: return m_form.valueSize == 1 && TakeWord();
    case FormValues: return TakeValues();
    default: return false;
    }
}

bool CGroupDecoder::TakeToggle()
{
    m_bits ^= m_changed;
    return (m_changed & ~m_known) == 0;
}

bool CGroupDecoder::TakeWord()
{
    std::uint64_t bits = 0;
    if (!TakeVarint(m_next, m_end, bits) || (bits & ~m_changed) != 0)
        return false;
    m_known |= m_changed;
    m_bits = (m_bits & ~m_changed) | bits;
    return true;
}

bool CGroupDecoder::TakeValues()
{
    const std::size_t size = static_cast<std::size_t>(std::popcount(m_changed)) * m_form.valueSize;
    if (size > static_cast<std::size_t>(m_end - m_next))
        return false;
    m_values = m_next;
    m_next += size;
    m_known &= ~m_changed;
    return true;
}

}  // namespace Morvel
