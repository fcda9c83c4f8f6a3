// The blocks of value changes of an FST file, read when they are asked for, and what of them cannot be read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/fst/fstblock.h"
#include "platform/fst/fsthierarchy.h"
#include "platform/fst/fstlimits.h"

namespace NTARN {

/// The value of a store before its first change.
struct SFstInitial {
    std::uint64_t time = 0;
    SFstSpan letters;  ///< empty if it has none
};

/// None of the operations raises more than std::bad_alloc: what cannot be read is left out and noted.
class CFstBlocks {
public:
    using BlockPtr = std::shared_ptr<const CFstBlock>;

    /// @param file, layout  outlive this object
    CFstBlocks(CFstFile &file, const SFstLayout &layout);

    std::size_t Count() const { return m_layout.changes.size(); }
    const SFstLayout &Layout() const { return m_layout; }
    const SFstLimits &Limits() const { return m_limits; }
    /// @return null if it cannot be read
    BlockPtr Block(std::size_t index);
    /// The same for who goes from block to block: only the one that was passed last is kept for that.
    BlockPtr Pass(std::size_t index);
    /// Unpacks the changes in a stretch of a block.
    /// @param left     bytes that may be unpacked of the store; those that are come off
    /// @param allLeft  the same of all that are read together
    /// @return false behind the last one that may be unpacked
    bool Unpack(std::size_t block, const SFstStretch &stretch, std::uint64_t &left, std::uint64_t &allLeft,
                CFstBuffer &chain);

    /// The letters of a store at the beginning of the first block; empty if it has none there.
    SFstSpan FrameLetters(const SFstStore &store);
    /// The value of a store that is told by these letters.
    /// @param chain  its changes in the first block; empty if it has none there
    SFstInitial Initial(const SFstStore &store, SFstSpan chain);

    void NoteDamage(std::size_t block);
    void NoteTooMuch(std::size_t block);
    /// The time of the first block that could not be read as a whole, in the file's own ticks.
    const std::optional<std::uint64_t> &FirstDamage() const { return m_firstDamage; }
    /// Why the system could not read a block, as an `errno`; 0 if it always could.
    int ReadError() const { return m_file.Error(); }
    /// Whether something is left out since there is more of it than a file of its size can have.
    bool IsTooMuch() const { return m_isTooMuch; }

private:
    BlockPtr ReadBlock(std::size_t index);
    const CFstBuffer &Frame();
    bool IsUntold(SFstSpan letters, const SFstStore &store) const;

    CFstFile &m_file;
    const SFstLayout &m_layout;
    SFstLimits m_limits;
    std::vector<BlockPtr> m_blocks;  // those that are kept
    BlockPtr m_passed;               // the last one that was read
    std::size_t m_passedIndex = 0;
    std::vector<bool> m_isUnreadable;  // of each block
    std::vector<bool> m_isCounted;     // of each block: its times are taken off those that there may be
    std::size_t m_memory = 0;          // of the blocks that are kept
    std::uint64_t m_timesLeft;
    std::optional<CFstBuffer> m_frame;  // the first block's
    std::optional<std::uint64_t> m_firstDamage;
    bool m_isTooMuch = false;
};

}  // namespace NTARN
