// One open GHW file, as the waveform database shows it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/ghw/ghwchanges.h"
#include "platform/ghw/ghwnodes.h"
#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "platform/types/direction.h"

namespace NTARN {

/// Whether a file begins as one that GHDL wrote. False for one that is not there or no regular file.
/// @throw XFileUnreadable, tesk::XByteFault
bool IsGhwFile(const std::string &path);

/// Times are femtoseconds. A record has its fields as children, under their names, and an array its elements, `[i]` or
/// `[i][j]`, left bounds first. Scalars have the events, all others none of their own.
class CGhwReader final : public IDatabaseReader, public tesk::IDirectionSource {
public:
    /// @throw XFileDoesNotExist, XFileCorrupted, XGhwDamage, tesk::XByteFault
    explicit CGhwReader(const std::string &path);
    CGhwReader(const CGhwReader &) = delete;

    long long GetEndTime() override { return m_changes.End(); }
    long long GetResolution() override { return 1; }
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

    tesk::ESignalDirection GetDirection(int handle) override;

private:
    // What stands in front of the changes, in the order in which it is read.
    struct SHead {
        explicit SHead(CGhwBytes &bytes);

        CGhwBudget budget;
        CGhwStrings strings;
        CGhwTypes types;
        CGhwHierarchy hierarchy;
    };

    const std::vector<SFileEvent> *Events(int handle);
    void WarnOfOpening() const;
    void WarnOfLoss();

    std::string m_path;
    CGhwBytes m_bytes;
    SHead m_head;
    CGhwNodes m_nodes;
    CGhwChanges m_changes;
    char m_separator;
    std::vector<int> m_roots;
    std::map<std::uint32_t, Kestrin::KTypeInfo> m_types;  // of whole signals
    bool m_hasWarned = false;                             // of changes that are lost
};

}  // namespace NTARN
