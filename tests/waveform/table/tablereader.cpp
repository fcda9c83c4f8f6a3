#include "waveform/table/tablereader.h"

#include "waveform/table/tables.h"

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

namespace {

class TableReaderTest : public CTableTest {};

TEST_F(TableReaderTest, SurvivesRowsOfAMillionColumnsAndHugeTokens)
{
    std::string names, values;
    for (int i = 0; i < 1000000; ++i) {
        names += 'c' + std::to_string(i) + ' ';
        values += "1 ";
    }
    EXPECT_THAT(ImportTable(names + "\n" + values + "\n" + values + "\n", "c999999"),
                Optional(ElementsAre("0:1", "1:1")));

    const std::string huge(5000000, '1');
    EXPECT_THAT(ImportTable("s " + huge + "\n" + huge + " 1\n" + huge + " 0\n", "s"),
                Optional(ElementsAre("0:11111111", "1:11111111")));
    EXPECT_THAT(ImportTable("s t\n10 " + huge, huge + " -time_points t"), Eq(std::nullopt));
    EXPECT_THAT(ImportTable("s\n" + huge + "\n", "s", RealType), Optional(ElementsAre("0:inf")));
}

TEST_F(TableReaderTest, EndsAValueAtAZeroByte)
{
    EXPECT_THAT(ImportTable(std::string("s\n1\0001\n\00010\n", 10), "s", IntegerType),
                Optional(ElementsAre("0:1", "1:")));
    EXPECT_THAT(ImportTable(std::string("s\n1\0001\n", 6), "s"), Optional(ElementsAre("0:1")));
    EXPECT_THAT(ImportTable(std::string("t s\n1\0001 1\n", 10), "s -time_points t"), Optional(ElementsAre("1:1")));
}

TEST_F(TableReaderTest, ReadsTokensThatLieAcrossTheBlocksOfTheFile)
{
    for (const long long first : {1000000LL, 10000000LL, 1000000000000LL}) {
        std::string table = "t s\n";
        CTexts expected;
        for (int i = 0; i < 40000; ++i) {
            const std::string time = std::to_string(first + i);
            table += time + (i % 7 == 0 ? "\t , " : " ") + std::to_string(i) + "\r\n";
            expected.push_back(time + ":" + std::to_string(i));
        }
        for (std::size_t shift = 0; shift < 4; ++shift)
            ASSERT_EQ(ImportTable(std::string(shift, ' ') + table, "s -time_points t", IntegerType), expected);
    }
}

// What the beginning of a file tells about the rest of it may be wrong by far.
TEST_F(TableReaderTest, ReservesNoRoomForTheEventsOfAnEmptyRest)
{
    ASSERT_NE(ImportTable("s 1 0 1" + std::string(8 << 20, '\n'), "s -row"), std::nullopt);
    EXPECT_LT(g_SampleColumns.at(g_NextSampleHandle - 1)->m_events.capacity(), 100U);
}

}  // namespace
