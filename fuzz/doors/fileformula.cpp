// A formula that names a file: a digit for the keyword, one for the type of the signal, and the text behind the keyword. The files
// are those of PutWaveforms.
#include <iterator>
#include <string>
#include <vector>

#include "core/formulaparser.h"
#include "core/stimulus.h"
#include "fuzz/doors.h"
#include "fuzz/support/choice.h"
#include "fuzz/support/formulas.h"
#include "fuzz/support/signaltypes.h"
#include "fuzz/support/waveforms.h"
#include "tools/examine/examination.h"

namespace fuzz {

namespace {

constexpr const char *Keywords[] = {"/custom dump.vcd,",
                                    "/custom dump.fst,",
                                    "/custom dump.ghw,",
                                    "/custom dump.zyn,",
                                    "/txt table.txt,",
                                    "/custom ",
                                    "/txt "};

void Play(const SimpleString::CStr &formula)
{
    const tesk::StimulusPtr stimulus(Unmarked(IStimulus::Create(formula, 5, 1000, nullptr, true, false)));
    if (stimulus == nullptr)
        return;
    Walk(*stimulus);
    stimulus->AllowBinary8BytesValues();
    Walk(*stimulus);
    stimulus->GetSignalTypeInfo();
    SimpleString::CStr text;
    stimulus->GetFormula(text);
}

}  // namespace

void FileFormula(std::string_view input)
{
    const std::size_t keyword = Choose(input, std::size(Keywords));
    const SSignalType &type = SignalTypes[Choose(input, std::size(SignalTypes))];
    const std::string formula = Keywords[keyword] + std::string(input);
    if (!StaysHere(formula))
        return;
    PutWaveforms();
    IStimulus::SetupAdditionalInfo("s", type.description);
    Play(formula.c_str());
    CFormulaParser parser;
    parser.SetSimRes(1000);
    std::vector<SimpleString::CStr> elements;
    parser.Run(formula.c_str(), elements, type.elements, type.isBitVector, 0);
    if (!elements.empty()) {
        Play(elements.front());
        Play(elements.back());
    }
    IStimulus::OnEndsim();
    tesk::ExamineFormula({formula, type.description});
    IStimulus::OnEndsim();  // which closes what was examined
}

}  // namespace fuzz
