// CBitVector, a number of fixed width that knows the steps of the counter sequences.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/export.h"

/// A number of a fixed number of bits, bit 0 the lowest, kept in words of 32 bits. The highest word may hold bits above
/// the width; they are never read out, but comparing and counting see them where it is said.
///
/// A width of 0 marks an invalid value. Every operation may be called on one, for what that is worth.
class TESK_API CBitVector {
public:
    /// An invalid value of one zero word.
    CBitVector();
    /// Reads [ radix "#" ] digits; in radix 10 the digits may begin with "-" and then stand for the two's complement.
    /// A longer number is cut to whole words: bits above the width in the highest word stay.
    /// @param text   an empty or null one reads as 0; one that is no number gives an invalid value
    /// @param radix  2, 8, 10 or 16, of digits without a prefix; no other is known
    CBitVector(unsigned width, const char *text, unsigned radix);

    /// Number of bits; 0 for an invalid value.
    unsigned GetWidth() const { return m_width; }
    /// @return false for an `index` outside the width, otherwise the bit
    bool TestBit(unsigned index) const;
    /// The bits below the width, the highest first, without leading zeros; "0" for the value 0.
    std::string ToBinaryText() const;

    /// Whether this number is less than or equal to `other`, bits above the widths included.
    bool IsAtMost(const CBitVector &other) const;

    /// Adds as many words as both numbers have. The sum wraps within the width.
    void Add(const CBitVector &other);
    /// Subtracts as many words as both numbers have. The difference wraps within the width.
    void Subtract(const CBitVector &other);

    /// From a count to its Gray code.
    void ToGray();
    /// From a Gray code to its count.
    void FromGray();

    /// One step of the twisted ring. Upward the bits move to the left and the inverse of the highest enters at bit 0;
    /// the bit that passes the width is not cleared. Downward they move to the right and the inverse of bit 0 enters
    /// at the top.
    void Johnson(bool up);
    /// Makes the value a member of the ring's sequence: if it is none, the first one from zero that is greater.
    /// Deliberate: greater means bits above the width too; only if no member is, they are left out.
    void NormalizeJohnson(bool up);

    /// Whether there is exactly one set bit (`ones`), above the width too, or exactly one clear bit below the width.
    /// If not, bit 0 becomes the one such bit.
    bool CheckOneHot(bool ones);
    /// Makes this vector the next pattern with one set bit.
    /// @param state     the present pattern; read in the first call only, not changed
    /// @param up        whether the bit moves to the left; it wraps at the width
    /// @param position  of the bit; 0xFFFFFFFF marks the first call
    void CircularOne(CBitVector &state, bool up, unsigned &position);
    /// As `CircularOne` with one clear bit.
    void CircularZero(CBitVector &state, bool up, unsigned &position);

    /// Mirrors the bits 0 to `width` - 1. The words are sized for `width`, which does not become the width.
    void Reverse(unsigned width);

private:
    std::uint32_t Word(std::size_t index) const { return index < m_words.size() ? m_words[index] : 0; }
    TESK_LOCAL std::uint32_t &WordForWriting(std::size_t index);
    TESK_LOCAL void SetBit(std::size_t index);
    TESK_LOCAL void MaskTopWord();
    TESK_LOCAL void Negate();
    TESK_LOCAL void Combine(const CBitVector &other, bool subtract);
    TESK_LOCAL bool IsJohnsonMember() const;
    TESK_LOCAL bool TakeFirstJohnsonAbove(const CBitVector &bound, bool up);
    TESK_LOCAL void TakeJohnsonUp(std::size_t steps);
    TESK_LOCAL void TakeJohnsonDown(std::size_t steps);
    TESK_LOCAL void TakeSizeOf(const CBitVector &other);
    TESK_LOCAL void MovePosition(bool up, unsigned &position) const;

    std::vector<std::uint32_t> m_words;  // lowest first; those up to m_count that are missing are zero
    std::size_t m_count = 1;             // words that the number has
    std::uint32_t m_width = 0;
};
