#include "platform/files/bytereader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using tesk::CByteReader;

// Gives a byte at a time, and then says that the system cannot read on.
class CDrops {
public:
    explicit CDrops(std::vector<std::uint8_t> bytes) : m_bytes(std::move(bytes)) {}

    std::span<const std::uint8_t> More()
    {
        if (m_next == m_bytes.size())
            throw tesk::XByteFault{{}, 5};
        return std::span(m_bytes).subspan(m_next++, 1);
    }

private:
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_next = 0;
};

TEST(ByteReader, TakesNumbersOfEitherOrderTextsAndRuns)
{
    using namespace std::string_view_literals;
    CByteReader bytes("\x01\x02\x03\x04\xFFname\0rest"sv);
    EXPECT_EQ(bytes.Little<std::uint16_t>(), 0x0201);
    EXPECT_EQ(bytes.Big<std::uint16_t>(), 0x0304);
    EXPECT_EQ(bytes.Little<std::int8_t>(), -1);
    EXPECT_EQ(bytes.Text(), "name");
    EXPECT_EQ(bytes.Chars(3), "res");
    EXPECT_EQ(bytes.Rest().size(), 1U);
    EXPECT_EQ(bytes.Byte(), 't');
    EXPECT_TRUE(bytes.AtEnd());
}

TEST(ByteReader, TakesGroupsOfSevenBitsUpToSixtyFour)
{
    using namespace std::string_view_literals;
    const struct {
        std::string_view bytes;
        std::uint64_t number;
        std::int64_t asSigned;
    } rows[] = {
        {"\x00"sv, 0, 0},
        {"\x3F"sv, 63, 63},
        {"\x7F"sv, 127, -1},
        {"\x80\x01"sv, 128, 128},
        {"\x80\x7F"sv, 127 << 7, -128},
        {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01"sv, ~std::uint64_t{0}, -1},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(CByteReader(row.bytes).Varint(), row.number) << row.number;
        EXPECT_EQ(CByteReader(row.bytes).SignedVarint(), row.asSigned) << row.number;
    }
    EXPECT_THROW(CByteReader("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x02"sv).Varint(), tesk::XByteDamage);
}

TEST(ByteReader, TakesNothingThatDoesNotEndInside)
{
    using namespace std::string_view_literals;
    EXPECT_THROW(CByteReader(""sv).Byte(), tesk::XByteCut);
    EXPECT_THROW(CByteReader("abc"sv).Little<std::uint32_t>(), tesk::XByteCut);
    EXPECT_THROW(CByteReader("abc"sv).Text(), tesk::XByteCut);
    EXPECT_THROW(CByteReader("abc"sv).Take(4), tesk::XByteCut);
    EXPECT_THROW(CByteReader("abc"sv).Take(~std::uint64_t{0}), tesk::XByteCut);
    EXPECT_THROW(CByteReader("\x80\x80"sv).Varint(), tesk::XByteCut);
}

TEST(ByteReader, GoesOnInWhatItsSourceGives)
{
    tesk::TByteReader<CDrops> bytes(CDrops({1, 2, 3, 4, 0x80, 0x01, 0x7F, 9}));
    EXPECT_EQ(bytes.Big<std::uint32_t>(), 0x01020304U);
    EXPECT_EQ(bytes.Varint(), 128U);
    EXPECT_EQ(bytes.SignedVarint(), -1);
    EXPECT_EQ(bytes.Byte(), 9);
    EXPECT_THROW(bytes.Little<std::uint16_t>(), tesk::XByteFault);
}

}  // namespace
