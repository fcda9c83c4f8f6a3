#include "tools/help/formulahelp.h"

namespace tesk {

namespace {

constexpr SFormulaHelp Helps[] = {
    {"plain", "VALUE TIME, VALUE TIME ... [-r TIME] [-cancel [@]TIME]",
     "Values and the times from which they hold, counted from the start; @TIME counts from 0. -r starts over.",
     "1 10ns, 0 20ns -r 30ns -cancel 100ns", ""},
    {"counter", R"(\counter\TYPE\t\DIR\d\RADIX\r\START\value\INC\value\PERIOD\time\REV\b)",
     "A count on a vector: binary, gray, johnson, circular. \"tesk counter\" writes it.",
     R"(\counter\TYPE\1\DIR\1\RADIX\10\START\0\INC\1\PERIOD\10ns\REV\0)", "--count 4"},
    {"random", R"(\RANDOM\distribution\seed\parameters\period)",
     "The draws of Verilog's $dist_ functions. \"tesk random\" writes it.", R"(\RANDOM\2\5\100\15\10ns)",
     "--type integer"},
    {"legacy", "/brel H10 L5 (H1 L1)4 [/CLK]", "Levels and how long each holds; a group repeats.", "/brel (H10 L10)2",
     ""},
    {"replay", "/custom FILE,SIGNAL[,START[,END]] [[@]OFFSET] [-r TIME] [-cancel [@]TIME]",
     "A signal that a simulator recorded in a VCD, an FST or an event stream. \"tesk signals\" lists the names.",
     "/custom examples/traffic.vcd,tb.count,20ns,90ns", ""},
    {"table", "/txt FILE,COLUMN[,START[,END]] [-row] [-rel] [-time_points COLUMN] [-interval TIME]",
     "A column of a text table.", "/txt examples/sine.txt,sine -time_points time -interval 1ns",
     "--type \"signed(7 downto 0)\""},
    {"matrix",
     "/mat FILE,VARIABLE [-row] [-rel] [-time_points LANE | -time_var VARIABLE] [-interval TIME] [-point BITS]",
     "A column of a variable in a MAT-file.", "/mat examples/sine.mat,sine -time_var time -interval 1ns",
     "--type real"},
};

constexpr const char *Notes[] = {
    "VALUE  a word, or anything in (...), \"...\" or '...'; x\"1F\", o\"17\", b\"0101\" and d\"12\" are for vectors.",
    "TIME   a number and a unit, 10ns or 1.5 us: fs, ps, ns, us, ms, sec, min, hr; without a unit it is ps.",
    "A composite signal takes one value for all elements: bits in a row, or (1, 0, 1).",
};

}  // namespace

std::span<const SFormulaHelp> FormulaHelps()
{
    return Helps;
}

std::span<const char *const> FormulaNotes()
{
    return Notes;
}

void WriteFormulaHelp(std::ostream &out)
{
    for (const SFormulaHelp &help : Helps) {
        out << help.title << ":  " << help.form << "\n    " << help.meaning << "\n    e.g. tesk play '" << help.example
            << '\'' << (*help.options != '\0' ? " " : "") << help.options << '\n';
    }
    for (const char *note : Notes)
        out << note << '\n';
}

}  // namespace tesk
