#include "settings/bitvector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "settings/binarynumbers.h"

namespace {

constexpr unsigned FirstCall = 0xFFFFFFFF;

CBitVector Bits(const std::string &bits)
{
    return CBitVector(static_cast<unsigned>(bits.size()), bits.c_str(), 2);
}

// The bits below the width, the highest first.
std::string Show(const CBitVector &vector)
{
    std::string bits;
    for (unsigned i = vector.GetWidth(); i-- > 0;)
        bits += vector.TestBit(i) ? '1' : '0';
    return bits;
}

TEST(BitVector, IsInvalidByDefault)
{
    const CBitVector vector;
    EXPECT_EQ(vector.GetWidth(), 0U);
    EXPECT_FALSE(vector.TestBit(0));
    EXPECT_EQ(vector.ToBinaryText(), "0");
}

TEST(BitVector, ReadsEachRadix)
{
    const struct {
        unsigned width;
        const char *text;
        unsigned radix;
        const char *bits;
    } rows[] = {
        {4, "101", 2, "0101"},        {6, "17", 8, "001111"},  {8, "10", 10, "00001010"}, {8, "1f", 16, "00011111"},
        {8, "16#1F", 10, "00011111"}, {4, "2#11", 16, "0011"}, {3, "", 10, "000"},        {3, nullptr, 10, "000"},
        {3, "16#", 2, "000"},         {3, "", 7, "000"},       {4, "10#-1", 2, "1111"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Show(CBitVector(row.width, row.text, row.radix)), row.bits) << (row.text ? row.text : "null");
}

TEST(BitVector, NegatesADecimalNumberWithinTheWidth)
{
    EXPECT_EQ(Show(CBitVector(8, "-5", 10)), "11111011");
    EXPECT_EQ(Show(CBitVector(40, "-1", 10)), std::string(40, '1'));
    EXPECT_EQ(Show(CBitVector(40, "-4294967296", 10)), "11111111" + std::string(32, '0'));
    EXPECT_EQ(Show(CBitVector(4, "-0", 10)), "0000");
    EXPECT_EQ(Show(CBitVector(4, "-", 10)), "0000");
    EXPECT_EQ(Show(CBitVector(4, "-16", 10)), "0000");
}

TEST(BitVector, IsInvalidForATextThatIsNoNumber)
{
    const struct {
        const char *text;
        unsigned radix;
    } rows[] = {
        {"2", 2},      {"8", 8},      {"a", 10},
        {"g", 16},     {" 1", 10},    {"1 ", 10},
        {"-1", 2},     {"-1", 8},     {"-1", 16},
        {"--1", 10},   {"-10#5", 10}, {"#1", 10},
        {"0#1", 10},   {"x#1", 10},   {"16 #1", 10},
        {"16##1", 10}, {"16#-1", 10}, {"1", 0},
        {"1", 1},      {"1", 3},      {"1", 7},
        {"1", 9},      {"1", 11},     {"1", 15},
        {"1", 17},     {"3#1", 2},    {"4294967312#1", 10},
    };
    for (const auto &row : rows) {
        CBitVector vector(8, row.text, row.radix);
        EXPECT_EQ(vector.GetWidth(), 0U) << row.text << " radix " << row.radix;
        EXPECT_FALSE(vector.TestBit(0)) << row.text << " radix " << row.radix;
    }
}

TEST(BitVector, IsInvalidWithAWidthOfZero)
{
    EXPECT_EQ(CBitVector(0, "1", 2).GetWidth(), 0U);
}

TEST(BitVector, HasNoBitOutsideTheWidth)
{
    const CBitVector vector(4, "11111", 2);
    EXPECT_TRUE(vector.TestBit(3));
    EXPECT_FALSE(vector.TestBit(4));
    EXPECT_FALSE(vector.TestBit(0xFFFFFFFF));
    EXPECT_EQ(vector.ToBinaryText(), "1111");
}

TEST(BitVector, KeepsBitsAboveTheWidthInTheTopWordOnly)
{
    const CBitVector zero(4, "0", 2);
    EXPECT_FALSE(CBitVector(4, "16#80000000", 2).IsAtMost(zero));
    EXPECT_TRUE(CBitVector(4, "16#100000000", 2).IsAtMost(zero));
}

TEST(BitVector, WritesItsBitsWithoutLeadingZeros)
{
    EXPECT_EQ(CBitVector(40, "0", 10).ToBinaryText(), "0");
    EXPECT_EQ(CBitVector(40, "", 10).ToBinaryText(), "0");
    EXPECT_EQ(CBitVector(40, "5", 10).ToBinaryText(), "101");
    EXPECT_EQ(CBitVector(40, "16#8000000000", 10).ToBinaryText(), '1' + std::string(39, '0'));
}

TEST(BitVector, AddsWithinTheWidth)
{
    CBitVector vector = Bits("1111");
    vector.Add(Bits("0001"));
    EXPECT_EQ(Show(vector), "0000");
    EXPECT_TRUE(vector.IsAtMost(CBitVector(4, "0", 2)));
}

TEST(BitVector, SubtractsWithinTheWidth)
{
    CBitVector vector(40, "0", 10);
    vector.Subtract(CBitVector(40, "1", 10));
    EXPECT_EQ(Show(vector), std::string(40, '1'));
    EXPECT_TRUE(vector.IsAtMost(CBitVector(64, "16#ffffffffff", 10)));
}

TEST(BitVector, AddsAndSubtractsNoMoreWordsThanBothHave)
{
    CBitVector narrow(32, "16#ffffffff", 10);
    narrow.Add(CBitVector(64, "16#100000001", 10));
    EXPECT_EQ(narrow.ToBinaryText(), "0");
    CBitVector wide(96, "0", 10);
    wide.Subtract(CBitVector(8, "1", 10));  // the borrow runs on
    EXPECT_EQ(Show(wide), std::string(96, '1'));
}

TEST(BitVector, AddsItself)
{
    CBitVector vector(64, "16#80000001", 10);
    vector.Add(vector);
    EXPECT_EQ(vector.ToBinaryText(), '1' + std::string(30, '0') + "10");
    vector.Subtract(vector);
    EXPECT_EQ(vector.ToBinaryText(), "0");
}

TEST(BitVector, ConvertsToGrayAndBack)
{
    CBitVector vector = Bits("0110");
    vector.ToGray();
    EXPECT_EQ(Show(vector), "0101");
    vector.FromGray();
    EXPECT_EQ(Show(vector), "0110");
}

TEST(BitVector, ChangesNothingInGrayCodeOfOneBit)
{
    CBitVector vector = Bits("1");
    vector.FromGray();
    EXPECT_EQ(Show(vector), "1");
}

TEST(BitVector, ReturnsFromEveryGrayCode)
{
    std::mt19937 random(3);
    for (unsigned width = 1; width <= 140; ++width) {
        const std::string bits = reference::RandomDigits(random, 2, width);
        CBitVector vector = Bits(bits);
        vector.ToGray();
        for (unsigned i = 0; i < width; ++i)
            ASSERT_EQ(vector.TestBit(i), (bits[width - 1 - i] != (i + 1 < width ? bits[width - 2 - i] : '0'))) << bits;
        vector.FromGray();
        ASSERT_EQ(Show(vector), bits);
    }
}

std::vector<std::string> JohnsonSequence(CBitVector vector, bool up, int steps)
{
    std::vector<std::string> values;
    for (int step = 0; step <= steps; ++step) {
        values.push_back(Show(vector));
        vector.Johnson(up);
    }
    return values;
}

TEST(JohnsonRing, TurnsUpwardAndDownward)
{
    using testing::ElementsAre;
    EXPECT_THAT(JohnsonSequence(Bits("000"), true, 6), ElementsAre("000", "001", "011", "111", "110", "100", "000"));
    EXPECT_THAT(JohnsonSequence(Bits("000"), false, 6), ElementsAre("000", "100", "110", "111", "011", "001", "000"));
}

TEST(JohnsonRing, ComesBackAfterTwiceItsWidth)
{
    for (unsigned width = 1; width <= 70; ++width) {
        for (const bool up : {false, true}) {
            CBitVector vector = Bits(std::string(width, '0'));
            std::set<std::string> seen;
            for (unsigned step = 0; step < 2 * width; ++step) {
                ASSERT_TRUE(seen.insert(Show(vector)).second) << width;
                vector.Johnson(up);
            }
            ASSERT_EQ(Show(vector), std::string(width, '0')) << width;
        }
    }
}

TEST(JohnsonRing, IsEnteredAtTheFirstGreaterMember)
{
    const struct {
        const char *bits;
        bool up;
        const char *member;
    } rows[] = {
        {"0101", true, "0111"}, {"0101", false, "1000"}, {"1001", true, "1111"}, {"1001", false, "1100"},
        {"1101", true, "1111"}, {"1101", false, "1110"}, {"0110", true, "0111"}, {"0010", true, "0011"},
    };
    for (const auto &row : rows) {
        CBitVector vector = Bits(row.bits);
        vector.NormalizeJohnson(row.up);
        EXPECT_EQ(Show(vector), row.member) << row.bits << " up " << row.up;
    }
}

TEST(JohnsonRing, KeepsItsMembers)
{
    for (const char *bits : {"0", "1", "00", "01", "10", "11", "000", "001", "011", "111", "110", "100"}) {
        for (const bool up : {false, true}) {
            CBitVector vector = Bits(bits);
            vector.NormalizeJohnson(up);
            EXPECT_EQ(Show(vector), bits);
        }
    }
}

TEST(JohnsonRing, SeesBitsAboveTheWidthWhereItIsEntered)
{
    CBitVector vector(4, "100101", 2);
    vector.NormalizeJohnson(true);
    EXPECT_EQ(Show(vector), "1100");  // 111100 is the first member above 100101
}

TEST(JohnsonRing, LeavesBitsAboveTheWidthOutWhereNoMemberIsGreater)
{
    CBitVector up(4, "16#fffffffd", 10);
    up.NormalizeJohnson(true);
    EXPECT_EQ(Show(up), "1111");
    CBitVector down(4, "100101", 2);
    down.NormalizeJohnson(false);
    EXPECT_EQ(Show(down), "1000");
}

TEST(JohnsonRing, IsEnteredFastWhereItIsWide)
{
    std::string bits(1000000, '0');
    bits[1] = bits[500000] = '1';
    CBitVector vector = Bits(bits);
    vector.NormalizeJohnson(true);
    EXPECT_EQ(Show(vector), '0' + std::string(999999, '1'));
}

TEST(OneHot, KeepsAValueWithOneSuchBit)
{
    CBitVector one = Bits("0100");
    EXPECT_TRUE(one.CheckOneHot(true));
    EXPECT_EQ(Show(one), "0100");
    CBitVector zero = Bits("1101");
    EXPECT_TRUE(zero.CheckOneHot(false));
    EXPECT_EQ(Show(zero), "1101");
    CBitVector single = Bits("0");
    EXPECT_TRUE(single.CheckOneHot(false));
}

TEST(OneHot, BecomesTheLowestPatternOtherwise)
{
    for (const char *bits : {"0110", "0000", "1111"}) {
        CBitVector vector = Bits(bits);
        EXPECT_FALSE(vector.CheckOneHot(true)) << bits;
        EXPECT_EQ(Show(vector), "0001") << bits;
    }
    for (const char *bits : {"0110", "0000", "1111"}) {
        CBitVector vector = Bits(bits);
        EXPECT_FALSE(vector.CheckOneHot(false)) << bits;
        EXPECT_EQ(Show(vector), "1110") << bits;
    }
    CBitVector wide(70, "0", 2);
    EXPECT_FALSE(wide.CheckOneHot(false));
    EXPECT_EQ(Show(wide), std::string(69, '1') + '0');
}

// Deliberate: of a starting value that is too wide the bits in the top word count.
TEST(OneHot, CountsSetBitsAboveTheWidth)
{
    CBitVector vector(4, "10010", 2);
    EXPECT_FALSE(vector.CheckOneHot(true));
    EXPECT_EQ(Show(vector), "0001");
    EXPECT_TRUE(CBitVector(4, "10000", 2).CheckOneHot(true));
    EXPECT_TRUE(CBitVector(4, "01101", 2).CheckOneHot(false));
}

std::vector<std::string> Walk(const std::string &start, bool ones, bool up, int steps)
{
    CBitVector state = Bits(start);
    CBitVector next;
    unsigned position = FirstCall;
    std::vector<std::string> values;
    for (int step = 0; step < steps; ++step) {
        if (ones)
            next.CircularOne(state, up, position);
        else
            next.CircularZero(state, up, position);
        state = next;
        values.push_back(Show(next));
    }
    return values;
}

TEST(CircularPattern, WalksAndWraps)
{
    using testing::ElementsAre;
    EXPECT_THAT(Walk("0010", true, true, 4), ElementsAre("0100", "1000", "0001", "0010"));
    EXPECT_THAT(Walk("0010", true, false, 3), ElementsAre("0001", "1000", "0100"));
    EXPECT_THAT(Walk("1101", false, true, 3), ElementsAre("1011", "0111", "1110"));
    EXPECT_THAT(Walk("1101", false, false, 3), ElementsAre("1110", "0111", "1011"));
    EXPECT_THAT(Walk("1", true, true, 2), ElementsAre("1", "1"));
}

TEST(CircularPattern, VisitsEveryPositionOfEveryWidth)
{
    for (unsigned width = 1; width <= 70; ++width) {
        for (const bool ones : {false, true}) {
            for (const bool up : {false, true}) {
                std::string start(width, ones ? '0' : '1');
                start[width / 2] = ones ? '1' : '0';
                const auto values = Walk(start, ones, up, static_cast<int>(width));
                ASSERT_EQ(std::set<std::string>(values.begin(), values.end()).size(), width);
                ASSERT_EQ(values.back(), start);
            }
        }
    }
}

TEST(CircularPattern, LeavesTheBitsAboveTheWidthClear)
{
    CBitVector state = Bits("0111");
    CBitVector next;
    unsigned position = FirstCall;
    next.CircularZero(state, true, position);
    EXPECT_EQ(position, 0U);
    EXPECT_TRUE(next.IsAtMost(CBitVector(8, "1111", 2)));
}

TEST(BitVector, IsMirrored)
{
    for (const auto &[bits, mirrored] : {std::pair("0010", "0100"), std::pair("0011", "1100"), std::pair("1", "1")}) {
        CBitVector vector = Bits(bits);
        vector.Reverse(vector.GetWidth());
        EXPECT_EQ(Show(vector), mirrored);
    }
}

TEST(BitVector, IsMirroredOverAnotherWidth)
{
    CBitVector part = Bits("11100010");
    part.Reverse(4);
    EXPECT_EQ(Show(part), "11100100");
    CBitVector none = Bits("0101");
    none.Reverse(0);
    EXPECT_EQ(Show(none), "0000");  // no word is left
    CBitVector wider(8, "10000001", 2);
    wider.Reverse(64);
    EXPECT_EQ(Show(wider), "00000000");
}

// --- A second implementation, on texts of bits with all words in full, stepping literally ---

class CModel {
public:
    CModel(std::size_t width, const std::string &bits) : m_width(width), m_bits(reference::Fit(bits, Room(width))) {}

    static std::size_t Room(std::size_t width) { return (width + 31) / 32 * 32; }

    std::string Low() const { return reference::Fit(m_bits, m_width); }
    bool IsAtMost(const CModel &other) const
    {
        const std::size_t room = std::max(m_bits.size(), other.m_bits.size());
        return reference::Fit(m_bits, room) <= reference::Fit(other.m_bits, room);
    }
    void Add(const CModel &other) { Become(reference::Add(m_bits, Shared(other)), true); }
    void Subtract(const CModel &other) { Become(reference::Subtract(m_bits, Shared(other)), true); }
    void ToGray()
    {
        for (std::size_t i = m_bits.size(); i-- > 1;)
            m_bits[i] = m_bits[i] != m_bits[i - 1] ? '1' : '0';
    }
    void FromGray()
    {
        for (std::size_t bit = m_width - 1; bit > 0; --bit) {
            if (At(bit) == '1')
                At(bit - 1) = At(bit - 1) == '1' ? '0' : '1';
        }
    }
    void Johnson(bool up)
    {
        if (up) {
            const char entering = At(m_width - 1) == '1' ? '0' : '1';
            m_bits = m_bits.substr(1) + entering;
            return;
        }
        const bool entering = m_bits.back() == '0';
        m_bits = '0' + m_bits.substr(0, m_bits.size() - 1);
        if (entering)
            At(m_width - 1) = '1';
    }
    // @return false if the loop would not end
    bool NormalizeJohnson(bool up)
    {
        std::size_t changes = 0;
        for (std::size_t i = 0; i + 1 < m_width; ++i)
            changes += At(i) != At(i + 1) ? 1 : 0;
        if (changes < 2)
            return true;
        const CModel copy = *this;
        m_bits.assign(m_bits.size(), '0');
        for (std::size_t step = 0; step < 2 * m_bits.size() + 100; ++step) {
            if (!IsAtMost(copy))
                return true;
            Johnson(up);
        }
        return false;
    }
    bool CheckOneHot(bool ones)
    {
        const std::string seen = ones ? m_bits : Low();
        if (std::count(seen.begin(), seen.end(), ones ? '1' : '0') == 1)
            return true;
        m_bits.assign(m_bits.size(), ones ? '0' : '1');
        m_bits.back() = ones ? '1' : '0';
        return false;
    }
    void Reverse()
    {
        const std::string low = Low();
        m_bits.replace(m_bits.size() - m_width, m_width, std::string(low.rbegin(), low.rend()));
    }

private:
    char &At(std::size_t bit) { return m_bits[m_bits.size() - 1 - bit]; }
    std::string Shared(const CModel &other) const
    {
        return reference::Fit(other.m_bits, std::min(m_bits.size(), other.m_bits.size()));
    }
    void Become(const std::string &bits, bool masked)
    {
        m_bits = reference::Fit(masked ? reference::Fit(bits, m_width) : bits, m_bits.size());
    }

    std::size_t m_width;
    std::string m_bits;  // whole words, the highest bit first
};

struct SPair {
    CBitVector vector;
    CModel model;
};

SPair RandomPair(std::mt19937 &random, std::size_t width)
{
    const std::size_t length = 1 + reference::Below(random, width + 40);
    std::string bits = reference::RandomDigits(random, 2, length);
    if (reference::Below(random, 4) == 0)
        bits = std::string(length, bits[0]);
    return {CBitVector(static_cast<unsigned>(width), bits.c_str(), 2), CModel(width, bits)};
}

// @return false where the literal steps do not end
bool DoSomething(std::mt19937 &random, SPair &pair, const SPair &other)
{
    const bool flag = reference::Below(random, 2) != 0;
    switch (reference::Below(random, 8)) {
    case 0:
        pair.vector.Add(other.vector);
        pair.model.Add(other.model);
        break;
    case 1:
        pair.vector.Subtract(other.vector);
        pair.model.Subtract(other.model);
        break;
    case 2:
        pair.vector.ToGray();
        pair.model.ToGray();
        break;
    case 3:
        pair.vector.FromGray();
        pair.model.FromGray();
        break;
    case 4:
        pair.vector.Johnson(flag);
        pair.model.Johnson(flag);
        break;
    case 5: pair.vector.NormalizeJohnson(flag); return pair.model.NormalizeJohnson(flag);
    case 6: EXPECT_EQ(pair.vector.CheckOneHot(flag), pair.model.CheckOneHot(flag)); break;
    default:
        pair.vector.Reverse(pair.vector.GetWidth());
        pair.model.Reverse();
        break;
    }
    return true;
}

TEST(BitVector, AgreesWithTheLiteralStepsOnTexts)
{
    std::mt19937 random(4);
    for (int round = 0; round < 3000; ++round) {
        SPair pair = RandomPair(random, 1 + reference::Below(random, 100));
        for (int step = 0; step < 12; ++step) {
            const SPair other = RandomPair(
                random, reference::Below(random, 2) != 0 ? pair.vector.GetWidth() : 1 + reference::Below(random, 100));
            if (!DoSomething(random, pair, other))
                break;
            ASSERT_EQ(Show(pair.vector), pair.model.Low()) << "round " << round << " step " << step;
            ASSERT_EQ(pair.vector.IsAtMost(other.vector), pair.model.IsAtMost(other.model));
            ASSERT_EQ(other.vector.IsAtMost(pair.vector), other.model.IsAtMost(pair.model));
            ASSERT_EQ(pair.vector.ToBinaryText(), reference::Strip(pair.model.Low()));
        }
    }
}

TEST(BitVector, AgreesWithArithmeticOnTextsInEveryRadix)
{
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        const unsigned radix = std::array{2U, 8U, 10U, 16U}[reference::Below(random, 4)];
        const std::string digits = reference::RandomDigits(random, radix, 1 + reference::Below(random, 50));
        const bool negative = radix == 10 && reference::Below(random, 2) != 0;
        const std::size_t width = 1 + reference::Below(random, 150);
        const std::string bits = reference::Fit(reference::FromRadix(digits, radix), width);
        const CBitVector vector(static_cast<unsigned>(width), ((negative ? "-" : "") + digits).c_str(), radix);
        ASSERT_EQ(Show(vector), negative ? reference::Negate(bits) : bits) << digits << " radix " << radix;
    }
}

// Widths come from callers as they are; a width that is hardly used must cost nothing.
TEST(BitVector, HoldsAsManyWordsAsItsValueNeeds)
{
    CBitVector vector(0xFFFFFFFF, "7", 10);
    const CBitVector one(0xFFFFFFFF, "1", 10);
    for (int round = 0; round < 1000; ++round)
        vector.Add(one);
    vector.ToGray();
    vector.FromGray();
    EXPECT_EQ(vector.ToBinaryText(), "1111101111");
    EXPECT_FALSE(vector.CheckOneHot(true));
    vector.Johnson(true);
    vector.NormalizeJohnson(true);
    EXPECT_EQ(vector.ToBinaryText(), "11");
    unsigned position = FirstCall;
    CBitVector next;
    next.CircularOne(vector, true, position);
    EXPECT_EQ(next.ToBinaryText(), "10");
}

TEST(BitVector, TakesEveryOperationOnAnInvalidValue)
{
    for (const CBitVector &invalid : {CBitVector(), CBitVector(8, "x", 2), CBitVector(0, "1", 2)}) {
        for (const bool flag : {false, true}) {
            CBitVector vector = invalid;
            CBitVector state = invalid;
            vector.Add(CBitVector(70, "-1", 10));
            vector.Subtract(CBitVector(70, "1", 10));
            vector.ToGray();
            vector.FromGray();
            vector.Johnson(flag);
            vector.NormalizeJohnson(flag);
            vector.CheckOneHot(flag);
            unsigned position = FirstCall;
            vector.CircularOne(state, flag, position);
            vector.CircularZero(state, flag, position);
            vector.Reverse(0);
            EXPECT_EQ(vector.GetWidth(), 0U);
            EXPECT_TRUE(invalid.IsAtMost(CBitVector(8, "0", 2)));
        }
    }
}

TEST(CircularPattern, KeepsAWildPositionInBounds)
{
    for (unsigned position : {5U, 100U, 0xFFFFFFFEU}) {
        for (const bool up : {false, true}) {
            CBitVector state = Bits("0010");
            CBitVector next = Bits("0000");
            unsigned moved = position;
            next.CircularOne(state, up, moved);
            next.CircularZero(state, up, moved);
            EXPECT_EQ(next.GetWidth(), 4U);
        }
    }
}

}  // namespace
