#include "tools/play/kindtexts.h"

#include <iterator>

namespace {

using tesk::EFormulaKind;

constexpr SKindText Texts[] = {
    {EFormulaKind::Custom, "FILE,SIGNAL[,START[,END]] [[@]OFFSET] [-r TIME] [-cancel [@]TIME]",
     "the file is no waveform file, has no such signal, or ends before the stretch does; \"tesk signals FILE\" lists "
     "its signals and times",
     ""},
    {EFormulaKind::Txt, "FILE,COLUMN[,START[,END]] [-row] [-rel] [-time_points COLUMN] [-interval TIME]",
     "no column of it can be played on a signal of this type, or a time cannot be read", ".txt"},
    {EFormulaKind::Mat,
     "FILE,VARIABLE [-row] [-rel] [-time_points LANE | -time_var VARIABLE] [-interval TIME] [-point BITS]",
     "the variable has no lane for this signal, or the times cannot be read", ".mat"},
    {EFormulaKind::Counter, "",
     "no counter in it; \"tesk counter\" writes one, and one that is not binary needs --count", ""},
    {EFormulaKind::Random, "", "no random settings in it; \"tesk random\" writes them, with \\RANDOM in capitals", ""},
    {EFormulaKind::Brel, "", "no event in it; write values and times behind /brel, such as (H10 L10)4", ""},
};

constexpr bool HasEachKindItsText()
{
    for (std::size_t i = 0; i < std::size(Texts); ++i) {
        if (static_cast<std::size_t>(Texts[i].kind) != i)
            return false;
    }
    return std::size(Texts) == tesk::FormulaKindCount;
}
static_assert(HasEachKindItsText());

}  // namespace

const SKindText &TextOf(EFormulaKind kind)
{
    return Texts[static_cast<std::size_t>(kind)];
}
