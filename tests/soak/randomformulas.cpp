#include "tests/soak/randomformulas.h"

#include <iterator>

namespace soak {

namespace {

constexpr const char *LetterType = "e#9#std_logicc9 UX01ZWLH-";
constexpr const char *BusType = "a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-";
constexpr const char *IntegerType = "i#7#integerrict-2147483648 2147483647";
constexpr const char *RealType = "f#4#realrrct-1.79769e+308 1.79769e+308";

std::string RandomTime(CDice &dice)
{
    return dice.Number(300) + dice.Pick({"", "fs", "ps", "ns", " ns", "us", ".5ns"});
}

// "-r" and "-cancel", or not.
std::string RandomSwitches(CDice &dice)
{
    std::string switches;
    if (dice.Chance(40))
        switches += " -r " + RandomTime(dice);
    if (dice.Chance(30))
        switches += " -cancel " + std::string(dice.Pick({"", "@"})) + RandomTime(dice);
    return switches;
}

std::string RandomValue(CDice &dice, int elements)
{
    if (elements == 1)
        return dice.Letters(1, "01xXzZuHL-");
    if (dice.Chance(50))
        return dice.Letters(8, "01xz");
    return dice.Pick({"16#ff", "x\"a5\"", "2#1010", "10#200", "o\"17\"", "-1", "8#777", "(1,0,1,0,1,0,1,0)"});
}

SFormula MakePlain(CDice &dice)
{
    SFormula formula{"", dice.Chance(60) ? LetterType : BusType};
    formula.elements = formula.type == BusType ? 8 : 1;
    std::size_t time = 0;
    for (std::size_t events = dice.Below(20); events > 0; --events, time += dice.Below(50)) {
        formula.text += formula.text.empty() ? "" : ", ";
        formula.text += RandomValue(dice, formula.elements) + " " + (dice.Chance(10) ? "@" : "") +
                        std::to_string(time) + dice.Pick({"ns", "ps", " us", ""});
    }
    formula.text += RandomSwitches(dice);
    return formula;
}

SFormula MakeClock(CDice &dice)
{
    const std::string period = std::to_string(2 + dice.Below(1000));
    return {"1 0 ps, 0 " + dice.Number(500) + " ps -r " + period + dice.Pick({" ps", "ns"}), LetterType};
}

SFormula MakeCounter(CDice &dice, int &counters)
{
    if (counters >= MostCounters)
        return {"\\counter\\wire\\" + dice.Number(9) + "\\handle\\" + dice.Number(MostCounters), LetterType};
    ++counters;
    return {"\\counter\\TYPE\\" + dice.Number(6) + "\\DIR\\" + dice.Number(3) + "\\RADIX\\" +
                dice.Pick({"2", "hex", "dec", "8", "16"}) + "\\START\\" + dice.Number(100) + "\\INC\\" +
                dice.Number(5) + "\\PERIOD\\" + RandomTime(dice) + "\\REV\\" + dice.Number(2),
            BusType, 8};
}

SFormula MakeRandom(CDice &dice)
{
    constexpr const char *Parameters[] = {"\\5\\0\\10", "\\5\\0\\10", "\\7\\100\\3", "\\7\\100", "\\1\\5",
                                          "\\2\\4",     "\\3\\9",     "\\4\\100\\3", "\\11"};
    const std::size_t kind = dice.Below(std::size(Parameters));
    SFormula formula{"\\RANDOM\\" + std::to_string(kind) + Parameters[kind] + "\\" + RandomTime(dice),
                     dice.Pick({LetterType, BusType, IntegerType})};
    formula.elements = formula.type == BusType ? 8 : 1;
    return formula;
}

SFormula MakeLegacy(CDice &dice)
{
    std::string text = "/brel";
    int open = 0;
    for (std::size_t items = 1 + dice.Below(8); items > 0; --items) {
        if (dice.Chance(25) && open < 4) {
            text += " (";
            ++open;
        }
        text += " " + dice.Letters(1, "HLZXhlu0123456789") + dice.Number(40) + dice.Pick({"", "NS", "PS", ".5"});
        if (open > 0 && dice.Chance(40)) {
            text += ")" + dice.Number(6);
            --open;
        }
    }
    while (open-- > 0)
        text += ")" + dice.Number(4);
    return {text + dice.Pick({"", "/clk", " "}), LetterType};
}

SFormula MakeReplay(CDice &dice, const SFile &file)
{
    const std::size_t signal = dice.Below(20);  // one in twenty is not there
    const bool hasBus = file.kind != SFile::Ghw, hasReal = file.kind != SFile::Stream;
    const char *name = signal == 0              ? "tb.none"
                       : signal < 8 && hasBus   ? BusName
                       : signal < 10 && hasBus  ? "tb.dut.bus[3]"
                       : signal < 14 && hasReal ? RealName
                                                : LetterName;
    SFormula formula{"/custom " + file.path.string() + "," + name, LetterType};
    if (name == std::string(BusName)) {
        formula.type = BusType;
        formula.elements = 8;
    } else if (name == std::string(RealName)) {
        formula.type = RealType;
    }
    if (dice.Chance(40))
        formula.text += "," + dice.Number(500) + "ps";
    if (dice.Chance(20))
        formula.text += "," + dice.Number(5000) + "ps";
    if (dice.Chance(40))
        formula.text += " " + std::string(dice.Pick({"", "@"})) + RandomTime(dice);
    formula.text += RandomSwitches(dice);
    return formula;
}

SFormula MakeSamples(CDice &dice, const SFile &file)
{
    const bool isTable = file.kind == SFile::Table;
    SFormula formula{(isTable ? "/txt " : "/mat ") + file.path.string() + "," +
                         dice.Pick({"data", "data", isTable ? "real" : "times", "none"}),
                     dice.Pick({BusType, IntegerType, RealType, LetterType})};
    formula.elements = formula.type == BusType ? 8 : 1;
    if (dice.Chance(50))
        formula.text += isTable ? " -time_points time" : " -time_var times";
    formula.text += " -interval " + dice.Number(20) + dice.Pick({"ns", "ps", ""});
    if (dice.Chance(20))
        formula.text += dice.Pick({" -row", " -rel", " -col", " -abs"});
    formula.text += RandomSwitches(dice);
    return formula;
}

// A character put in, taken away or changed.
void Mistype(CDice &dice, std::string &text)
{
    if (text.empty())
        return;
    const std::size_t place = dice.Below(text.size());
    const std::string letter = dice.Letters(1, " ,@-\\/()\"'#09azr;.");
    switch (dice.Below(3)) {
    case 0: text.erase(place, 1); break;
    case 1: text.insert(place, letter); break;
    default: text.replace(place, 1, letter); break;
    }
}

SFormula MakeRight(CDice &dice, const std::vector<SFile> &files, int &counters)
{
    const std::size_t kind = dice.Below(10);
    if (kind >= 5 && !files.empty()) {
        const SFile &file = files[dice.Below(files.size())];
        const bool isSamples = file.kind == SFile::Table || file.kind == SFile::Matlab;
        return isSamples ? MakeSamples(dice, file) : MakeReplay(dice, file);
    }
    switch (kind) {
    case 0: return MakeClock(dice);
    case 1: return MakeCounter(dice, counters);
    case 2: return MakeRandom(dice);
    case 3: return MakeLegacy(dice);
    default: return MakePlain(dice);
    }
}

}  // namespace

SFormula MakeFormula(CDice &dice, const std::vector<SFile> &files, int &counters)
{
    SFormula formula = MakeRight(dice, files, counters);
    // A mistyped counter could be one more that stays.
    if (dice.Chance(10) && formula.text[0] != '\\')
        Mistype(dice, formula.text);
    return formula;
}

}  // namespace soak
