#include <gmock/gmock.h>

#include <string>

#include "tools/runtool.h"

using testing::HasSubstr;
using testing::StartsWith;

TEST(TypeCommand, TakesAVectorApart)
{
    const SToolRun run = RunShell("tesk type 'std_logic_vector(7 downto 0)'");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "description  a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-\n"
                       "kind         array\n"
                       "name         std_logic_vector(7 downto 0)\n"
                       "range        7 downto 0\n"
                       "elements     8\n"
                       "scalar size  1 byte\n"
                       "simple size  8 bytes\n"
                       "element\n"
                       "  description  e#9#std_logicc9 UX01ZWLH-\n"
                       "  kind         enumeration\n"
                       "  name         std_logic\n"
                       "  literals     9: U X 0 1 Z W L H -\n"
                       "  elements     1\n"
                       "  scalar size  1 byte\n"
                       "  simple size  1 byte\n");
}

TEST(TypeCommand, TakesARecordApart)
{
    const SToolRun run = RunShell("tesk type 'r#3#bus2 valid e#3#bitc2 01 data a#1#m2 rict0 1 ricd3 2 f#1#frrct0 1.5'");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("kind         record\nname         bus\nelements     1\n"
                                   "scalar size  0 bytes\nsimple size  0 bytes\n"
                                   "field        valid\n  description  e#3#bitc2 01\n"));
    EXPECT_THAT(run.out, HasSubstr("field        data\n"));
    EXPECT_THAT(run.out, HasSubstr("  range        0 to 1; 3 downto 2\n  elements     4\n"));
    EXPECT_THAT(run.out, HasSubstr("  element\n    description  f#1#frrct0 1.5\n"));
    EXPECT_THAT(run.out, HasSubstr("    range        0 to 1.5\n"));
}

TEST(TypeCommand, TellsWhatIsVerilogSignedOrUnconstrained)
{
    EXPECT_THAT(RunShell("tesk type 'vsa#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX'").out,
                HasSubstr("language     Verilog\nsigned       yes\n"));
    EXPECT_THAT(RunShell("tesk type 'a#10#bit_vector1 riut0 2147483647 eBIT c2 01'").out,
                HasSubstr("range        0 to 2147483647, unconstrained\nelements     2147483648\n"));
}

TEST(TypeCommand, ShowsUnprintableBytesByTheirCodes)
{
    EXPECT_THAT(RunShell("tesk type character").out, HasSubstr("'\\x91 '\\x90\n"));
    EXPECT_THAT(RunShell("tesk type \"$(printf 'e#3#a\\001bc2 \\377x')\"").out,
                HasSubstr("name         a\\x01b\nliterals     2: \\xFF x\n"));
}

TEST(TypeCommand, HasAnExampleInItsHelp)
{
    const SToolRun run = RunShell("tesk type --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("Example: tesk type \"std_logic_vector(7 downto 0)\""));
}

TEST(TypeCommand, NeedsAType)
{
    EXPECT_EQ(RunShell("tesk type").status, 2);
}

TEST(TypeArgument, IsANameInAnyLetterCaseWithBlanksWhereOneLikes)
{
    const struct {
        const char *argument, *description;
    } rows[] = {
        {"bit", "e#3#bitc2 01"},
        {"std_logic", "e#9#std_logicc9 UX01ZWLH-"},
        {" Std_ULogic ", "e#10#std_ulogicc9 UX01ZWLH-"},
        {"REAL", "f#4#realrrct-1.79769e+308 1.79769e+308"},
        {"boolean", "e#7#booleans2 false true "},
        {"integer", "i#7#integerrict-2147483648 2147483647"},
        {"natural", "i#7#naturalrict0 2147483647"},
        {"positive", "i#8#positiverict1 2147483647"},
        {"integer range 0 to 15", "i#7#integerrict0 15"},
        {"Integer  RANGE -4  Downto -7", "i#7#integerricd-4 -7"},
        {"integer range 3 to 3", "i#7#integerrict3 3"},
        {"bit_vector(0 to 3)", "a#18#bit_vector(0 to 3)1 rict0 3 e#3#bitc2 01"},
        {"BIT_VECTOR ( 0  to 3 )", "a#18#bit_vector(0 to 3)1 rict0 3 e#3#bitc2 01"},
        {"std_ulogic_vector(3 downto 0)", "a#29#std_ulogic_vector(3 downto 0)1 ricd3 0 e#10#std_ulogicc9 UX01ZWLH-"},
        {"signed(1 downto 0)", "a#18#SIGNED(1 downto 0)1 ricd1 0 e#9#std_logicc9 UX01ZWLH-"},
        {"unsigned(1 downto 0)", "a#20#UNSIGNED(1 downto 0)1 ricd1 0 e#9#std_logicc9 UX01ZWLH-"},
        {"std_logic_vector(2147483647 downto -2147483648)",
         "a#47#std_logic_vector(2147483647 downto -2147483648)1 ricd2147483647 -2147483648 e#9#std_logicc9 UX01ZWLH-"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell("tesk type '" + std::string(row.argument) + "'");
        EXPECT_EQ(run.status, 0) << row.argument;
        EXPECT_THAT(run.out, StartsWith("description  " + std::string(row.description) + "\n")) << row.argument;
    }
    EXPECT_THAT(RunShell("tesk type 'string(1 to 2)'").out,
                StartsWith("description  a#14#string(1 to 2)1 rict1 2 e#9#characters256 NUL "));
}

TEST(TypeArgument, IsAWholeDescriptionToo)
{
    for (const std::string text : {"e#3#bitc2 01", "estd_logic c9 UX01ZWLH-", "p#4#timerict0 9223372036854775807"})
        EXPECT_THAT(RunShell("tesk type '" + text + "'").out, StartsWith("description  " + text + "\n"));
}

TEST(TypeArgument, IsRefusedOnOneLineThatTellsWhatWouldDo)
{
    const struct {
        const char *argument, *message;
    } rows[] = {
        {"nibble", "type \"nibble\": no name of a type and no type description that can be read; use bit, "},
        {"", "type \"\": no name of a type"},
        {"e#3#bitc3 01", "type \"e#3#bitc3 01\": no name of a type"},
        {"bit x", "type \"bit x\": \"x\" is too much; use bit, "},
        {"bit_vector", "which elements does it have? write bit_vector(7 downto 0)"},
        {"bit_vector()", "\")\" is no bound of a range; use a whole number from -2147483648 to 2147483647"},
        {"bit_vector(7)", "a range is written 7 downto 0 or 0 to 7"},
        {"bit_vector(7 down 0)", "a range is written 7 downto 0 or 0 to 7"},
        {"bit_vector(x to 0)", "\"x\" is no bound of a range"},
        {"bit_vector(0 to 2147483648)", "\"2147483648\" is no bound of a range"},
        {"bit_vector(7 downto 0", "there is no \")\" behind the range; write bit_vector(7 downto 0)"},
        {"bit_vector(7 downto 0, 3 downto 0)", "there is no \")\" behind the range"},
        {"bit_vector(7 downto 0))", "\")\" is too much"},
        {"bit_vector(0 downto 7)", "the range 0 downto 7 is empty; turn its direction or its bounds round"},
        {"integer range 7 to 0", "the range 7 to 0 is empty"},
        {"integer range", "\"\" is no bound of a range"},
        {"integer 0 to 7", "\"0\" is too much"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell("tesk type '" + std::string(row.argument) + "'");
        EXPECT_EQ(run.status, 1) << row.argument;
        EXPECT_EQ(run.out, "") << row.argument;
        EXPECT_THAT(run.err, StartsWith("tesk: type \"")) << row.argument;
        EXPECT_THAT(run.err, HasSubstr(row.message)) << row.argument;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << row.argument;
    }
}
