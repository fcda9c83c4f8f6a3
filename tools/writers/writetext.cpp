// The formats table, CSV and JSON.
#include "tools/writers/writers.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include <map>

#include "platform/kestrin.h"
#include "tools/output.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace {

// At a time the change of each trace, or null where it has none.
using CRows = std::map<long long, std::vector<const SChange *>>;

CRows RowsByTime(const SWaveform &waveform)
{
    CRows rows;
    for (std::size_t i = 0; i < waveform.traces.size(); ++i) {
        for (const SChange &change : waveform.traces[i].changes) {
            auto &row = rows[change.ticks];
            row.resize(waveform.traces.size());
            row[i] = &change;
        }
    }
    return rows;
}

std::string ColumnName(const STrace &trace)
{
    return trace.FullName().empty() ? "value" : trace.FullName();
}

// Several traces: a column each, the last value standing until the next.
std::vector<std::string> FillDown(const std::vector<const SChange *> &row, std::vector<std::string> previous)
{
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (row[i] != nullptr)
            previous[i] = row[i]->value.value_or("");
    }
    return previous;
}

nlohmann::ordered_json ChangesJson(const STrace &trace, long long resolution)
{
    auto changes = nlohmann::ordered_json::array();
    for (const SChange &change : trace.changes) {
        nlohmann::ordered_json value;
        if (change.value)
            value = *change.value;
        changes.push_back(nlohmann::ordered_json{
            {"ticks", change.ticks}, {"time", TickText(change.ticks, resolution)}, {"value", value}});
    }
    return changes;
}

nlohmann::ordered_json SignalJson(const STrace &trace, long long resolution)
{
    nlohmann::ordered_json signal = {{"name", trace.NameInFile()}, {"type", nullptr}};
    if (!trace.type.empty())
        signal["type"] = Kestrin::KTypeInfo(trace.type.c_str()).GetTypeIdentifier();
    signal["changes"] = ChangesJson(trace, resolution);
    return signal;
}

}  // namespace

CCsvRows::CCsvRows(std::ostream &out, long long resolution, const std::string &name)
    : m_out(out), m_resolution(resolution), m_header("ticks,time," + CsvField(name.empty() ? "value" : name) + "\n")
{}

void CCsvRows::Write(const STrace &part)
{
    m_out << m_header;
    m_header.clear();
    for (const SChange &change : part.changes)
        m_out << change.ticks << ',' << TickText(change.ticks, m_resolution) << ','
              << CsvField(change.value.value_or("")) << '\n';
}

void WriteCsv(std::ostream &out, const SWaveform &waveform)
{
    out << "ticks,time";
    for (const STrace &trace : waveform.traces)
        out << ',' << CsvField(ColumnName(trace));
    out << '\n';
    std::vector<std::string> values(waveform.traces.size());
    for (const auto &[ticks, row] : RowsByTime(waveform)) {
        values = FillDown(row, std::move(values));
        out << ticks << ',' << TickText(ticks, waveform.resolution);
        for (const std::string &value : values)
            out << ',' << CsvField(value);
        out << '\n';
    }
}

void WriteTable(std::ostream &out, const SWaveform &waveform)
{
    std::vector<std::vector<std::string>> lines = {{"time"}};
    for (const STrace &trace : waveform.traces)
        lines.front().push_back(ColumnName(trace));
    std::vector<std::string> values(waveform.traces.size());
    for (const auto &[ticks, row] : RowsByTime(waveform)) {
        values = FillDown(row, std::move(values));
        lines.push_back({TickText(ticks, waveform.resolution)});
        for (const std::string &value : values)
            lines.back().push_back(value.empty() ? "(none)" : value);
    }
    WriteColumns(out, lines, 0);
}

void WriteJson(std::ostream &out, const SWaveform &waveform)
{
    nlohmann::ordered_json document = {{"formula", waveform.formula},
                                       {"resolution", TickText(1, waveform.resolution)},
                                       {"resolution_fs", waveform.resolution},
                                       {"signals", nlohmann::ordered_json::array()}};
    for (const STrace &trace : waveform.traces)
        document["signals"].push_back(SignalJson(trace, waveform.resolution));
    out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}
