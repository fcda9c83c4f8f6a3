// Waveform databases.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/tarn.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

class CDatabaseFile final : public IWaveformFile {
public:
    using Reader = NTARN::IDatabaseReader;
    static Reader *OpenReader(const char *fileName) { return Reader::create(fileName, false); }

    /// @param reader  must outlive the object
    explicit CDatabaseFile(Reader &reader);
    explicit CDatabaseFile(std::unique_ptr<Reader> reader);

    long long GetResolution() override { return m_reader.GetResolution(); }
    long long GetEndTime() override { return m_reader.GetEndTime(); }
    std::optional<int> FindSignal(const char *name) override;
    long MakeSignal(int handle, bool whole, ISignal **signal) override;
    const std::vector<SFileSignal> &GetSignals() override;
    long long IdentifyEvents(long long element) override;
    std::unique_ptr<IElementWalk> Walk(long long element) override;
    std::unique_ptr<IElementsWalk> WalkTogether(long long first, std::size_t count, std::size_t all) override;
    std::unique_ptr<IChangeWalk> WalkChanges(const std::vector<SFileSignal> &signals) override;
    std::optional<std::vector<SChangeCount>> CountChanges(const std::vector<SFileSignal> &signals,
                                                          const SStretch &stretch, const FProgress &progress) override;

private:
    ESignalDirection DirectionOf(int handle) const;
    void AddSignals(int handle, const std::string &path, int depth);

    std::unique_ptr<Reader> m_owned;
    Reader &m_reader;
    IChangeSource *m_changes;        // the same reader; null if it cannot
    IDirectionSource *m_directions;  // as well
    std::optional<std::vector<SFileSignal>> m_signals;
};

}  // namespace tesk
