// One open FST file, as the waveform database shows it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/changes/changewalk.h"
#include "platform/fst/fsthierarchy.h"
#include "platform/fst/fstvalues.h"
#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "platform/types/direction.h"

namespace NTARN {

/// Handles: 1 and on for the variables, in the file's order; behind them the elements of each bus in a row. Only their
/// first ones are kept.
class CFstReader final : public IDatabaseReader, public tesk::IChangeSource, public tesk::IDirectionSource {
public:
    /// @throw XFileDoesNotExist, XFileCorrupted, XFstDamage, XFstNoRoom
    explicit CFstReader(const std::string &path);
    CFstReader(const CFstReader &) = delete;

    long long GetEndTime() override { return m_clock.Time(m_layout.End()); }
    long long GetResolution() override { return m_resolution; }
    const int *RootHandlesBegin() override { return m_roots.data(); }
    const int *RootHandlesEnd() override { return m_roots.data() + m_roots.size(); }
    HSignalRange GetChildRange(int handle) override;
    std::string GetName(int handle) override;
    const Kestrin::KTypeInfo &GetType(int handle) override;
    KEventIterator EventsFrom(int handle, long long time) override;
    KEventIterator EventsEnd(int handle) override;
    int GetMode(int) override { return 0; }
    std::string GetFullName(int handle, bool flag) override;
    long long GetSignalEndTime(int) override { return GetEndTime(); }

    long long IdentifyChanges(long long element) override;
    std::unique_ptr<tesk::IChangeWalk> WalkChanges(std::span<const tesk::SElements> signals) override;
    std::optional<std::vector<tesk::SChangeCount>> CountChanges(std::span<const tesk::SElements> signals,
                                                                const tesk::SStretch &stretch,
                                                                const tesk::FProgress &progress) override;

    tesk::ESignalDirection GetDirection(int handle) override;

private:
    // What a handle stands for: a variable, or one element of it.
    struct SPlace {
        const SFstVariable *variable;  // null for a handle that the file does not have
        int element;                   // from the left; -1 for the variable itself
    };

    // Where an event was found last: what is asked for next is mostly near.
    struct SRecentPlace {
        const SFileEvent *events = nullptr;
        std::size_t place = 0;
    };

    SPlace Find(int handle) const;
    std::uint32_t Width(const SFstVariable &variable) const { return m_stores[variable.store].Width(); }
    const Kestrin::KTypeInfo &BusType(const SFstName &name);
    std::pair<const SFileEvent *, std::size_t> Events(int handle);
    std::optional<std::vector<std::uint32_t>> StoresOf(std::span<const tesk::SElements> signals) const;
    void GiveHandles();
    void WarnOfOpening() const;
    void WarnOfDamage();
    void FailIfUnreadable() const;

    std::string m_path;
    CFstFile m_file;
    SFstLayout m_layout;
    CFstHierarchy m_hierarchy;
    const std::vector<SFstVariable> &m_variables;
    const std::vector<SFstStore> &m_stores;
    SFstClock m_clock;
    long long m_resolution;
    CFstBlocks m_blocks;
    CFstValues m_values;
    char m_separator;
    std::vector<int> m_roots;
    std::vector<int> m_children;  // of each variable the first element's handle; of one without, that of the next bus
    std::map<std::pair<int, int>, Kestrin::KTypeInfo> m_busTypes;  // by range
    SRecentPlace m_recent;
    bool m_hasWarned = false;  // of damage
};

}  // namespace NTARN
