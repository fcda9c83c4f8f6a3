// A file of GHDL's with signals of every kind of type.
#include <gmock/gmock.h>

#include "logcatcher.h"
#include "platform/fst/fstvcd.h"
#include "platform/ghw/ghwmaker.h"
#include "platform/ghw/ghwshow.h"

namespace {

using namespace ghwtest;
using fsttest::DataFile;

constexpr long long Nanosecond = 1000000;

TEST(GhwOfGhdl, HasTheTypesOfTheDesign)
{
    const CLogCatcher log;
    const ReaderPtr reader = Open(DataFile("ghw_types.ghdl.ghw"));
    EXPECT_THAT(log.Messages(), testing::IsEmpty());
    const struct {
        const char *path, *type;
    } rows[] = {
        {"kinds.common", "i#7#integerrict-2147483648 2147483647"},
        {"ghw_types.b", "e#3#bitc2 01"},
        {"ghw_types.bo", "e#7#booleans2 false true "},
        {"ghw_types.le", "e#7#lettersc4 a( ,"},
        {"ghw_types.st", "e#5#states4 idle run 'x' \\odd_name\\ "},
        {"ghw_types.ac", "e#6#actives4 idle run 'x' \\odd_name\\ "},
        {"ghw_types.sm", "i#5#smallrict-8 7"},
        {"ghw_types.nat", "i#7#naturalrict0 2147483647"},
        {"ghw_types.neg", "i#7#integerrict-3 -1"},
        {"ghw_types.down", "i#7#integerricd9 0"},
        {"ghw_types.fa", "p#3#farrict-1099511627776 1099511627776"},
        {"ghw_types.r", "f#4#realrrct-1.79769e+308 1.79769e+308"},
        {"ghw_types.lv", "f#5#levelrrct0 10"},
        {"ghw_types.t", "p#4#timerict-9223372036854775808 9223372036854775807"},
        {"ghw_types.w", "p#6#weightrict-100000 100000"},
        {"ghw_types.u", "e#9#std_logicc9 UX01ZWLH-"},
        {"ghw_types.slv", "a#29#std_ulogic_vector(7 downto 2)1 ricd7 2 e#9#std_logicc9 UX01ZWLH-"},
        {"ghw_types.na", "a#18#bits(-1 downto -3)1 ricd-1 -3 e#3#bitc2 01"},
        {"ghw_types.nul", "a#19#bit_vector(0 to -1)1 rict0 -1 e#3#bitc2 01"},
        {"ghw_types.fl", "a#13#flags(0 to 3)1 rict0 3 e#7#booleans2 false true "},
        {"ghw_types.gr", "a#21#grid(0 to 1,97 to 98)2 rict0 1 rict97 98 e#5#states4 idle run 'x' \\odd_name\\ "},
        {"ghw_types.pa",
         "r#6#packet2 data a#22#bit_vector(1 downto 0)1 ricd1 0 e#3#bitc2 01 count i#7#naturalrict0 2147483647"},
        {"ghw_types.tr", "r#4#tree2 leaf a#12#rows(0 to 1)1 rict0 1 a#22#bit_vector(4 downto 3)1 ricd4 3 e#3#bitc2 01 "
                         "\\a [0]\\ r#4#pair2 valid e#3#bitc2 01 place i#7#integerrict-2147483648 2147483647"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(TypeOf(*reader, row.path), row.type) << row.path;
}

TEST(GhwOfGhdl, HasTheValuesOfEveryKindOfType)
{
    const ReaderPtr reader = Open(DataFile("ghw_types.ghdl.ghw"));
    const struct {
        const char *path, *events;
    } rows[] = {
        {"kinds.common", "0:-1 15:5"},
        {"ghw_types.b", "0:0 10:1 35:0"},  // what lasts no time is not in the file
        {"ghw_types.bo", "0:false 35:true"},
        {"ghw_types.c", "0:'q' 15:' '"},
        {"ghw_types.le", "0:, 15:("},
        {"ghw_types.st", "0:idle 10:run 35:\\odd_name\\"},
        {"ghw_types.ac", "0:'x'"},
        {"ghw_types.i", "0:-5 10:7"},
        {"ghw_types.sm", "0:3 35:-1"},
        {"ghw_types.fa", "0:8589934592 10:-4"},
        {"ghw_types.neg", "0:-2"},
        {"ghw_types.r", "0:1.5 10:-2.25"},
        {"ghw_types.t", "0:3000000 10:1000000000"},
        {"ghw_types.w", "0:2000 10:3"},
        {"ghw_types.l", "0:H 35:-"},
        {"ghw_types.slv[3]", "0:H 10:1"},
        {"ghw_types.slv[2]", "0:L"},
        {"ghw_types.na[-2]", "0:0 15:1"},
        {"ghw_types.wo[0]", "0:("},
        {"ghw_types.str[2]", "0:'b' 15:','"},
        {"ghw_types.rv[1]", "0:2 35:-0"},
        {"ghw_types.iv[1]", "0:-1 35:-2147483648"},
        {"ghw_types.tv[0]", "0:1000 35:7200000000000000000"},
        {"ghw_types.p.place", "0:-2147483648 10:9"},
        {"ghw_types.ps[1].place", "0:-2147483648 15:77"},
        {"ghw_types.ps[0].valid", "0:0"},
        {"ghw_types.ni[2][3]", "0:0 15:1"},
        {"ghw_types.ni[2][2]", "0:0"},
        {"ghw_types.ro[1][2]", "0:0 35:1"},
        {"ghw_types.gr[1][98]", "0:idle 15:run"},
        {"ghw_types.gr[1][97]", "0:idle"},
        {"ghw_types.fl[1]", "0:false 15:true"},
        {"ghw_types.pa.data[0]", "0:0 15:1"},
        {"ghw_types.pa.count", "0:0 15:3"},
        {"ghw_types.pas[1].data[3]", "0:0 35:1"},
        {"ghw_types.pas[1].count", "0:0 35:8"},
        {"ghw_types.tr.leaf[1][4]", "0:0 35:1"},
        {"ghw_types.tr.\\a [0]\\.place", "0:-2147483648 35:6"},
        {"ghw_types.\\a.b[1]\\", "0:0 15:1"},
        {"ghw_types.dut.i", "0:0 10:1 35:0"},
        {"ghw_types.dut.v[1].place", "0:-2147483648 15:77"},
        {"ghw_types.each[1].s", "0:U 3:1"},
        {"ghw_types.some[run].s", "0:0 3:1"},
        {"ghw_types.some['x'].s", "0:0 3:1"},
        {"ghw_types.if_so.s", "0:0 3:1"},
        {"ghw_types.blk.s", "0:0"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Events(*reader, row.path, Nanosecond), row.events) << row.path;
    EXPECT_EQ(reader->GetEndTime(), 35 * Nanosecond);
}

TEST(GhwOfGhdl, HasNoPartsWhereRangesAreEmpty)
{
    const ReaderPtr reader = Open(DataFile("ghw_types.ghdl.ghw"));
    for (const char *path : {"ghw_types.nul", "ghw_types.nulls"}) {
        const int handle = Find(*reader, path);
        ASSERT_NE(handle, -1) << path;
        EXPECT_EQ(reader->GetChildRange(handle).first, -1) << path;
    }
}

}  // namespace
