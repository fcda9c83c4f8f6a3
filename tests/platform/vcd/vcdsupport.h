// VCD texts as files, and a writer that records what an import gives, for tests.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <bit>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

#include "platform/tarnutil.h"
#include "tests/logcatcher.h"

// A file that lives as long as the object.
class CTextFile {
public:
    explicit CTextFile(std::string_view text)
    {
        static int count = 0;
        m_name = testing::TempDir() + "tesk_" + std::to_string(getpid()) + "_" + std::to_string(++count) + ".vcd";
        std::ofstream(m_name, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    CTextFile(const CTextFile &) = delete;
    CTextFile &operator=(const CTextFile &) = delete;
    ~CTextFile() { std::remove(m_name.c_str()); }

    const std::string &Name() const { return m_name; }
    // With the file's name as "F".
    std::string Shorten(std::string text) const
    {
        for (std::size_t at = text.find(m_name); at != text.npos; at = text.find(m_name))
            text.replace(at, m_name.size(), "F");
        return text;
    }

private:
    std::string m_name;
};

// Keeps events as texts, "time=letter" or "time=number" for a real one.
class CRecorder : public NTARN::IDatabaseStreamWriter {
public:
    struct SSignal {
        std::string name;
        std::string type;
        std::vector<long long> handles;
    };

    std::vector<SSignal> signals;
    std::map<long long, std::string> events;
    std::string calls;  // without those for signals and events
    long long endTime = -1;
    long long resolution = -1;
    bool flag = false;
    bool accepts = true;
    bool cancelled = false;
    bool isInOrder = true;  // handles count up, and times do not fall

    void open() override { calls += "open "; }
    void setOption(std::intptr_t) override { calls += "setOption "; }
    void beginHeader() override { calls += "beginHeader "; }
    void endHeader() override { calls += "endHeader "; }
    void beginSignals() override { calls += "beginSignals "; }
    void endSignals() override { calls += "endSignals "; }
    void beginEvents() override { calls += "beginEvents "; }
    void endEvents() override { calls += "endEvents "; }
    bool acceptsData(std::intptr_t) override { return accepts; }
    void addSignal(const char *name, const char *type, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t,
                   std::intptr_t) override
    {
        signals.push_back({name, type, {}});
    }
    void addHandle(const long long *handle, std::intptr_t) override
    {
        isInOrder = isInOrder && *handle == ++m_handles;
        signals.back().handles.push_back(*handle);
    }
    int endSignal() override { return 0; }
    void addEvent(const long long *handle, const WaveEvent *event) override
    {
        isInOrder = isInOrder && event->m_time >= m_time && *handle >= 1 && *handle <= m_handles;
        m_time = event->m_time;
        std::string &text = events[*handle];
        text += (text.empty() ? "" : " ") + std::to_string(event->m_time) + "=";
        if (event->m_value < 9)
            text += "UX01ZWLH-"[event->m_value];
        else
            text += std::to_string(std::bit_cast<double>(event->m_value));
    }
    void setEndTime(const long long *time) override { endTime = *time, calls += "setEndTime "; }
    void setResolution(const long long *femtoseconds) override
    {
        resolution = *femtoseconds, calls += "setResolution ";
    }
    void setFlag(bool whole) override { flag = whole, calls += "setFlag "; }
    void *getInterface() override { return nullptr; }
    bool isCancelled() override { return cancelled; }
    void setUserData(std::intptr_t) override {}

    // The events of an element, "" for none.
    std::string Events(const std::string &name, std::size_t element = 0) const
    {
        for (const SSignal &signal : signals) {
            if (signal.name != name)
                continue;
            const auto found = events.find(signal.handles.at(element));
            return found != events.end() ? found->second : "";
        }
        return "no signal";
    }

    // The events of all elements of a signal, a line each.
    std::string AllEvents(const std::string &name, std::size_t elements) const
    {
        std::string text;
        for (std::size_t i = 0; i < elements; ++i)
            text += Events(name, i) + "\n";
        return text;
    }

private:
    long long m_handles = 0;
    long long m_time = 0;
};

struct SImport {
    CRecorder writer;
    std::string error;  // "" if none was raised
    std::vector<std::string> messages;

    explicit SImport(std::string_view text)
    {
        const CTextFile file(text);
        const CLogCatcher log;
        NTARN::NImport::KImport_VCD importer;
        importer.connectTarnWriter(&writer);
        importer.setVcdFileName(file.Name());
        try {
            importer.vcdImport();
        } catch (const std::runtime_error &raised) {
            error = file.Shorten(raised.what());
        }
        for (const std::string &message : log.Messages())
            messages.push_back(file.Shorten(message));
    }
    SImport(const SImport &) = delete;
    SImport &operator=(const SImport &) = delete;
};

// Variables "a" of code '!', one bit, "v" of code '"', bits 3 to 0, "r" of code '#', real.
inline const std::string VcdHead = "$timescale 1 ns $end\n$var wire 1 ! a $end\n$var reg 4 \" v [3:0] $end\n"
                                   "$var real 64 # r $end\n$enddefinitions $end\n";
