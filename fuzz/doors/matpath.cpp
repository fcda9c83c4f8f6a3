// Any text behind the file of a formula that takes its values from MATLAB: path and indices of the variable, times, switches. A digit
// for the type of the signal stands in front. The variables are those of the tests' made-up MATLAB.
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "core/formulaparser.h"
#include "core/stimulus.h"
#include "fuzz/doors.h"
#include "fuzz/support/choice.h"
#include "fuzz/support/formulas.h"
#include "fuzz/support/inputfile.h"
#include "fuzz/support/signaltypes.h"
#include "waveform/matimporter.h"

namespace fuzz {

namespace {

void Play(const char *formula)
{
    const tesk::StimulusPtr stimulus(Unmarked(IStimulus::Create(formula, 0, 1000, nullptr, true, false)));
    if (stimulus != nullptr)
        Walk(*stimulus);
}

}  // namespace

void MatPath(std::string_view input)
{
    setenv("PATH", TESK_FAKE_MATLAB "/bin", 1);
    Require(LoadMatLibraries());
    const SSignalType &type = SignalTypes[Choose(input, std::size(SignalTypes))];
    const std::string formula = "/mat there.mat," + std::string(input);
    if (!StaysHere(formula))
        return;
    IStimulus::SetupAdditionalInfo("s", type.description);
    CFormulaParser parser;
    parser.SetSimRes(1000);
    std::vector<SimpleString::CStr> elements;
    parser.Run(formula.c_str(), elements, type.elements, type.isBitVector, 0);
    Play(formula.c_str());
    if (!elements.empty()) {
        Play(elements.front());
        Play(elements.back());
    }
    IStimulus::OnEndsim();
}

}  // namespace fuzz
