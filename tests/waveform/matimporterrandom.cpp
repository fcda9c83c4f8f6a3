// Imports from random matrices, compared with a plain computation of what they should give.
#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "testpaths.h"
#include "waveform/fakematlab/installed.h"
#include "waveform/fakematlab/variable.h"
#include "waveform/mat/matfiles.h"
#include "waveform/mat/matnumber.h"

namespace {

// The types of signals, and what there is to know of them.
struct SRandomType {
    std::string text;
    char kind;  // s a scalar of an enumeration, n a number, b an array of bits, a an array of numbers
    int lower = 0;
    tesk::SNumberForm form;
    bool isReal = false, isVerilog = false;
    const char *prefix = "";
};

const SRandomType RandomTypes[] = {
    {StdLogicType, 's', 0, {1, 0, true}},
    {IntegerType, 'n', 0, {32, 0, true}, false, false, "2#"},
    {RealType, 'n', 0, {}, true},
    {VectorType(8), 'b', 0, {8, 0, true}},
    {ArrayType("UNSIGNED(3 to 6)", 3, 6), 'b', 3, {4, 0, false}},
    {"va#8#reg[6:1]1 ricd6 1 e#3#regc4 01ZX", 'b', 1, {6, 0, false}, false, true},
    {ArrayType("a(4 downto 2)", 4, 2, IntegerType), 'a', 2, {3, 0, true}},
};

struct SRandomFormula {
    unsigned seed, timeSeed;
    const SRandomType *whole, *type;
    int index1 = -1, index2 = -1;
    bool byRows, isRelative;
    int timeLane;  // -1 none, -2 another variable
    int interval;  // ps; 0 without
    int fraction;
    long long start;

    std::string Text() const
    {
        std::string text = "there,random" + std::to_string(seed);
        for (const int index : {index1, index2})
            text += index != -1 ? "(" + std::to_string(index) + ")" : "";
        text += byRows ? " -row" : "";
        text += isRelative ? " -rel" : "";
        text += fraction != 0 ? " -point " + std::to_string(fraction) : "";
        text += interval != 0 ? " -interval " + std::to_string(interval) + "ps" : "";
        if (timeLane >= 0)
            text += " -time_points " + std::to_string(timeLane + 1);
        else if (timeLane == -2)
            text += " -time_var random" + std::to_string(timeSeed);
        return text;
    }
};

SRandomFormula MakeFormula(std::mt19937 &random)
{
    const auto below = [&](unsigned bound) { return static_cast<int>(random() % bound); };
    SRandomFormula formula{};
    formula.seed = static_cast<unsigned>(below(1000));
    formula.timeSeed = static_cast<unsigned>(below(1000));
    formula.type = &RandomTypes[random() % std::size(RandomTypes)];
    formula.whole = below(3) == 0 ? &RandomTypes[random() % std::size(RandomTypes)] : formula.type;
    formula.index1 = below(2) == 0 ? below(8) : -1;
    formula.index2 = formula.index1 != -1 && below(3) == 0 ? below(8) : -1;
    formula.byRows = below(2) == 0;
    formula.isRelative = below(3) == 0;
    formula.timeLane = below(4) == 0 ? -2 : below(5) - 1;
    formula.interval = below(4);
    formula.fraction = below(3) == 0 ? below(3) : 0;
    formula.start = below(2) == 0 ? below(6) : 0;
    return formula;
}

using CLanes = std::vector<std::vector<double>>;

CLanes LanesOf(unsigned seed, bool byRows)
{
    const SRandomMatrix matrix(seed);
    CLanes lanes(byRows ? matrix.rows : matrix.columns);
    for (std::size_t row = 0; row < matrix.rows; ++row) {
        for (std::size_t column = 0; column < matrix.columns; ++column)
            lanes[byRows ? row : column].push_back(matrix.At(row, column));
    }
    return lanes;
}

// @return false if the formula does not fit the type
bool PickLane(const SRandomFormula &formula, int &lane)
{
    const bool isElement = formula.whole->text != formula.type->text;
    const bool isArray = formula.type->kind == 'a' || formula.type->kind == 'b';
    if (formula.type->kind == 's' && formula.index1 != -1)
        return false;
    if (formula.index2 != -1 && (!isArray || (isElement && formula.type->kind == 'a')))
        return false;
    if (formula.index2 != -1 && !isElement)
        lane = formula.index2 - formula.type->lower;
    else
        lane = formula.index1 == -1 ? 0 : formula.index1 - formula.whole->lower;
    return true;
}

std::string ValueText(const SRandomFormula &formula, double value)
{
    char number[64];
    std::snprintf(number, sizeof number, "%g", value);
    if (formula.type->isReal)
        return number;
    tesk::SNumberForm form = formula.type->form;
    form.fraction = formula.fraction;
    const std::string text =
        formula.type->isVerilog ? tesk::VerilogNumberText(value, form) : tesk::VhdlNumberText(value, form);
    return text.empty() ? "null" : formula.type->prefix + text;
}

using CTimedNumbers = std::vector<std::pair<long long, double>>;

// All that happens to the times once the values and the times are there. @return false if they go back
bool Settle(const SRandomFormula &formula, CTimedNumbers &events)
{
    CTimedNumbers rising;
    for (const auto &event : events) {
        if (!rising.empty() && event.first < rising.back().first)
            return false;
        if (!rising.empty() && event.first == rising.back().first)
            rising.pop_back();
        rising.push_back(event);
    }
    while (formula.start != 0 && !formula.isRelative && rising.size() > 1 && rising[1].first <= formula.start)
        rising.erase(rising.begin());
    if (formula.start != 0 && !formula.isRelative && !rising.empty() && rising[0].first < formula.start)
        rising[0].first = formula.start;
    events = rising;
    return true;
}

std::vector<std::string> Expected(const SRandomFormula &formula)
{
    const std::vector<std::string> failed = {"failed"};
    const CLanes lanes = LanesOf(formula.seed, formula.byRows);
    std::vector<double> times;
    if (formula.timeLane >= 0) {
        if (static_cast<std::size_t>(formula.timeLane) >= lanes.size())
            return failed;
        times = lanes[static_cast<std::size_t>(formula.timeLane)];
    } else if (formula.timeLane == -2) {
        const SRandomMatrix matrix(formula.timeSeed);
        if (matrix.rows != 1 && matrix.columns != 1)
            return failed;
        times = matrix.values;
    }
    int lane = 0;
    if (!PickLane(formula, lane))
        return failed;
    if (formula.timeLane >= 0 && formula.timeLane <= lane)
        ++lane;
    const bool isThere = lane >= 0 && static_cast<std::size_t>(lane) < lanes.size();
    if (!isThere && formula.type->kind != 's')
        return {"no data"};
    std::vector<double> values;
    if (isThere)
        values = lanes[static_cast<std::size_t>(lane)];
    const double interval = formula.interval != 0 ? formula.interval : 1;
    CTimedNumbers events;
    long long running = formula.start;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (formula.timeLane == -1) {
            events.emplace_back(formula.start + static_cast<long long>(i) * static_cast<long long>(interval),
                                values[i]);
            continue;
        }
        if (i >= times.size())
            break;
        running = static_cast<long long>(times[i] * interval + 0.5 +
                                         (formula.isRelative ? static_cast<double>(running) : 0.0));
        events.emplace_back(running, values[i]);
    }
    if (!Settle(formula, events) || events.empty())
        return failed;
    std::vector<std::string> texts;
    for (const auto &[time, value] : events)
        texts.push_back(std::to_string(time) + ":" + ValueText(formula, value));
    return texts;
}

class RandomMatImport : public CMatTest {
protected:
    RandomMatImport() : m_installed(TESK_FAKE_MATLAB) { ReleaseMatLibraries(); }

    const CInstalledMatlab m_installed;
};

// The places of a lane that a scalar does not have lie, by rows, among those of others.
bool IsMisplaced(const SRandomFormula &formula)
{
    return formula.type->kind == 's' && formula.byRows && formula.timeLane == 0;
}

TEST_F(RandomMatImport, GivesWhatItShould)
{
    std::mt19937 random(11);
    int good = 0;
    for (int round = 0; round < 4000; ++round) {
        const SRandomFormula formula = MakeFormula(random);
        if (IsMisplaced(formula))
            continue;
        IStimulus::SetupAdditionalInfo("sig", formula.whole->text.c_str());
        IStimulus::SetupAdditionalInfo(nullptr, formula.type->text.c_str());
        const CTexts samples = SamplesOfHandle(ImportElement(formula.Text(), formula.type->text, formula.start));
        ASSERT_EQ(samples, Expected(formula)) << formula.Text() << " start " << formula.start << "\n"
                                              << formula.type->text << "\n"
                                              << formula.whole->text;
        good += samples[0].find(':') != std::string::npos;
    }
    EXPECT_GT(good, 500);
}

}  // namespace
