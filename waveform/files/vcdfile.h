// VCD files.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "waveform/files/waveformfile.h"
#include "waveform/wavestore.h"

namespace tesk {

class CVcdFile final : public IWaveformFile {
public:
    using Reader = WaveStore;
    static Reader *OpenReader(const char *fileName) { return ImportVcdFile(fileName); }

    /// @param store  must outlive the object
    explicit CVcdFile(WaveStore &store) : m_store(store) {}
    explicit CVcdFile(std::unique_ptr<WaveStore> store);

    long long GetResolution() override { return m_store.GetResolution(); }
    long long GetEndTime() override { return m_store.GetEndTime(); }
    std::optional<int> FindSignal(const char *name) override;
    long MakeSignal(int handle, bool whole, ISignal **signal) override;
    const std::vector<SFileSignal> &GetSignals() override;
    long long IdentifyEvents(long long element) override { return m_store.GetOriginal(element); }
    std::unique_ptr<IElementWalk> Walk(long long element) override;
    std::unique_ptr<IElementsWalk> WalkTogether(long long first, std::size_t count, std::size_t all) override;

private:
    std::unique_ptr<WaveStore> m_owned;
    WaveStore &m_store;
    std::optional<std::vector<SFileSignal>> m_signals;
};

}  // namespace tesk
