// The splitting of "/txt" and "/mat" formulas.
#include <string>
#include <utility>
#include <vector>

#include "base/wrap.h"
#include "core/fileformulaargs.h"
#include "core/stimulus.h"
#include "formula/kinds/filesplitter.h"
#include "formula/kinds/kinds.h"
#include "formula/kinds/tableformula.h"
#include "platform/kestrin.h"
#include "signal/signal.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;

// Whether the elements of a signal are composite, or numbers, which have tables of their own.
bool HasOwnTables(const Kestrin::KTypeInfo *type)
{
    if (KindOf(type) != ETypeKind::Array)
        return KindOf(type) == ETypeKind::Record;
    const ETypeKind element = KindOf(type->GetArrayElementKTypeInfo());
    return element != ETypeKind::Invalid && element != ETypeKind::Enumeration;
}

void AppendOption(std::string &text, const char *option, const SimpleString::CStr &argument)
{
    text += option;
    text += argument;
}

// Deliberate: offset, repeat and cancel time, and the switches that name a default, are not carried over.
std::string MakeTail(const CFileFormulaArgs &args)
{
    std::string tail;
    if (!args.m_start.IsEmpty())
        AppendOption(tail, ",", args.m_start);
    if (!args.m_start.IsEmpty() && !args.m_end.IsEmpty())
        AppendOption(tail, ",", args.m_end);
    if ((args.m_flags & CFileFormulaArgs::FLAG_ROW) != 0)
        tail += " -row";
    if (!args.m_point.IsEmpty())
        AppendOption(tail, " -point ", args.m_point);
    if ((args.m_flags & CFileFormulaArgs::FLAG_TIME_POINTS) != 0)
        AppendOption(tail, " -time_points ", args.m_timeSource);
    else if (!args.m_timeSource.IsEmpty())
        AppendOption(tail, " -time_var ", args.m_timeSource);
    if (!args.m_interval.IsEmpty())
        AppendOption(tail, " -interval ", args.m_interval);
    if ((args.m_flags & CFileFormulaArgs::FLAG_REL) != 0)
        tail += " -rel";
    return tail;
}

// The elements of a signal are numbered from the left bound of the stimulated signal.
bool AppendNamed(ISignal &signal, const SFormulaKind &kind, const CFileFormulaArgs &args, const SSplitting &splitting)
{
    const TReference<ISignalIterator> walk = WalkElements(signal);
    if (walk == nullptr)
        return false;
    int left = 0, right = 0, direction = 0;
    Kestrin::KTypeInfo(g_TypeDescription).GetArrayDimensionRanges(0, left, right, direction);
    const std::string head =
        std::string(kind.keyword) + " " + static_cast<const char *>(args.m_file) + "," + signal.GetName() + "(";
    const std::string tail = ")" + MakeTail(args);
    long long index = left;
    ISignal *element = nullptr;
    while (walk->Next(1, &element, nullptr) == S_OK) {
        splitting.elements.emplace_back((head + std::to_string(index) + tail).c_str());
        index += direction == 1 ? -1 : 1;
    }
    return std::cmp_equal(splitting.elements.size(), splitting.count);
}

bool AppendLoaded(ISignal &signal, const STableKind &table, const SFormulaKind &kind, CFileFormulaArgs &args,
                  const SSplitting &splitting)
{
    if (WalkElements(signal) == nullptr)
        return false;
    const int handle = table.import(splitting.startTime, args, &signal);
    if (handle == 0 || handle == -1)
        return false;
    return AppendElements(signal, std::string(kind.keyword) + "/internal " + std::to_string(handle) + ",", "",
                          splitting);
}

bool SplitArguments(const STableKind &table, const SFormulaKind &kind, CFileFormulaArgs &args,
                    const SSplitting &splitting)
{
    if (table.canOpen != nullptr && !table.canOpen(args.m_file))
        return false;
    ISignal *created = nullptr;
    if (CreateSignal(g_SignalTypeDescription, nullptr, &created) < 0)
        return false;
    const TReference<ISignal> signal(created);
    if (!HasOwnTables(signal->GetTypeInfo()))
        return AppendLoaded(*signal, table, kind, args, splitting);
    signal->SetName(args.m_signal.IsEmpty() && g_SignalName != nullptr ? g_SignalName
                                                                       : static_cast<const char *>(args.m_signal));
    return AppendNamed(*signal, kind, args, splitting);
}

int SplitTableFormula(const STableKind &table, const SFormulaKind &kind, const SSplitting &splitting)
{
    return SplitFileFormula(kind, splitting,
                            [&](CFileFormulaArgs &args) { return SplitArguments(table, kind, args, splitting); });
}

}  // namespace

int SplitTxtFormula(const SFormulaKind &kind, const SSplitting &splitting)
{
    return SplitTableFormula(TxtTables, kind, splitting);
}

int SplitMatFormula(const SFormulaKind &kind, const SSplitting &splitting)
{
    return SplitTableFormula(MatTables, kind, splitting);
}

}  // namespace tesk
