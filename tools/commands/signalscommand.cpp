// tesk signals: what is in a waveform file.
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/commands/namelist.h"
#include "tools/files/pipeinput.h"
#include "tools/files/selectedfile.h"
#include "tools/files/wavefile.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/quote.h"
#include "tools/timetext.h"
#include "waveform/files/signalwalk.h"

using tesk::CSignalWalk;
using tesk::IWaveformFile;
using tesk::SFileSignal;

namespace {

struct SSignalsOptions {
    std::string file;
    std::vector<std::string> globs;
    bool isNamesOnly = false;
    std::string from;
    std::string until;
    std::string format;
    std::string output;
};

struct SChanges {
    long long changes = 0;
    long long first = 0;  // file ticks; of a signal without changes nothing
    long long last = 0;
};

struct SSignalRow : SChanges {
    const SFileSignal *signal;
};

struct SListing {
    std::string file;
    long long resolution;
    long long endTime;
    std::vector<SSignalRow> rows;
    bool isNamesOnly;  // the changes have not been counted
};

SChanges CountChanges(IWaveformFile &file, const SFileSignal &signal, const std::function<void()> &goOn)
{
    SChanges changes;
    CSignalWalk walk(file, signal);
    for (; walk.Next(); ++changes.changes) {
        goOn();
        changes.first = changes.changes == 0 ? walk.GetTime() : changes.first;
        changes.last = walk.GetTime();
    }
    return changes;
}

// Signals that share their events are walked once: a clock may have as many names as a design has modules.
std::vector<SSignalRow> ListRows(IWaveformFile &file, bool isNamesOnly)
{
    std::vector<SSignalRow> rows;
    if (isNamesOnly) {
        for (const SFileSignal &signal : file.GetSignals())
            rows.push_back({{}, &signal});
        return rows;
    }
    std::map<std::vector<long long>, SChanges> counted;
    tesk::CProgressLine progress("Counting");
    const auto all = static_cast<long long>(file.GetSignals().size());
    for (const SFileSignal &signal : file.GetSignals()) {
        const auto [changes, isNew] = counted.try_emplace(IdentifyEvents(file, signal));
        if (isNew)
            changes->second = CountChanges(file, signal, [&] { progress.Show(std::ssize(rows), all); });
        rows.push_back({changes->second, &signal});
    }
    return rows;
}

std::string FirstTime(const SListing &listing, const SSignalRow &row)
{
    return row.changes > 0 ? FileTimeText(row.first, listing.resolution) : "";
}

std::string LastTime(const SListing &listing, const SSignalRow &row)
{
    return row.changes > 0 ? FileTimeText(row.last, listing.resolution) : "";
}

void WriteTable(std::ostream &out, const SListing &listing)
{
    std::vector<std::vector<std::string>> lines = {{"signal", "type", "changes", "first", "last"}};
    if (listing.isNamesOnly)
        lines.front().resize(2);
    for (const SSignalRow &row : listing.rows) {
        lines.push_back({Printable(row.signal->path), Printable(row.signal->type.GetTypeIdentifier()),
                         std::to_string(row.changes), FirstTime(listing, row), LastTime(listing, row)});
        lines.back().resize(lines.front().size());
    }
    WriteColumns(out, lines, 2);
}

void WriteCsv(std::ostream &out, const SListing &listing)
{
    out << (listing.isNamesOnly ? "signal,type\n" : "signal,type,changes,first,last\n");
    for (const SSignalRow &row : listing.rows) {
        out << CsvField(row.signal->path) << ',' << CsvField(row.signal->type.GetTypeIdentifier());
        if (!listing.isNamesOnly)
            out << ',' << row.changes << ',' << FirstTime(listing, row) << ',' << LastTime(listing, row);
        out << '\n';
    }
}

void WriteJson(std::ostream &out, const SListing &listing)
{
    nlohmann::ordered_json document = {{"file", listing.file},
                                       {"resolution_fs", listing.resolution},
                                       {"end_ticks", listing.endTime},
                                       {"signals", nlohmann::json::array()}};
    for (const SSignalRow &row : listing.rows) {
        nlohmann::ordered_json signal = {{"signal", row.signal->path},
                                         {"type", row.signal->type.GetTypeIdentifier()},
                                         {"description", row.signal->type.GetTypeInfoString()}};
        if (listing.isNamesOnly) {
            document["signals"].push_back(std::move(signal));
            continue;
        }
        signal["changes"] = row.changes;
        signal["first_ticks"] = row.changes > 0 ? nlohmann::ordered_json(row.first) : nullptr;
        signal["last_ticks"] = row.changes > 0 ? nlohmann::ordered_json(row.last) : nullptr;
        document["signals"].push_back(std::move(signal));
    }
    out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

const std::map<std::string, void (*)(std::ostream &out, const SListing &listing)> Writers = {
    {"table", WriteTable}, {"csv", WriteCsv}, {"json", WriteJson}};

// Columns and variables have no times.
void RefuseStretch(const SSignalsOptions &options, const tesk::SNameList &list)
{
    const std::string why =
        std::string("a ") + list.noun + " has no times of its own; they are given to waveform files";
    if (!options.from.empty())
        RefuseOption("--from", options.from, why);
    if (!options.until.empty())
        RefuseOption("--until", options.until, why);
}

int ListSignals(const SSignalsOptions &options)
{
    const std::string format = !options.format.empty() ? options.format : IsTerminal() ? "table" : "csv";
    if (const std::optional<tesk::SNameList> list = tesk::ListNames(tesk::ReadablePath(options.file))) {
        RefuseStretch(options, *list);
        const tesk::SNameList selected = tesk::Select(*list, options.file, options.globs);
        WriteOutput(options.output, [&](std::ostream &out) { WriteNames(out, selected, options.file, format); });
        return 0;
    }
    std::unique_ptr<IWaveformFile> whole = OpenWaveFile(options.file);
    tesk::SSelection selection{options.globs, {}, {}};
    tesk::ReadStretch(options.from, options.until, whole->GetResolution(), selection);
    const std::unique_ptr<IWaveformFile> file = tesk::Select(std::move(whole), options.file, selection);
    const SListing listing{options.file, file->GetResolution(), file->GetEndTime(),
                           ListRows(*file, options.isNamesOnly), options.isNamesOnly};
    WriteOutput(options.output, [&](std::ostream &out) { Writers.at(format)(out, listing); });
    return 0;
}

}  // namespace

void AddSignalsCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add(
        "signals", "List the signals of a waveform file, the columns of a table or the variables of a MAT-file");
    const auto options = std::make_shared<SSignalsOptions>();
    command.Argument("file", options->file, "The file; its contents tell what it is. - is standard input");
    command.Arguments("glob", options->globs, "Names to list, such as \"tb.*\"; * crosses dots (default: all)");
    command.Flag("--names", options->isNamesOnly, "Names and types only; reads no events where the file allows it");
    command.Option("--from", options->from, "TIME", "Count the changes from there on");
    command.Option("--until", options->until, "TIME", "Count the changes up to there");
    command.Choice("--format", options->format, {"table", "csv", "json"},
                   "Default: table on a terminal, csv elsewhere");
    command.Option("-o,--output", options->output, "FILE", "Write to a file, whole or not at all");
    command.Footer(
        "Of a text table (.txt, .csv, .tsv) the columns are listed, of a MAT-file the variables with class and size.\n"
        "A signal has one change for each time at which the file gives it, or an element of it, a value.\n"
        "Times are in the unit of the file. The names are those that a formula takes:\n"
        "  tesk signals waves.vcd\n"
        "  tesk play \"/custom waves.vcd,tb.clk\"\n"
        "Example: tesk signals waves.vcd --format table");
    command.Action([options] { return ListSignals(*options); });
}
