#include "formula/kinds/filestimulus.h"

#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "waveform/files/filekinds.h"

using SimpleString::CStr;

namespace tesk {

namespace {

bool IsBlank(CStr text)
{
    text.TrimLeft();
    return text.IsEmpty();
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
    return FileKind(KindOfName(static_cast<const char *>(file))).createStimulus(creation.startTime, arguments);
}

}  // namespace tesk
