// What an FST file holds, and where.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/fst/fstfile.h"

namespace NTARN {

/// The kinds of block that are looked at.
enum class EFstBlock : std::uint8_t {
    Header = 0,
    Changes = 1,
    Geometry = 3,
    Hierarchy = 4,
    ChangesAlias = 5,
    HierarchyLz4 = 6,
    HierarchyLz4Twice = 7,
    ChangesAlias2 = 8,
    Unfinished = 255
};

/// One block: its kind, and where its contents lie, behind kind and length.
struct SFstBlock {
    EFstBlock kind;
    std::uint64_t position;
    std::uint64_t size;
};

/// A block of value changes, with the times that it spans in the file's own ticks.
struct SFstChangeBlock : SFstBlock {
    std::uint64_t begin;
    std::uint64_t end;
};

struct SFstHeader {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;     ///< mostly 0 if the writer was killed
    bool isBigEndian = false;  ///< how reals are written
    int scale = -9;            ///< a tick is 10^scale seconds
    long long timeZero = 0;    ///< ticks to add to every time
    std::uint64_t blocks = 0;  ///< of value changes
};

struct SFstLayout {
    SFstHeader header;
    std::vector<SFstChangeBlock> changes;
    std::optional<SFstBlock> geometry;
    std::optional<SFstBlock> hierarchy;
    bool isCut = false;  ///< the file ends inside a block, or before the blocks that its writer writes last

    /// The last time: of a file that is cut off that of its last whole block.
    std::uint64_t End() const;
    /// The first time.
    std::uint64_t Begin() const;
};

/// Goes through the blocks of a file.
/// @throw XFstDamage if the file does not begin with a whole header
SFstLayout ReadFstLayout(CFstFile &file);

}  // namespace NTARN
