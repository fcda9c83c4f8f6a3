// The variables of a VCD file and their values, on the way to a writer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tarnutil.h"
#include "platform/vcd/vcdbits.h"
#include "platform/vcd/vcdcodes.h"
#include "platform/vcd/vcdvariable.h"

namespace NTARN::NImport {

enum class EVcdOutcome { Taken, UnknownCode, WrongKind };

/// Keeps the values of all variables, since of a bus only what changes is written.
///
/// Bits are kept, compared and, where the writer can take them so, written 64 at once. The cost of a value is bounded by
/// the length of its text and the events that it makes: the words to the left of its letters are looked at only where
/// they change.
class CVcdValues {
public:
    explicit CVcdValues(IDatabaseStreamWriter &writer);

    /// Announces a variable to the writer, but for one that is left out.
    /// @throw SVcdFault if the elements become too many, or the variables of different widths that share a code
    void Declare(const SVcdVariable &variable, const std::string &fullName);
    bool IsDeclared(std::string_view code) const { return m_codes.Find(code) != None; }
    /// Whether a code stands for a variable of width 0.
    bool IsEmpty(std::string_view code) const;

    /// Bounds all elements and events that there may be.
    void SetLimits(long long elements, long long events);
    /// The time of the values that follow.
    void SetTime(long long time) { m_event.m_time = time; }

    /// Takes a value. This and the others throw SVcdFault where the events become too many.
    EVcdOutcome SetBit(std::string_view code, std::uint8_t position);
    /// @param bits  at least one. They are extended, or cut off, on the left
    EVcdOutcome SetBits(std::string_view code, const CVcdBits &bits);
    EVcdOutcome SetReal(std::string_view code, double value);

private:
    // What a code stands for: all variables of one kind and width.
    struct SShape {
        EVcdKind kind;
        std::uint8_t fill;  // of a bus: the position of all bits that `words` does not count
        std::uint32_t width;
        std::uint32_t words;    // of a bus: how many, counted from the right, stand in m_words
        std::uint32_t next;     // the next shape of the code
        std::uint32_t aliases;  // the first of those that do not share their events
        std::size_t firstWord;  // of a bus: where its rightmost word stands in m_words
        long long handle;       // of the first element
    };
    struct SAlias {
        long long handle;
        std::uint32_t next;
    };

    static constexpr std::uint32_t None = CVcdCodes::None;

    void Announce(const SVcdVariable &variable, const std::string &fullName);
    std::uint32_t FindShape(std::uint32_t first, const SVcdVariable &variable) const;
    void AddShape(std::uint32_t &first, const SVcdVariable &variable, long long handle);
    void AddWords(std::uint32_t width, long long last);
    void AddAlias(SShape &shape, long long handle);
    void SetBus(SShape &shape, const CVcdBits &bits);
    void Emit(const SShape &shape, std::uint64_t value);
    void EmitWord(const SShape &shape, std::uint32_t index, const WaveWord &before, const WaveWord &after);
    void EmitBits(long long last, std::uint64_t changed, const WaveWord &value);
    void Count(int events);
    template <class TSet>
    EVcdOutcome ForEachShape(std::string_view code, TSet set);

    IDatabaseStreamWriter &m_writer;
    IEventSharing *m_sharing;   // null if the writer cannot
    IWordEvents *m_wordEvents;  // null if the writer cannot
    CVcdCodes m_codes;
    std::vector<SShape> m_shapes;
    std::vector<SAlias> m_aliases;
    std::vector<WaveWord> m_words;  // the values of buses
    CVcdBits m_bit;
    WaveEvent m_event;
    long long m_handles = 0;
    long long m_mostHandles = 0;
    long long m_events = 0;
    long long m_mostEvents = 0;
};

}  // namespace NTARN::NImport
