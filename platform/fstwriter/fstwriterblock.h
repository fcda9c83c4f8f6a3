// A block of value changes while it is gathered, and how it is written.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fstwriter/fstput.h"

namespace NTARN {

/// What a file keeps values of, as a writer knows it.
enum class EFstValues : std::uint8_t { Bits, Real, Text };

/// Gathers the changes of all stores over some time. Each change goes to the chain of its store, in the form that the
/// file has it in; `Write` packs the chains and begins anew.
class CFstWriterBlock {
public:
    /// Before the first time. @param width  of bits, 1 or more
    void AddStore(EFstValues values, std::uint32_t width);
    std::size_t StoreCount() const { return m_stores.size(); }
    EFstValues Values(std::size_t store) const { return m_stores[store].values; }
    std::uint32_t Width(std::size_t store) const { return m_stores[store].width; }

    /// Begins a time, later than the last one. Changes that come before the first one are values in front of it.
    void AddTime(std::uint64_t time);
    /// @param letters  as many as the store has bits, of "01xzhuwl-?"
    void AddBits(std::size_t store, std::string_view letters);
    void AddReal(std::size_t store, double real);
    void AddText(std::size_t store, std::string_view text);

    bool HasTimes() const { return m_timeCount > 0; }
    /// Bytes that the changes and times take.
    std::size_t Size() const { return m_size + m_times.size(); }
    std::uint64_t FirstTime() const { return m_firstTime; }
    std::uint64_t LastTime() const { return m_lastTime; }

    /// Writes the block and begins the next one. @param begin, end  the times that it spans
    void Write(std::ostream &out, std::uint64_t begin, std::uint64_t end);

private:
    struct SStore {
        EFstValues values;
        std::uint32_t width;
        std::size_t position;          // in the frame
        std::uint64_t lastChange = 0;  // index of its time
        CFstBuffer chain;
    };
    struct SChains;

    std::uint64_t Step(SStore &store);
    void Keep(const SStore &store, std::string_view letters);
    void AppendBit(SStore &store, char letter);
    void AppendVector(SStore &store, std::string_view letters);
    void WriteChains(std::ostream &out, CFstBuffer &index);
    std::uint64_t ChainBytes() const;
    void BeginAnew();

    std::vector<SStore> m_stores;
    std::string m_values;  // of all stores now, one behind the other
    std::string m_frame;   // at the begin of the block
    CFstBuffer m_times;    // distances
    CFstBuffer m_packed;   // room for a chain
    std::uint64_t m_timeCount = 0;
    std::uint64_t m_firstTime = 0;
    std::uint64_t m_lastTime = 0;
    std::size_t m_size = 0;
};

}  // namespace NTARN
