#include "platform/vcd/vcdvariable.h"

#include "platform/kestrin.h"
#include "platform/vcd/vcdtext.h"
#include "platform/vcd/vcdwords.h"

namespace {

using NTARN::NImport::EVcdKind;
using NTARN::NImport::ReadVcdTimescale;
using NTARN::NImport::ReadVcdVariable;
using NTARN::NImport::SVcdFault;
using NTARN::NImport::SVcdVariable;
using NTARN::NImport::VcdTimeText;

// "name|kind width left right"
std::string Show(const std::string &body)
{
    const SVcdVariable variable = ReadVcdVariable(body);
    return variable.name + "|" + "bvrse"[static_cast<int>(variable.kind)] + " " + std::to_string(variable.width) + " " +
           std::to_string(variable.left) + " " + std::to_string(variable.right);
}

TEST(VcdVariable, HasANameAKindAndARange)
{
    const struct {
        const char *body, *shown;
    } rows[] = {
        {"wire 1 ! clk", "clk|b 1 0 0"},
        {"wire 8 ! data [7:0]", "data|v 8 7 0"},
        {"wire 8 ! data[7:0]", "data|v 8 7 0"},
        {"wire 8 ! data", "data|v 8 7 0"},
        {"reg 8 ! up [0:7]", "up|v 8 0 7"},
        {"reg 6 ! below [3:-2]", "below|v 6 3 -2"},
        {"reg 8 ! spaced [ 7 : 0 ]", "spaced|v 8 7 0"},
        {"wire 1 ! one [0:0]", "one|b 1 0 0"},
        {"wire 1 ! three [3:3]", "three|b 1 0 0"},
        {"wire 1 ! odd [7:0]", "odd|b 1 0 0"},
        {"wire 1 ! bit [3]", "bit[3]|b 1 0 0"},
        {"wire 1 ! bit[3]", "bit[3]|b 1 0 0"},
        {"reg 8 ! mem[3][7:0]", "mem[3]|v 8 7 0"},
        {"reg 8 ! mem [3] [7:0]", "mem[3]|v 8 7 0"},
        {"reg 8 ! word [3]", "word[3]|v 8 7 0"},
        {"reg 8 ! packed [1:0][3:0]", "packed|v 8 7 0"},
        {"reg 8 ! other [3:0]", "other|v 8 7 0"},
        {"reg 8 ! huge [99999999999:0]", "huge[99999999999:0]|v 8 7 0"},
        {"wire 1 [ [", "[|b 1 0 0"},
        {"wire 1 [7:0] x", "x|b 1 0 0"},
        {"wire 4 ! \\esc[3:0]", "\\esc[3:0]\\|v 4 3 0"},
        {"wire 4 ! \\esc[3:0] [3:0]", "\\esc[3:0]\\|v 4 3 0"},
        {"wire 1 ! \\a.b+c", "\\a.b+c\\|b 1 0 0"},
        {"wire 1 ! \\mem(1) [3]", "\\mem[1]\\[3]|b 1 0 0"},
        {"wire 1 ! gen(0)", "gen[0]|b 1 0 0"},
        {"wire 4 ! \\two (words)\\ [3:0]", "\\two [words]\\|v 4 3 0"},
        {"wire 1 ! \\two words\\", "\\two words\\|b 1 0 0"},
        {"integer 32 ! i", "i|v 32 31 0"},
        {"integer 16 ! i", "i|v 16 15 0"},
        {"time 64 ! t", "t|v 64 63 0"},
        {"event 1 ! e", "e|b 1 0 0"},
        {"event 0 ! e", "e|b 1 0 0"},
        {"parameter 12 ! p", "p|v 12 11 0"},
        {"real 64 ! r", "r|r 1 0 0"},
        {"real 1 ! r", "r|r 1 0 0"},
        {"real 64 ! r [63:0]", "r|r 1 0 0"},
        {"realtime 64 ! r", "r|r 1 0 0"},
        {"shortreal 32 ! r", "r|r 1 0 0"},
        {"real_parameter 64 ! r", "r|r 1 0 0"},
        {"real parameter 64 ! r", "r|r 1 0 0"},
        {"string 1 ! s", "s|s 1 0 0"},
        {"wire 0 ! nothing", "nothing|e 0 -1 0"},
        {"port 1 <0 a", "a|b 1 0 0"},
        {"port [7:0] <1 b", "b|v 8 7 0"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Show(row.body), row.shown) << row.body;
}

TEST(VcdVariable, IsRefusedWithoutWidthCodeOrName)
{
    for (const char *body : {"", "wire", "wire 1", "wire 1 !", "wire x ! a", "wire -1 ! a", "wire 2147483648 ! a",
                             "wire 99999999999999999999 ! a", "port [2147483647:-2147483648] ! a"})
        EXPECT_THROW(ReadVcdVariable(body), SVcdFault) << body;
}

TEST(VcdVariable, HasAType)
{
    const struct {
        const char *body, *type;
    } rows[] = {
        {"wire 1 ! a [0:0]", "e#9#std_logicc9 UX01ZWLH-"},
        {"wire 4 ! a [3:0]", "a#28#std_logic_vector(3 downto 0)1 ricd3 0 e#9#std_logicc9 UX01ZWLH-"},
        {"wire 4 ! a [0:3]", "a#24#std_logic_vector(0 to 3)1 rict0 3 e#9#std_logicc9 UX01ZWLH-"},
        {"wire 4 ! a [1:-2]", "a#29#std_logic_vector(1 downto -2)1 ricd1 -2 e#9#std_logicc9 UX01ZWLH-"},
        {"real 64 ! a", "f#4#realrrct-1.79769e+308 1.79769e+308"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(NTARN::NImport::VcdTypeText(ReadVcdVariable(row.body)), row.type);
        EXPECT_TRUE(Kestrin::KTypeInfo::CheckTypeInfo(row.type)) << row.type;
    }
}

TEST(VcdTimescale, IsANumberAndAUnit)
{
    const struct {
        const char *body;
        long long femtoseconds;
    } rows[] = {
        {"1 fs", 1},
        {"10fs", 10},
        {"100 ps", 100000},
        {" 1\tns ", 1000000},
        {"1us", 1000000000},
        {"10 ms", 10000000000000},
        {"1 s", 1000000000000000},
        {"100 s", 100000000000000000},
        {"ns", 1000000},
        {"5 ns", 5000000},
        {"0.1ps", 100},
        {"0.010 ns", 10000},
        {"1.5 ns", 1500000},
        {"1.0fs", 1},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ReadVcdTimescale(row.body), row.femtoseconds) << row.body;
}

TEST(VcdTimescale, IsRefusedWithAnUnknownUnitOrAnImpossibleNumber)
{
    for (const char *body : {"", "1", "1 xs", "0 ns", "-1 ns", "1.5 fs", "0.0001 ps", "0.0 ns", "1.2.3 ns", ". ns",
                             "0.00000000000000000001 s", "10000 s", "99999999999999999999 fs"})
        EXPECT_THROW(ReadVcdTimescale(body), SVcdFault) << body;
}

TEST(VcdTime, IsWrittenInTheLargestUnitInWhichItIsWhole)
{
    const struct {
        long long ticks, resolution;
        const char *text;
    } rows[] = {
        {0, 1000, "0 s"},
        {1, 1, "1 fs"},
        {120, 1000000, "120 ns"},
        {1000, 1000000, "1 us"},
        {1500, 1000000, "1500 ns"},
        {25, 100000, "2500 ps"},
        {7, 100000000000000000, "700 s"},
        {9223372036854775807, 1000000000000000, "9223372036854775807 s"},
        {9223372036854775807, 100000000000000000, "922337203685477580700 s"},
        {3, 5000000, "15 ns"},
        {9223372036854775807, 629000000000000000, "5801501011181653475000 s"},  // of more digits the leading ones
    };
    for (const auto &row : rows)
        EXPECT_EQ(VcdTimeText(row.ticks, row.resolution), row.text);
}

TEST(VcdWord, IsQuotedShortAndPrintable)
{
    EXPECT_EQ(NTARN::NImport::QuoteVcdWord("a\x01z"), "\"a?z\"");
    EXPECT_EQ(NTARN::NImport::QuoteVcdWord(std::string(41, 'x')), "\"" + std::string(40, 'x') + "...\"");
}

}  // namespace
