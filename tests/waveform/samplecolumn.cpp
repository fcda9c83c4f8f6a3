#include "waveform/samplecolumn.h"

#include <climits>

#include "waveform/table/tables.h"

namespace {

TEST(ClassifyValueType, TellsWidthAndRadixByTheType)
{
    const struct {
        std::string type;
        int width, radix;
        bool isReal, isInteger;
    } rows[] = {
        {IntegerType, 32, -10, false, true},
        {"v" + std::string(IntegerType), 32, 10, false, true},
        {"vs" + std::string(IntegerType), 32, -10, false, true},
        {PhysicalType, 8, 10, false, true},
        {BitType, 1, -2, false, false},
        {"", 1, -2, false, false},
        {"r#3#rec1 a e#3#bitc2 01", 1, -2, false, false},
        {VectorType(8), 8, -2, false, false},
        {ArrayType("std_logic_vector(-2 to 4)", -2, 4), 7, -2, false, false},
        {ArrayType("UNSIGNED(7 downto 0)", 7, 0), 8, 2, false, false},
        {ArrayType("unsigned(7 downto 0)", 7, 0), 8, -2, false, false},  // deliberate: capitals count
        {ArrayType("SIGNED(7 downto 0)", 7, 0), 8, -2, false, false},
        {"va#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX", 8, 2, false, false},
        {"vsa#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX", 8, -2, false, false},
        {"va#13#integer[31:0]1 ricd31 0 e#3#regc4 01ZX", 32, 10, false, false},
        {"vsa#13#integer[31:0]1 ricd31 0 e#3#regc4 01ZX", 32, -10, false, false},
    };
    for (const auto &row : rows) {
        CSampleColumn column;
        int width = 0, radix = 0;
        ClassifyValueType(MakeSignal(row.type).get(), column, width, radix);
        EXPECT_EQ(width, row.width) << row.type;
        EXPECT_EQ(radix, row.radix) << row.type;
        EXPECT_EQ(column.m_isReal, row.isReal) << row.type;
        EXPECT_EQ(column.m_isInteger, row.isInteger) << row.type;
    }
}

TEST(ClassifyValueType, OnlyFlagsARealType)
{
    CSampleColumn column;
    int width = 0, radix = 0;
    ClassifyValueType(MakeSignal(RealType).get(), column, width, radix);
    EXPECT_TRUE(column.m_isReal);
    EXPECT_FALSE(column.m_isInteger);
}

TEST(ClassifyValueType, TakesNoSignalForOneWithoutAType)
{
    CSampleColumn column;
    int width = 0, radix = 0;
    ClassifyValueType(nullptr, column, width, radix);
    EXPECT_EQ(width, 1);
    EXPECT_EQ(radix, -2);
}

TEST(SampleEvent, HasSixteenBytes)
{
    EXPECT_EQ(sizeof(SampleEvent), 16U);
}

}  // namespace
