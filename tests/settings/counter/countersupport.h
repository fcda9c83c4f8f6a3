// What the tests of counters share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/support.h"
#include "platform/log.h"
#include "settings/counter.h"

struct SCounter {
    int type = 1;
    bool up = true;
    std::string start = "0";
    std::string increment = "1";
    std::string radix = "2";
    bool reverse = false;
    std::string period = "10ns";

    std::string Formula() const
    {
        return "\\counter\\TYPE\\" + std::to_string(type) + "\\DIR\\" + (up ? "1" : "2") + "\\RADIX\\" + radix +
               "\\START\\" + start + "\\INC\\" + increment + "\\PERIOD\\" + period + "\\REV\\" + (reverse ? "1" : "0");
    }
};

inline std::vector<std::string> CounterWires(const SCounter &counter, int length, long long resolution = 1000)
{
    std::vector<SimpleString::CStr> wires;
    EXPECT_TRUE(CCounterFormulaParser::Run(counter.Formula().c_str(), wires, length, resolution));
    return std::vector<std::string>(wires.begin(), wires.end());
}

inline std::vector<StimulusPtr> Attach(const std::vector<std::string> &wires, long long startTime = 0)
{
    std::vector<StimulusPtr> stimuli;
    for (const std::string &wire : wires)
        stimuli.push_back(Create(wire, startTime));
    return stimuli;
}

inline std::string VectorAt(const std::vector<StimulusPtr> &wires, long long time)
{
    std::string bits;
    for (const StimulusPtr &wire : wires)
        bits += ValueAt(*wire, time).value_or("-");
    return bits;
}

// The first values of a vector.
inline std::vector<std::string> CounterValues(const SCounter &counter, int length, int count)
{
    const std::vector<StimulusPtr> wires = Attach(CounterWires(counter, length));
    std::vector<std::string> values;
    for (long long time = 0; count > 0; --count) {
        values.push_back(VectorAt(wires, time));
        time = wires[0]->GetNextEventTime(time);
    }
    return values;
}

// Collects the log while it lives.
class CLogCapture {
public:
    CLogCapture() { Q71log_SetSink(Take, this); }
    ~CLogCapture() { Q71log_SetSink(nullptr, nullptr); }
    CLogCapture(const CLogCapture &) = delete;
    CLogCapture &operator=(const CLogCapture &) = delete;

    std::vector<std::string> lines;

private:
    static void Take(void *context, int level, const char *category, const char *text)
    {
        static_cast<CLogCapture *>(context)->lines.push_back(std::to_string(level) + " " + category + " " + text);
    }
};
