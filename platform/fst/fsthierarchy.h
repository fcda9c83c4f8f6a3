// The scopes and variables of an FST file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fst/fstlayout.h"
#include "platform/fst/fstname.h"

namespace NTARN {

/// What the file keeps values of. Variables that are the same signal share one.
struct SFstStore {
    enum class EKind : std::uint8_t { Bits, Port, Real, Text };

    EKind kind;
    std::uint32_t size;      ///< bytes in a frame: of a port more than it has bits
    std::uint64_t position;  ///< in a frame

    /// Elements; 0 for text.
    std::uint32_t Width() const;
};

struct SFstVariable {
    SFstName name;
    int scope;            ///< -1 for none
    std::uint32_t store;  ///< counted from 0
};

class CFstHierarchy {
public:
    /// @param mayEndEarly  whether what stands behind the last whole entry is passed over
    /// @throw XFstDamage
    CFstHierarchy(CFstBuffer bytes, bool mayEndEarly);
    CFstHierarchy(CFstHierarchy &&) = default;

    const std::vector<SFstStore> &Stores() const { return m_stores; }
    /// Those whose values can be told: the ones of text are counted only.
    const std::vector<SFstVariable> &Variables() const { return m_variables; }
    std::size_t TextCount() const { return m_textCount; }

    /// The name of a variable behind those of its scopes.
    std::string Path(const SFstVariable &variable, char separator) const;

private:
    struct SScope {
        std::string_view name;
        int parent;
        std::size_t pathSize;  // with a separator behind each name
    };

    void ReadEntry(CFstBytes &bytes);
    void OpenScope(CFstBytes &bytes);
    void CloseScope();
    void AddVariable(std::uint8_t type, CFstBytes &bytes);
    std::uint32_t AddStore(std::uint8_t type, std::uint32_t length);

    CFstBuffer m_bytes;  // where the names stand
    std::vector<SScope> m_scopes;
    int m_scope = -1;  // the open one
    std::vector<SFstStore> m_stores;
    std::vector<SFstVariable> m_variables;
    std::size_t m_textCount = 0;
};

/// The bytes of a hierarchy block, unpacked. @throw XFstDamage
CFstBuffer ReadFstHierarchy(CFstFile &file, const SFstBlock &block);

/// Compares what a hierarchy says of its stores with the geometry block. @throw XFstDamage if they differ
void CheckFstGeometry(CFstFile &file, const SFstBlock &block, const std::vector<SFstStore> &stores);

}  // namespace NTARN
