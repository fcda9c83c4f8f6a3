#include "core/formulaparser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/support.h"
#include "logcatcher.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

struct SSplit {
    int result;
    std::vector<std::string> elements;
};

SSplit Split(const char *formula, int count, bool isBitVector = true, long long startTime = 0)
{
    CFormulaParser parser;
    parser.SetSimRes(1000);
    std::vector<SimpleString::CStr> elements = {"before"};
    SSplit split{parser.Run(formula, elements, count, isBitVector, startTime), {}};
    for (const SimpleString::CStr &element : elements)
        split.elements.emplace_back(element);
    return split;
}

constexpr char Counter[] = "\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\00\\INC\\1\\PERIOD\\10 ns\\REV\\0";

}  // namespace

TEST(FormulaParser, StoresTheResolution)
{
    CFormulaParser parser;
    parser.SetSimRes(77);
    EXPECT_EQ(g_simRes, 77);
    parser.SetSimRes(1000);
}

TEST(FormulaParser, RefusesNoFormulaAndLeavesTheElementsAlone)
{
    for (const char *formula : {"", static_cast<const char *>(nullptr)}) {
        const SSplit split = Split(formula, 2);
        EXPECT_EQ(split.result, 0);
        EXPECT_THAT(split.elements, ElementsAre("before"));
    }
}

TEST(FormulaParser, SplitsAPlainFormula)
{
    const SSplit split = Split("01 0ns, 10 10ns -r 20ns", 2);
    EXPECT_EQ(split.result, 1);
    EXPECT_THAT(split.elements, ElementsAre("0 0ns,1 10ns -r 20ns", "1 0ns,0 10ns -r 20ns"));
    EXPECT_EQ(Split("1x01 0ns", 2).result, -1);
    EXPECT_THAT(Split("(a, b) 5ns", 2, false).elements, ElementsAre("a 5ns", "b 5ns"));
}

TEST(FormulaParser, NamesTheWiresOfACounter)
{
    const SSplit split = Split(Counter, 2);
    EXPECT_EQ(split.result, 1);
    ASSERT_THAT(split.elements, SizeIs(3));  // they are appended
    EXPECT_THAT(split.elements[1], testing::MatchesRegex("\\\\counter\\\\wire\\\\0\\\\handle\\\\[0-9]+"));
    const StimulusPtr wire = Create(split.elements[2]);
    ASSERT_NE(wire, nullptr);
    EXPECT_TRUE(wire->IsCounter());
}

TEST(FormulaParser, NamesTheWiresOfARandomVector)
{
    const SSplit split = Split("\\RANDOM\\1\\5\\0\\10\\20.000000ns", 2);
    EXPECT_EQ(split.result, 1);
    ASSERT_THAT(split.elements, SizeIs(2));
    EXPECT_THAT(split.elements[0], testing::MatchesRegex("\\\\random\\\\wire\\\\0\\\\[0-9]+"));
    const SSplit refused = Split("\\random\\1\\5\\0\\10\\20ns", 2);  // the settings' keyword has a case
    EXPECT_EQ(refused.result, 0);
    EXPECT_THAT(refused.elements, IsEmpty());
}

TEST(FormulaParser, SplitsTheLegacyNotation)
{
    for (const char *formula : {"/brel [2]10 [1]10", "\"/BREL \t[2]10 [1]10\"", "x/brel[2]10[1]10"}) {
        const SSplit split = Split(formula, 2);
        EXPECT_EQ(split.result, 1) << formula;
        EXPECT_THAT(split.elements, ElementsAre("1 0ps,0 10ns,-cancel 20000000fs", "0 0ps,1 10ns,-cancel 20000000fs"))
            << formula;
    }
    EXPECT_EQ(Split("/brel (H10", 2).result, 0);
    EXPECT_EQ(Split("/brel", 2).result, 0);
}

TEST(FormulaParser, LooksForCountersBeforeAllElse)
{
    const char both[] = "/brel H10 \\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\0\\INC\\1\\PERIOD\\10ns\\REV\\0";
    EXPECT_EQ(Split(both, 1).result, 0);  // what stands in front of the keyword is no part of a counter
    EXPECT_EQ(Split("\\counter/brel H10", 1).result, 0);
}

TEST(FormulaParser, TakesNoFileFormulaForAnother)
{
    const CLogCatcher log;  // which says that there is no such file
    for (const char *formula : {"/custom f.vcd,s", "1 0ns /TXT", "/brel H10 /mat x"}) {
        const SSplit split = Split(formula, 1);
        EXPECT_EQ(split.result, 0) << formula;
        EXPECT_THAT(split.elements, IsEmpty()) << formula;
        EXPECT_EQ(Create(formula), nullptr) << formula;
    }
}
