// What the examination says of formulas that do not mean what they say, and that it is silent of those that do.
#include "tools/examine/examination.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/examine/findingtext.h"
#include "tools/play/typeargument.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::vector<std::string> Lines(const tesk::SExamined &examined)
{
    std::vector<std::string> lines;
    for (const tesk::SFinding &finding : tesk::ExamineFormula(examined))
        lines.push_back((finding.severity == tesk::ESeverity::Error ? "error: " : "warning: ") +
                        tesk::FindingLine(finding));
    return lines;
}

std::vector<std::string> Examine(const std::string &formula, const std::string &type = "")
{
    return Lines({formula, type.empty() ? "" : ReadTypeArgument(type), 1000, 0});
}

}  // namespace

TEST(Examination, NamesATimeWhoseUnitIsUnknown)
{
    EXPECT_THAT(Examine("1 10ns, 0 20nz"),
                ElementsAre("error: part 2, column 11: unknown time unit \"nz\" in \"20nz\"; the time counts as 0; did "
                            "you mean ns?"));
    EXPECT_THAT(Examine("1 10ns, 0 20n"), ElementsAre(HasSubstr("did you mean ns?")));
    EXPECT_THAT(Examine("1 10ns, 0 20\xC2\xB5s"),
                ElementsAre("error: part 2, column 11: unknown time unit \"\xC2\xB5s\" in \"20\xC2\xB5s\"; the time "
                            "counts as 0; write us"));
    EXPECT_THAT(Examine("1 10ns, 0 1e3ns"), ElementsAre(HasSubstr("exponents and signs are not read")));
    EXPECT_THAT(Examine("1 10ns, 0 20msec"), ElementsAre(HasSubstr("the time counts as 0; write ms")));
    EXPECT_THAT(
        Examine("1 10ns, 0 ns"),
        ElementsAre("error: part 2, column 11: \"ns\" is a unit without a number; the time counts as 0; write VALUE "
                    "TIME, with commas between"));
}

TEST(Examination, NamesADecimalComma)
{
    EXPECT_THAT(
        Examine("1 0ns, 0 1,5ns"),
        testing::Contains("error: part 3, column 12: \"1,5ns\" is parted at its comma, and \"5ns\" is taken as a "
                          "value; write 1.5ns"));
    EXPECT_THAT(Examine("1 0ns, 0 1ns,5 2ns"), IsEmpty());
}

TEST(Examination, NamesWordsThatAreTakenAsValues)
{
    const struct {
        const char *formula, *finding, *advice;
    } rows[] = {
        {"1 10ns, 0 20ns -repeat 30ns", "\"-repeat\" is no switch, and is taken as a value", "did you mean -r TIME?"},
        {"1 10ns, 0 20ns -cancl 30ns", "\"-cancl\" is no switch", "did you mean -cancel TIME?"},
        {"/custm f,s", "\"/custm\" is no keyword, and is taken as a value", "did you mean /custom?"},
        {"\\randon\\2", "\"\\randon\" is no keyword", "did you mean \\random?"},
        {"$random", "is a function of Verilog", "tesk random"},
        {"8'hA5 0ns", "is a literal of Verilog", "write x\"A5\""},
        {"'hA5 0ns", "is a literal of Verilog", "write x\"A5\""},
        {"4'b1010 0ns", "is a literal of Verilog", "write b\"1010\""},
        {"0xA5 0ns", "is a literal of C", "write x\"A5\""},
        {"16#A5# 0ns", "closing # too many", "write 16#A5"},
        {"1@10ns", "is one word and taken as a value", "1 @10ns"},
        {"10ns 1", "is a time, and stands where a value should", "VALUE TIME"},
        {"(1, 0", "is not closed", "a ) is missing"},
        {"--r 30ns", "\"--r\" is no switch", "did you mean -r TIME?"},
        {"\xE2\x80\x93r 30ns", "which is a letter like others, and is taken as a value", "write -"},
        {"\xE2\x80\x9C"
         "01\xE2\x80\x9D 0ns",
         "which is a letter like others, and is taken as a value", "write \""},
    };
    for (const auto &row : rows) {
        const auto lines = Examine(row.formula);
        ASSERT_FALSE(lines.empty()) << row.formula;
        EXPECT_THAT(lines.front(), AllOf(StartsWith("error: "), HasSubstr(row.finding), HasSubstr(row.advice)))
            << row.formula;
    }
}

TEST(Examination, WarnsOfSwitchesWrittenAsWords)
{
    EXPECT_THAT(Examine("1 10ns, 0 20ns repeat 30ns"),
                ElementsAre("warning: part 2, column 16: \"repeat\" is taken as a value; to repeat write -r TIME"));
    EXPECT_THAT(Examine("1 10ns, 0 20ns until 30ns"), ElementsAre(HasSubstr("to end write -cancel TIME")));
    EXPECT_THAT(Examine("stop 10ns, run 20ns"), IsEmpty());
}

TEST(Examination, TellsThatPartsAreSeparatedByCommas)
{
    EXPECT_THAT(Examine("1 10 ns; 0 20 ns"), testing::Contains(HasSubstr("parts are separated by commas")));
    EXPECT_THAT(Examine("1 10ns; 0 20ns"), testing::Contains(HasSubstr("parts are separated by commas")));
}

TEST(Examination, WarnsOfATimeWithoutAUnit)
{
    EXPECT_THAT(Examine("1 10ns, 0 20ns -r 30"),
                testing::Contains("warning: part 2, column 19: -r \"30\" has no unit, and counts picoseconds; write a "
                                  "unit, such as 30ns"));
    EXPECT_THAT(Examine("1 0, 0 10ns"), IsEmpty());
}

TEST(Examination, RefusesPeriodsAndCancelTimesThatAreNone)
{
    EXPECT_THAT(Examine("1 0ns, 0 5ns -r 0ns"), ElementsAre(HasSubstr("a period of 0 is ignored")));
    EXPECT_THAT(Examine("1 0ns -r -5ns"), ElementsAre(HasSubstr("below 0")));
    EXPECT_THAT(Examine("1 0ns, 0 5ns -r"), ElementsAre(HasSubstr("-r has no time, and is ignored")));
    EXPECT_THAT(Examine("1 0ns, 0 5ns -cancel 0ns"), ElementsAre(HasSubstr("a cancel time of 0 is ignored")));
    EXPECT_THAT(Examine("1 -r 10ns"), testing::Contains(HasSubstr("stands where a time is expected")));
}

TEST(Examination, WarnsOfEventsThatAreNeverPlayed)
{
    EXPECT_THAT(Examine("1 20ns, 0 10ns"), ElementsAre(HasSubstr("\"0\" at 10ns lies before the first event")));
    EXPECT_THAT(Examine("1 0ns, 0 20ns -r 10ns"), ElementsAre(HasSubstr("\"0\" at 20ns lies behind the period")));
    EXPECT_THAT(Examine("1 0ns, 0 20ns -cancel 15ns"), ElementsAre(HasSubstr("is not before the cancel time")));
    for (const char *formula : {"1 5ns, 0 5ns", "1 0ns, 0 0ns"})
        EXPECT_THAT(Examine(formula), ElementsAre(HasSubstr("has the time of \"1\", which is not played")));
    EXPECT_THAT(Lines({"1 @5ns, 0 @20ns", "", 1000, 10000}),
                ElementsAre(HasSubstr("\"1\" at 5ns lies before the start")));
}

TEST(Examination, WarnsOfTimesThatTheResolutionHasNoTickFor)
{
    EXPECT_THAT(Examine("1 500fs"),
                ElementsAre(HasSubstr("\"500fs\" is below the resolution of 1ps, and counts as 0")));
    EXPECT_THAT(Examine("1 1500fs"), ElementsAre(HasSubstr("is no whole number of ticks of 1ps, and counts as 1ps")));
    EXPECT_THAT(Lines({"1 1500fs", "", 1, 0}), IsEmpty());
}

TEST(Examination, HoldsValuesAgainstTheType)
{
    const struct {
        const char *formula, *type, *finding;
    } rows[] = {
        {"q 0ns", "std_logic", "\"q\" is no value of \"std_logic\"; its values are U X 0 1 Z W L H -"},
        {"7 0ns", "bit", "is no value of"},
        {"hello 0ns", "integer", "is no value of \"integer\""},
        {"99999999999 0ns", "integer", "is no value of \"integer\""},
        {"maybe 0ns", "boolean", "is no value of"},
        {"flase 0ns", "boolean", "did you mean false?"},
        {"abc 0ns", "real", "is no value of"},
        {"165 0ns", "std_logic_vector(7 downto 0)", "a decimal number is written d\"165\""},
        {"A5 0ns", "std_logic_vector(7 downto 0)", "a hexadecimal number is written x\"A5\""},
        {"8'hA5 0ns", "std_logic_vector(7 downto 0)", "write x\"A5\""},
        {"111111111 0ns", "std_logic_vector(7 downto 0)", "9 bits for 8, and loses the leading ones"},
        {"Z 0ns", "std_logic_vector(7 downto 0)", "is filled up with 0 on the left"},
        {"x\"1A5\" 0ns", "std_logic_vector(7 downto 0)", "bits for 8"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(Examine(row.formula, row.type), ElementsAre(HasSubstr(row.finding)))
            << row.formula << " on " << row.type;
}

TEST(Examination, IsSilentOfValuesThatTheTypeHas)
{
    const struct {
        const char *formula, *type;
    } rows[] = {
        {"x 0ns, - 1ns", "std_logic"},
        {"true 0ns, FALSE 1ns", "boolean"},
        {"-7 0ns, 16#FF 1ns", "integer"},
        {"3.3 0ns, -1e-9 1ns", "real"},
        {"x\"A5\" 0ns, d\"165\" 1ns, 1 2ns, \"10101010\" 3ns, ZZZZZZZZ 4ns, 16#A5 5ns", "std_logic_vector(7 downto 0)"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(Examine(row.formula, row.type), IsEmpty()) << row.formula << " on " << row.type;
}

TEST(Examination, TellsOfAnEmptyFormula)
{
    EXPECT_THAT(Examine(""), ElementsAre(HasSubstr("the formula is empty")));
    EXPECT_THAT(Examine("  "), ElementsAre(HasSubstr("the formula is empty")));
}

TEST(Examination, NamesTheSettingOfACounterThatCannotBeRead)
{
    EXPECT_THAT(Examine("\\counter\\TYPE\\2"), ElementsAre(HasSubstr("DIR is missing")));
    EXPECT_THAT(Examine("\\counter\\TYP\\2\\DIR\\1"), ElementsAre(HasSubstr("\"TYP\" stands where TYPE is expected")));
    EXPECT_THAT(Examine("\\counter\\TYPE\\9\\DIR\\1\\RADIX\\10\\START\\0\\INC\\1\\PERIOD\\10nz\\REV\\0"),
                ElementsAre(HasSubstr("\"9\" is no TYPE of a counter"), HasSubstr("unknown time unit \"nz\"")));
    EXPECT_THAT(Examine("\\counter\\TYPE\\1\\DIR\\1\\RADIX\\10\\START\\0\\INC\\1\\PERIOD\\10  nz\\REV\\0"),
                ElementsAre(HasSubstr("unknown time unit \"nz\"")));
}

TEST(Examination, NamesWhatARandomFormulaLacks)
{
    EXPECT_THAT(Examine("\\random\\1\\5\\0\\10\\10ns"), ElementsAre(HasSubstr("the keyword is in capitals")));
    EXPECT_THAT(Examine("\\RANDOM\\9\\5\\1\\10ns"), ElementsAre(HasSubstr("a number of a distribution is missing")));
    EXPECT_THAT(Examine("\\RANDOM\\1\\5\\10ns"), ElementsAre(HasSubstr("a seed, 2 parameters and a period")));
    EXPECT_THAT(Examine("\\RANDOM\\8\\5\\10ns"), IsEmpty());
}

TEST(Examination, NamesItemsOfTheLegacyNotationThatAreNone)
{
    EXPECT_THAT(Examine("/brel H10 ? L5"), ElementsAre(HasSubstr("\"?\" has no state letter")));
    EXPECT_THAT(Examine("/brel (H10 L5"), ElementsAre(HasSubstr("a group is not closed")));
    EXPECT_THAT(Examine("/brel H10 L5)2"), ElementsAre(HasSubstr("was not opened")));
    EXPECT_THAT(Examine("/brel H10 L"), ElementsAre(HasSubstr("\"L\" has no time")));
    EXPECT_THAT(Examine("/brel H10 [FG]5"), ElementsAre(HasSubstr("\"[FG]5\" has no state letter and no number")));
    EXPECT_THAT(Examine("/brel (H10 L10)2 [FF]10 /CLK"), IsEmpty());
}

TEST(Examination, IsSilentOfTenThousandRightFormulas)
{
    std::mt19937 random(1);
    const auto pick = [&](auto... choices) {
        const std::vector<std::string> all{choices...};
        return all[random() % all.size()];
    };
    for (int round = 0; round < 10000; ++round) {
        std::string formula;
        long long time = static_cast<long long>(random() % 50);
        const long long first = time;
        const int events = 1 + static_cast<int>(random() % 6);
        for (int i = 0; i < events; ++i, time += 1 + static_cast<long long>(random() % 50)) {
            formula += i != 0 ? pick(", ", ",", " , ") : "";
            formula +=
                pick("0", "1", "Z", "X", "H", "-", "'a b'", "\"0101\"", "(1, 0)", "idle", "-5", "3.25", "x\"F\"");
            formula += pick(" ", "  ") + std::to_string(time) + pick("ns", " ns", "NS");
        }
        if (random() % 2 == 0)
            formula += " -r " + std::to_string(time - first + 1 + 1000000) + "ns";
        if (random() % 4 == 0)
            formula += " -cancel " + std::to_string(time + 1) + "ms";
        ASSERT_THAT(Examine(formula), IsEmpty()) << formula;
    }
}

// Values that a type has, in all their forms, at rising times, relative and absolute.
TEST(Examination, IsSilentOfRightFormulasForATypedSignal)
{
    const struct {
        const char *type;
        std::vector<std::string> values;
    } rows[] = {
        {"std_logic", {"0", "1", "X", "Z", "u", "W", "l", "H", "-"}},
        {"bit", {"0", "1"}},
        {"boolean", {"true", "false", "TRUE"}},
        {"integer", {"0", "-17", "2147483647", "16#FF", "x\"7F\"", "d\"12\""}},
        {"natural", {"0", "7", "2#101"}},
        {"real", {"0", "-2.5", "1e9", "3.0"}},
        {"std_logic_vector(7 downto 0)",
         {"01010101", "x\"A5\"", "16#A5", "b\"11\"", "o\"17\"", "d\"200\"", "\"ZZZZ0000\""}},
        {"bit_vector(0 to 3)", {"0101", "x\"F\"", "1111"}},
    };
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const auto &row = rows[random() % std::size(rows)];
        std::string formula;
        long long time = 0;
        for (int events = 1 + static_cast<int>(random() % 5); events > 0; --events) {
            formula += row.values[random() % row.values.size()] + ' ' + (random() % 5 == 0 ? "@" : "") +
                       std::to_string(time) + "ns" + (events > 1 ? ", " : "");
            time += 1 + static_cast<long long>(random() % 20);
        }
        ASSERT_THAT(Examine(formula, row.type), IsEmpty()) << formula << " on " << row.type;
    }
}

TEST(FindingPicture, PutsACaretUnderThePlace)
{
    const std::string formula = "1 10ns, 0 20nz";
    const auto findings = tesk::ExamineFormula({formula, "", 1000, 0});
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(tesk::FindingPicture(findings[0], formula, 76), "  1 10ns, 0 20nz\n            ^~~~");
}

TEST(FindingPicture, ShowsThePlaceOfALongFormula)
{
    std::string formula = "1 0ns";
    for (int i = 1; i < 200; ++i)
        formula += ", 0 " + std::to_string(i) + "ns";
    formula += ", 1 300nz";
    const auto findings = tesk::ExamineFormula({formula, "", 1000, 0});
    ASSERT_EQ(findings.size(), 1U);
    const std::string picture = tesk::FindingPicture(findings[0], formula, 40);
    EXPECT_THAT(picture, HasSubstr("300nz"));
    EXPECT_LE(picture.find('\n'), 42U);
}
