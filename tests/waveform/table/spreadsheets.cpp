// Tables as spreadsheets export them, in tests/data/tables.
#include "testpaths.h"
#include "waveform/table/tables.h"

using testing::ElementsAre;
using testing::Optional;

namespace {

class Spreadsheets : public CTableTest {
protected:
    std::optional<CTexts> ImportFile(const std::string &name, const std::string &arguments, const std::string &type)
    {
        std::filesystem::copy_file(std::filesystem::path(TESK_SOURCE_DIR) / "tests/data/tables" / name, name,
                                   std::filesystem::copy_options::overwrite_existing);
        return Import(name + "," + arguments, type);
    }
};

TEST_F(Spreadsheets, AreReadWhateverSeparatesCellsAndLines)
{
    const struct {
        const char *file, *switches;
    } rows[] = {
        {"semicolons.csv", " -time_points time -interval 1ns"},
        {"tabs.txt", " -time_points time -interval 1ns"},
        {"rows.csv", " -row -time_points time -interval 1ns"},
        {"bom.csv", " -interval 10ns"},
    };
    for (const auto &row : rows) {
        EXPECT_THAT(ImportFile(row.file, "clk" + std::string(row.switches), StdLogicType),
                    Optional(ElementsAre("0:0", "10000:1", "20000:0", "30000:1")))
            << row.file;
        EXPECT_THAT(ImportFile(row.file, "data" + std::string(row.switches), VectorType(8)),
                    Optional(ElementsAre("0:0", "10000:1", "20000:10", "30000:11111111")))
            << row.file;
        EXPECT_THAT(ImportFile(row.file, "level" + std::string(row.switches), RealType),
                    Optional(ElementsAre("0:0.5", "10000:0.75", "20000:-1.25", "30000:2000")))
            << row.file;
    }
}

TEST_F(Spreadsheets, HaveAByteOrderMarkInTheFirstName)
{
    EXPECT_EQ(ImportFile("bom.csv", "clk -time_points time", StdLogicType), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Time points `clk' not found in file `bom.csv'."));
}

TEST_F(Spreadsheets, HaveQuotesInTheirNames)
{
    EXPECT_EQ(ImportFile("quoted.csv", "clk", StdLogicType), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Signal `clk' not found in file `quoted.csv'."));
}

TEST_F(Spreadsheets, MustNotHaveEmptyCellsOrDecimalCommas)
{
    EXPECT_EQ(ImportFile("emptycell.csv", "clk", StdLogicType), std::nullopt);
    EXPECT_EQ(ImportFile("decimalcomma.csv", "level", RealType), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Improper columns number in row 5 of file `emptycell.csv'.",
                                        "1 KERNEL Improper columns number in row 3 of file `decimalcomma.csv'."));
}

}  // namespace
