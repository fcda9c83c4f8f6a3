#include "waveform/table/eightdigits.h"

#include <string>

#include <gtest/gtest.h>

namespace {

TEST(ReadEightDigits, ReadsTheNumberWhereTheLowestByteStandsInFront)
{
    constexpr bool IsRead = std::endian::native == std::endian::little;
    for (const char *text : {"00000000", "00000001", "10000000", "12345678", "98765432", "99999999", "09090909"}) {
        unsigned long long number = 7;
        EXPECT_EQ(tesk::ReadEightDigits(text, number), IsRead) << text;
        EXPECT_EQ(number, IsRead ? std::stoull(text) : 7);
    }
}

TEST(ReadEightDigits, RefusesEveryOtherByteInEveryPlace)
{
    for (std::size_t place = 0; place < 8; ++place)
        for (int byte = 0; byte < 256; ++byte) {
            if (byte >= '0' && byte <= '9')
                continue;
            for (std::string text : {"00000000", "99999999"}) {
                text[place] = static_cast<char>(byte);
                unsigned long long number = 7;
                EXPECT_FALSE(tesk::ReadEightDigits(text.c_str(), number)) << byte << " in place " << place;
                EXPECT_EQ(number, 7U);
            }
        }
}

}  // namespace
