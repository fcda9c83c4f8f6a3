// tesk signals: what is in a waveform file.
#include <cstddef>
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
#include "waveform/files/filewalk.h"

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

struct SSignalRow : tesk::SChangeCount {
    const SFileSignal *signal;
};

struct SListing {
    std::string name;
    IWaveformFile &file;
    long long resolution;
    std::vector<SSignalRow> rows;
    bool isNamesOnly;  // the changes have not been counted
};

std::vector<SSignalRow> ListRows(IWaveformFile &file, bool isNamesOnly)
{
    const std::vector<SFileSignal> &signals = file.GetSignals();
    std::vector<tesk::SChangeCount> counts(signals.size());
    if (!isNamesOnly) {
        tesk::CProgressLine progress("Counting");
        counts = CountChanges(file, signals, [&](long long done, long long all) { progress.Show(done, all); });
    }
    std::vector<SSignalRow> rows;
    for (std::size_t i = 0; i < signals.size(); ++i)
        rows.push_back({counts[i], &signals[i]});
    return rows;
}

std::string FirstTime(const SListing &listing, const SSignalRow &row)
{
    return row.count > 0 ? FileTimeText(row.first, listing.resolution) : "";
}

std::string LastTime(const SListing &listing, const SSignalRow &row)
{
    return row.count > 0 ? FileTimeText(row.last, listing.resolution) : "";
}

void WriteSignalsTable(std::ostream &out, const SListing &listing)
{
    std::vector<std::vector<std::string>> lines = {{"signal", "type", "changes", "first", "last"}};
    if (listing.isNamesOnly)
        lines.front().resize(2);
    for (const SSignalRow &row : listing.rows) {
        lines.push_back({Printable(row.signal->path), Printable(row.signal->type.GetTypeIdentifier()),
                         std::to_string(row.count), FirstTime(listing, row), LastTime(listing, row)});
        lines.back().resize(lines.front().size());
    }
    WriteColumns(out, lines, 2);
}

void WriteSignalsCsv(std::ostream &out, const SListing &listing)
{
    out << (listing.isNamesOnly ? "signal,type\n" : "signal,type,changes,first,last\n");
    for (const SSignalRow &row : listing.rows) {
        out << CsvField(row.signal->path) << ',' << CsvField(row.signal->type.GetTypeIdentifier());
        if (!listing.isNamesOnly)
            out << ',' << row.count << ',' << FirstTime(listing, row) << ',' << LastTime(listing, row);
        out << '\n';
    }
}

void WriteSignalsJson(std::ostream &out, const SListing &listing)
{
    nlohmann::ordered_json document = {{"file", listing.name},
                                       {"resolution_fs", listing.resolution},
                                       {"end_ticks", listing.file.GetEndTime()},
                                       {"signals", nlohmann::json::array()}};
    for (const SSignalRow &row : listing.rows) {
        nlohmann::ordered_json signal = {{"signal", row.signal->path},
                                         {"type", row.signal->type.GetTypeIdentifier()},
                                         {"description", row.signal->type.GetTypeInfoString()}};
        if (listing.isNamesOnly) {
            document["signals"].push_back(std::move(signal));
            continue;
        }
        signal["changes"] = row.count;
        signal["first_ticks"] = row.count > 0 ? nlohmann::ordered_json(row.first) : nullptr;
        signal["last_ticks"] = row.count > 0 ? nlohmann::ordered_json(row.last) : nullptr;
        document["signals"].push_back(std::move(signal));
    }
    out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

const std::map<std::string, void (*)(std::ostream &out, const SListing &listing)> Writers = {
    {"table", WriteSignalsTable}, {"csv", WriteSignalsCsv}, {"json", WriteSignalsJson}};

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
    const SListing listing{options.file, *file, file->GetResolution(), ListRows(*file, options.isNamesOnly),
                           options.isNamesOnly};
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
