// The splitting of "/custom" formulas.
#include <string>

#include "core/fileformulaargs.h"
#include "formula/kinds/filesplitter.h"
#include "formula/kinds/kinds.h"
#include "platform/log.h"
#include "platform/morvel.h"
#include "settings/timeunits.h"
#include "signal/signal.h"
#include "waveform/customstimulus.h"
#include "waveform/replay/fileuse.h"
#include "waveform/tarnstimulus.h"
#include "waveform/wavestore.h"

namespace tesk {

namespace {

std::string Text(const SimpleString::CStr &text)
{
    return static_cast<const char *>(text);
}

// Times are compared as femtoseconds. @return false, maybe with a message, for a stretch that cannot be played
bool CheckStretch(const CFileFormulaArgs &args)
{
    constexpr long long Femtosecond = 1;
    STimeValue start, end;
    if (!ParseTimeArgument(args.m_start, Femtosecond, start, -1) ||
        !ParseTimeArgument(args.m_end, Femtosecond, end, -1))
        return false;
    if (end.m_ticks > start.m_ticks)
        return true;
    Q71log_PrintFormattedString(1, "KERNEL", "", "Waveform end time has to be greater than start time.");
    return false;
}

// What stands behind the signal in each element formula. Deliberate: an end without a start is left out.
std::string MakeTail(const CFileFormulaArgs &args)
{
    std::string tail;
    if (!args.m_start.IsEmpty())
        tail += "," + Text(args.m_start);
    if (!args.m_start.IsEmpty() && !args.m_end.IsEmpty())
        tail += "," + Text(args.m_end);
    if (!args.m_offset.IsEmpty())
        tail += " " + Text(args.m_offset);
    if (!args.m_repeat.IsEmpty())
        tail += " -r " + Text(args.m_repeat);
    if (!args.m_cancel.IsEmpty())
        tail += " -cancel " + Text(args.m_cancel);
    return tail;
}

// Names the elements of a signal of the file's type. `type` is a description or a type object.
template <typename Type>
bool AppendElementsOf(const Type &type, const SFormulaKind &kind, const CFileFormulaArgs &args,
                      const SSplitting &splitting)
{
    ISignal *created = nullptr;
    if (CreateSignal(type, nullptr, &created) < 0)
        return false;
    const TReference<ISignal> signal(created);
    signal->SetName(args.m_signal);
    return AppendElements(*signal, std::string(kind.keyword) + " " + Text(args.m_file) + ",", MakeTail(args),
                          splitting);
}

bool SplitStream(const SFormulaKind &kind, CFileFormulaArgs &args, const SSplitting &splitting)
{
    const Morvel::StreamReadPtr stream(Morvel::CreateStreamRead(args.m_file));
    if (stream == nullptr)
        return false;
    const int handle = FindStreamSignalHandle(stream.get(), args.m_signal, -1, nullptr, 0);
    const char *type = handle != -1 ? stream->GetTypeText(handle) : nullptr;
    return type != nullptr && AppendElementsOf(type, kind, args, splitting);
}

// The kinds of files that are shared.

WaveStore *Open(const char *fileName, WaveStore *)
{
    return ImportVcdFile(fileName);
}

NTARN::IDatabaseReader *Open(const char *fileName, NTARN::IDatabaseReader *)
{
    return NTARN::IDatabaseReader::create(fileName, false);
}

const Kestrin::KTypeInfo *FindType(WaveStore &store, const char *signal)
{
    const long long handle = store.FindSignal(signal);
    return handle != 0 ? store.GetSignalType(handle, true) : nullptr;
}

const Kestrin::KTypeInfo *FindType(NTARN::IDatabaseReader &reader, const char *signal)
{
    const int handle = FindTarnSignalHandle(&reader, signal, -1, nullptr, {});
    return handle != -1 ? &reader.GetType(handle) : nullptr;
}

// A file that is new stays open only if all goes well. Deliberate: one that is open counts no further use.
template <typename TReader>
bool SplitShared(const SFormulaKind &kind, CFileFormulaArgs &args, const SSplitting &splitting)
{
    RenameBrackets(args.m_signal);
    TFileUse<TReader> use;
    TReader *reader =
        use.Find(args.m_file, [](const char *name) { return Open(name, static_cast<TReader *>(nullptr)); });
    const Kestrin::KTypeInfo *type = reader != nullptr ? FindType(*reader, args.m_signal) : nullptr;
    if (type == nullptr || !AppendElementsOf(*type, kind, args, splitting))
        return false;
    use.Keep();
    return true;
}

bool SplitArguments(const SFormulaKind &kind, CFileFormulaArgs &args, const SSplitting &splitting)
{
    if (!args.m_start.IsEmpty() && !args.m_end.IsEmpty() && !CheckStretch(args))
        return false;
    if (IsNamedLike(args.m_file, ".zyn") || IsNamedLike(args.m_file, ".tmp"))
        return SplitStream(kind, args, splitting);
    if (IsVcdFileName(args.m_file))
        return SplitShared<WaveStore>(kind, args, splitting);
    return SplitShared<NTARN::IDatabaseReader>(kind, args, splitting);
}

}  // namespace

int SplitCustomFormula(const SFormulaKind &kind, const SSplitting &splitting)
{
    return SplitFileFormula(kind, splitting,
                            [&](CFileFormulaArgs &args) { return SplitArguments(kind, args, splitting); });
}

}  // namespace tesk
