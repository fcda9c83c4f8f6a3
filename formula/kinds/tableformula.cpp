#include "formula/kinds/tableformula.h"

#include <cstdlib>
#include <string_view>

#include "base/wrap.h"
#include "formula/kinds/keywords.h"
#include "platform/kestrin.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "waveform/mat/matlane.h"
#include "waveform/matimporter.h"
#include "waveform/samplestimulus.h"
#include "waveform/textimporter.h"

namespace {

// Deliberate: the element numbers of text tables are not corrected so.
int TakeLowerBoundOff(int index)
{
    return static_cast<int>(CorrectIndex(index, Kestrin::KTypeInfo(g_SignalTypeDescription)));
}

}  // namespace

const STableKind TxtTables = {ParseTxtArgs, ImportTextFile, nullptr};
const STableKind MatTables = {ParseMatArgs, ImportMatFile, TakeLowerBoundOff};

namespace {

constexpr std::string_view InternalMark = "/internal ";

bool TakeNumber(const char *&text, int &number)
{
    char *end = nullptr;
    std::strtoll(text, &end, 10);
    if (end == text)
        return false;
    number = tesk::ReadInt(text);
    text = end;
    return true;
}

bool TakeByte(const char *&text, char byte)
{
    if (*text != byte)
        return false;
    ++text;
    return true;
}

// "5,(3)", with anything behind it.
IStimulus *CreateInternal(const STableKind &kind, const char *text)
{
    int handle = 0, index = 0;
    if (!TakeNumber(text, handle) || !TakeByte(text, ',') || !TakeByte(text, '(') || !TakeNumber(text, index))
        return nullptr;
    if (kind.correctIndex != nullptr)
        index = kind.correctIndex(index);
    return TakeByte(text, ')') ? new CCMStimulus(handle, index) : nullptr;
}

}  // namespace

IStimulus *CreateTableStimulus(const STableKind &kind, const char *formula, const char *behindKeyword,
                               long long startTime)
{
    if (std::string_view(behindKeyword).starts_with(InternalMark))
        return CreateInternal(kind, behindKeyword + InternalMark.size());
    CFileFormulaArgs args;
    if (!kind.parseArguments(ArgumentsOf(formula, behindKeyword), args))
        return nullptr;
    ISignal *created = nullptr;
    if (CreateSignal(g_SignalTypeDescription, nullptr, &created) < 0)
        return nullptr;
    const TReference<ISignal> signal(created);
    const int handle = kind.import(startTime, args, signal.get());
    if (handle == -1)
        return CEmptyStimulus::Shared(true);
    return handle != 0 ? new CCMStimulus(handle, 0) : nullptr;
}
