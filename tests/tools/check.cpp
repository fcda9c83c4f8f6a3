// tesk check, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

#include "tools/runtool.h"

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(Check, WritesTheCanonicalTextAndTheVerdict)
{
    const struct {
        const char *formula;
        int status;
        const char *out;
    } rows[] = {
        {"1 5ns, 0 2ns, 1 5ns", 1,
         "1 5ns, 0 2ns\n"
         "warning: part 2, column 8: \"0\" at 2ns lies before the first event, with which the formula begins, and is "
         "not "
         "played; write the events in the order of their times\n"
         "warning: part 3, column 15: \"1\" at 5ns has the time of \"1\", which is not played; of two values at one "
         "time "
         "the later one counts\n"
         "The relative events are not in rising order.\n"},
        {"1  10ns,0 20 ns -R 30ns", 0, "1 10ns, 0 20ns -r 30ns\nThe times are consistent.\n"},
        {"1 10ns, 0 @5ns", 1, "1 10ns, 0 @15ns\nThe absolute event at 5ns lies before the stimulator starts.\n"},
        {"1 0ns, 0 20ns -r 10ns", 1,
         "1 0ns, 0 20ns -r 10ns\n"
         "warning: part 2, column 8: \"0\" at 20ns lies behind the period of 10ns, and is not played; give -r a longer "
         "time\n"
         "The repeat period is shorter than the sequence.\n"},
        {"1 5ns -cancel 5ns", 1,
         "1 5ns -cancel 5ns\n"
         "warning: part 1, column 1: \"1\" at 5ns is not before the cancel time, and is not played\n"
         "The stimulator is cancelled before it starts.\n"},
        {"1 0ns, 0 5ns -cancel 5ns", 1,
         "1 0ns, 0 5ns -cancel 5ns\n"
         "warning: part 2, column 8: \"0\" at 5ns is not before the cancel time, and is not played\n"
         "The cancel time is not later than the last relative event.\n"},
        {"1 10ns, 0 20nz", 1,
         "1 10ns, 0 0ps\n"
         "error: part 2, column 11: unknown time unit \"nz\" in \"20nz\"; the time counts as 0; did you mean ns?\n"
         "The relative events are not in rising order.\n"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell("tesk check '" + std::string(row.formula) + "'");
        EXPECT_EQ(run.status, row.status) << row.formula;
        EXPECT_EQ(run.out, row.out);
        EXPECT_EQ(run.err, "");
    }
}

TEST(Check, TellsFindingsAsData)
{
    const SToolRun run = RunShell("tesk check '1 10ns, 0 20nz' --format json");
    EXPECT_EQ(run.status, 1);
    const nlohmann::json data = nlohmann::json::parse(run.out);
    EXPECT_EQ(data["formula"], "1 10ns, 0 20nz");
    EXPECT_EQ(data["status"], 1);
    ASSERT_EQ(data["findings"].size(), 1U);
    EXPECT_EQ(data["findings"][0]["severity"], "error");
    EXPECT_EQ(data["findings"][0]["part"], 2);
    EXPECT_EQ(data["findings"][0]["column"], 11);
    EXPECT_EQ(data["findings"][0]["advice"], "did you mean ns?");
}

TEST(Check, TellsARefusalAsDataToo)
{
    const SToolRun run = RunShell("printf '1 -5ns\\n1 0ns\\n' | tesk check - --format json");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");
    const std::size_t end = run.out.find('\n');
    const nlohmann::json data = nlohmann::json::parse(run.out.substr(0, end));
    EXPECT_THAT(data["refused"].get<std::string>(), HasSubstr("has no value or a time below 0"));
    EXPECT_EQ(data["canonical"], nullptr);
    EXPECT_EQ(data["status"], 1);
    EXPECT_EQ(nlohmann::json::parse(run.out.substr(end))["status"], 0);
}

TEST(Check, ReadsAFormulaALineFromStandardInput)
{
    const SToolRun run = RunShell("printf '1 10ns\\n\\n1 -5ns\\n0 1nz\\n' | tesk check -");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, AllOf(StartsWith("1 10ns\nThe times are consistent.\n"), HasSubstr("unknown time unit")));
    EXPECT_THAT(run.err, StartsWith("tesk: line 3: formula \"1 -5ns\""));
    EXPECT_EQ(RunShell("printf '1 10ns\\n' | tesk check -").status, 0);
}

TEST(Check, RefusesAnEmptyFormula)
{
    EXPECT_EQ(RunShell("tesk check ''").status, 1);
}
