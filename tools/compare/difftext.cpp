// The comparison of two files, for a reader.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tools/compare/diffreport.h"
#include "tools/output.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

std::string TimeOf(const SDiffReport &report, long long ticks)
{
    return TickText(ticks, report.diff.resolution);
}

std::string Counted(std::size_t count, const std::string &what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

void WriteMore(std::ostream &out, const SDiffReport &report, std::size_t count)
{
    const std::size_t shown = ShownOf(report, count);
    if (shown < count)
        out << "and " << count - shown << " more; --limit 0 shows all\n";
}

void WriteDifferences(std::ostream &out, const SDiffReport &report, const std::vector<std::size_t> &signals)
{
    if (signals.empty())
        return;
    std::vector<std::vector<std::string>> lines = {{"first", "signal", "expected", "got", "times"}};
    for (std::size_t i = 0; i < ShownOf(report, signals.size()); ++i) {
        const std::size_t signal = signals[i];
        const SPairVerdict &verdict = report.diff.Verdict(signal);
        lines.push_back({TimeOf(report, verdict.first->time), Printable(report.diff.signals.pairs[signal].expectedName),
                         Printable(ValueText(report, signal, verdict.first->expected)),
                         Printable(ValueText(report, signal, verdict.first->got)), std::to_string(verdict.stretches)});
    }
    WriteColumns(out, lines, 4);
    WriteMore(out, report, signals.size());
}

void WriteNames(std::ostream &out, const SDiffReport &report, const std::string &path,
                const std::vector<std::string> &names)
{
    for (std::size_t i = 0; i < ShownOf(report, names.size()); ++i)
        out << "only in " << OneLine(path) << ": " << Printable(names[i]) << '\n';
    WriteMore(out, report, names.size());
}

void WriteUnlike(std::ostream &out, const SDiffReport &report)
{
    const std::vector<SUnlikePair> &unlike = report.diff.signals.unlike;
    for (std::size_t i = 0; i < ShownOf(report, unlike.size()); ++i)
        out << "cannot be compared: " << Printable(unlike[i].expectedName) << " is "
            << Printable(unlike[i].expectedType) << " in " << OneLine(report.expectedPath) << ", "
            << Printable(unlike[i].gotType) << " in " << OneLine(report.gotPath) << '\n';
    WriteMore(out, report, unlike.size());
}

void WriteEnds(std::ostream &out, const SDiffReport &report)
{
    const SFileDiff &diff = report.diff;
    if (const auto &early = diff.earlyEnd) {
        const bool endsExpected = early->side == ECompareSide::Expected;
        out << OneLine(endsExpected ? report.expectedPath : report.gotPath) << " ends at " << TimeOf(report, early->end)
            << "; in " << OneLine(endsExpected ? report.gotPath : report.expectedPath) << ' '
            << Printable(early->signal) << " changes at " << TimeOf(report, early->next) << '\n';
    } else if (diff.expectedEnd && diff.gotEnd && diff.expectedEnd != diff.gotEnd) {
        out << OneLine(report.expectedPath) << " ends at " << TimeOf(report, *diff.expectedEnd) << ", "
            << OneLine(report.gotPath) << " at " << TimeOf(report, *diff.gotEnd) << '\n';
    }
}

void WriteSummary(std::ostream &out, const SDiffReport &report, const std::vector<std::size_t> &signals)
{
    const SFileDiff &diff = report.diff;
    const std::string stretch = " from " + TimeOf(report, diff.from) + " to " + TimeOf(report, diff.until);
    out << OneLine(report.expectedPath) << " and " << OneLine(report.gotPath);
    if (IsEqual(report)) {
        out << " are equal: " << Counted(diff.signals.pairs.size(), "signal") << stretch << '\n';
        return;
    }
    out << " differ: " << signals.size() << " of " << Counted(diff.signals.pairs.size(), "signal") << stretch;
    if (!signals.empty())
        out << ", first at " << TimeOf(report, diff.Verdict(signals.front()).first->time);
    for (const auto &[count, what] : {std::pair(diff.signals.missing.size(), " only in the first file"),
                                      std::pair(diff.signals.additional.size(), " only in the second"),
                                      std::pair(diff.signals.unlike.size(), " cannot be compared")}) {
        if (count != 0)
            out << "; " << count << what;
    }
    out << (diff.earlyEnd ? "; one ends early\n" : "\n");
}

}  // namespace

bool IsEqual(const SDiffReport &report)
{
    const SFileDiff &diff = report.diff;
    const bool isWhole = diff.signals.missing.empty() && diff.signals.additional.empty() && !diff.earlyEnd;
    return diff.signals.unlike.empty() && (isWhole || report.isCommon) && DifferingSignals(diff).empty();
}

std::vector<std::size_t> DifferingSignals(const SFileDiff &diff)
{
    std::vector<std::size_t> signals;
    for (std::size_t i = 0; i < diff.signals.pairs.size(); ++i) {
        if (diff.Verdict(i).first)
            signals.push_back(i);
    }
    std::ranges::stable_sort(signals, {}, [&](std::size_t signal) { return diff.Verdict(signal).first->time; });
    return signals;
}

std::size_t ShownOf(const SDiffReport &report, std::size_t count)
{
    return report.limit == 0 ? count : std::min(count, report.limit);
}

std::string ValueText(const SDiffReport &report, std::size_t signal, const CComparedRow &row)
{
    const SSignalPair &pair = report.diff.signals.pairs[signal];
    const std::string text = RowText(pair.form, row, *report.diff.literals);
    const bool isShownInRadix = pair.isBus && pair.form.kind == EComparedKind::Levels && IsBitText(text);
    return isShownInRadix ? BitsInRadix(text, report.radix) : text;
}

void WriteDiffText(std::ostream &out, const SDiffReport &report)
{
    const std::vector<std::size_t> signals = DifferingSignals(report.diff);
    WriteDifferences(out, report, signals);
    WriteNames(out, report, report.expectedPath, report.diff.signals.missing);
    WriteNames(out, report, report.gotPath, report.diff.signals.additional);
    WriteUnlike(out, report);
    WriteEnds(out, report);
    WriteSummary(out, report, signals);
}

}  // namespace tesk
