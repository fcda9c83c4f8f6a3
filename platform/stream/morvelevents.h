// What stands behind an events store: the events of a scalar, or those of a bus gathered from its elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Morvel {

/// Place and time of an event.
struct SEventPlace {
    std::size_t position;  ///< among the events of a scalar; 0 in a bus, whose places are told by time
    long long time;        ///< file ticks
};

class CStoredEvents {
public:
    virtual ~CStoredEvents() = default;
    /// The last event not later than `time`. @return false if there is none
    virtual bool FindLast(long long time, SEventPlace &place) const = 0;
    /// The first event later than `time`. @return false if there is none
    virtual bool FindAfter(long long time, SEventPlace &place) const = 0;
    /// The next event. @return false if there is none
    virtual bool Step(SEventPlace &place) const = 0;
    /// @param value  room for `GetValueSize` bytes
    virtual void CopyValue(const SEventPlace &place, unsigned char *value) const = 0;
    virtual unsigned GetValueSize() const = 0;
};

/// The events of one block, unpacked.
struct SBlock {
    std::vector<long long> times;  ///< not falling, not negative
    std::string values;
};

enum class EBlockForm {
    Old,    ///< zlib, in files of the old version
    Memory  ///< LZ4, of our own making
};

/// Unpacks a block, without trusting it. @return false if it is not exactly what it is said to be
/// @param packed  whose CRC-32 is known to be right
/// @param first   time of the first event
bool UnpackBlock(EBlockForm form, std::string_view packed, long long first, std::size_t events, unsigned valueSize,
                 SBlock &block);

/// The blocks unpacked last, of all stores that came from one reader: unpacked events take many times the room of
/// packed ones. When it is full it starts anew.
class CBlockCache {
public:
    /// A number for each of so many blocks. @return the first
    std::uint64_t Reserve(std::size_t blocks);
    /// @return null if the block is not there
    const SBlock *Find(std::uint64_t number) const;
    const SBlock &Keep(std::uint64_t number, SBlock &&block);

private:
    static constexpr std::size_t MaxBlocks = 4096;

    std::unordered_map<std::uint64_t, SBlock> m_blocks;
    std::uint64_t m_next = 0;
};

/// The events of a scalar. The blocks stay packed in memory; each is unpacked when an event in it is asked for.
class CScalarEvents final : public CStoredEvents {
public:
    CScalarEvents(std::shared_ptr<CBlockCache> cache, EBlockForm form, unsigned valueSize, std::size_t events);

    /// Adds the next block. @param packed  with the right CRC-32
    /// @return false if the block is not what it is said to be, or goes back in time
    bool AddBlock(std::string packed, long long first);
    /// Adds the next block, of our own making: it is what it is said to be.
    void AddKnownBlock(std::string packed, long long first) { m_blocks.push_back({std::move(packed), first}); }

    bool FindLast(long long time, SEventPlace &place) const override;
    bool FindAfter(long long time, SEventPlace &place) const override;
    bool Step(SEventPlace &place) const override;
    void CopyValue(const SEventPlace &place, unsigned char *value) const override;
    unsigned GetValueSize() const override { return m_valueSize; }

private:
    struct SPackedBlock {
        std::string bytes;
        long long first;
    };

    const SBlock &Unpacked(std::size_t number) const;
    // How many events are not later than `time`.
    std::size_t CountUpTo(long long time) const;
    bool PlaceAt(std::size_t position, SEventPlace &place) const;
    std::size_t EventsIn(std::size_t block) const;

    std::shared_ptr<CBlockCache> m_cache;
    EBlockForm m_form;
    unsigned m_valueSize;
    std::size_t m_events;
    std::uint64_t m_firstNumber;  // in the cache
    std::vector<SPackedBlock> m_blocks;
    long long m_lastTime = 0;  // of the blocks added so far
};

/// The changes of a whole one-dimensional array: an event at each time at which an element has one. Nothing is stored:
/// places and values are gathered from the elements.
class CBusEvents final : public CStoredEvents {
public:
    /// @param elements  left bound first; at least one, all with the same size of values
    explicit CBusEvents(std::vector<std::shared_ptr<const CStoredEvents>> elements);

    bool FindLast(long long time, SEventPlace &place) const override;
    bool FindAfter(long long time, SEventPlace &place) const override;
    bool Step(SEventPlace &place) const override;
    /// An element without an event yet gives zeros.
    void CopyValue(const SEventPlace &place, unsigned char *value) const override;
    unsigned GetValueSize() const override;

private:
    std::vector<std::shared_ptr<const CStoredEvents>> m_elements;
};

}  // namespace Morvel
