// Benches as voltage sources of SPICE.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tools/exchange/benchfixture.h"
#include "tools/exchange/walks.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

// Sources as a simulator of circuits takes them.
class CSources {
public:
    explicit CSources(const std::string &text)
    {
        std::istringstream lines(text);
        std::string joined;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("+ "))
                joined += " " + line.substr(2);
            else
                joined += "\n" + line;
        }
        std::istringstream sources(joined);
        for (std::string line; std::getline(sources, line);) {
            if (line.starts_with("V"))
                Take(line);
        }
    }

    std::size_t Count() const { return m_sources.size(); }

    // @param femtoseconds  the time
    double Volts(const std::string &node, double femtoseconds) const
    {
        const SSource &source = m_sources.at(node);
        const auto &points = source.points;
        double time = femtoseconds;
        if (source.repeat >= 0 && time > points.back().first)
            time = source.repeat + std::fmod(time - source.repeat, points.back().first - source.repeat);
        for (std::size_t i = 1; i < points.size(); ++i) {
            if (time <= points[i].first)
                return points[i - 1].second + (points[i].second - points[i - 1].second) * (time - points[i - 1].first) /
                                                  (points[i].first - points[i - 1].first);
        }
        return points.back().second;
    }

private:
    struct SSource {
        std::vector<std::pair<double, double>> points;  // femtoseconds and volts
        double repeat = -1;
    };

    static double Femtoseconds(const std::string &text)
    {
        const std::map<char, double> scales = {{'f', 1}, {'p', 1e3}, {'n', 1e6}, {'u', 1e9}, {'m', 1e12}};
        const auto scale = scales.find(text.back());
        return std::strtod(text.c_str(), nullptr) * (scale != scales.end() ? scale->second : 1e15);
    }

    // Vnode node 0 PWL(time volts ...) r=time
    void Take(const std::string &line)
    {
        const std::size_t open = line.find('(');
        const std::size_t close = line.find(')');
        std::istringstream head(line.substr(0, open));
        std::string name, node, ground, kind;
        head >> name >> node >> ground >> kind;
        EXPECT_EQ(name, "V" + node);
        EXPECT_EQ(ground, "0");
        EXPECT_EQ(kind, "PWL");
        SSource source;
        std::istringstream points(line.substr(open + 1, close - open - 1));
        for (std::string time, volts; points >> time >> volts;) {
            EXPECT_TRUE(source.points.empty() || Femtoseconds(time) > source.points.back().first) << line;
            source.points.emplace_back(Femtoseconds(time), std::strtod(volts.c_str(), nullptr));
        }
        if (const std::size_t repeat = line.find("r=", close); repeat != line.npos) {
            source.repeat = Femtoseconds(line.substr(repeat + 2));
            bool isPoint = false;
            for (const auto &point : source.points)
                isPoint = isPoint || point.first == source.repeat;
            EXPECT_TRUE(isPoint) << line;
        }
        EXPECT_TRUE(m_sources.emplace(node, source).second) << line;
    }

    std::map<std::string, SSource> m_sources;
};

class Sourced : public CBenchFixture {
protected:
    // Before each change, and where its edge is over, the voltage is that of the value.
    static void ExpectSame(const CSources &sources, const std::string &node, const CWalk &walk, std::size_t bit,
                           double low, double high, double rise)
    {
        for (std::size_t i = 0; i < walk.size(); ++i) {
            const std::string &value = walk[i].second;
            const double volts = bit == std::string::npos ? std::strtod(value.c_str(), nullptr)
                                 : value[bit] == '1'      ? high
                                                          : low;
            const auto begin = static_cast<double>(walk[i].first);
            EXPECT_NEAR(sources.Volts(node, i == 0 ? 0 : begin + rise), volts, 1e-6) << node << " at " << begin;
            if (i + 1 < walk.size()) {
                EXPECT_NEAR(sources.Volts(node, static_cast<double>(walk[i + 1].first)), volts, 1e-6)
                    << node << " before " << walk[i + 1].first;
            }
        }
    }
};

}  // namespace

TEST_F(Sourced, HasTheVoltagesOfWhatIsPlayed)
{
    WriteBench("scope = \"tb\"\n[signals]\nclk = \"1 0ns, 0 5ns -r 10ns\"\nrst = \"0 0ns, 1 42ns\"\n"
               "odd = \"0 0ns, 1 3ns, 0 4ns, 1 9ns -r 13ns\"\n"
               "count = { type = \"std_logic_vector(2 downto 0)\", formula = "
               "'\\counter\\TYPE\\2\\DIR\\1\\RADIX\\2\\START\\101\\INC\\1\\PERIOD\\7ns\\REV\\0' }\n"
               "level = { type = \"real\", formula = \"0.25 0ns, -3.5 10ns, 1e-3 25ns -r 40ns\" }\n"
               "some = { type = \"bit_vector(0 to 1)\", formula = \"01 0ns, 11 5ns, 00 9ns -r 20ns -cancel 1ms\" }\n");
    const SToolRun run = Export("--to pwl --until 100ns --weaken --low -0.5 --high 1.75 --rise 250ps");
    ASSERT_EQ(run.status, 0) << run.err;
    const CSources sources(run.out);
    EXPECT_EQ(sources.Count(), 9U);
    const CWalks walks = PlayedWalks(Bench(), 3'000'000);
    for (const char *node : {"clk", "rst", "odd"})
        ExpectSame(sources, node, walks.at(node), 0, -0.5, 1.75, 250'000);
    for (std::size_t bit = 0; bit < 3; ++bit)
        ExpectSame(sources, "count_" + std::to_string(2 - bit), walks.at("count"), bit, -0.5, 1.75, 250'000);
    ExpectSame(sources, "level", walks.at("level"), std::string::npos, 0, 0, 250'000);
    CWalk some = PlayedWalks(Bench(), 100'000).at("some");
    ExpectSame(sources, "some_0", some, 0, -0.5, 1.75, 250'000);
    ExpectSame(sources, "some_1", some, 1, -0.5, 1.75, 250'000);
}

TEST_F(Sourced, IsWrittenAsSourcesAreRead)
{
    WriteBench("[signals]\nclk = \"0 0ns, 1 5ns -r 10ns\"\n\"a+b\" = \"1 0ns, 0 1ms\"\n");
    EXPECT_EQ(Export("--to pwl --high 1.8").out,
              "* Written by tesk from " + Bench() +
                  ".\n* clk\nVclk clk 0 PWL(0 0 5n 0 5100p 1.8 10n 1.8 10100p 0 15n 0 15100p 1.8 20n 1.8) r=10n\n"
                  "* a+b\nVa_b a_b 0 PWL(0 1.8 1m 1.8 1000000100p 0)\n");
}

TEST_F(Sourced, TellsWhatIsNoVoltage)
{
    WriteBench("[signals]\na = \"1 0ns, Z 5ns, H 6ns\"\nn = { type = \"integer\", formula = \"1 0ns\" }\nq = \"0 0ns, "
               "1 50ps, 0 "
               "100ps\"\n");
    const SToolRun run = Export("--to pwl");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(
        run.err,
        AllOf(HasSubstr("signal \"a\": Z, first at 5ns, has no place in pwl; --weaken writes the middle of both levels "
                        "instead\n"),
              HasSubstr("signal \"a\": H, first at 6ns, has no place in pwl; --weaken writes the high level instead\n"),
              HasSubstr("signal \"n\": it is no voltage; give it a type of bits or real\n"),
              HasSubstr("signal \"q\": at 100ps a change comes before the edge of the former is over; give a shorter "
                        "--rise\n")));
    EXPECT_EQ(Export("--to pwl --rise 0ns").status, 2);
    EXPECT_EQ(Export("--to pwl --high 1V").status, 2);
}
