#include "base/bytes.h"

#include <gtest/gtest.h>

#include <string>

using namespace tesk;

TEST(NumbersAsBytes, AreReadInBothOrders)
{
    const unsigned char bytes[] = {0x01, 0x80, 0xFF, 0x10, 0x20, 0x30, 0x40, 0xF0};
    EXPECT_EQ(LoadLittleEndian(bytes, 0), 0u);
    EXPECT_EQ(LoadLittleEndian(bytes, 2), 0x8001u);
    EXPECT_EQ(LoadLittleEndian(bytes, 8), 0xF040302010FF8001u);
    EXPECT_EQ(LoadBigEndian(bytes, 0), 0u);
    EXPECT_EQ(LoadBigEndian(bytes, 2), 0x0180u);
    EXPECT_EQ(LoadBigEndian(bytes, 8), 0x0180FF10203040F0u);
    EXPECT_EQ(LoadLittleEndian("\x80\xFF", 2), 0xFF80u) << "of signed characters";
}

TEST(NumbersAsBytes, AreWrittenWithTheLowestByteFirst)
{
    char bytes[4] = {};
    StoreLittleEndian(0xAABBCCDD, bytes, 3);
    EXPECT_EQ(std::string(bytes, 4), std::string("\xDD\xCC\xBB\0", 4));
    std::string text = "x";
    AppendLittleEndian(0x0102, 2, text);
    EXPECT_EQ(text, "x\x02\x01");
}
