#include "formula/kinds/tableformula.h"

#include <cstdlib>
#include <string_view>

#include "base/wrap.h"
#include "core/fileformulaargs.h"
#include "core/stimulus.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "platform/kestrin.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "waveform/mat/matlane.h"
#include "waveform/matimporter.h"
#include "waveform/samplestimulus.h"
#include "waveform/table/texttable.h"
#include "waveform/textimporter.h"

namespace tesk {

namespace {

bool CanOpenTextTable(SimpleString::CStr &fileName)
{
    return OpenTextTable(fileName).IsOpen();
}

// Deliberate: the element numbers of text tables are not corrected so.
int TakeLowerBoundOff(int index)
{
    return static_cast<int>(CorrectIndex(index, Kestrin::KTypeInfo(g_SignalTypeDescription)));
}

}  // namespace

const STableKind TxtTables = {CanOpenTextTable, ImportTextFile, nullptr};
const STableKind MatTables = {nullptr, ImportMatFile, TakeLowerBoundOff};

namespace {

constexpr std::string_view InternalMark = "/internal ";

bool TakeNumber(const char *&text, int &number)
{
    char *end = nullptr;
    std::strtoll(text, &end, 10);
    if (end == text)
        return false;
    number = ReadInt(text);
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
IStimulus *CreateInternal(const STableKind &table, const char *text)
{
    int handle = 0, index = 0;
    if (!TakeNumber(text, handle) || !TakeByte(text, ',') || !TakeByte(text, '(') || !TakeNumber(text, index))
        return nullptr;
    if (table.correctIndex != nullptr)
        index = table.correctIndex(index);
    return TakeByte(text, ')') ? new CCMStimulus(handle, index) : nullptr;
}

IStimulus *CreateTableStimulus(const STableKind &table, const SFormulaKind &kind, const SCreation &creation)
{
    if (std::string_view(creation.behindKeyword).starts_with(InternalMark))
        return CreateInternal(table, creation.behindKeyword + InternalMark.size());
    CFileFormulaArgs args;
    if (!kind.parseArguments(ArgumentsOf(creation.formula, creation.behindKeyword), args))
        return nullptr;
    ISignal *created = nullptr;
    if (CreateSignal(g_SignalTypeDescription, nullptr, &created) < 0)
        return nullptr;
    const TReference<ISignal> signal(created);
    const int handle = table.import(creation.startTime, args, signal.get());
    if (handle == -1)
        return CEmptyStimulus::Shared(true);
    return handle != 0 ? new CCMStimulus(handle, 0) : nullptr;
}

}  // namespace

IStimulus *CreateTxtStimulus(const SFormulaKind &kind, const SCreation &creation)
{
    return CreateTableStimulus(TxtTables, kind, creation);
}

IStimulus *CreateMatStimulus(const SFormulaKind &kind, const SCreation &creation)
{
    return CreateTableStimulus(MatTables, kind, creation);
}

}  // namespace tesk
