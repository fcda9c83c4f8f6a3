#include "signal/tree/countsignals.h"

#include <gtest/gtest.h>

#include "signal/signaltools.h"

namespace {

long long Count(const std::string &type)
{
    return tesk::CountSignals(Kestrin::KTypeInfo(type.c_str()));
}

std::string Bits(const std::string &range)
{
    return ArrayType("a", 1, range, BitType);
}

TEST(CountSignals, CountsAllThatATypeDescribes)
{
    EXPECT_EQ(Count(BitType), 0);
    EXPECT_EQ(Count(VectorType(8)), 8);
    EXPECT_EQ(Count(ArrayType("a", 1, "rict1 3", VectorType(8))), 27);
    EXPECT_EQ(Count(ArrayType("a", 2, "rict1 3 rict1 4", BitType)), 12);
    EXPECT_EQ(Count(RecordType({{"a", BitType}, {"b", VectorType(8)}})), 10);
}

TEST(CountSignals, IsExactUpTo2To24AndOneMoreForAllBeyond)
{
    EXPECT_EQ(Count(Bits("rict1 16777216")), 1 << 24);
    EXPECT_EQ(Count(Bits("rict1 16777217")), (1 << 24) + 1);
    EXPECT_EQ(Count(Bits("rict1 16777218")), (1 << 24) + 1);
    EXPECT_EQ(Count(Bits("rict-2147483648 2147483647")), (1 << 24) + 1);
    EXPECT_EQ(Count(RecordType({{"a", Bits("rict1 16777215")}})), 1 << 24);
    EXPECT_EQ(Count(RecordType({{"a", Bits("rict1 16777216")}})), (1 << 24) + 1);
}

TEST(CountSignals, CountsALongNameForSeveral)
{
    EXPECT_EQ(Count(RecordType({{std::string(255, 'n'), BitType}})), 1);
    EXPECT_EQ(Count(RecordType({{std::string(256, 'n'), BitType}})), 2);
    EXPECT_EQ(Count(RecordType({{std::string(512, 'n'), BitType}})), 3);
}

}  // namespace
