#include "waveform/filestimulus.h"

#include <cstring>

#include "waveform/openfiles.h"
#include "waveform/tarnstimulus.h"
#include "waveform/vcdstimulus.h"

using SimpleString::CStr;

namespace {

// A formula may stand in double quotes as a whole.
CStr WithoutClosingQuote(const char *formula, const char *behindKeyword)
{
    CStr rest(behindKeyword);
    const int last = rest.GetLength() - 1;
    return *formula == '"' && last >= 0 && rest[last] == '"' ? rest.Left(last) : rest;
}

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

IStimulus *CreateFileStimulus(const char *formula, const char *behindKeyword, long long startTime)
{
    const CStr arguments = WithoutClosingQuote(formula, behindKeyword);
    const int comma = arguments.Find(",");
    if (comma < 0)
        return nullptr;
    CStr file = arguments.Left(comma);
    file.TrimLeft();
    file.TrimRight();
    if (file.IsEmpty() || IsBlank(arguments.Mid(comma + 1)))
        return nullptr;
    if (IsNamedLike(file, ".zyn") || IsNamedLike(file, ".tmp"))
        return CreateOn<CCustomStimulus>(startTime, arguments);
    if (IsVcdFileName(file))
        return CreateOn<CVcdStimulus>(startTime, arguments);
    return CreateOn<CTarnStimulus>(startTime, arguments);
}
