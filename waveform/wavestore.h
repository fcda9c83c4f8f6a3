// A VCD file in memory: the store that the importer fills and that VCD stimuli read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/kestrin.h"
#include "platform/tarnutil.h"

namespace tesk {

class CEventRun;
class CPendingEvents;
class CSettling;
class CWordRun;

/// A signal of a store, which owns name and type.
struct SStoredSignal {
    const char *name;  ///< full name
    const Kestrin::KTypeInfo *type;
    long long firstHandle;  ///< of its scalar elements, left bound first; 0 if it has none
    long long lastHandle;
};

/// Where a walk over the events of an element stands; at first in front of them all. Only the store knows its meaning.
struct SEventPlace {
    std::size_t m_byte = 0;
    long long m_time = 0;
};

}  // namespace tesk

/// Holds the signals of one file and the events of their scalar elements. A handle names one element; handles count
/// from 1. What a writer gives beside the rules of the interface is taken as far as it makes sense: see each operation.
///
/// Once it is filled, threads may look things up at the same time, but for the look-ups that lend an event.
class TESK_API WaveStore : public NTARN::IDatabaseStreamWriter, public NTARN::IWordEvents {
public:
    WaveStore();
    WaveStore(const WaveStore &) = delete;
    WaveStore &operator=(const WaveStore &) = delete;

    void open() override {}
    void setOption(std::intptr_t) override {}
    void beginHeader() override {}
    void endHeader() override {}
    void beginSignals() override {}
    void endSignals() override {}
    void beginEvents() override {}
    void endEvents() override;
    bool acceptsData(std::intptr_t) override { return true; }
    /// A null name counts as "", a null type as one of kind 0.
    void addSignal(const char *name, const char *typeInfo, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t,
                   std::intptr_t) override;
    /// A handle below 1 is ignored.
    void addHandle(const long long *handle, std::intptr_t) override;
    /// @return 0
    int endSignal() override;
    /// An event for a handle that was not added is ignored. One that is earlier than the last of its handle is stored
    /// with that one's time, so that times do not fall; no look-up can tell the difference.
    void addEvent(const long long *handle, const WaveEvent *event) override;
    void setEndTime(const long long *time) override;
    void setResolution(const long long *resolution) override;
    void setFlag(bool flag) override;
    ~WaveStore() override;
    void *getInterface() override { return nullptr; }
    bool isCancelled() override { return false; }
    void setUserData(std::intptr_t) override {}

    /// Ignored unless both handles were added.
    void shareEvents(const long long *handle, const long long *original) override;
    /// A word of which a handle was not added, or stands in another word, has no events.
    void addWord(const long long *last, std::intptr_t count) override;
    /// Like events, words do not go back in time. The events of an element that shares those of another are ignored.
    void addWordEvents(std::size_t word, const long long *time, const WaveWord *before, const WaveWord *after) override;

    /// Finds a signal by its full name in any letter case, or an element of an array signal, "name[3]". Deliberate: an
    /// index of a "downto" range counts `left - index + right` elements from the first handle, which names another
    /// element, or none, where `right` is not 0; what follows the "]" is not looked at.
    /// @return its first handle; 0 if there is none
    long long FindSignal(const char *name) const;
    /// The type of the signal to which a handle belongs; with `whole` false that of the element.
    /// @return owned by the store; null for a handle beyond the last
    const Kestrin::KTypeInfo *GetSignalType(long long handle, bool whole) const;

    /// Number of signals.
    std::size_t GetSignalCount() const;
    /// A signal by its number, in the order of the file. @param index  below `GetSignalCount()`
    tesk::SStoredSignal GetSignal(std::size_t index) const;

    /// The handle whose events count as those of `handle`: itself, or the one that it shares them with.
    /// @return 0 for a handle that was not added
    long long GetOriginal(long long handle) const;
    /// Whether an element has events at all.
    bool HasEvents(long long handle) const;
    /// The last event not later than `time`, by binary search.
    /// @return null if there is none; else lives until the next call of this operation
    const WaveEvent *FindLast(long long handle, long long time) const;
    /// The first event later than `time`, by binary search.
    /// @return null if there is none; else lives until the next call of this operation
    const WaveEvent *FindNext(long long handle, long long time) const;
    /// The same two, with a copy of the event. @return false, with `event` untouched or anything, if there is none
    bool FindLast(long long handle, long long time, WaveEvent &event) const;
    bool FindNext(long long handle, long long time, WaveEvent &event) const;
    /// Copies events in their order, from where `place` stands, as many as there is room for, and moves it behind them.
    /// So all events of an element are walked over at a few nanoseconds each.
    /// @param place  a new one, or as the last call for this handle left it
    /// @param room  how many `events` can take
    /// @return how many; 0 at the end
    std::size_t ReadEvents(long long handle, tesk::SEventPlace &place, WaveEvent *events, std::size_t room) const;

    /// Femtoseconds per file tick.
    long long GetResolution() const { return m_resolution; }
    /// The last time of the file, in file ticks.
    long long GetEndTime() const { return m_endTime; }

private:
    struct WaveSignal;

    TESK_LOCAL std::size_t FindRun(long long handle) const;
    TESK_LOCAL const tesk::CEventRun *FindSettled(long long handle) const;
    TESK_LOCAL bool CanShareWord(long long last, std::intptr_t count) const;
    TESK_LOCAL void Settle() const;
    TESK_LOCAL void SettleWord(std::uint32_t word) const;
    TESK_LOCAL void SettleWordOnce(std::uint32_t word) const;

    std::vector<WaveSignal> m_signals;                // in the order of their definition
    mutable std::vector<tesk::CEventRun> m_events;    // of handle h at h - 1
    mutable std::vector<tesk::CWordRun> m_words;      // what is not in m_events yet: the first look-up has it stored
    std::unique_ptr<tesk::CSettling> m_settling;      // of the words, once all events are there; null until then
    std::unique_ptr<tesk::CPendingEvents> m_pending;  // not in m_events yet: the first look-up has them stored
    std::unordered_map<std::string, Kestrin::KTypeInfo> m_types;  // of the signals, by their texts
    mutable WaveEvent m_last;                                     // what FindLast gave
    mutable WaveEvent m_next;                                     // what FindNext gave
    long long m_resolution = 1;
    long long m_endTime = 0;
    long long m_firstHandle = 0;  // of the signal being defined; 0 while none
    long long m_lastHandle = 0;
    bool m_flag = false;
};

/// Imports a VCD file. @return a filled store that the caller owns; null, with a message in the log, on failure
TESK_API WaveStore *ImportVcdFile(const char *path);
