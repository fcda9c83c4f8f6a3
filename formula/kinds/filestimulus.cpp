#include "formula/kinds/filestimulus.h"

#include <cstring>
#include <memory>

#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "waveform/openfiles.h"
#include "waveform/tarnstimulus.h"
#include "waveform/vcdstimulus.h"

using SimpleString::CStr;

namespace tesk {

namespace {

bool IsBlank(CStr text)
{
    text.TrimLeft();
    return text.IsEmpty();
}

template <typename TStimulus>
IStimulus *CreateOn(long long startTime, const char *arguments)
{
    std::unique_ptr<TStimulus> stimulus = std::make_unique<TStimulus>();
    return stimulus->InitFromFormula(startTime, arguments) ? stimulus.release() : nullptr;
}

}  // namespace

IStimulus *CreateFileStimulus(const SFormulaKind &, const SCreation &creation)
{
    const CStr arguments = ArgumentsOf(creation.formula, creation.behindKeyword);
    const int comma = arguments.Find(",");
    if (comma < 0)
        return nullptr;
    CStr file = arguments.Left(comma);
    file.TrimLeft();
    file.TrimRight();
    if (file.IsEmpty() || IsBlank(arguments.Mid(comma + 1)))
        return nullptr;
    if (IsNamedLike(file, ".zyn") || IsNamedLike(file, ".tmp"))
        return CreateOn<CCustomStimulus>(creation.startTime, arguments);
    if (IsVcdFileName(file))
        return CreateOn<CVcdStimulus>(creation.startTime, arguments);
    return CreateOn<CTarnStimulus>(creation.startTime, arguments);
}

}  // namespace tesk
