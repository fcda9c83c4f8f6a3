// What the tool tells of itself: version, help, manual pages, the completion of shells, and words that it does not know.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/help/formulahelp.h"
#include "tools/runtool.h"

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

std::string Told(const std::string &command)
{
    const SToolRun run = RunShell(command);
    EXPECT_EQ(run.status, 0) << command << ": " << run.err;
    EXPECT_EQ(run.err, "") << command;
    return run.out;
}

// The candidates that bash offers for the last of some words.
std::string Candidates(const std::string &words, int index)
{
    return Told("bash -c 'source <(tesk completion bash); COMP_WORDS=(" + words +
                "); COMP_CWORD=" + std::to_string(index) + "; _tesk; echo \"${COMPREPLY[*]}\"'");
}

}  // namespace

TEST(Help, TellsTheVersion)
{
    EXPECT_THAT(Told("tesk --version"), ContainsRegex("^tesk [0-9]+\\.[0-9]+\\.[0-9]+\n$"));
}

TEST(Help, IsThatOfTheOption)
{
    EXPECT_EQ(Told("tesk help"), Told("tesk --help"));
    EXPECT_EQ(Told("tesk help play"), Told("tesk play --help"));
    EXPECT_THAT(Told("tesk help"), Not(HasSubstr("completion")));
}

TEST(Help, ShowsOfEachKindOfFormulaOneThatCanBePlayed)
{
    const std::string help = Told("tesk help formulas");
    for (const tesk::SFormulaHelp &row : tesk::FormulaHelps()) {
        const std::string command = "tesk play '" + std::string(row.example) + "' " + row.options;
        EXPECT_THAT(help, HasSubstr(row.example));
        const SToolRun run = RunShell(command + " --until 1us --strict");
        EXPECT_EQ(run.status, 0) << command << run.err;
        EXPECT_THAT(run.out, ContainsRegex("\n.+\n")) << command;
    }
}

TEST(Usage, RepeatsAnUnknownWordWithTheNearestName)
{
    const struct {
        const char *command, *error;
    } rows[] = {
        {"tesk plya x", "tesk: no command \"plya\" (did you mean \"play\"?); \"tesk help\" lists them\n"},
        {"tesk xyzzy", "tesk: no command \"xyzzy\"; \"tesk help\" lists them\n"},
        {"tesk", "tesk: a command is missing, such as play or signals; \"tesk help\" lists them\n"},
        {"tesk --versoin", "tesk: no option --versoin (did you mean --version?); write tesk COMMAND [OPTIONS]\n"},
        {"tesk help plya", "tesk: no command \"plya\" (did you mean \"play\"?); \"tesk help\" lists them\n"},
        {"tesk play '1 0ns' --formt csv --untl 5",
         "tesk: play has no option --formt (did you mean --format?); \"tesk help play\" lists them\n"},
        {"tesk split --cuont=4", "tesk: split has no option --cuont (did you mean --count?); \"tesk help split\" lists "
                                 "them\n"},
        {"tesk clock --frequency 1MHz",
         "tesk: clock has no option --frequency (did you mean --freq?); \"tesk help clock\" lists them\n"},
        {"tesk play '1 0ns' --radix hx",
         "tesk: --radix takes no \"hx\" (did you mean \"hex\"?); use analog, analog-signed, bin, dec, hex, oct, "
         "signed\n"},
        {"tesk play '1 0ns' --radix=what",
         "tesk: --radix takes no \"what\"; use analog, analog-signed, bin, dec, hex, oct, signed\n"},
        {"tesk play --radix hex", "tesk: play needs FORMULA; \"tesk help play\" tells of it\n"},
        {"tesk convert a.vcd", "tesk: convert needs OUTPUT; \"tesk help convert\" tells of it\n"},
        {"tesk play '1 0ns' --zzz", "tesk: play has no option --zzz; \"tesk help play\" lists them\n"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(row.command);
        EXPECT_EQ(run.status, 2) << row.command;
        EXPECT_EQ(run.out, "") << row.command;
        EXPECT_EQ(run.err, row.error) << row.command;
    }
}

TEST(Usage, TakesNoValueForAnUnknownOption)
{
    EXPECT_THAT(RunShell("tesk play '1 0ns' --format --until").err, Not(HasSubstr("no option")));
    EXPECT_EQ(RunShell("tesk play --until 5ns -- '1 0ns'").status, 0);
}

TEST(ManualPage, HasNoWarningsAndTellsEveryCommandAndOption)
{
    const std::string page = Told("tesk help --man");
    for (const char *part : {".TH TESK 1", ".SH NAME", ".SH SYNOPSIS", ".SS tesk play [OPTIONS] FORMULA",
                             ".B \\-\\-until TIME", ".SH EXIT STATUS", ".BR tesk\\-formula (7)"})
        EXPECT_THAT(page, HasSubstr(part));
    EXPECT_THAT(page, Not(HasSubstr("completion")));
    EXPECT_EQ(RunShell("command -v groff >/dev/null || exit 0; tesk help --man | groff -man -ww -z; "
                       "tesk help --man formulas | groff -man -ww -z")
                  .err,
              "");
}

TEST(ManualPage, OfFormulasHoldsTheirExamplesAsTheyAreTyped)
{
    EXPECT_THAT(Told("tesk help --man formulas"), HasSubstr(".TH TESK-FORMULA 7"));
    const std::string text = Told("command -v groff >/dev/null || { tesk help formulas; exit; }; "
                                  "tesk help --man formulas | groff -man -Tascii -rLL=500n -P-c");
    for (const tesk::SFormulaHelp &row : tesk::FormulaHelps())
        EXPECT_THAT(text, HasSubstr(row.example));
}

TEST(BashCompletion, YieldsCommandsOptionsValuesAndFiles)
{
    EXPECT_EQ(Candidates("tesk s", 1), "split signals\n");
    EXPECT_EQ(Candidates("tesk play --unt", 2), "--until\n");
    EXPECT_EQ(Candidates("tesk play --format w", 3), "wave\n");
    EXPECT_EQ(Candidates("tesk signals exam", 2), "examples\n");
    EXPECT_EQ(Candidates("tesk completion z", 2), "\n");  // not listed
}

TEST(Completion, IsWrittenForThreeShells)
{
    EXPECT_THAT(Told("tesk completion zsh"), HasSubstr("#compdef tesk"));
    EXPECT_THAT(Told("tesk completion fish"),
                HasSubstr("complete -c tesk -n '__fish_seen_subcommand_from play' -l until"));
    EXPECT_EQ(RunShell("tesk completion tcsh").status, 2);
}
