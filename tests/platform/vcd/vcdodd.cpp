// Odd values, times and ends of VCD files that other tools write: what each costs.
#include "tests/platform/vcd/vcdsupport.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(VcdOddValue, IsLeftOutAloneWithOneWarning)
{
    const struct {
        const char *values, *warning;
    } rows[] = {
        {"#120\n1!\nqq\n#130\nqq\n0!\n", "2 VCD F:8: \"qq\" is no value change; it is left out, as are others like it"},
        {"#120\n1!\nb !\n#130\n0!\n", "2 VCD F:8: \"b\" is no value change; it is left out, as are others like it"},
        {"#120\n1!\nb012 !\n#130\n0!\n",
         "2 VCD F:8: \"b012\" is no value change; it is left out, as are others like it"},
        {"#120\n1!\nrx #\n#130\n0!\n", "2 VCD F:8: \"rx\" is no value change; it is left out, as are others like it"},
        {"#120\n1!\n0 #130\n0!\n", "2 VCD F:8: \"0\" is no value change; it is left out, as are others like it"},
        {"#120\n1!\npQ 0 0 !\n#130\n0!\n",
         "2 VCD F:8: \"pQ\" is no value change; it is left out, as are others like it"},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_THAT(import.messages, ElementsAre(row.warning)) << row.values;
        EXPECT_EQ(import.writer.Events("a"), "120=1 130=0") << row.values;
        EXPECT_EQ(import.writer.endTime, 130) << row.values;
        EXPECT_TRUE(import.writer.flag) << row.values;
    }
}

TEST(VcdOddValue, MayHaveABlankInFrontOfTheCodeOfABit)
{
    const SImport import(VcdHead + "#120\n1 !\n#130\n0 !\n");
    EXPECT_THAT(import.messages, IsEmpty());
    EXPECT_EQ(import.writer.Events("a"), "120=1 130=0");
}

TEST(VcdOddValue, MayHaveAPrefixForItsBase)
{
    const SImport import(VcdHead + "#1\nb0b1 !\nb0b101 \"\n#2\nB0b0 !\n");
    EXPECT_THAT(import.messages, IsEmpty());
    EXPECT_EQ(import.writer.Events("a"), "1=1 2=0");
    EXPECT_EQ(import.writer.AllEvents("v", 4), "1=0\n1=1\n1=0\n1=1\n");
}

TEST(VcdOddValue, MayBeEmptyForAVariableOfWidthZero)
{
    const SImport import("$var wire 1 ! a $end $var wire 0 H e $end $enddefinitions $end\n#1\nb H\n1!\n");
    EXPECT_THAT(import.messages, ElementsAre("2 VCD F:1: variables of width 0 are left out"));
    EXPECT_EQ(import.writer.Events("a"), "1=1");
}

TEST(VcdTime, MayHaveAFractionThatRoundsIt)
{
    const struct {
        const char *values, *events;
        bool isTold;
    } rows[] = {
        {"#3.0\n1!\n#4.000\n0!\n", "3=1 4=0", false},
        {"#3.\n1!\n#4\n0!\n", "3=1 4=0", false},
        {"#3.2\n1!\n#4.5\n0!\n", "3=1 5=0", true},
        {"#3.49\n1!\n#3.51\n0!\n", "3=1 4=0", true},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_EQ(import.writer.Events("a"), row.events) << row.values;
        EXPECT_EQ(import.messages.size(), row.isTold ? 1u : 0u) << row.values;
    }
    EXPECT_THAT(SImport(VcdHead + "#3.2\n1!\n").messages,
                ElementsAre("2 VCD F:6: \"#3.2\" is a time with a fraction; such times are rounded"));
}

TEST(VcdTime, IsNoneWithAnythingElseBehindIt)
{
    for (const char *text : {"#.5", "#3.2.1", "#3.x", "#3e2", "#9223372036854775807.5", "#-1.0", "#+1"}) {
        const SImport import(VcdHead + "#2\n1!\n" + text + "\n0!\n");
        EXPECT_EQ(import.writer.Events("a"), "2=1") << text;
        EXPECT_FALSE(import.writer.flag) << text;
    }
}

TEST(VcdEnd, InsideDumpvarsIsToldOnlyWhereALineIsCut)
{
    const std::string whole = VcdHead + "#0\n$dumpvars\n1!\nb0 \"\n";
    EXPECT_THAT(SImport(whole).messages, IsEmpty());
    EXPECT_TRUE(SImport(whole).writer.flag);
    EXPECT_THAT(SImport(whole + "0!").messages,
                ElementsAre("2 VCD F:10: the file ends inside \"$dumpvars\"; the file is read up to 0 s"));
    EXPECT_THAT(SImport(VcdHead + "#0\n$dumpall\n1!\n").messages,
                ElementsAre("2 VCD F:9: the file ends inside \"$dumpall\"; the file is read up to 0 s"));
}

}  // namespace
