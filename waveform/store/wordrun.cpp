#include "waveform/store/wordrun.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "waveform/store/packedevents.h"

namespace tesk {

namespace {

constexpr std::size_t Planes = std::size(WaveWord().m_planes);
constexpr std::size_t LargestEvent = LargestPackedHead + Planes * (1 + sizeof(std::uint64_t));

// Which bytes are not 0, then these.
std::uint8_t *WritePlane(std::uint8_t *to, std::uint64_t plane)
{
    std::uint8_t *const mask = to++;
    unsigned written = 0;
    for (unsigned bit = 1; plane != 0; bit <<= 1, plane >>= 8) {
        const bool isWritten = (plane & 0xFF) != 0;
        *to = static_cast<std::uint8_t>(plane);
        to += isWritten;  // no branch, since nothing could foretell it
        written |= isWritten ? bit : 0;
    }
    *mask = static_cast<std::uint8_t>(written);
    return to;
}

const std::uint8_t *ReadPlane(const std::uint8_t *from, std::uint64_t &plane)
{
    plane = 0;
    for (unsigned bytes = *from++; bytes != 0; bytes &= bytes - 1)
        plane |= static_cast<std::uint64_t>(*from++) << 8 * std::countr_zero(bytes);
    return from;
}

}  // namespace

void CWordRun::SFree::operator()(std::uint8_t *bytes) const
{
    std::free(bytes);
}

void CWordRun::Append(long long time, const WaveWord &before, const WaveWord &after)
{
    const std::uint64_t elements = m_count > 0 ? ~std::uint64_t{0} >> (64 - m_count) : 0;
    std::uint64_t changes[Planes];
    std::uint8_t code = 0;  // which planes change
    for (unsigned i = 0; i < Planes; ++i) {
        changes[i] = (before.m_planes[i] ^ after.m_planes[i]) & elements;
        code = static_cast<std::uint8_t>(code | (changes[i] != 0 ? 1U << i : 0));
    }
    if (code == 0)
        return;
    if (m_capacity - m_used < LargestEvent)
        Reserve(m_used + LargestEvent);
    const long long lastTime = m_used > 0 ? m_lastTime : 0;
    m_lastTime = m_used > 0 ? std::max(time, lastTime) : time;
    const std::uint64_t distance = static_cast<std::uint64_t>(m_lastTime) - static_cast<std::uint64_t>(lastTime);
    std::uint8_t *to = WritePackedHead(m_bytes.get() + m_used, code, distance);
    for (const std::uint64_t plane : changes) {
        if (plane != 0)
            to = WritePlane(to, plane);
    }
    m_used = static_cast<std::uint32_t>(to - m_bytes.get());
}

// Makes room for `size` bytes.
void CWordRun::Reserve(std::size_t size)
{
    void *bytes = m_bytes.get();
    m_capacity = GrowPacked(bytes, 0, m_used, size);
    static_cast<void>(m_bytes.release());
    m_bytes.reset(static_cast<std::uint8_t *>(bytes));
}

void CWordRun::Clear()
{
    m_bytes.reset();
    m_used = 0;
    m_capacity = 0;
}

bool CWordRun::SReader::Next()
{
    if (next == end)
        return false;
    std::uint8_t code;
    std::uint64_t distance;
    next = ReadPackedHead(next, code, distance);
    time = static_cast<long long>(static_cast<std::uint64_t>(time) + distance);
    changed = 0;
    for (unsigned i = 0; i < Planes; ++i) {
        if ((code >> i & 1) == 0)
            continue;
        std::uint64_t plane;
        next = ReadPlane(next, plane);
        word.m_planes[i] ^= plane;
        changed |= plane;
    }
    return true;
}

}  // namespace tesk
