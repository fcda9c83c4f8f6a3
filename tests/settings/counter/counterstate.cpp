#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "settings/counter/countersupport.h"

namespace {

using ::testing::ElementsAre;

TEST(Counter, CountsByItsType)
{
    const struct {
        SCounter counter;
        int length;
        std::vector<std::string> values;
    } rows[] = {
        {{.start = "1110"}, 4, {"1110", "1111", "0000", "0001"}},
        {{.up = false, .start = "1110"}, 4, {"1110", "1101", "1100"}},
        {{.start = "0001", .increment = "11"}, 4, {"0001", "0100", "0111", "1010", "1101", "0000"}},
        {{.type = 2, .start = "000"}, 3, {"000", "001", "011", "010", "110", "111", "101", "100", "000"}},
        {{.type = 2, .start = "011"}, 3, {"011", "010", "110"}},  // the starting value is a Gray code
        {{.type = 2, .up = false, .start = "011"}, 3, {"011", "001", "000", "100"}},
        {{.type = 3, .start = "0101"}, 4, {"0111", "1111", "1110"}},  // no member of the ring, so the next one
        {{.type = 3, .start = "000"}, 3, {"000", "001", "011", "111", "110", "100", "000"}},
        {{.type = 3, .up = false, .start = "000"}, 3, {"000", "100", "110", "111", "011", "001", "000"}},
        {{.type = 4, .start = "0010"}, 4, {"0010", "0100", "1000", "0001"}},
        {{.type = 4, .up = false, .start = "0010"}, 4, {"0010", "0001", "1000"}},
        {{.type = 5, .start = "1101"}, 4, {"1101", "1011", "0111", "1110"}},
        {{.type = 5, .up = false, .start = "1101"}, 4, {"1101", "1110", "0111"}},
        {{.start = "0001", .reverse = true}, 4, {"0001", "0100", "1100"}},  // deliberate: the start is not mirrored
        {{.type = 2, .start = "000", .reverse = true}, 3, {"000", "100", "110", "010"}},
        {{.type = 4, .start = "0010", .reverse = true}, 4, {"0010", "0010", "0001", "1000"}},
        {{.start = "FE", .radix = "16"}, 8, {"11111110", "11111111", "00000000"}},
        {{.start = "-2", .radix = "10"}, 8, {"11111110", "11111111", "00000000"}},
        {{.start = "8#17", .increment = "16#8", .radix = "10"}, 4, {"1111", "0111", "1111"}},
        {{.start = "11111"}, 3, {"111", "000", "001"}},       // a wider value is cut
        {{.type = 7, .start = "01"}, 2, {"01", "01", "01"}},  // an unknown type stands still
        {{.start = "1"}, 1, {"1", "0", "1"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(CounterValues(row.counter, row.length, static_cast<int>(row.values.size())), row.values)
            << row.counter.Formula();
}

TEST(CircularCounter, ReportsAStartThatIsNotOneHotAndGoesOn)
{
    CLogCapture log;
    EXPECT_THAT(CounterValues({.type = 4, .start = "0110"}, 4, 3), ElementsAre("0001", "0010", "0100"));
    EXPECT_THAT(CounterValues({.type = 5, .start = "2#0110"}, 4, 3), ElementsAre("1110", "1101", "1011"));
    EXPECT_THAT(log.lines,
                ElementsAre("2 KERNEL Vector length does not match, or starting value `0110' is not correct for "
                            "circular one stimulus and will be ignored.",
                            "2 KERNEL Vector length does not match, or starting value `2#0110' is not correct for "
                            "circular zero stimulus and will be ignored."));
}

TEST(CircularCounter, CountsTheBitsAboveTheVectorToo)  // deliberate
{
    CLogCapture log;
    EXPECT_THAT(CounterValues({.type = 4, .start = "10001"}, 4, 2), ElementsAre("0001", "0010"));
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST(CounterWires, MoveInLockstepWhicheverAsksFirst)
{
    constexpr int Length = 5;
    std::mt19937 random(1);
    for (int run = 0; run < 5; ++run) {
        const std::vector<StimulusPtr> wires = Attach(CounterWires({.increment = "11"}, Length));
        std::vector<std::size_t> order = {0, 1, 2, 3, 4};
        unsigned count = 0;
        for (long long time = 0; time <= 500000; time += 10000, count += 3) {
            for (int bit = 0; bit < Length; ++bit)
                ASSERT_EQ(ValueAt(*wires[static_cast<std::size_t>(bit)], time), (count >> (4 - bit)) & 1U ? "1" : "0");
            std::shuffle(order.begin(), order.end(), random);
            for (const std::size_t wire : order)
                ASSERT_EQ(wires[wire]->GetNextEventTime(time), time + 10000);
        }
    }
}

// A second implementation over characters, the highest bit first.
class CModel {
public:
    CModel(int type, bool up, const std::string &start, const std::string &increment)
        : m_type(type), m_up(up), m_count(start), m_increment(increment)
    {
        if (type == 2) {
            for (std::size_t i = 1; i < m_count.size(); ++i)
                m_count[i] = m_count[i] == m_count[i - 1] ? '0' : '1';
        }
    }

    std::string Next()
    {
        switch (m_type) {
        case 3: m_count = Johnson(); break;
        case 4:
        case 5:
            m_count = m_up ? m_count.substr(1) + m_count[0] : m_count.back() + m_count.substr(0, m_count.size() - 1);
            break;
        default: Sum(); break;
        }
        return m_type == 2 ? Gray() : m_count;
    }

private:
    std::string Johnson() const
    {
        const auto inverse = [](char bit) { return std::string(1, bit == '0' ? '1' : '0'); };
        return m_up ? m_count.substr(1) + inverse(m_count[0])
                    : inverse(m_count.back()) + m_count.substr(0, m_count.size() - 1);
    }
    void Sum()
    {
        int carry = 0;
        for (std::size_t i = m_count.size(); i-- > 0;) {
            const int step = m_increment[i] - '0';
            const int sum = m_count[i] - '0' + carry + (m_up ? step : -step);
            m_count[i] = static_cast<char>('0' + (sum & 1));
            carry = (sum - (sum & 1)) / 2;
        }
    }
    std::string Gray() const
    {
        std::string gray = m_count;
        for (std::size_t i = 1; i < gray.size(); ++i)
            gray[i] = m_count[i] == m_count[i - 1] ? '0' : '1';
        return gray;
    }

    int m_type;
    bool m_up;
    std::string m_count;
    std::string m_increment;
};

// A starting value that its type takes as it stands.
std::string RandomStart(std::mt19937 &random, int type, int width)
{
    const std::size_t size = static_cast<std::size_t>(width);
    std::string bits(size, type == 5 ? '1' : '0');
    if (type == 4 || type == 5) {
        bits[random() % size] = type == 4 ? '1' : '0';
    } else if (type == 3) {
        const std::size_t edge = random() % (size + 1);
        const bool isHighFirst = random() % 2 != 0;
        for (std::size_t i = 0; i < size; ++i)
            bits[i] = (i < edge) == isHighFirst ? '1' : '0';
    } else {
        for (char &bit : bits)
            bit = random() % 2 != 0 ? '1' : '0';
    }
    return bits;
}

TEST(Counter, AgreesWithASecondImplementation)
{
    std::mt19937 random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int round = 0; round < 20; ++round) {
            const int type = 1 + round % 5;
            const bool up = round / 5 % 2 != 0, reverse = round / 10 != 0;
            const SCounter counter{.type = type,
                                   .up = up,
                                   .start = RandomStart(random, type, width),
                                   .increment = RandomStart(random, 1, width),
                                   .reverse = reverse};
            CModel model(type, up, counter.start, counter.increment);
            std::vector<std::string> expected = {counter.start};
            while (expected.size() < 12) {
                expected.push_back(model.Next());
                if (reverse)
                    std::reverse(expected.back().begin(), expected.back().end());
            }
            ASSERT_EQ(CounterValues(counter, width, 12), expected) << counter.Formula();
        }
    }
}

TEST(Counter, OfManyBitsStepsAndAnswersAtOnce)
{
    constexpr int Length = 100000;
    for (int type = 1; type <= 5; ++type) {
        std::string start(Length, type == 5 ? '1' : '0');
        start.back() = type == 5 ? '0' : '1';
        const std::vector<std::string> wires = CounterWires({.type = type, .start = start, .increment = start}, Length);
        const StimulusPtr last = Create(wires.back());
        long long time = 0;
        for (int step = 0; step < 200; ++step)
            time = last->GetNextEventTime(time);
        EXPECT_EQ(time, 2000000) << type;
        EXPECT_NE(ValueAt(*last, time), std::nullopt) << type;
    }
}

}  // namespace
