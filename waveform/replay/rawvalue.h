// Room for a raw value.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>

namespace tesk {

/// Bytes, 0 at first; only a long value takes a heap allocation.
class CRawValue {
public:
    explicit CRawValue(std::size_t size)
    {
        if (size > m_short.size())
            m_long.reset(new (std::nothrow) unsigned char[size]());
        m_bytes = size > m_short.size() ? m_long.get() : m_short.data();
    }
    CRawValue(const CRawValue &) = delete;
    CRawValue &operator=(const CRawValue &) = delete;

    /// Null if there is no memory.
    unsigned char *Bytes() { return m_bytes; }

private:
    std::array<unsigned char, 64> m_short{};
    std::unique_ptr<unsigned char[]> m_long;
    unsigned char *m_bytes;
};

}  // namespace tesk
