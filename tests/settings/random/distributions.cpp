#include "settings/random/distributions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

namespace dist = tesk::distributions;

constexpr int DrawsPerSeed = 1000;

// One system function of Verilog with parameters, and the same draw here.
struct SDrawRow {
    const char *function;
    int first, second;
    int (*draw)(int &seed, int first, int second);
};

int DrawUniform(int &seed, int low, int high)
{
    return dist::UniformInteger(seed, low, high);
}
int DrawNormal(int &seed, int mean, int deviation)
{
    return dist::Round(dist::Normal(seed, mean, deviation));
}
int DrawExponential(int &seed, int mean, int)
{
    return dist::Round(dist::Exponential(seed, mean));
}
int DrawPoisson(int &seed, int mean, int)
{
    return dist::Poisson(seed, mean);
}
int DrawChiSquare(int &seed, int degrees, int)
{
    return dist::Round(dist::ChiSquare(seed, degrees));
}
int DrawT(int &seed, int degrees, int)
{
    return dist::Round(dist::T(seed, degrees));
}
int DrawErlang(int &seed, int order, int mean)
{
    return dist::Round(dist::Erlang(seed, order, mean));
}
int DrawRandom(int &seed, int, int)
{
    return dist::UniformInteger(seed, INT_MIN, INT_MAX);
}

const SDrawRow DrawRows[] = {
    {"$random(seed)", 0, 0, DrawRandom},
    {"$dist_uniform(seed, first, second)", 0, 1, DrawUniform},
    {"$dist_uniform(seed, first, second)", -1, 1, DrawUniform},
    {"$dist_uniform(seed, first, second)", -1000, 1000, DrawUniform},
    {"$dist_uniform(seed, first, second)", 5, 5, DrawUniform},
    {"$dist_uniform(seed, first, second)", 6, 5, DrawUniform},
    {"$dist_uniform(seed, first, second)", 0, INT_MAX, DrawUniform},
    {"$dist_uniform(seed, first, second)", INT_MIN, 0, DrawUniform},
    {"$dist_uniform(seed, first, second)", INT_MIN, INT_MAX, DrawUniform},
    {"$dist_uniform(seed, first, second)", -2000000000, 2000000000, DrawUniform},
    {"$dist_uniform(seed, first, second)", INT_MAX - 1, INT_MAX, DrawUniform},
    {"$dist_normal(seed, first, second)", 0, 1, DrawNormal},
    {"$dist_normal(seed, first, second)", 100, 15, DrawNormal},
    {"$dist_normal(seed, first, second)", -100, -15, DrawNormal},
    {"$dist_normal(seed, first, second)", 0, 0, DrawNormal},
    {"$dist_normal(seed, first, second)", 1000000, 100000000, DrawNormal},
    {"$dist_exponential(seed, first)", 1, 0, DrawExponential},
    {"$dist_exponential(seed, first)", 100, 0, DrawExponential},
    {"$dist_exponential(seed, first)", 100000000, 0, DrawExponential},
    {"$dist_poisson(seed, first)", 1, 0, DrawPoisson},
    {"$dist_poisson(seed, first)", 50, 0, DrawPoisson},
    {"$dist_poisson(seed, first)", 745, 0, DrawPoisson},
    {"$dist_poisson(seed, first)", INT_MAX, 0, DrawPoisson},
    {"$dist_chi_square(seed, first)", 1, 0, DrawChiSquare},
    {"$dist_chi_square(seed, first)", 2, 0, DrawChiSquare},
    {"$dist_chi_square(seed, first)", 99, 0, DrawChiSquare},
    {"$dist_t(seed, first)", 1, 0, DrawT},
    {"$dist_t(seed, first)", 2, 0, DrawT},
    {"$dist_t(seed, first)", 25, 0, DrawT},
    {"$dist_erlang(seed, first, second)", 1, 100, DrawErlang},
    {"$dist_erlang(seed, first, second)", 7, 1000000, DrawErlang},
    {"$dist_erlang(seed, first, second)", 20, -5, DrawErlang},
};

std::vector<int> Seeds()
{
    std::vector<int> seeds = {0, 1, -1, 259341593, INT_MIN, INT_MAX, 5};
    std::mt19937 random(1);
    while (seeds.size() < 24)
        seeds.push_back(static_cast<int>(random()));
    return seeds;
}

// A Verilog program that writes the first draws of each row for each seed, one a line.
std::string VerilogProgram()
{
    std::string tasks = "module draws;\n";
    std::string calls = "initial begin\n";
    int row = 0;
    for (const SDrawRow &drawRow : DrawRows) {
        char text[512];
        std::snprintf(text, sizeof text,
                      "task row%d(input integer start); integer seed, i, first, second; begin\n"
                      "seed = start; first = 32'sh%x; second = 32'sh%x;\n"
                      "for (i = 0; i < %d; i = i + 1) $display(\"%%0d\", %s);\nend endtask\n",
                      row, static_cast<unsigned>(drawRow.first), static_cast<unsigned>(drawRow.second), DrawsPerSeed,
                      drawRow.function);
        tasks += text;
        for (const int seed : Seeds()) {
            std::snprintf(text, sizeof text, "row%d(32'h%x);\n", row, static_cast<unsigned>(seed));
            calls += text;
        }
        ++row;
    }
    return tasks + calls + "end\nendmodule\n";
}

// What Icarus Verilog prints when it runs the program.
std::vector<int> SimulatedDraws(const std::string &program)
{
    const std::filesystem::path folder = std::filesystem::path(::testing::TempDir()) / "tesk_draws";
    std::filesystem::create_directories(folder);
    const std::string source = (folder / "draws.v").string();
    const std::string binary = (folder / "draws.vvp").string();
    std::ofstream(source) << program;
    const std::string command = "iverilog -o " + binary + " " + source + " && vvp -n " + binary;
    const std::unique_ptr<FILE, int (*)(FILE *)> output(popen(command.c_str(), "r"), pclose);
    std::vector<int> draws;
    for (int draw = 0; output && std::fscanf(output.get(), "%d", &draw) == 1;)
        draws.push_back(draw);
    return draws;
}

std::vector<int> OwnDraws(const SDrawRow &row, int seed)
{
    std::vector<int> draws;
    while (draws.size() < DrawsPerSeed)
        draws.push_back(row.draw(seed, row.first, row.second));
    return draws;
}

TEST(Distributions, AgreeWithIcarusVerilogDrawForDraw)
{
    const std::vector<int> simulated = SimulatedDraws(VerilogProgram());
    ASSERT_EQ(simulated.size(), std::size(DrawRows) * Seeds().size() * DrawsPerSeed) << "is iverilog installed?";
    auto next = simulated.begin();
    for (const SDrawRow &row : DrawRows) {
        for (const int seed : Seeds()) {
            const std::vector<int> expected(next, next + DrawsPerSeed);
            ASSERT_EQ(OwnDraws(row, seed), expected)
                << row.function << " first " << row.first << " second " << row.second << " seed " << seed;
            next += DrawsPerSeed;
        }
    }
}

// A seed whose next draw is the largest of the 2^23 that `Uniform` knows. It lies a little above the upper limit.
constexpr int SeedBeforeTheLargestDraw = -1271221770;

TEST(Uniform, StaysInItsRangeButForTheLargestDraw)
{
    int seed = SeedBeforeTheLargestDraw;
    EXPECT_GT(dist::Uniform(seed, 0, 1), 1.0);
    EXPECT_LT(dist::Uniform(seed, 0, 1), 1.0);
}

TEST(Uniform, NeverDrawsItsLowerLimit)
{
    int seed = -1511872763;  // the next state is 2, whose 23 upper bits are 0: the smallest draw
    EXPECT_EQ(dist::Uniform(seed, 0, 1), 0x1p-23);
    EXPECT_EQ(seed, 2);
}

TEST(Uniform, TakesAnEmptyRangeForTheWholePositiveOne)
{
    for (const int start : {7, 8}) {
        int seed = 1, same = 1;
        EXPECT_EQ(dist::Uniform(seed, start, 7), dist::Uniform(same, 0, INT_MAX)) << start;
    }
}

TEST(Uniform, TakesASeedOfZeroFor259341593)
{
    int seed = 0, same = 259341593;
    EXPECT_EQ(dist::Uniform(seed, 0, 1), dist::Uniform(same, 0, 1));
    EXPECT_EQ(seed, same);
    EXPECT_EQ(static_cast<unsigned>(seed), 259341593U * 69069U + 1U);
}

TEST(UniformInteger, GivesTheLowerLimitOfAnEmptyRangeWithoutADraw)
{
    for (const int high : {7, 6, INT_MIN}) {
        int seed = 5;
        EXPECT_EQ(dist::UniformInteger(seed, 7, high), 7) << high;
        EXPECT_EQ(seed, 5) << high;
    }
}

TEST(UniformInteger, ReachesBothLimitsAndNothingElse)
{
    int seed = 5;
    std::set<int> draws;
    for (int i = 0; i < 1000; ++i)
        draws.insert(dist::UniformInteger(seed, 0, 1));
    EXPECT_THAT(draws, ::testing::ElementsAre(0, 1));
    draws.clear();
    for (int i = 0; i < 1000; ++i)
        draws.insert(dist::UniformInteger(seed, -2, 1));
    EXPECT_THAT(draws, ::testing::ElementsAre(-2, -1, 0, 1));
}

// Deliberate, and unlike simulators whose C `long` has 64 bits: the one draw in 2^23 above a limit of 2^31 does not fit
// 32 bits and becomes the smallest integer, hence the lower limit.
TEST(UniformInteger, CutsTheLargestDrawAtTheLimitWhereItFits32Bits)
{
    const struct {
        int low, high, draw;
    } rows[] = {
        {0, 1, 1},           {-7, 0, 0},        {0, 1000000000, 1000000000},
        {0, INT_MAX - 1, 0}, {-5, INT_MAX, -5}, {INT_MIN, INT_MAX, INT_MIN},
    };
    for (const auto &row : rows) {
        int seed = SeedBeforeTheLargestDraw;
        EXPECT_EQ(dist::UniformInteger(seed, row.low, row.high), row.draw) << row.low << " to " << row.high;
    }
}

TEST(Round, GoesToTheNearestWholeNumberAndHalvesAwayFromZero)
{
    const struct {
        double value;
        int rounded;
    } rows[] = {
        {0.0, 0},
        {0.49, 0},
        {0.5, 1},
        {1.5, 2},
        {-0.0, 0},
        {-0.49, 0},
        {-0.5, -1},
        {-1.5, -2},
        {2147483647.4, INT_MAX},
        {-2147483647.4, -INT_MAX},
    };
    for (const auto &row : rows)
        EXPECT_EQ(dist::Round(row.value), row.rounded) << row.value;
}

TEST(Round, GivesTheSmallestIntegerForWhatDoesNotFit)
{
    for (const double value : {2147483647.5, 1e300, -1e300, HUGE_VAL, -HUGE_VAL, std::nan("")})
        EXPECT_EQ(dist::Round(value), INT_MIN) << value;
}

TEST(Erlang, IsInfiniteWhereTheProductUnderflows)
{
    for (const int order : {2000, dist::MostFactors, dist::MostFactors + 1, INT_MAX}) {
        int seed = 1;
        EXPECT_EQ(dist::Erlang(seed, order, 10), HUGE_VAL) << order;
        EXPECT_EQ(dist::Erlang(seed, order, -10), -HUGE_VAL) << order;
        EXPECT_TRUE(std::isnan(dist::Erlang(seed, order, 0))) << order;
    }
}

TEST(ChiSquare, KeepsMeanAndVarianceAboveTheMostDegreesThatAreSummed)
{
    for (const int degrees : {dist::MostDegrees + 1, INT_MAX}) {
        int seed = 1;
        double sum = 0.0, squares = 0.0;
        constexpr int Draws = 10000;
        for (int i = 0; i < Draws; ++i) {
            const double z = (dist::ChiSquare(seed, degrees) - degrees) / std::sqrt(2.0 * degrees);
            sum += z;
            squares += z * z;
        }
        EXPECT_NEAR(sum / Draws, 0.0, 0.05) << degrees;
        EXPECT_NEAR(squares / Draws, 1.0, 0.05) << degrees;
    }
}

TEST(ChiSquare, SumsOneTermForEachTwoDegreesUpToTheMost)
{
    constexpr int Degrees = 200001;
    int seed = 7, same = 7;
    double expected = dist::Normal(same, 0, 1);
    expected *= expected;
    for (int i = 0; i < Degrees / 2; ++i)
        expected += 2 * dist::Exponential(same, 1);
    EXPECT_EQ(dist::ChiSquare(seed, Degrees), expected);
    EXPECT_EQ(seed, same);
}

}  // namespace
