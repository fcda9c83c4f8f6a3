#include "waveform/eightdigits.h"

#include <string>

#include <gtest/gtest.h>

namespace {

TEST(ReadEightDigits, ReadsTheNumber)
{
    if constexpr (std::endian::native != std::endian::little)
        GTEST_SKIP() << "only for machines with the lowest byte in front";
    for (const char *text : {"00000000", "00000001", "10000000", "12345678", "98765432", "99999999", "09090909"}) {
        unsigned long long number = 7;
        EXPECT_TRUE(ReadEightDigits(text, number)) << text;
        EXPECT_EQ(number, std::stoull(text));
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
                EXPECT_FALSE(ReadEightDigits(text.c_str(), number)) << byte << " in place " << place;
                EXPECT_EQ(number, 7U);
            }
        }
}

}  // namespace
