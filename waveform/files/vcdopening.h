// A VCD file of which the declarations are read at first, and the values when somebody wants them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/tarnutil.h"
#include "waveform/wavestore.h"

namespace tesk {

/// Receives the events of a file whose declarations were read before.
class IVcdEvents {
public:
    virtual ~IVcdEvents() = default;
    virtual void Add(long long handle, const WaveEvent &event) = 0;
    virtual void AddWord(std::size_t word, long long time, const WaveWord &before, const WaveWord &after) = 0;
};

/// The elements of a word.
struct SVcdWord {
    long long last;  ///< handle of the last
    unsigned count;

    bool operator==(const SVcdWord &) const = default;
};

class CVcdOpening final : public NTARN::IDatabaseStreamWriter, public NTARN::IWordEvents, public NTARN::ISteppedEvents {
public:
    /// Reads the declarations. @throw std::runtime_error as `KImport_VCD::vcdImport`
    explicit CVcdOpening(const std::string &path);
    CVcdOpening(const CVcdOpening &) = delete;

    /// The signals. The events too if the importer brought them at once, or once they were read.
    WaveStore &Store() { return *m_store; }
    const std::vector<SVcdWord> &Words() const { return m_words; }
    /// Whether all events are in the store.
    bool IsStored() const { return m_isRead && m_events == nullptr; }
    /// Whether the values can be read, which is once.
    bool CanRead() const { return m_steps != nullptr && !m_isBegun; }
    /// Whether they have been read to their end, so that the time of that is known.
    bool IsRead() const { return m_isRead; }
    /// Whether another opening of the same file found the same declarations in front of the values.
    bool IsLike(CVcdOpening &other);

    /// Begins to read the values. @param events  lives until their end
    void Begin(IVcdEvents &events);
    /// Nobody listens any more.
    void End() { m_events = &m_nobody; }
    /// The time of the values that are read next, in file ticks.
    long long Time() const { return m_steps->GetTime(); }
    /// Reads the values of this time. @return false at the end. @throw std::runtime_error as `vcdImport`
    bool Step() { return m_steps->Step(); }
    long long BytesRead() const { return m_steps->GetBytesRead(); }
    long long FileSize() const { return m_steps->GetFileSize(); }
    /// Reads all values into the store.
    void ReadAll();
    /// Reads them for nobody, so that their end is known.
    void SkipAll();

    void open() override { m_store->open(); }
    void setOption(std::intptr_t option) override { m_store->setOption(option); }
    void beginHeader() override { m_store->beginHeader(); }
    void endHeader() override { m_store->endHeader(); }
    void beginSignals() override { m_store->beginSignals(); }
    void endSignals() override { m_store->endSignals(); }
    void beginEvents() override { m_store->beginEvents(); }
    void endEvents() override;
    bool acceptsData(std::intptr_t kind) override { return m_store->acceptsData(kind); }
    void addSignal(const char *name, const char *typeInfo, std::intptr_t mode, std::intptr_t language,
                   std::intptr_t flags, std::intptr_t parent, std::intptr_t reserved) override;
    void addHandle(const long long *handle, std::intptr_t kind) override { m_store->addHandle(handle, kind); }
    int endSignal() override { return m_store->endSignal(); }
    void addEvent(const long long *handle, const WaveEvent *event) override
    {
        m_events != nullptr ? m_events->Add(*handle, *event) : m_store->addEvent(handle, event);
    }
    void setEndTime(const long long *time) override { m_store->setEndTime(time); }
    void setResolution(const long long *resolution) override { m_store->setResolution(resolution); }
    void setFlag(bool flag) override { m_store->setFlag(flag); }
    void *getInterface() override { return nullptr; }
    bool isCancelled() override { return false; }
    void setUserData(std::intptr_t) override {}

    void shareEvents(const long long *handle, const long long *original) override
    {
        m_store->shareEvents(handle, original);
    }
    void addWord(const long long *last, std::intptr_t count) override;
    void addWordEvents(std::size_t word, const long long *time, const WaveWord *before, const WaveWord *after) override
    {
        m_events != nullptr ? m_events->AddWord(word, *time, *before, *after)
                            : m_store->addWordEvents(word, time, before, after);
    }

    void takeSteps(std::unique_ptr<NTARN::IValueSteps> steps) override { m_steps = std::move(steps); }

private:
    class CNobody final : public IVcdEvents {
    public:
        void Add(long long, const WaveEvent &) override {}
        void AddWord(std::size_t, long long, const WaveWord &, const WaveWord &) override {}
    };

    CNobody m_nobody;
    std::string m_path;
    std::unique_ptr<WaveStore> m_store;
    std::vector<SVcdWord> m_words;
    std::size_t m_declaredSignals = 0;  // in front of the values; so the next
    std::size_t m_declaredWords = 0;
    std::unique_ptr<NTARN::IValueSteps> m_steps;  // null if the importer brought all events at once
    IVcdEvents *m_events = nullptr;               // null for the store
    bool m_isBegun = false;
    bool m_hasWarned = false;
    bool m_isRead = false;
};

}  // namespace tesk
