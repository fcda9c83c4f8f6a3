#include "platform/vcd/vcdwords.h"

#include <gtest/gtest.h>

#include <climits>

using NTARN::NImport::ReadVcdTime;

TEST(VcdTimeText, IsAWholeNumberWithoutASign)
{
    const struct {
        const char *text;
        long long time;
    } rows[] = {{"0", 0}, {"00", 0}, {"17", 17}, {"9223372036854775807", LLONG_MAX}};
    for (const auto &row : rows) {
        long long time = -1;
        bool isRounded = false;
        EXPECT_TRUE(ReadVcdTime(row.text, time, isRounded)) << row.text;
        EXPECT_EQ(time, row.time) << row.text;
        EXPECT_FALSE(isRounded) << row.text;
    }
    for (const char *text : {"", "-0", "-1", "+1", " 1", "1 ", "1.5x", "x", "9223372036854775808"}) {
        long long time = -1;
        bool isRounded = false;
        EXPECT_FALSE(ReadVcdTime(text, time, isRounded)) << text;
    }
}
