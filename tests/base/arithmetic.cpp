// Arithmetic at its limits: that which wraps, and that which stops.
#include <gtest/gtest.h>

#include <climits>
#include <limits>

#include "base/saturate.h"
#include "base/wrap.h"

using namespace tesk;

TEST(WrappingArithmetic, GoesRoundAtBothEnds)
{
    EXPECT_EQ(WrapAdd(LLONG_MAX, 1), LLONG_MIN);
    EXPECT_EQ(WrapAdd(2, 3), 5);
    EXPECT_EQ(WrapSubtract(LLONG_MIN, 1), LLONG_MAX);
    EXPECT_EQ(WrapSubtract(2, 3), -1);
    EXPECT_EQ(WrapMultiply(LLONG_MAX, 2), -2);
    EXPECT_EQ(WrapMultiply(-3, 4), -12);
}

TEST(WrappingDivision, TrapsForNoDividend)
{
    EXPECT_EQ(WrapDivide(LLONG_MIN, -1), LLONG_MIN);
    EXPECT_EQ(WrapDivide(7, -1), -7);
    EXPECT_EQ(WrapDivide(-7, 2), -3);
    EXPECT_EQ(WrapModulo(LLONG_MIN, -1), 0);
    EXPECT_EQ(WrapModulo(-7, 2), -1);
    EXPECT_EQ(WrapModulo(7, -2), 1);
}

TEST(TruncateToInt64, GivesTheSmallestNumberForWhatDoesNotFit)
{
    constexpr double Limit = 9223372036854775808.0;
    EXPECT_EQ(TruncateToInt64(-1.9), -1);
    EXPECT_EQ(TruncateToInt64(1.9), 1);
    EXPECT_EQ(TruncateToInt64(-Limit), LLONG_MIN);
    EXPECT_EQ(TruncateToInt64(9223372036854774784.0), 9223372036854774784);
    for (const double outside :
         {Limit, -Limit * 1.5, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(TruncateToInt64(outside), LLONG_MIN) << outside;
}

TEST(ReadInt, KeepsTheLowBitsOfANumberThatDoesNotFit)
{
    EXPECT_EQ(ReadInt(" -12x"), -12);
    EXPECT_EQ(ReadInt("4294967298"), 2);
    EXPECT_EQ(ReadInt("x"), 0);
}

TEST(SaturatingArithmetic, StopsAtTheLargestNumber)
{
    EXPECT_EQ(MultiplySaturating(3, 4), 12);
    EXPECT_EQ(MultiplySaturating(3, 0), 0);
    EXPECT_EQ(MultiplySaturating(LLONG_MAX / 2, 2), LLONG_MAX - 1);
    EXPECT_EQ(MultiplySaturating(LLONG_MAX / 2 + 1, 2), LLONG_MAX);
    EXPECT_EQ(AddSaturating(3, 4), 7);
    EXPECT_EQ(AddSaturating(LLONG_MAX - 1, 1), LLONG_MAX);
    EXPECT_EQ(AddSaturating(LLONG_MAX, 1), LLONG_MAX);
}
