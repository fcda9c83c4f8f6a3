// Numbers as bytes, in either order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tesk {

/// The number of `size` bytes, at most 8, the least significant first. A byte is a `char` of any kind.
template <class Byte>
constexpr std::uint64_t LoadLittleEndian(const Byte *bytes, std::size_t size)
{
    std::uint64_t number = 0;
    while (size-- > 0)
        number = number << 8 | static_cast<unsigned char>(bytes[size]);
    return number;
}

/// The same with the most significant byte first.
template <class Byte>
constexpr std::uint64_t LoadBigEndian(const Byte *bytes, std::size_t size)
{
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

/// Writes the low `size` bytes of a number, at most 8, the least significant first.
template <class Byte>
constexpr void StoreLittleEndian(std::uint64_t number, Byte *bytes, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<Byte>(number >> (8 * i) & 0xFF);
}

/// Appends what `StoreLittleEndian` writes.
inline void AppendLittleEndian(std::uint64_t number, std::size_t size, std::string &bytes)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

}  // namespace tesk
