// The steps of the counter sequences.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "settings/bitvectors.h"

namespace {

constexpr unsigned FirstCall = 0xFFFFFFFF;

std::vector<std::string> JohnsonSequence(CBitVector vector, bool up, int steps)
{
    std::vector<std::string> values;
    for (int step = 0; step <= steps; ++step) {
        values.push_back(Show(vector));
        vector.Johnson(up);
    }
    return values;
}

}  // namespace

TEST(JohnsonRing, TurnsUpwardAndDownward)
{
    using testing::ElementsAre;
    EXPECT_THAT(JohnsonSequence(Bits("000"), true, 6), ElementsAre("000", "001", "011", "111", "110", "100", "000"));
    EXPECT_THAT(JohnsonSequence(Bits("000"), false, 6), ElementsAre("000", "100", "110", "111", "011", "001", "000"));
}

TEST(JohnsonRing, ComesBackAfterTwiceItsWidth)
{
    for (unsigned width = 1; width <= 70; ++width) {
        for (const bool up : {false, true}) {
            CBitVector vector = Bits(std::string(width, '0'));
            std::set<std::string> seen;
            for (unsigned step = 0; step < 2 * width; ++step) {
                ASSERT_TRUE(seen.insert(Show(vector)).second) << width;
                vector.Johnson(up);
            }
            ASSERT_EQ(Show(vector), std::string(width, '0')) << width;
        }
    }
}

TEST(JohnsonRing, IsEnteredAtTheFirstGreaterMember)
{
    const struct {
        const char *bits;
        bool up;
        const char *member;
    } rows[] = {
        {"0101", true, "0111"}, {"0101", false, "1000"}, {"1001", true, "1111"}, {"1001", false, "1100"},
        {"1101", true, "1111"}, {"1101", false, "1110"}, {"0110", true, "0111"}, {"0010", true, "0011"},
    };
    for (const auto &row : rows) {
        CBitVector vector = Bits(row.bits);
        vector.NormalizeJohnson(row.up);
        EXPECT_EQ(Show(vector), row.member) << row.bits << " up " << row.up;
    }
}

TEST(JohnsonRing, KeepsItsMembers)
{
    for (const char *bits : {"0", "1", "00", "01", "10", "11", "000", "001", "011", "111", "110", "100"}) {
        for (const bool up : {false, true}) {
            CBitVector vector = Bits(bits);
            vector.NormalizeJohnson(up);
            EXPECT_EQ(Show(vector), bits);
        }
    }
}

TEST(JohnsonRing, SeesBitsAboveTheWidthWhereItIsEntered)
{
    CBitVector vector(4, "100101", 2);
    vector.NormalizeJohnson(true);
    EXPECT_EQ(Show(vector), "1100");  // 111100 is the first member above 100101
}

TEST(JohnsonRing, LeavesBitsAboveTheWidthOutWhereNoMemberIsGreater)
{
    CBitVector up(4, "16#fffffffd", 10);
    up.NormalizeJohnson(true);
    EXPECT_EQ(Show(up), "1111");
    CBitVector down(4, "100101", 2);
    down.NormalizeJohnson(false);
    EXPECT_EQ(Show(down), "1000");
}

TEST(JohnsonRing, IsEnteredFastWhereItIsWide)
{
    std::string bits(1000000, '0');
    bits[1] = bits[500000] = '1';
    CBitVector vector = Bits(bits);
    vector.NormalizeJohnson(true);
    EXPECT_EQ(Show(vector), '0' + std::string(999999, '1'));
}

TEST(OneHot, KeepsAValueWithOneSuchBit)
{
    CBitVector one = Bits("0100");
    EXPECT_TRUE(one.CheckOneHot(true));
    EXPECT_EQ(Show(one), "0100");
    CBitVector zero = Bits("1101");
    EXPECT_TRUE(zero.CheckOneHot(false));
    EXPECT_EQ(Show(zero), "1101");
    CBitVector single = Bits("0");
    EXPECT_TRUE(single.CheckOneHot(false));
}

TEST(OneHot, BecomesTheLowestPatternOtherwise)
{
    for (const char *bits : {"0110", "0000", "1111"}) {
        CBitVector vector = Bits(bits);
        EXPECT_FALSE(vector.CheckOneHot(true)) << bits;
        EXPECT_EQ(Show(vector), "0001") << bits;
    }
    for (const char *bits : {"0110", "0000", "1111"}) {
        CBitVector vector = Bits(bits);
        EXPECT_FALSE(vector.CheckOneHot(false)) << bits;
        EXPECT_EQ(Show(vector), "1110") << bits;
    }
    CBitVector wide(70, "0", 2);
    EXPECT_FALSE(wide.CheckOneHot(false));
    std::string pattern(70, '1');
    pattern.back() = '0';
    EXPECT_EQ(Show(wide), pattern);
}

// Deliberate: of a starting value that is too wide the bits in the top word count.
TEST(OneHot, CountsSetBitsAboveTheWidth)
{
    CBitVector vector(4, "10010", 2);
    EXPECT_FALSE(vector.CheckOneHot(true));
    EXPECT_EQ(Show(vector), "0001");
    EXPECT_TRUE(CBitVector(4, "10000", 2).CheckOneHot(true));
    EXPECT_TRUE(CBitVector(4, "01101", 2).CheckOneHot(false));
}

namespace {

std::vector<std::string> Walk(const std::string &start, bool ones, bool up, int steps)
{
    CBitVector state = Bits(start);
    CBitVector next;
    unsigned position = FirstCall;
    std::vector<std::string> values;
    for (int step = 0; step < steps; ++step) {
        if (ones)
            next.CircularOne(state, up, position);
        else
            next.CircularZero(state, up, position);
        state = next;
        values.push_back(Show(next));
    }
    return values;
}

}  // namespace

TEST(CircularPattern, WalksAndWraps)
{
    using testing::ElementsAre;
    EXPECT_THAT(Walk("0010", true, true, 4), ElementsAre("0100", "1000", "0001", "0010"));
    EXPECT_THAT(Walk("0010", true, false, 3), ElementsAre("0001", "1000", "0100"));
    EXPECT_THAT(Walk("1101", false, true, 3), ElementsAre("1011", "0111", "1110"));
    EXPECT_THAT(Walk("1101", false, false, 3), ElementsAre("1110", "0111", "1011"));
    EXPECT_THAT(Walk("1", true, true, 2), ElementsAre("1", "1"));
}

TEST(CircularPattern, VisitsEveryPositionOfEveryWidth)
{
    for (unsigned width = 1; width <= 70; ++width) {
        for (const bool ones : {false, true}) {
            for (const bool up : {false, true}) {
                std::string start(width, ones ? '0' : '1');
                start[width / 2] = ones ? '1' : '0';
                const auto values = Walk(start, ones, up, static_cast<int>(width));
                ASSERT_EQ(std::set<std::string>(values.begin(), values.end()).size(), width);
                ASSERT_EQ(values.back(), start);
            }
        }
    }
}

TEST(CircularPattern, LeavesTheBitsAboveTheWidthClear)
{
    CBitVector state = Bits("0111");
    CBitVector next;
    unsigned position = FirstCall;
    next.CircularZero(state, true, position);
    EXPECT_EQ(position, 0U);
    EXPECT_TRUE(next.IsAtMost(CBitVector(8, "1111", 2)));
}

TEST(CircularPattern, KeepsAWildPositionInBounds)
{
    for (unsigned position : {5U, 100U, 0xFFFFFFFEU}) {
        for (const bool up : {false, true}) {
            CBitVector state = Bits("0010");
            CBitVector next = Bits("0000");
            unsigned moved = position;
            next.CircularOne(state, up, moved);
            next.CircularZero(state, up, moved);
            EXPECT_EQ(next.GetWidth(), 4U);
        }
    }
}
