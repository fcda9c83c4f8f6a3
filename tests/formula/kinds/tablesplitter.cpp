#include "core/formulaparser.h"
#include "core/support.h"
#include "waveform/samplestimulus.h"
#include "waveform/table/tables.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TableSplit : public CTableTest {
protected:
    struct SSplit {
        int result;
        CTexts elements;
    };

    static SSplit Split(const std::string &formula, int count, long long startTime = 0)
    {
        CFormulaParser parser;
        parser.SetSimRes(1000);
        std::vector<SimpleString::CStr> elements = {"before"};
        SSplit split{parser.Run(formula.c_str(), elements, count, true, startTime), {}};
        for (const SimpleString::CStr &element : elements)
            split.elements.emplace_back(element);
        return split;
    }

    // Tells about the stimulated signal, whose name must live on.
    void Stimulate(const char *name, const std::string &type) { IStimulus::SetupAdditionalInfo(name, type.c_str()); }
};

TEST_F(TableSplit, LoadsTheTableOnceAndRefersToItsElements)
{
    m_folder.Write("t.txt", "t s\n10 110\n20 011\n");
    Stimulate("s", VectorType(3));
    const SSplit split = Split("/txt t.txt,s -time_points t", 3);
    EXPECT_EQ(split.result, 1);
    EXPECT_THAT(split.elements, ElementsAre("/txt/internal 1,(2)", "/txt/internal 1,(1)", "/txt/internal 1,(0)"));
    EXPECT_EQ(g_SampleColumns.size(), 1U);

    std::vector<StimulusPtr> stimuli;
    for (const std::string &element : split.elements)
        stimuli.push_back(Create(element));
    std::string at10, at20;
    for (const StimulusPtr &stimulus : stimuli) {
        at10 += ValueAt(*stimulus, 10).value_or("?");
        at20 += ValueAt(*stimulus, 20).value_or("?");
        EXPECT_EQ(stimulus->GetNextEventTime(10), 20);
    }
    EXPECT_EQ(at10, "110");
    EXPECT_EQ(at20, "011");
    EXPECT_EQ(g_SampleColumns.at(1)->m_useCount, 4);
    stimuli.clear();
    EXPECT_TRUE(g_SampleColumns.empty());
}

TEST_F(TableSplit, HandsTheStartTimeOn)
{
    m_folder.Write("t.txt", "s\n1\n");
    Stimulate("s", VectorType(1));
    EXPECT_EQ(Split("/txt t.txt,s", 1, 77).result, 1);
    EXPECT_THAT(SamplesOf(*g_SampleColumns.at(1)), ElementsAre("77:1"));
}

TEST_F(TableSplit, FindsATableWithoutItsExtension)
{
    m_folder.Write("table.txt", "s\n1\n");
    Stimulate("s", VectorType(1));
    EXPECT_EQ(Split("\"/TXT table,s\"", 1).result, 1);
    const SSplit missing = Split("/txt missing", 1);
    EXPECT_EQ(missing.result, 0);
    EXPECT_THAT(missing.elements, IsEmpty());
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(TableSplit, LeavesTheElementsAloneWhereTheArgumentsAreNotUnderstood)
{
    for (const char *formula : {"/txt t.txt,", "/txt t.txt,s -x", "/txt t,s -time_var t", "/mat t,", "/mat t,s)"}) {
        const SSplit split = Split(formula, 1);
        EXPECT_EQ(split.result, 0) << formula;
        EXPECT_THAT(split.elements, ElementsAre("before")) << formula;
    }
}

TEST_F(TableSplit, RefusesAnotherCountASignalWithoutElementsAndATableThatFails)
{
    m_folder.Write("t.txt", "s\n1\n");
    Stimulate("s", VectorType(2));
    const SSplit split = Split("/txt t.txt,s", 3);
    EXPECT_EQ(split.result, 0);
    EXPECT_THAT(split.elements, ElementsAre("/txt/internal 1,(1)", "/txt/internal 1,(0)"));
    EXPECT_EQ(Split("/txt t.txt,none", 2).result, 0);
    Stimulate("s", StdLogicType);
    EXPECT_EQ(Split("/txt t.txt,s", 1).result, 0);
    Stimulate("s", "");
    EXPECT_EQ(Split("/txt t.txt,s", 1).result, 0);
    Stimulate("s", "no type");
    EXPECT_EQ(Split("/txt t.txt,s", 1).result, 0);
    EXPECT_EQ(g_SampleColumns.size(), 1U);  // of the first one alone
}

TEST_F(TableSplit, NamesElementsThatAreNumbersOrComposite)
{
    m_folder.Write("t.txt", "");
    const std::string element[] = {IntegerType, RealType, VectorType(2), "r#3#rec1 a e#3#bitc2 01", PhysicalType};
    for (const std::string &type : element) {
        Stimulate("m", ArrayType("mem(3 downto 2)", 3, 2, type));
        const SSplit split = Split("/txt t.txt,s", 2);
        EXPECT_EQ(split.result, 1) << type;
        EXPECT_THAT(split.elements, ElementsAre("/txt t.txt,s(3)", "/txt t.txt,s(2)")) << type;
    }
    EXPECT_TRUE(g_SampleColumns.empty());
}

TEST_F(TableSplit, NumbersUpwardFromTheLeftBoundUnlessTheRangeGoesDown)
{
    m_folder.Write("t.txt", "");
    Stimulate("m", ArrayType("mem(-1 to 1)", -1, 1, IntegerType));
    EXPECT_THAT(Split("/txt t.txt,s", 3).elements,
                ElementsAre("/txt t.txt,s(-1)", "/txt t.txt,s(0)", "/txt t.txt,s(1)"));
}

TEST_F(TableSplit, NumbersTheFieldsOfARecordFromZero)
{
    m_folder.Write("t.txt", "");
    Stimulate("r", "r#3#rec2 a e#3#bitc2 01 b e#3#bitc2 01");
    EXPECT_THAT(Split("/txt t,s", 2).elements, ElementsAre("/txt t.txt,s(0)", "/txt t.txt,s(1)"));
}

TEST_F(TableSplit, TakesTheBoundsFromTheStimulatedSignalAndTheElementsFromTheLastDescription)
{
    m_folder.Write("t.txt", "");
    Stimulate("m", ArrayType("mem(7 downto 6)", 7, 6, VectorType(2)));
    IStimulus::SetupAdditionalInfo(nullptr, ArrayType("row(0 to 1)", 0, 1, IntegerType).c_str());
    EXPECT_THAT(Split("/txt t,s", 2).elements, ElementsAre("/txt t.txt,s(7)", "/txt t.txt,s(6)"));
}

TEST_F(TableSplit, CarriesTheSwitchesOver)
{
    m_folder.Write("t.txt", "");
    Stimulate("m", ArrayType("mem(0 to 0)", 0, 0, IntegerType));
    const struct {
        const char *formula, *element;
    } rows[] = {
        {"/txt t", "/txt t.txt,m(0)"},
        {"/txt t,s", "/txt t.txt,s(0)"},
        {"/txt t,s,10ns", "/txt t.txt,s(0),10ns"},
        {"/txt t,s,10ns,20ns", "/txt t.txt,s(0),10ns,20ns"},
        {"/txt t,s @5ns -r 5ns -cancel 9ns", "/txt t.txt,s(0)"},
        {"/txt t,s -col -abs -fixed_step", "/txt t.txt,s(0)"},
        {"/txt t,s -rel -interval 5ns -time_points t -row", "/txt t.txt,s(0) -row -time_points t -interval 5ns -rel"},
        {"/txt t,s -time_points ", "/txt t.txt,s(0) -time_points "},
        {"/mat f.mat,v -time_var t -point 3 -row", "/mat f.mat,v(0) -row -point 3 -time_var t"},
        {"/mat f.mat,v -time_var t -time_points 2", "/mat f.mat,v(0) -time_points 2"},
        {"/MAT f,v,10,20ns -interval 5ns -rel", "/mat f,v(0),10,20ns -interval 5ns -rel"},
    };
    for (const auto &row : rows) {
        const SSplit split = Split(row.formula, 1);
        EXPECT_EQ(split.result, 1) << row.formula;
        EXPECT_THAT(split.elements, ElementsAre(row.element)) << row.formula;
    }
}

TEST_F(TableSplit, GivesNamedFormulasThatPlay)
{
    m_folder.Write("t.txt", "s x\n-5 1\n17 2\n");
    Stimulate("m", ArrayType("mem(0 to 1)", 0, 1, IntegerType));
    const SSplit split = Split("/txt t,s -interval 1ns", 2);
    ASSERT_EQ(split.result, 1);
    IStimulus::SetupAdditionalInfo(nullptr, IntegerType);
    for (const std::string &element : split.elements) {
        const StimulusPtr stimulus = Create(element);
        ASSERT_NE(stimulus, nullptr) << element;
        EXPECT_EQ(ValueAt(*stimulus, 1000), "17");
    }
}

TEST_F(TableSplit, SurvivesANullNameOfTheSignal)
{
    m_folder.Write("t.txt", "");
    IStimulus::SetupAdditionalInfo("x", ArrayType("mem(0 to 0)", 0, 0, IntegerType).c_str());
    g_SignalName = nullptr;
    EXPECT_THAT(Split("/txt t", 1).elements, ElementsAre("/txt t.txt,(0)"));
}

}  // namespace
