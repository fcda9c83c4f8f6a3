#include "platform/matlab/matwhole.h"

#include <cstdint>
#include <fstream>
#include <iterator>

#include "base/bytes.h"

namespace {

// Words of a file in either byte order, and a place in it that never lies behind the end.
class CWordFile {
public:
    explicit CWordFile(const char *path) : m_file(path, std::ios::binary)
    {
        m_file.seekg(0, std::ios::end);
        m_size = m_file ? static_cast<std::uint64_t>(m_file.tellg()) : 0;
        m_file.seekg(0);
    }

    bool Take(std::uint32_t &word)
    {
        char bytes[sizeof word];
        if (!m_file.read(bytes, sizeof bytes))
            return false;
        word = static_cast<std::uint32_t>(m_isBigEndian ? tesk::LoadBigEndian(bytes, sizeof bytes)
                                                        : tesk::LoadLittleEndian(bytes, sizeof bytes));
        return true;
    }

    // @return false if there are fewer bytes left
    bool Pass(std::uint64_t count)
    {
        const std::uint64_t at = static_cast<std::uint64_t>(m_file.tellg());
        if (count > m_size - at)
            return false;
        m_file.seekg(static_cast<std::streamoff>(at + count));
        return true;
    }

    // Whether nothing is left.
    bool IsAtEnd() { return static_cast<std::uint64_t>(m_file.tellg()) == m_size; }

    void SetBigEndian(bool isBigEndian) { m_isBigEndian = isBigEndian; }

private:
    std::ifstream m_file;
    std::uint64_t m_size = 0;
    bool m_isBigEndian = false;
};

// A description of 124 bytes, the version, and "IM" in the byte order of the file.
bool PassHeader5(CWordFile &file)
{
    constexpr std::uint32_t LittleEndianMark = 0x4D49;
    std::uint32_t word = 0;
    if (!file.Pass(124) || !file.Take(word))
        return false;
    file.SetBigEndian(word >> 16 != LittleEndianMark);
    return true;
}

// A tag, of type and size, and as many bytes.
bool PassVariable5(CWordFile &file)
{
    std::uint32_t type = 0, size = 0;
    return file.Take(type) && file.Take(size) && file.Pass(size);
}

// Five words: the type in decimal digits "MOPT", rows, columns, whether complex, length of the name; the name; the data.
bool PassVariable4(CWordFile &file)
{
    constexpr std::uint32_t LargestType = 5000;
    constexpr std::uint32_t Sizes[] = {8, 4, 4, 2, 2, 1};  // by the digit P
    std::uint32_t type = 0, rows = 0, columns = 0, isComplex = 0, length = 0;
    if (!file.Take(type))
        return false;
    if (type > LargestType) {
        type = __builtin_bswap32(type);
        file.SetBigEndian(true);
    }
    const std::uint32_t digit = type / 10 % 10;
    if (digit >= std::size(Sizes) || !file.Take(rows) || !file.Take(columns) || !file.Take(isComplex) ||
        !file.Take(length))
        return false;
    std::uint64_t size = 0;
    const std::uint64_t bytes = Sizes[digit] * (isComplex != 0 ? 2U : 1U);
    if (__builtin_mul_overflow(std::uint64_t(rows) * columns, bytes, &size))
        return false;
    return file.Pass(length) && file.Pass(size);
}

}  // namespace

SWholeVariables CountWholeVariables(const char *path, bool isVersion4)
{
    CWordFile file(path);
    if (!isVersion4 && !PassHeader5(file))
        return {0, false};
    std::size_t count = 0;
    while (!file.IsAtEnd()) {
        if (!(isVersion4 ? PassVariable4(file) : PassVariable5(file)))
            return {count, false};
        ++count;
    }
    return {count, true};
}
