// The import of a text table once more, slow and plain: one byte at a time, one step behind the other.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "core/basedliteral.h"
#include "core/stimulus.h"
#include "waveform/samplecolumn.h"

struct STableOptions {
    bool inRows = false;
    bool relative = false;
    std::string signal;
    std::string times;  // empty for no "-time_points"
    double interval = 1000;
    long long start = 0;
    long long end = 0x7FFFFFFFFFFFFFFF;
    long long startTime = 0;
    int width = 1;
    int radix = -2;
    bool isReal = false;
    bool isInteger = false;
};

class CTableModel {
public:
    struct SEvent {
        long long time;
        std::string value;
    };

    CTableModel(const std::string &bytes, const STableOptions &options) : m_options(options)
    {
        m_good = options.inRows ? ReadRows(bytes) : ReadColumns(bytes);
        if (m_good)
            m_good = Finish();
    }

    bool IsGood() const { return m_good; }
    const std::vector<std::string> &Messages() const { return m_messages; }

    std::vector<std::string> Samples() const
    {
        std::vector<std::string> samples;
        for (const SEvent &event : m_events)
            samples.push_back(std::to_string(event.time) + ":" + event.value);
        return samples;
    }

private:
    static bool IsSeparator(char c) { return c == ' ' || c == ',' || c == '\t' || c == ';'; }
    static bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }

    // All lines with their tokens; what stands behind the last line end is a line too.
    static std::vector<std::vector<std::string>> Lines(const std::string &bytes)
    {
        std::vector<std::vector<std::string>> lines(1);
        std::string token;
        const auto endToken = [&] {
            if (!token.empty())
                lines.back().push_back(token);
            token.clear();
        };
        for (const char c : bytes) {
            if (IsLineEnd(c)) {
                endToken();
                lines.emplace_back();
            } else if (IsSeparator(c)) {
                endToken();
            } else {
                token += c;
            }
        }
        endToken();
        return lines;
    }

    bool Fail(const std::string &text)
    {
        m_messages.push_back("1 KERNEL " + text + " file `t.txt'.");
        return false;
    }
    bool NoSignal() { return Fail("Signal `" + m_options.signal + "' not found in"); }
    bool NoTimes() { return Fail("Time points `" + m_options.signal + "' not found in"); }

    std::string Value(const std::string &token) const
    {
        char text[64];
        if (m_options.isReal) {
            double value = 0;
            std::sscanf(token.c_str(), "%lf", &value);
            std::snprintf(text, sizeof text, "%g", value);
            return text;
        }
        if (m_options.radix > 0 && token[0] == '-')
            return "null";
        if (m_options.isInteger)
            return token;
        SimpleString::CStr bits;
        const unsigned radix = static_cast<unsigned>(std::abs(m_options.radix));
        return ConvertBasedValue(token.c_str(), radix, m_options.width, bits, false) ? std::string(bits) : "null";
    }

    void ReadTime(const std::string &token)
    {
        const double number = static_cast<double>(std::strtoll(token.c_str(), nullptr, 10));
        const long long ticks = static_cast<long long>(number * m_options.interval / static_cast<double>(g_simRes));
        m_time = m_options.relative ? m_time + ticks : ticks;
    }

    long long StepTime(std::size_t event) const
    {
        return static_cast<long long>(static_cast<double>(event) * m_options.interval / static_cast<double>(g_simRes) +
                                      static_cast<double>(m_options.startTime));
    }

    bool ReadColumns(const std::string &bytes)
    {
        const auto lines = Lines(bytes);
        std::size_t valueColumn = 0, timeColumn = 0;
        for (std::size_t i = 0; i < lines[0].size(); ++i) {
            if (lines[0][i] == m_options.signal)
                valueColumn = i + 1;
            else if (!m_options.times.empty() && lines[0][i] == m_options.times)
                timeColumn = i + 1;
        }
        if (valueColumn == 0)
            return NoSignal();
        if (!m_options.times.empty() && timeColumn == 0)
            return NoTimes();
        m_time = m_options.startTime;
        for (std::size_t line = 1; line < lines.size(); ++line) {
            std::string value;
            for (std::size_t i = 1; i <= lines[line].size(); ++i) {
                const std::string &token = lines[line][i - 1];
                if (i == valueColumn) {
                    value = Value(token);
                    if (timeColumn == 0)
                        m_events.push_back({StepTime(m_events.size()), value});
                    else if (timeColumn < valueColumn)
                        m_events.push_back({m_time, value});
                }
                if (i == timeColumn) {
                    ReadTime(token);
                    if (valueColumn < timeColumn)
                        m_events.push_back({m_time, value});
                }
            }
            const bool hasEnd = line + 1 < lines.size();
            if (hasEnd && !lines[line].empty() && lines[line].size() != lines[0].size())
                return Fail("Improper columns number in row " + std::to_string(line + 1) + " of");
        }
        return true;
    }

    bool ReadRows(const std::string &bytes)
    {
        std::vector<std::string> values;
        std::vector<long long> times;
        m_time = m_options.startTime;
        for (const auto &line : Lines(bytes)) {
            for (std::size_t i = 1; i < line.size(); ++i) {
                if (line[0] == m_options.signal) {
                    values.push_back(Value(line[i]));
                } else if (!m_options.times.empty() && line[0] == m_options.times) {
                    ReadTime(line[i]);
                    times.push_back(m_time);
                }
            }
        }
        if (values.empty())
            return NoSignal();
        if (!m_options.times.empty() && times.empty())
            return NoTimes();
        if (times.empty())
            for (std::size_t i = 0; i < values.size(); ++i)
                times.push_back(StepTime(i));
        if (times.size() != values.size())
            m_messages.push_back("2 KERNEL The number of time points differs from the number of signal `" +
                                 m_options.signal + "' values in file `t.txt'.");
        for (std::size_t i = 0; i < std::min(times.size(), values.size()); ++i)
            m_events.push_back({times[i], values[i]});
        return true;
    }

    void WalkTo(long long time)
    {
        while (m_events.size() > 1 && m_events[1].time <= time)
            m_events.erase(m_events.begin());
        if (!m_events.empty())
            m_events[0].time = time;
    }

    bool Finish()
    {
        if (m_options.start > 0) {
            WalkTo(m_options.start);
            for (std::size_t i = 0; i < m_events.size(); ++i) {
                if (m_events[i].time > m_options.end) {
                    m_events.resize(i);
                    break;
                }
                m_events[i].time += m_options.startTime - m_options.start;
            }
        } else if (m_options.startTime != 0 && !m_options.relative && !m_events.empty() &&
                   m_events[0].time < m_options.startTime) {
            WalkTo(m_options.startTime);
        }
        for (std::size_t i = 1; i < m_events.size();) {
            if (m_events[i].time < m_events[i - 1].time)
                return Fail("Events for signal `" + m_options.signal + "' in improper order in");
            if (m_events[i].time == m_events[i - 1].time)
                m_events.erase(m_events.begin() + static_cast<std::ptrdiff_t>(i - 1));
            else
                ++i;
        }
        return !m_events.empty() || Fail("There are no events for signal `" + m_options.signal + "' in");
    }

    STableOptions m_options;
    std::vector<SEvent> m_events;
    std::vector<std::string> m_messages;
    long long m_time = 0;
    bool m_good = false;
};
