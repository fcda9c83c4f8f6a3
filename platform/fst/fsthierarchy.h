// The scopes and variables of an FST file.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fst/fstlayout.h"
#include "platform/fst/fstlimits.h"
#include "platform/fst/fstname.h"

namespace NTARN {

/// What the file keeps values of. Variables that are the same signal share one.
struct SFstStore {
    enum class EKind : std::uint8_t { Bits, Port, Real, Text };

    EKind kind;
    std::uint32_t size;      ///< bytes in a frame: of a port more than it has bits; of text 0
    std::uint64_t position;  ///< in a frame

    /// Elements; 0 for text.
    std::uint32_t Width() const;
};

struct SFstVariable {
    std::uint32_t name;      ///< where it stands in the hierarchy
    int scope;               ///< -1 for none
    std::uint32_t store;     ///< counted from 0
    std::uint8_t direction;  ///< as the file has it
};

class CFstHierarchy {
public:
    /// @param mayEndEarly  whether what stands behind the last whole entry is passed over
    /// @throw XFstDamage
    CFstHierarchy(CFstBuffer bytes, bool mayEndEarly, const SFstLimits &limits);
    CFstHierarchy(CFstHierarchy &&) = default;

    const std::vector<SFstStore> &Stores() const { return m_stores; }
    /// Those whose values can be told: the ones of text, and those that are too wide, are counted only.
    const std::vector<SFstVariable> &Variables() const { return m_variables; }
    std::size_t TextCount() const { return m_textCount; }
    std::size_t WideCount() const { return m_wideCount; }

    /// A wider variable has too many elements for a signal.
    static constexpr std::uint32_t MostWidth = 1 << 24;

    SFstName Name(const SFstVariable &variable) const;
    /// The name of a variable behind those of its scopes, as a formula takes it.
    std::string Path(const SFstVariable &variable, char separator) const;

private:
    struct SScope {
        std::string_view name;
        int parent;
        std::uint32_t pathSize;  // with a separator behind each name
    };

    void ReadEntry(CFstBytes &bytes);
    void OpenScope(CFstBytes &bytes);
    void CloseScope();
    int AddScope(std::string_view name);
    void CountEntry();
    void CountPath(std::size_t nameSize, int scope);
    std::string_view Spelled(std::string_view scope);
    void AddVariable(std::uint8_t type, CFstBytes &bytes);
    std::uint32_t AddStore(std::uint8_t type, std::uint32_t length);

    SFstLimits m_limits;
    CFstBuffer m_bytes;                 // where the names stand
    std::deque<std::string> m_spelled;  // names of scopes that are spelled in another way than they stand there
    std::vector<SScope> m_scopes;       // those that have a name
    std::vector<int> m_open;            // the open ones; for one without a name its parent, -1 for none
    std::vector<SFstStore> m_stores;
    std::vector<SFstVariable> m_variables;
    std::uint64_t m_entries = 0;
    std::uint64_t m_elements = 0;
    std::uint64_t m_nameBytes = 0;
    std::size_t m_textCount = 0;
    std::size_t m_wideCount = 0;
};

/// The bytes of a hierarchy block, unpacked. @throw XFstDamage
CFstBuffer ReadFstHierarchy(CFstFile &file, const SFstBlock &block, const SFstLimits &limits);

/// Compares what a hierarchy says of its stores with the geometry block. @throw XFstDamage if they differ
void CheckFstGeometry(CFstFile &file, const SFstBlock &block, const std::vector<SFstStore> &stores);

}  // namespace NTARN
