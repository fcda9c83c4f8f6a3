// Any text as a formula of any kind, for a scalar and split for a composite signal: a digit for the type, and the text.
#include <iterator>
#include <string>
#include <vector>

#include "core/formulaparser.h"
#include "core/stimulus.h"
#include "fuzz/doors.h"
#include "fuzz/support/choice.h"
#include "fuzz/support/formulas.h"
#include "fuzz/support/signaltypes.h"
#include "tools/examine/examination.h"

namespace fuzz {

namespace {

void UseElement(const char *formula)
{
    const tesk::StimulusPtr stimulus(Unmarked(IStimulus::Create(formula, 0, 1000, nullptr, true, false)));
    if (stimulus != nullptr)
        Walk(*stimulus);
}

}  // namespace

void Dispatcher(std::string_view input)
{
    const SSignalType &type = SignalTypes[Choose(input, std::size(SignalTypes))];
    const std::string formula(input);
    if (!StaysHere(formula))
        return;
    IStimulus::SetupAdditionalInfo("s", type.description);
    UseElement(formula.c_str());
    CFormulaParser parser;
    parser.SetSimRes(1000);
    std::vector<SimpleString::CStr> elements;
    parser.Run(formula.c_str(), elements, type.elements, type.isBitVector, 0);
    if (!elements.empty()) {
        UseElement(elements.front());
        UseElement(elements.back());
    }
    IStimulus::OnEndsim();
    tesk::ExamineFormula({formula, type.description});
    IStimulus::OnEndsim();  // which closes what was examined
}

}  // namespace fuzz
