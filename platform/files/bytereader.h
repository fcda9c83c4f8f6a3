// Takes values off bytes, in order and never behind their end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/bytes.h"

namespace tesk {

/// Raised where bytes do not say what their format asks for. It stays inside the reader of the format, as do those below.
struct XByteDamage {};
/// Raised where they end too early.
struct XByteCut : XByteDamage {};
/// Raised where the system cannot read them.
struct XByteFault : XByteDamage {
    int error;  ///< an `errno`
};

/// Where there are no bytes but those at hand.
struct SNoSource {
    /// @throw XByteCut
    [[noreturn]] std::span<const std::uint8_t> More() { throw XByteCut(); }
};

/// Takes values off the front of bytes that are at hand, and where these end goes on with what the source gives. Each
/// operation raises XByteCut if its value does not end inside, and XByteDamage if it is none.
/// @tparam TSource  its More() gives at least one byte or throws as above
template <class TSource>
class TByteReader {
public:
    explicit TByteReader(std::span<const std::uint8_t> bytes) : m_next(bytes.data()), m_end(m_next + bytes.size()) {}
    explicit TByteReader(std::string_view bytes)
        : TByteReader(std::span(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size()))
    {}
    explicit TByteReader(TSource source) : m_source(std::move(source)) {}

    /// Whether no more bytes are at hand.
    bool AtEnd() const { return m_next == m_end; }
    /// The bytes at hand.
    std::span<const std::uint8_t> Rest() const { return {m_next, m_end}; }

    /// The next `count` bytes, all of them at hand.
    std::span<const std::uint8_t> Take(std::uint64_t count)
    {
        if (count > Rest().size())
            throw XByteCut();
        const std::uint8_t *const taken = std::exchange(m_next, m_next + count);
        return {taken, m_next};
    }
    /// The same as text.
    std::string_view Chars(std::uint64_t count) { return AsText(Take(count)); }

    std::uint8_t Byte()
    {
        if (m_next == m_end) {
            const std::span<const std::uint8_t> more = m_source.More();
            m_next = more.data();
            m_end = m_next + more.size();
        }
        return *m_next++;
    }

    /// A number of the size of `T`, the lowest byte first.
    template <class T>
    T Little()
    {
        return Fixed<T>(LoadLittleEndian<std::uint8_t>);
    }
    /// The same with the highest byte first.
    template <class T>
    T Big()
    {
        return Fixed<T>(LoadBigEndian<std::uint8_t>);
    }

    /// Groups of 7 bits, the lowest first; bit 7 is set in all bytes but the last. At most 64 bits.
    std::uint64_t Varint()
    {
        // Nearly all are short.
        if (m_next != m_end && *m_next < 0x80)
            return *m_next++;
        return Groups().number;
    }
    /// As `Varint`, in two's complement: the highest bit written is the sign.
    std::int64_t SignedVarint()
    {
        const SGroups groups = Groups();
        const bool isNegative = groups.bits < 64 && (groups.number >> (groups.bits - 1) & 1) != 0;
        return static_cast<std::int64_t>(isNegative ? groups.number | ~std::uint64_t{0} << groups.bits : groups.number);
    }

    /// Text up to the NUL that ends it and stands behind what is returned, all of it at hand.
    std::string_view Text()
    {
        const std::string_view rest = AsText(Rest());
        const std::size_t length = rest.find('\0');
        if (length == rest.npos)
            throw XByteCut();
        m_next += length + 1;
        return rest.substr(0, length);
    }

protected:
    const TSource &Source() const { return m_source; }
    TSource &Source() { return m_source; }
    /// Forgets the bytes at hand.
    void Drop() { m_next = m_end = nullptr; }

private:
    static std::string_view AsText(std::span<const std::uint8_t> bytes)
    {
        return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
    }

    template <class T>
    T Fixed(std::uint64_t (*load)(const std::uint8_t *, std::size_t))
    {
        static_assert(std::is_integral_v<T>);
        if constexpr (std::is_same_v<TSource, SNoSource>)
            return static_cast<T>(load(Take(sizeof(T)).data(), sizeof(T)));
        std::uint8_t bytes[sizeof(T)];
        for (std::uint8_t &byte : bytes)
            byte = Byte();
        return static_cast<T>(load(bytes, sizeof(T)));
    }

    struct SGroups {
        std::uint64_t number = 0;
        unsigned bits = 0;  // 7 for each group
    };

    SGroups Groups()
    {
        SGroups taken;
        for (;;) {
            const std::uint8_t byte = Byte();
            const std::uint64_t group = byte & 0x7FU;
            if (taken.bits > 63 || (taken.bits == 63 && group > 1 && group != 0x7F))
                throw XByteDamage();
            taken.number |= group << taken.bits;
            taken.bits += 7;
            if ((byte & 0x80) == 0)
                return taken;
        }
    }

    const std::uint8_t *m_next = nullptr;
    const std::uint8_t *m_end = nullptr;
    [[no_unique_address]] TSource m_source;
};

/// Of bytes that are all at hand.
using CByteReader = TByteReader<SNoSource>;

}  // namespace tesk
