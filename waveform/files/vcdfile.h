// VCD files.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "waveform/files/vcdopening.h"
#include "waveform/files/waveformfile.h"
#include "waveform/wavestore.h"

namespace tesk {

class CVcdFile final : public IWaveformFile {
public:
    using Reader = WaveStore;
    static Reader *OpenReader(const char *fileName) { return ImportVcdFile(fileName); }
    /// Opens a file of which the values are read when they are wanted: all of them into a store where the events of an
    /// element are, else as they come, and for each walk anew. A pipe is read at once.
    /// @return null, with a line in the log, if it cannot be read
    static std::unique_ptr<CVcdFile> Open(const char *fileName);

    /// @param store  must outlive the object
    explicit CVcdFile(WaveStore &store) : m_store(&store) {}
    explicit CVcdFile(std::unique_ptr<WaveStore> store);
    CVcdFile(std::string path, std::unique_ptr<CVcdOpening> opening);

    long long GetResolution() override { return m_store->GetResolution(); }
    long long GetEndTime() override;
    std::optional<long long> FindEndTime() override;
    std::optional<int> FindSignal(const char *name) override;
    long MakeSignal(int handle, bool whole, ISignal **signal) override;
    const std::vector<SFileSignal> &GetSignals() override;
    long long IdentifyEvents(long long element) override { return m_store->GetOriginal(element); }
    std::unique_ptr<IElementWalk> Walk(long long element) override;
    std::unique_ptr<IElementsWalk> WalkTogether(long long first, std::size_t count, std::size_t all) override;
    std::unique_ptr<IChangeWalk> WalkChanges(const std::vector<SFileSignal> &signals) override;
    std::optional<std::vector<SChangeCount>> CountChanges(const std::vector<SFileSignal> &signals,
                                                          const SStretch &stretch, const FProgress &progress) override;
    long long EstimateEndTime() override;

private:
    bool CanReadOnly(const std::vector<SFileSignal> &signals);
    std::shared_ptr<CVcdOpening> OpenValues();
    bool HasAll();

    std::unique_ptr<WaveStore> m_owned;
    std::string m_path;
    std::shared_ptr<CVcdOpening> m_opening;  // until all events are in the store
    std::shared_ptr<CVcdOpening> m_reading;  // whose values were asked for last
    WaveStore *m_store;
    std::optional<std::vector<SFileSignal>> m_signals;
};

}  // namespace tesk
