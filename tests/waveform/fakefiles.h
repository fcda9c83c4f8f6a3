// Open waveform files made by hand, for tests of the stimuli that replay them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/support.h"
#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "signal/signaltools.h"
#include "waveform/files/filekinds.h"
#include "waveform/openfiles.h"
#include "waveform/wavestore.h"

using CFileEvents = std::vector<NTARN::SFileEvent>;

/// A signal as a database has it.
struct SFakeSignal {
    std::string name;
    std::string type = IntegerType;
    CFileEvents events = {};
    NTARN::HSignalRange children = {};
};

/// A database in memory. Signal number n has the handle n; the first `m_topLevel` signals are top-level ones.
class CFakeReader : public NTARN::IDatabaseReader {
public:
    CFakeReader(long long resolution, long long endTime, std::vector<SFakeSignal> signals, int topLevel = -1)
        : m_resolution(resolution), m_endTime(endTime), m_signals(std::move(signals))
    {
        for (const SFakeSignal &signal : m_signals)
            m_types.emplace_back(std::make_unique<Kestrin::KTypeInfo>(signal.type.c_str()));
        for (int i = 0; i < (topLevel < 0 ? static_cast<int>(m_signals.size()) : topLevel); ++i)
            m_roots.push_back(i);
    }
    ~CFakeReader() override { ++Ended(); }

    /// Number of readers that have gone.
    static int &Ended()
    {
        static int ended = 0;
        return ended;
    }
    /// Number of positions among events that were asked for.
    int Searches() const { return m_searches; }

    long long GetEndTime() override { return m_endTime; }
    long long GetResolution() override { return m_resolution; }
    const int *RootHandlesBegin() override { return m_roots.data(); }
    const int *RootHandlesEnd() override { return m_roots.data() + m_roots.size(); }
    NTARN::HSignalRange GetChildRange(int handle) override { return At(handle).children; }
    std::string GetName(int handle) override { return At(handle).name; }
    const Kestrin::KTypeInfo &GetType(int handle) override { return *m_types.at(static_cast<std::size_t>(handle)); }
    NTARN::KEventIterator EventsFrom(int handle, long long time) override
    {
        ++m_searches;
        const CFileEvents &events = At(handle).events;
        const auto first = std::ranges::lower_bound(events, time, {}, &NTARN::SFileEvent::time);
        return {events.data(), events.size(), static_cast<std::size_t>(first - events.begin())};
    }
    NTARN::KEventIterator EventsEnd(int handle) override
    {
        const CFileEvents &events = At(handle).events;
        return {events.data(), events.size(), events.size()};
    }
    int GetMode(int) override { return 0; }
    std::string GetFullName(int handle, bool) override { return At(handle).name; }
    long long GetSignalEndTime(int) override { return m_endTime; }

private:
    const SFakeSignal &At(int handle) const { return m_signals.at(static_cast<std::size_t>(handle)); }

    long long m_resolution;
    long long m_endTime;
    std::vector<SFakeSignal> m_signals;
    std::vector<std::unique_ptr<Kestrin::KTypeInfo>> m_types;
    std::vector<int> m_roots;
    int m_searches = 0;
};

/// A VCD file in memory. Handles count from 1 in the order of the signals' elements; a vector has as many as told.
struct SVcdFileSignal {
    std::string name;
    std::string type = IntegerType;
    std::vector<CFileEvents> elements = {{}};
};

inline WaveStore *NewStore(long long resolution, long long endTime, const std::vector<SVcdFileSignal> &signals)
{
    WaveStore *store = new WaveStore;
    long long handle = 0;
    for (const SVcdFileSignal &signal : signals) {
        store->addSignal(signal.name.c_str(), signal.type.c_str(), 0, 0, 0, 0, 0);
        for (const CFileEvents &events : signal.elements) {
            store->addHandle(&++handle, 0);
            for (const NTARN::SFileEvent &event : events) {
                const WaveEvent stored{event.time, std::uint64_t{event.extValue} << 32 | event.value, 0};
                store->addEvent(&handle, &stored);
            }
        }
        store->endSignal();
    }
    store->setResolution(&resolution);
    store->setEndTime(&endTime);
    return store;
}

/// Enters a file into the table of open files, as if a stimulus had opened it.
inline void Enter(const char *fileName, void *reader)
{
    g_OpenWaveformFiles[fileName] = {reader, 1};
}

/// Leaves no file open behind a test.
class WaveformFiles : public testing::Test {
protected:
    void TearDown() override { tesk::CloseOpenWaveformFiles(); }
};
