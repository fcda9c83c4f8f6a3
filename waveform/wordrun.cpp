#include "waveform/wordrun.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace {

constexpr std::size_t Planes = std::size(WaveWord().m_planes);
constexpr std::size_t LargestPlane = 1 + sizeof(std::uint64_t);

// Which bytes are not 0, then these.
std::uint8_t *WritePlane(std::uint8_t *to, std::uint64_t plane)
{
    std::uint8_t &bytes = *to++;
    bytes = 0;
    for (unsigned bit = 1; plane != 0; bit <<= 1, plane >>= 8) {
        if ((plane & 0xFF) == 0)
            continue;
        bytes = static_cast<std::uint8_t>(bytes | bit);
        *to++ = static_cast<std::uint8_t>(plane);
    }
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

CWordRun::~CWordRun()
{
    std::free(m_events);
}

void CWordRun::Append(long long time, const WaveWord &word)
{
    const std::uint64_t elements = ~std::uint64_t{0} >> (64 - m_count);
    std::uint8_t planes[Planes * LargestPlane];
    std::uint8_t *planesEnd = planes;
    std::uint8_t code = 0;  // which planes change
    for (std::size_t i = 0; i < Planes; ++i) {
        const std::uint64_t changed = (word.m_planes[i] ^ m_end.m_planes[i]) & elements;
        if (changed == 0)
            continue;
        code = static_cast<std::uint8_t>(code | 1U << i);
        planesEnd = WritePlane(planesEnd, changed);
    }
    if (code == 0)
        return;

    const std::size_t used = m_events != nullptr ? m_events->used : 0;
    const long long lastTime = m_events != nullptr ? m_events->lastTime : 0;
    time = m_events != nullptr ? std::max(time, lastTime) : time;
    const std::uint64_t distance = static_cast<std::uint64_t>(time) - static_cast<std::uint64_t>(lastTime);
    const std::size_t end = used + PackedHeadSize(distance) + static_cast<std::size_t>(planesEnd - planes);
    if (m_events == nullptr || end > m_events->capacity)
        ReservePacked(m_events, end);
    std::copy(planes, planesEnd, WritePackedHead(m_events->Bytes() + used, code, distance));
    m_events->used = static_cast<std::uint32_t>(end);
    m_events->lastTime = time;
    m_end = word;
}

void CWordRun::Clear()
{
    std::free(std::exchange(m_events, nullptr));
    m_begin = m_end;
}

CWordRun::SReader::SReader(const SPackedEvents &events, const WaveWord &begin)
    : word(begin), next(events.Bytes()), end(next + events.used)
{}

bool CWordRun::SReader::Next()
{
    if (next == end)
        return false;
    std::uint8_t code;
    std::uint64_t distance;
    next = ReadPackedHead(next, code, distance);
    time = static_cast<long long>(static_cast<std::uint64_t>(time) + distance);
    changed = 0;
    for (std::size_t i = 0; i < Planes; ++i) {
        if ((code >> i & 1) == 0)
            continue;
        std::uint64_t plane;
        next = ReadPlane(next, plane);
        word.m_planes[i] ^= plane;
        changed |= plane;
    }
    return true;
}
