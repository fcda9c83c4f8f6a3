// What a VCD file says, and what the writer is given.
#include "tests/platform/vcd/vcdsupport.h"

#include <gmock/gmock.h>

#include "platform/felvarbase.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(VcdImport, GivesTheEventsOfAOneBitVariable)
{
    const struct {
        const char *values, *events;
    } rows[] = {
        {"", ""},
        {"#0\n0!\n#10\n1!\n", "0=0 10=1"},
        {"1!", "0=1"},                            // no time, no line end
        {"1!\n#5\n0!", "0=1 5=0"},                // in front of the first time
        {"#3 1! #4 0! 1!", "3=1 4=0 4=1"},        // all in one line
        {"#1\r\n1!\r\n#2\r\n0!\r\n", "1=1 2=0"},  // CR LF
        {"#1\n1!\n1!\n#2\n1!\n", "1=1 1=1 2=1"},  // repeated values
        {"#1\nx! X! z! Z! u! w! l! h! -! ?!\n", "1=X 1=X 1=Z 1=Z 1=U 1=W 1=L 1=H 1=- 1=-"},
        {"#1 U! W! L! H!", "1=U 1=W 1=L 1=H"},
        {"#1 b1 ! B0 !", "1=1 1=0"},  // as a vector
        {"#1 b01x !", "1=X"},         // only the right bit counts
        {"$dumpvars 1! $end #1 0!", "0=1 1=0"},
        {"#1 $dumpoff x! $end #2 $dumpon 1! $end #3 $dumpall 1! $end", "1=X 2=1 3=1"},
        {"#1 $comment 0! #9 $$end $endx x$end $end 1!", "1=1"},
        {"$dumpvars $comment hi $end 1! $end", "0=1"},
        {"#9223372036854775807 1!", "9223372036854775807=1"},
        {"#1 1! $unknown 0! $end #2 0!", "1=1 2=0"},
        {"#1 1! $timescale 1 s $end #2 0!", "1=1 2=0"},  // too late
        {"#1 1! $end #2 0!", "1=1 2=0"},
        {"$dumpvars 1! #1 0!", "0=1 1=0"},  // a time ends the section
        {"#1 1! $vcdclose #7 $end", "1=1"},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_EQ(import.writer.Events("a"), row.events) << row.values;
        EXPECT_EQ(import.error, "");
        EXPECT_THAT(import.messages, IsEmpty()) << row.values;
        EXPECT_TRUE(import.writer.flag);
        EXPECT_EQ(import.writer.resolution, 1000000);
    }
}

TEST(VcdImport, GivesOfABusTheBitsThatChange)
{
    const struct {
        const char *values, *events;  // of bits 3 to 0
    } rows[] = {
        {"#1 b1010 \" #2 b1001 \"", "1=1\n1=0\n1=1 2=0\n1=0 2=1\n"},
        {"#1 b1 \"", "1=0\n1=0\n1=0\n1=1\n"},  // extended with 0
        {"#1 b01 \"", "1=0\n1=0\n1=0\n1=1\n"},
        {"#1 bx1 \"", "1=X\n1=X\n1=X\n1=1\n"},  // with the letter itself
        {"#1 bz \"", "1=Z\n1=Z\n1=Z\n1=Z\n"},
        {"#1 bu \" bh0 \"", "1=U 1=H\n1=U 1=H\n1=U 1=H\n1=U 1=0\n"},
        {"#1 b1111 \" #2 b1 \" #3 b11 \"", "1=1 2=0\n1=1 2=0\n1=1 2=0 3=1\n1=1\n"},
        {"#1 bx \" #2 b10 \" #3 bx \"", "1=X 2=0 3=X\n1=X 2=0 3=X\n1=X 2=1 3=X\n1=X 2=0 3=X\n"},
        {"#1 b110101 \"", "1=0\n1=1\n1=0\n1=1\n"},  // cut off on the left
        {"#1 1\"", "1=0\n1=0\n1=0\n1=1\n"},         // as a one-bit value
        {"#1 b1111 \" b1111 \" #2 b1111 \"", "1=1\n1=1\n1=1\n1=1\n"},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_EQ(import.writer.AllEvents("v", 4), row.events) << row.values;
        EXPECT_THAT(import.messages, IsEmpty()) << row.values;
    }
}

TEST(VcdImport, GivesEveryValueOfARealVariable)
{
    const struct {
        const char *values, *events;
    } rows[] = {
        {"#1 r1.5 # #2 R-2.25e1 #", "1=1.500000 2=-22.500000"},
        {"#1 r12 # r12 #", "1=12.000000 1=12.000000"},
        {"#1 r+3.5 #", "1=3.500000"},
        {"#1 r1e999 # r-1e999 #", "1=inf 1=-inf"},
        {"#1 rinf # rInf #", "1=inf 1=inf"},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_EQ(import.writer.Events("r"), row.events) << row.values;
    }
    EXPECT_THAT(SImport(VcdHead + "#1 rNaN #").writer.Events("r"), HasSubstr("nan"));
}

TEST(VcdImport, JoinsScopesAndNamesWithTheHierarchySeparator)
{
    const char *text =
        "$scope module tb $end $var wire 1 ! a $end $scope begin blk $end $var wire 1 \" b $end $upscope "
        "$end $var wire 1 # c $end $upscope $end $upscope $end $scope module $end $var wire 1 $ d $end "
        "$scope vhdl_architecture \\x y\\ $end $var wire 1 % e $end $enddefinitions $end";
    const SImport import(text);
    std::vector<std::string> names;
    for (const CRecorder::SSignal &signal : import.writer.signals)
        names.push_back(signal.name);
    EXPECT_THAT(names, ElementsAre("tb.a", "tb.blk.b", "tb.c", "d", "\\x y\\.e"));

    SetVHDLHierarchySeparator('/');
    const SImport other("$scope module tb $end $var wire 1 ! a $end $enddefinitions $end");
    SetVHDLHierarchySeparator('.');
    EXPECT_EQ(other.writer.signals.at(0).name, "tb/a");
}

TEST(VcdImport, KnowsIdentifierCodesOfAnyLength)
{
    for (const std::string code :
         {"!", "~", "[", "#", "$", "ab", "~~~", "abcd", "!!!!!!!!!!!!!!!!", "\x80", "a\xFF", "0", "b1"}) {
        const SImport import("$var wire 1 " + code + " a $end $var reg 2 " + code +
                             "x v $end $enddefinitions $end #1 1" + code + " #2 b11 " + code + "x");
        EXPECT_EQ(import.writer.Events("a"), "1=1") << code;
        EXPECT_EQ(import.writer.Events("v"), "2=1") << code;
        EXPECT_THAT(import.messages, IsEmpty()) << code;
    }
}

TEST(VcdImport, GivesAnAliasHandlesAndEventsOfItsOwn)
{
    const SImport import("$var wire 2 ! a $end $var wire 2 ! b [0:1] $end $var wire 3 ! c $end $var wire 1 ! d $end "
                         "$enddefinitions $end #1 b10 !");
    EXPECT_EQ(import.writer.AllEvents("a", 2), "1=1\n1=0\n");
    EXPECT_EQ(import.writer.AllEvents("b", 2), "1=1\n1=0\n");
    EXPECT_EQ(import.writer.AllEvents("c", 3), "1=0\n1=1\n1=0\n");
    EXPECT_EQ(import.writer.Events("d"), "1=0");
    EXPECT_TRUE(import.writer.isInOrder);
}

TEST(VcdImport, TakesAVariableThatIsDeclaredAmongTheValues)
{
    const SImport import(VcdHead + "#1 1! $scope module late $end $var wire 1 + b $end $upscope $end #2 1+ 0!");
    EXPECT_EQ(import.writer.Events("late.b"), "2=1");
    EXPECT_EQ(import.writer.Events("a"), "1=1 2=0");
    EXPECT_THAT(import.messages, IsEmpty());
}

TEST(VcdImport, DoesWithoutEnddefinitions)
{
    for (const char *values : {"#0 1!", "$dumpvars 1! $end", "1!", "b1 !"}) {
        const SImport import(std::string("$timescale 1 ns $end $var wire 1 ! a $end ") + values);
        EXPECT_EQ(import.writer.Events("a"), "0=1") << values;
        EXPECT_EQ(import.error, "") << values;
    }
}

TEST(VcdImport, ReadsTheExtendedFormatOfPorts)
{
    const SImport import("$timescale 1 ns $end $var port 1 <0 a $end $var port [3:0] <1 v $end $enddefinitions $end\n"
                         "#0\n$dumpports pN 6 6 <0 pDUZX 6666 6666 <1 $end\n#5 pL 0 6 <0 pdhTA 6666 6666 <1\n"
                         "$dumpportsoff pF 0 0 <0 $end\n$vcdclose #9 $end\n");
    EXPECT_EQ(import.writer.Events("a"), "0=X 5=0 5=Z");
    EXPECT_EQ(import.writer.AllEvents("v", 4), "0=0\n0=1\n0=Z\n0=X\n");
    EXPECT_EQ(import.writer.endTime, 9);
    EXPECT_THAT(import.messages, IsEmpty());
}

TEST(VcdImport, TellsTheLastTimeAndTheResolution)
{
    const struct {
        const char *text;
        long long endTime, resolution;
    } rows[] = {
        {"$timescale 10 us $end $enddefinitions $end #5 #70", 70, 10000000000},
        {"$enddefinitions $end #5", 5, 1000000},  // 1 ns unless the file tells
        {"$enddefinitions $end", 0, 1000000},
        {"\xEF\xBB\xBF$enddefinitions $end #1", 1, 1000000},
        {"\xEF\xBB\xBF $enddefinitions $end #1", 1, 1000000},
    };
    for (const auto &row : rows) {
        const SImport import(row.text);
        EXPECT_EQ(import.writer.endTime, row.endTime) << row.text;
        EXPECT_EQ(import.writer.resolution, row.resolution) << row.text;
        EXPECT_EQ(import.error, "") << row.text;
    }
}

TEST(VcdImport, IgnoresAHistoryOfTextsAndUnknownCommands)
{
    const SImport import(
        "$date Mon $var 1 2 $end\n$version \"x\" $end\n$comment\n$var wire 1 ! no $end\n$attrbegin misc 02 "
        "$end\n$var wire 1 ! yes $end\n$enddefinitions $end");
    ASSERT_EQ(import.writer.signals.size(), 1u);
    EXPECT_EQ(import.writer.signals[0].name, "yes");
}

// Words of every length on the border of the read buffer.
TEST(VcdImport, ReadsWordsAcrossTheEndOfTheBuffer)
{
    const std::string head = "$var wire 30 ! v $end $enddefinitions $end #7 $comment ";
    for (std::size_t filler = (1 << 18) - 130; filler < (1 << 18) - 40; ++filler) {
        const SImport import(head + std::string(filler, 'c') + " $end b" + std::string(30, '1') + " ! #8 b0 !");
        EXPECT_EQ(import.writer.Events("v", 29), "7=1 8=0") << filler;
    }
}

TEST(VcdImport, ReadsAWordThatIsLongerThanTheBuffer)
{
    const std::string name(1000000, 'n');
    const SImport import("$var wire 1 ! " + name + " $end $enddefinitions $end #1 1!");
    EXPECT_EQ(import.writer.Events(name), "1=1");
}

}  // namespace
