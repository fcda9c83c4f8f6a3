// The splitting of "/custom" formulas.
#include <memory>
#include <optional>
#include <string>

#include "core/fileformulaargs.h"
#include "formula/kinds/filesplitter.h"
#include "formula/kinds/kinds.h"
#include "platform/log.h"
#include "settings/timeunits.h"
#include "signal/signal.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/fileuse.h"

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

// The file stays open, where files are shared, only if all goes well. Deliberate: one that is open already counts no
// further use.
bool SplitArguments(const SFormulaKind &kind, CFileFormulaArgs &args, const SSplitting &splitting)
{
    if (!args.m_start.IsEmpty() && !args.m_end.IsEmpty() && !CheckStretch(args))
        return false;
    const SFileKind &fileKind = FileKind(KindOfName(static_cast<const char *>(args.m_file)));
    if (fileKind.rules.renamesBrackets)
        RenameBrackets(args.m_signal);
    const std::unique_ptr<IFileUse> use = fileKind.makeUse();
    IWaveformFile *file = use->Find(args.m_file);
    const std::optional<int> handle = file != nullptr ? file->FindSignal(args.m_signal) : std::nullopt;
    ISignal *created = nullptr;
    if (!handle || file->MakeSignal(*handle, true, &created) < 0)
        return false;
    const TReference<ISignal> signal(created);
    signal->SetName(args.m_signal);
    const std::string head = std::string(kind.keyword) + " " + Text(args.m_file) + ",";
    if (!AppendElements(*signal, head, MakeTail(args), splitting))
        return false;
    use->KeepOpen();
    return true;
}

}  // namespace

int SplitCustomFormula(const SFormulaKind &kind, const SSplitting &splitting)
{
    return SplitFileFormula(kind, splitting,
                            [&](CFileFormulaArgs &args) { return SplitArguments(kind, args, splitting); });
}

}  // namespace tesk
