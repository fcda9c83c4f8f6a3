// tesk signals: what is in a waveform file.
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "core/fileformulaargs.h"
#include "tools/commands/commands.h"
#include "tools/examine/tableexamination.h"
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

// Whether a file is a text table by its name, and nothing else by its contents.
bool IsTable(const std::string &path)
{
    constexpr std::array Endings = {".txt", ".csv", ".tsv"};
    std::error_code ignored;
    if (std::ranges::find(Endings, std::filesystem::path(path).extension()) == Endings.end() ||
        !std::filesystem::is_regular_file(path, ignored))
        return false;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(64, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return !tesk::KindOfContents(bytes);
}

// The columns of a text table, which a formula plays by their names.
int ListColumns(const SSignalsOptions &options, const std::string &format)
{
    CFileFormulaArgs args;
    args.m_file = options.file.c_str();
    std::vector<std::string> columns = tesk::TableNames(args);
    if (columns.empty())
        throw CRefusal(OneLine(options.file) + ": has no line with names of columns");
    const auto isListed = [&](const std::string &column) {
        return options.globs.empty() || std::ranges::any_of(options.globs, [&](const std::string &glob) {
                   return tesk::IsLikeGlob(column, glob);
               });
    };
    std::erase_if(columns, [&](const std::string &column) { return !isListed(column); });
    if (columns.empty())
        throw CRefusal(OneLine(options.file) + ": no column has one of these names");
    WriteOutput(options.output, [&](std::ostream &out) {
        if (format == "json") {
            const nlohmann::ordered_json document = {{"file", options.file}, {"columns", columns}};
            out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
            return;
        }
        out << "column\n";
        for (const std::string &column : columns)
            out << (format == "csv" ? CsvField(column) : Printable(column)) << '\n';
    });
    return 0;
}

int ListSignals(const SSignalsOptions &options)
{
    const std::string format = !options.format.empty() ? options.format : IsTerminal() ? "table" : "csv";
    if (IsTable(options.file))
        return ListColumns(options, format);
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
    CCommand command = commandLine.Add("signals", "List the signals of a VCD, FST, GHW or event-stream file");
    const auto options = std::make_shared<SSignalsOptions>();
    command.Argument("file", options->file, "The file; its contents tell what it is. - is standard input");
    command.Arguments("glob", options->globs, "Names to list, such as \"tb.*\"; * crosses dots (default: all)");
    command.Flag("--names", options->isNamesOnly, "Names and types only; reads no events where the file allows it");
    command.Option("--from", options->from, "TIME", "Count the changes from there on");
    command.Option("--until", options->until, "TIME", "Count the changes up to there");
    command.Choice("--format", options->format, {"table", "csv", "json"},
                   "Default: table on a terminal, csv elsewhere");
    command.Option("-o,--output", options->output, "FILE", "Write to a file, whole or not at all");
    command.Footer("Of a text table (.txt, .csv, .tsv) the columns are listed.\n"
                   "A signal has one change for each time at which the file gives it, or an element of it, a value.\n"
                   "Times are in the unit of the file. The names are those that a formula takes:\n"
                   "  tesk signals waves.vcd\n"
                   "  tesk play \"/custom waves.vcd,tb.clk\"\n"
                   "Example: tesk signals waves.vcd --format table");
    command.Action([options] { return ListSignals(*options); });
}
