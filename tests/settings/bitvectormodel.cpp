// CBitVector against a second implementation.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "settings/bitvectors.h"
#include "settings/number/binarynumbers.h"

namespace {

/// Does what CBitVector does, on a text of bits with all words in full, step by step.
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

}  // namespace

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
