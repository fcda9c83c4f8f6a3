// A formula of a kind: a digit for the kind, one for the resolution, one for the start, one for the type of the signal, and the
// text behind the keyword.
#include <climits>
#include <iterator>
#include <string>

#include "base/scalarinfo.h"
#include "core/stimulus.h"
#include "fuzz/doors.h"
#include "fuzz/support/choice.h"
#include "fuzz/support/formulas.h"
#include "fuzz/support/signaltypes.h"
#include "settings/clock.h"

namespace fuzz {

namespace {

constexpr const char *Kinds[] = {
    "", "\\counter\\TYPE\\", "\\RANDOM\\", "/brel ", "\\counter\\wire\\", "\\random\\wire\\", "clock"};
constexpr int PlaceOfClock = 6;
constexpr long long Resolutions[] = {1000, 1, 1'000'000, 100, 3, 1'000'000'000'000'000, 0, -1, LLONG_MAX};
constexpr long long Starts[] = {0, 1, 1000, 12345, LLONG_MAX / 2, LLONG_MAX, -1};

// What was written of a formula can be read again.
void ReadBack(IStimulus &stimulus)
{
    SimpleString::CStr formula;
    stimulus.GetFormula(formula);
    const tesk::StimulusPtr again(Unmarked(IStimulus::Create(formula, 0, g_simRes, nullptr, true, true)));
}

SimpleString::CStr FormulaOfClock(const std::string &text)
{
    SimpleString::CStr formula;
    CClock clock;
    if (clock.StreamIn(text.c_str()))
        clock.GenerateFormula(formula, -1, nullptr);
    return formula;
}

}  // namespace

void Formula(std::string_view input)
{
    const std::size_t kind = Choose(input, std::size(Kinds));
    const long long resolution = Resolutions[Choose(input, std::size(Resolutions))];
    const long long start = Starts[Choose(input, std::size(Starts))];
    const SSignalType &type = SignalTypes[Choose(input, std::size(SignalTypes))];
    const std::string text(input);
    const std::string formula = kind == PlaceOfClock ? std::string(FormulaOfClock(text)) : Kinds[kind] + text;
    if (!StaysHere(formula))
        return;
    IStimulus::SetupAdditionalInfo("s", type.description);
    tesk::CSimpleScalarInfo letters(3);
    letters.AddEnumValue(0, 'a');
    letters.AddEnumValue(2, 'c');
    for (const bool isBinary : {false, true}) {
        const tesk::StimulusPtr stimulus(Unmarked(IStimulus::Create(
            formula.c_str(), start, resolution, type.elements == 4 ? &letters : nullptr, isBinary, false)));
        if (stimulus == nullptr)
            continue;
        Walk(*stimulus);
        ReadBack(*stimulus);
    }
    IStimulus::OnEndsim();
}

}  // namespace fuzz
