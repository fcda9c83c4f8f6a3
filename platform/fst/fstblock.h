// One block of value changes: its times, and where the changes of each store stand.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/fst/fstlayout.h"
#include "platform/fst/fstunpack.h"

namespace NTARN {

/// The times of a block, in the file's own ticks; they do not fall. Held in 32 bits each where that is enough.
class CFstTimes {
public:
    CFstTimes() = default;
    /// @param bytes  `count` distances between times. @throw XFstDamage
    CFstTimes(CFstBytes bytes, std::uint64_t count);

    /// Some writers let the times of a block count from the last one of the block before. Moves such times to the
    /// begin of their block, if they then lie inside it.
    void MoveInto(std::uint64_t begin, std::uint64_t end);

    std::size_t Count() const { return m_near.empty() ? m_far.size() : m_near.size(); }
    std::uint64_t At(std::size_t index) const { return m_near.empty() ? m_far[index] : m_first + m_near[index]; }
    std::size_t Memory() const { return m_near.size() * sizeof m_near[0] + m_far.size() * sizeof m_far[0]; }

private:
    std::uint64_t m_first = 0;
    std::vector<std::uint32_t> m_near;  // distances from the first time
    std::vector<std::uint64_t> m_far;   // used instead where one is too long
};

/// A stretch of a block.
struct SFstStretch {
    std::uint64_t position;
    std::uint64_t size;
};

/// Which stretch holds the changes of which store.
class CFstPositions {
public:
    CFstPositions() = default;
    /// @param index    the block's table
    /// @param kind     the kind of block, which tells the form of the table
    /// @param chains   the stretch that all chains of changes take
    /// @throw XFstDamage
    CFstPositions(CFstBytes index, EFstBlock kind, SFstStretch chains);

    /// Of size 0 if the store has no changes.
    SFstStretch Find(std::uint32_t store) const;
    /// How many entries there are, and the store of each.
    std::size_t EntryCount() const { return m_entries.size(); }
    std::uint32_t StoreOf(std::size_t entry) const { return m_entries[entry].store; }
    /// Entries that share their changes have one chain; the chains are counted from 0.
    std::uint32_t ChainOf(std::size_t entry) const { return m_entries[entry].chain; }
    std::size_t ChainCount() const { return m_begins.size(); }
    SFstStretch StretchOf(std::size_t entry) const
    {
        const std::uint32_t chain = m_entries[entry].chain;
        return {m_chains.position + m_begins[chain], m_begins[chain + 1] - m_begins[chain]};
    }
    std::size_t Memory() const { return m_entries.size() * sizeof m_entries[0] + m_begins.size() * sizeof m_begins[0]; }

private:
    struct SEntry {
        std::uint32_t store;
        std::uint32_t chain;  // index into m_begins
    };

    void ReadEntry(CFstBytes &index);
    void ReadSignedEntry(CFstBytes &index);
    void AddChain(std::uint64_t distance);
    void AddAlias(std::uint64_t store);
    void Skip(std::uint64_t stores);
    void Add(std::uint64_t chain);

    std::vector<SEntry> m_entries;        // by store; none for a store without changes
    std::vector<std::uint64_t> m_begins;  // of the chains, in rising order; at last the end of all
    SFstStretch m_chains = {};
    std::uint64_t m_store = 0;  // the next one
    std::uint64_t m_alias = 0;  // the last one, counted from 1
};

class CFstBlock {
public:
    /// @param mostTimes  more are not read
    /// @throw XFstDamage
    CFstBlock(CFstFile &file, const SFstChangeBlock &block, std::uint64_t mostTimes);

    const CFstTimes &Times() const { return m_times; }
    CFstTimes &Times() { return m_times; }
    const CFstPositions &Positions() const { return m_positions; }
    /// The changes in a stretch that the positions tell, unpacked.
    /// @param most  bytes, more are not unpacked
    /// @throw XFstDamage
    CFstBuffer Chain(CFstFile &file, const SFstStretch &stretch, std::uint64_t most) const;
    /// The value of every store at the beginning of the block.
    /// @param most  bytes, more are not unpacked
    /// @throw XFstDamage
    CFstBuffer Frame(CFstFile &file, std::uint64_t most) const;

    std::size_t Memory() const { return sizeof *this + m_times.Memory() + m_positions.Memory(); }

private:
    void ReadHead(CFstFile &file, const SFstChangeBlock &block);
    void ReadTail(CFstFile &file, const SFstChangeBlock &block, std::uint64_t mostTimes);

    CFstTimes m_times;
    CFstPositions m_positions;
    SFstStretch m_frame = {};
    std::uint64_t m_frameSize = 0;  // unpacked
    SFstStretch m_chains = {};      // in front of them stands the letter of their packer
    EFstPacker m_packer = EFstPacker::Zlib;
};

}  // namespace NTARN
