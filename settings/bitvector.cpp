#include "settings/bitvector.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>

#include "settings/number/bitwords.h"

using tesk::WordBits;

namespace {

constexpr std::uint32_t AllOnes = 0xFFFFFFFF;
constexpr unsigned NoPosition = 0xFFFFFFFF;

std::size_t WordCount(unsigned width)
{
    return (static_cast<std::size_t>(width) + WordBits - 1) / WordBits;
}

// The bits of the word at `index` that lie below `width`.
std::uint32_t MaskBelow(std::size_t index, unsigned width)
{
    const std::size_t below = index * WordBits;
    if (width >= below + WordBits)
        return AllOnes;
    return width > below ? (std::uint32_t{1} << (width - below)) - 1 : 0;
}

std::uint32_t BitMask(std::size_t index)
{
    return std::uint32_t{1} << (index % WordBits);
}

// Index of the lowest set bit of `words`, each seen as `flip` ^ word; 0 if there is none.
unsigned LowestBit(const tesk::CWords &words, std::uint32_t flip)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        if ((words[i] ^ flip) != 0)
            return static_cast<unsigned>(i * WordBits) + static_cast<unsigned>(std::countr_zero(words[i] ^ flip));
    }
    return flip == 0 ? 0 : static_cast<unsigned>(words.size() * WordBits);
}

}  // namespace

CBitVector::CBitVector() : m_words(1) {}

CBitVector::CBitVector(unsigned width, const char *text, unsigned radix) : m_count(0)
{
    std::string_view digits;
    bool negative = false;
    if (text != nullptr && *text != 0) {
        long long usedRadix = radix;
        if (!tesk::TakeRadixPrefix(text, usedRadix))
            return;
        digits = text;
        negative = usedRadix == 10 && digits.starts_with('-');
        if (negative)
            digits.remove_prefix(1);
        if (!tesk::ReadDigits(digits, usedRadix, m_words))
            return;
    }
    m_width = width;
    m_count = WordCount(width);
    m_words.resize(std::min(m_words.size(), m_count));
    if (negative)
        Negate();
}

bool CBitVector::TestBit(unsigned index) const
{
    return index < m_width && tesk::TestBit(m_words, index);
}

std::string CBitVector::ToBinaryText() const
{
    if (m_width == 0)
        return "0";
    std::string text;
    const std::size_t held = std::min<std::size_t>(m_width, m_words.size() * WordBits);
    tesk::AppendBits(text, m_words, std::max<std::size_t>(tesk::SkipLeadingZeros(m_words, held), 1), false);
    return text;
}

bool CBitVector::IsAtMost(const CBitVector &other) const
{
    for (std::size_t i = std::max(m_words.size(), other.m_words.size()); i-- > 0;) {
        if (Word(i) != other.Word(i))
            return Word(i) < other.Word(i);
    }
    return true;
}

void CBitVector::Add(const CBitVector &other)
{
    Combine(other, false);
}

void CBitVector::Subtract(const CBitVector &other)
{
    Combine(other, true);
}

void CBitVector::ToGray()
{
    for (std::size_t i = 0; i < m_words.size(); ++i)
        m_words[i] ^= m_words[i] >> 1 | Word(i + 1) << (WordBits - 1);
}

void CBitVector::FromGray()
{
    for (std::size_t bit = std::min<std::size_t>(m_width, m_words.size() * WordBits); bit-- > 1;) {
        if (tesk::TestBit(m_words, bit))
            m_words[(bit - 1) / WordBits] ^= BitMask(bit - 1);
    }
}

void CBitVector::Johnson(bool up)
{
    if (up) {
        std::uint32_t carry = TestBit(m_width - 1) ? 0 : 1;  // of a width of 0 no bit is set
        for (std::uint32_t &word : m_words)
            carry = std::exchange(word, word << 1 | carry) >> (WordBits - 1);
        if (carry != 0 && m_words.size() < m_count)
            m_words.push_back(carry);
        return;
    }
    const bool entering = (Word(0) & 1) == 0;
    for (std::size_t i = 0; i < m_words.size(); ++i)
        m_words[i] = m_words[i] >> 1 | Word(i + 1) << (WordBits - 1);
    if (entering && m_width != 0)
        SetBit(m_width - 1);
}

void CBitVector::NormalizeJohnson(bool up)
{
    if (m_width < 2 || IsJohnsonMember())
        return;
    CBitVector bound = *this;
    if (TakeFirstJohnsonAbove(bound, up))
        return;
    bound.MaskTopWord();
    TakeFirstJohnsonAbove(bound, up);
}

bool CBitVector::CheckOneHot(bool ones)
{
    std::size_t set = 0;
    for (std::size_t i = 0; i < std::min(m_words.size(), WordCount(m_width)); ++i)
        set += static_cast<std::size_t>(std::popcount(m_words[i] & (ones ? AllOnes : MaskBelow(i, m_width))));
    if ((ones ? set : m_width - set) == 1)
        return true;
    m_words.assign(ones ? std::min<std::size_t>(m_count, 1) : m_count, ones ? 1 : AllOnes);
    if (!ones && !m_words.empty())
        m_words.front() = AllOnes - 1;
    return false;
}

void CBitVector::CircularOne(CBitVector &state, bool up, unsigned &position)
{
    if (position == NoPosition) {
        position = LowestBit(state.m_words, 0);
        TakeSizeOf(state);
    }
    MovePosition(up, position);
    m_words.clear();
    SetBit(position);
}

void CBitVector::CircularZero(CBitVector &state, bool up, unsigned &position)
{
    if (position == NoPosition) {
        const unsigned lowest = LowestBit(state.m_words, AllOnes);
        position = lowest < state.m_width ? lowest : 0;
        TakeSizeOf(state);
    }
    MovePosition(up, position);
    m_words.assign(m_count, AllOnes);
    MaskTopWord();
    if (position / WordBits < m_count)
        m_words[position / WordBits] &= ~BitMask(position);
}

void CBitVector::Reverse(unsigned width)
{
    m_count = WordCount(width);
    m_words.resize(m_count);
    if (width == 0)
        return;
    for (std::size_t low = 0, high = width - 1; low < high; ++low, --high) {
        if (tesk::TestBit(m_words, low) == tesk::TestBit(m_words, high))
            continue;
        m_words[low / WordBits] ^= BitMask(low);
        m_words[high / WordBits] ^= BitMask(high);
    }
}

std::uint32_t &CBitVector::WordForWriting(std::size_t index)
{
    if (index >= m_words.size())
        m_words.resize(index + 1);
    return m_words[index];
}

void CBitVector::SetBit(std::size_t index)
{
    if (index / WordBits < m_count)
        WordForWriting(index / WordBits) |= BitMask(index);
}

void CBitVector::MaskTopWord()
{
    const std::size_t top = WordCount(m_width) - 1;
    if (m_width % WordBits != 0 && top < m_words.size())
        m_words[top] &= MaskBelow(top, m_width);
}

// Two's complement of the bits below the width; those above it stay.
void CBitVector::Negate()
{
    m_words.resize(m_count);
    std::uint32_t carry = 1;
    for (std::size_t i = 0; i < m_count; ++i) {
        const std::uint32_t mask = MaskBelow(i, m_width);
        const std::uint32_t negated = ~m_words[i] + carry;
        carry = carry != 0 && negated == 0 ? 1 : 0;
        m_words[i] = (negated & mask) | (m_words[i] & ~mask);
    }
}

void CBitVector::Combine(const CBitVector &other, bool subtract)
{
    const std::size_t shared = std::min(m_count, other.m_words.size());
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < m_count && (i < shared || carry != 0); ++i) {
        const std::uint64_t own = Word(i);
        const std::uint64_t operand = other.Word(i) + carry;
        const std::uint64_t result = subtract ? own - operand : own + operand;
        WordForWriting(i) = static_cast<std::uint32_t>(result);
        carry = result >> WordBits & 1;
    }
    MaskTopWord();
}

// A member has at most one place where a bit differs from the one above it.
bool CBitVector::IsJohnsonMember() const
{
    const std::size_t end = std::min<std::size_t>(m_width - 1, m_words.size() * WordBits);
    int changes = 0;
    for (std::size_t bit = 0; bit < end && changes < 2; ++bit)
        changes += tesk::TestBit(m_words, bit) != tesk::TestBit(m_words, bit + 1) ? 1 : 0;
    return changes < 2;
}

// Takes the value at which a ring that starts at zero first exceeds `bound`, without walking there. As long as the
// first bit has not left the words, each step upward lengthens the number by one bit; later none is greater than all of
// these. Downward the ring fills from the top, up to all ones.
// @return false if the ring never exceeds it
bool CBitVector::TakeFirstJohnsonAbove(const CBitVector &bound, bool up)
{
    const std::size_t length = tesk::SignificantBits(bound.m_words);
    if (!up) {
        unsigned ones = 0;
        while (bound.TestBit(m_width - 1 - ones))
            ++ones;
        TakeJohnsonDown(ones + 1);
        return length <= m_width;
    }
    for (std::size_t steps = length; steps <= std::min(length + 1, m_count * WordBits); ++steps) {
        TakeJohnsonUp(steps);
        if (!IsAtMost(bound))
            return true;
    }
    return false;
}

// The value after `steps` steps upward from zero: as many ones as the width has, as many zeros, and so on.
void CBitVector::TakeJohnsonUp(std::size_t steps)
{
    m_words.clear();
    for (std::size_t bit = 0; bit < steps; ++bit) {
        if ((steps - 1 - bit) / m_width % 2 == 0)
            SetBit(bit);
    }
}

// The value after `steps` steps downward from zero, at most the width.
void CBitVector::TakeJohnsonDown(std::size_t steps)
{
    m_words.clear();
    for (std::size_t bit = m_width; steps > 0; --steps)
        SetBit(--bit);
}

void CBitVector::TakeSizeOf(const CBitVector &other)
{
    m_width = other.m_width;
    m_count = other.m_count;
}

void CBitVector::MovePosition(bool up, unsigned &position) const
{
    if (m_width == 0)
        return;
    if (up)
        position = (position + 1) % m_width;
    else
        position = position == 0 ? m_width - 1 : position - 1;
}
