// Event-stream files.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/kestrin.h"
#include "platform/morvel.h"
#include "waveform/files/fileuse.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

class CStreamFile final : public IWaveformFile {
public:
    /// Both sides of a file: its signals, and their events.
    struct Reader {
        Morvel::StreamReadPtr signals;
        Morvel::RawStreamReadPtr events;
    };
    static Reader *OpenReader(const char *fileName);

    explicit CStreamFile(std::unique_ptr<Reader> reader);

    long long GetResolution() override { return m_reader->events->GetResolution(); }
    long long GetEndTime() override { return m_reader->events->GetEndTime(); }
    std::optional<int> FindSignal(const char *name) override;
    long MakeSignal(int handle, bool whole, ISignal **signal) override;
    const std::vector<SFileSignal> &GetSignals() override;
    long long IdentifyEvents(long long element) override;
    std::unique_ptr<IElementWalk> Walk(long long element) override;
    std::unique_ptr<IChangeWalk> WalkChanges(const std::vector<SFileSignal> &signals) override;
    std::optional<std::vector<SChangeCount>> CountChanges(const std::vector<SFileSignal> &signals,
                                                          const SStretch &stretch, const FProgress &progress) override;

    /// The events of a signal. They belong to the file; null if it has none or they cannot be read.
    const Morvel::KEventsStore *GetEvents(int handle) { return m_reader->events->GetEventsStore(handle); }

private:
    void AddSignals(const std::string &parentPath, int handle);
    const Kestrin::KTypeInfo &TypeOf(const char *text);

    std::unique_ptr<Reader> m_reader;
    IChangeSource *m_changes;  // the side of the events; null if it cannot
    std::optional<std::vector<SFileSignal>> m_signals;
    std::unordered_map<const char *, Kestrin::KTypeInfo> m_types;  // by the reader's texts, one for each type
};

/// The use of an event stream. It is closed again in any case: a stimulus keeps a copy of the events.
class CStreamUse final : public IFileUse {
public:
    IWaveformFile *Find(const SimpleString::CStr &fileName) override;
    IWaveformFile *Use(const SimpleString::CStr &fileName) override { return Find(fileName); }
    void KeepOpen() override {}
    bool KeepSignal(int handle) override;

    /// What was kept. The caller owns it.
    std::unique_ptr<Morvel::KEventsStore> TakeEvents() { return std::move(m_kept); }

private:
    std::unique_ptr<CStreamFile> m_file;
    std::unique_ptr<Morvel::KEventsStore> m_kept;
};

}  // namespace tesk
