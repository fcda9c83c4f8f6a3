#include <filesystem>

#include "core/formulaparser.h"
#include "logcatcher.h"
#include "platform/stream/streamfiles.h"
#include "waveform/fakefiles.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using CTexts = std::vector<std::string>;

class CustomSplit : public WaveformFiles {
protected:
    struct SSplit {
        int result;
        CTexts elements;
    };

    // The elements hold "before" before.
    static SSplit Split(const std::string &formula, int count)
    {
        CFormulaParser parser;
        parser.SetSimRes(1000);
        std::vector<SimpleString::CStr> elements = {"before"};
        SSplit split{parser.Run(formula.c_str(), elements, count, true, 0), {}};
        for (const SimpleString::CStr &element : elements)
            split.elements.emplace_back(element);
        return split;
    }

    static CFakeReader *EnterDatabase(const std::string &name, const std::string &type)
    {
        CFakeReader *reader = new CFakeReader(1000, 100, {{name, type}});
        Enter("f.fst", reader);
        return reader;
    }
};

const std::string Bit = StdLogicType;

TEST_F(CustomSplit, NamesEachElementOfADatabaseSignal)
{
    EnterDatabase("top.v", VectorType(3));
    const SSplit split = Split("/custom f.fst, top.v", 3);
    EXPECT_EQ(split.result, 1);
    EXPECT_THAT(split.elements,
                ElementsAre("/custom f.fst,top.v(2)", "/custom f.fst,top.v(1)", "/custom f.fst,top.v(0)"));
}

TEST_F(CustomSplit, NamesTheFieldsOfARecord)
{
    EnterDatabase("r", RecordType({{"valid", Bit}, {"data", VectorType(2)}}));
    EXPECT_THAT(Split("/custom f.fst,r", 2).elements, ElementsAre("/custom f.fst,r.valid", "/custom f.fst,r.data"));
}

TEST_F(CustomSplit, NamesEachElementOfAVcdSignal)
{
    Enter("f.vcd", NewStore(1000, 100, {{"v", VectorType(2), {{}, {}}}}));
    const SSplit split = Split("/custom f.vcd,V", 2);
    EXPECT_EQ(split.result, 1);
    EXPECT_THAT(split.elements, ElementsAre("/custom f.vcd,V(1)", "/custom f.vcd,V(0)"));
}

TEST_F(CustomSplit, CarriesTheTimesOver)
{
    EnterDatabase("v", VectorType(1));
    const struct {
        const char *arguments, *tail;
    } rows[] = {
        {"", ""},
        {",10ns", ",10ns"},
        {",10ns,20ns", ",10ns,20ns"},
        {",1.5 ns , 20 ns", ",1.5ns,20ns"},
        {" 5ns", " 5ns"},
        {" @5ns", " @5ns"},
        {" -r 7ns", " -r 7ns"},
        {" -cancel 9ns", " -cancel 9ns"},
        {" -cancel @9ns -r 7ns", " -r 7ns -cancel @9ns"},
        {",10ns,20ns @5ns -cancel @9ns -r 7ns", ",10ns,20ns @5ns -r 7ns -cancel @9ns"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(Split("/custom f.fst,v" + std::string(row.arguments), 1).elements,
                    ElementsAre("/custom f.fst,v(0)" + std::string(row.tail)))
            << row.arguments;
}

TEST_F(CustomSplit, KeepsTheCallersLettersAndLosesTheQuotes)
{
    EnterDatabase("Top.V", VectorType(1));
    EXPECT_THAT(Split("\"/CUSTOM f.fst,Top.V\"", 1).elements, ElementsAre("/custom f.fst,Top.V(0)"));
    EXPECT_THAT(Split("\"/CUSTOM f.fst,Top.V,10ns -r 5ns\"", 1).elements,
                ElementsAre("/custom f.fst,Top.V(0),10ns -r 5ns"));
    EXPECT_EQ(Split("/custom f.fst,Top.V -r 5ns\"", 1).result, 0);
}

TEST_F(CustomSplit, LooksForBracketsAsTheFileWritesThem)
{
    EnterDatabase("mem[1]", VectorType(2));
    EXPECT_THAT(Split("/custom f.fst,mem(1)", 2).elements,
                ElementsAre("/custom f.fst,mem[1](1)", "/custom f.fst,mem[1](0)"));
}

TEST_F(CustomSplit, RefusesAStretchThatIsEmptyOrUnreadable)
{
    EnterDatabase("v", VectorType(1));
    const char *message = "1 KERNEL Waveform end time has to be greater than start time.";
    const CLogCatcher log;
    for (const char *formula : {"/custom f.zyn,s,20ns,10ns", "/custom f.zyn,s,10ns,10ns", "/custom f.fst,v,10,10fs"}) {
        EXPECT_EQ(Split(formula, 1).result, 0) << formula;
        EXPECT_THAT(Split(formula, 1).elements, IsEmpty()) << formula;
    }
    EXPECT_EQ(log.Messages(), CTexts(6, message));
    EXPECT_EQ(Split("/custom f.fst,v,5xx,10ns", 1).result, 0);
    EXPECT_EQ(Split("/custom f.fst,v,5ns,10xx", 1).result, 0);
    EXPECT_EQ(log.Messages().size(), 6U);
}

TEST_F(CustomSplit, ComparesTheTimesInFemtoseconds)
{
    EnterDatabase("v", VectorType(1));
    EXPECT_EQ(Split("/custom f.fst,v,1fs,2fs", 1).result, 1);
    EXPECT_EQ(Split("/custom f.fst,v,999fs,1ps", 1).result, 1);
    EXPECT_EQ(Split("/custom f.fst,v,5xx", 1).result, 1);  // deliberate: a start alone is not read
}

TEST_F(CustomSplit, LeavesTheElementsAloneWhereTheArgumentsAreNotUnderstood)
{
    for (const char *formula : {"/custom", "/custom f.fst", "/custom f.fst,", "/custom f.fst,s -x"}) {
        EXPECT_EQ(Split(formula, 1).result, 0) << formula;
        EXPECT_THAT(Split(formula, 1).elements, ElementsAre("before")) << formula;
    }
}

TEST_F(CustomSplit, KeepsWhatItHadMadeWhereTheCountIsWrong)
{
    EnterDatabase("v", VectorType(2));
    for (const int count : {-1, 0, 1, 3}) {
        const SSplit split = Split("/custom f.fst,v", count);
        EXPECT_EQ(split.result, 0);
        EXPECT_THAT(split.elements, ElementsAre("/custom f.fst,v(1)", "/custom f.fst,v(0)"));
    }
}

TEST_F(CustomSplit, RefusesASignalWithoutElementsOrThatIsNotThere)
{
    EnterDatabase("s", Bit);
    EXPECT_EQ(Split("/custom f.fst,s", 1).result, 0);
    EXPECT_EQ(Split("/custom f.fst,none", 1).result, 0);
    Enter("f.vcd", NewStore(1000, 100, {{"s", Bit, {{}}}}));
    EXPECT_EQ(Split("/custom f.vcd,s", 1).result, 0);
    EXPECT_EQ(Split("/custom f.vcd,none", 1).result, 0);
}

TEST_F(CustomSplit, RefusesANameThatTheBufferDoesNotHold)
{
    // A name of an element has at most 257 bytes, deliberately one less than there is room for.
    const std::string longest(254, 'n'), tooLong(255, 'n');
    Enter("f.fst", new CFakeReader(1000, 100, {{longest, VectorType(1)}, {tooLong, VectorType(1)}}));
    EXPECT_EQ(Split("/custom f.fst," + longest, 1).result, 1);
    EXPECT_EQ(Split("/custom f.fst," + longest + 'x', 1).result, 0);
    EXPECT_EQ(Split("/custom f.fst," + tooLong, 1).result, 1);
    const std::string beyond(256, 'n');
    Enter("g.fst", new CFakeReader(1000, 100, {{beyond, VectorType(1)}}));
    EXPECT_EQ(Split("/custom g.fst," + beyond, 1).result, 0);
}

TEST_F(CustomSplit, CountsNoFurtherUseOfAnOpenFile)
{
    EnterDatabase("v", VectorType(1));
    EXPECT_EQ(Split("/custom f.fst,v", 1).result, 1);
    EXPECT_EQ(g_OpenWaveformFiles.at("f.fst").m_useCount, 1);
}

class CustomSplitOfFiles : public CustomSplit {
protected:
    CustomSplitOfFiles()
    {
        std::ofstream(File("a.vcd")) << "$timescale 1 ns $end $var wire 2 ! v[1:0] $end $enddefinitions $end\n"
                                        "#0 b10 ! #5 b01 ! #9\n";
    }

    std::string File(const std::string &name) const { return m_folder / name; }

    static CTexts ValuesAt(const CTexts &formulas, long long time)
    {
        CTexts values;
        for (const std::string &formula : formulas) {
            const StimulusPtr stimulus = Create(formula);
            values.push_back(stimulus != nullptr ? ValueAt(*stimulus, time).value_or("none") : "null");
        }
        return values;
    }

    CStreamFolder m_folder;
    CLogCatcher m_log;
};

TEST_F(CustomSplitOfFiles, KeepsANewFileOpenIfAllGoesWell)
{
    const std::string file = File("a.vcd");
    EXPECT_EQ(Split("/custom " + file + ",v", 3).result, 0);
    EXPECT_EQ(Split("/custom " + file + ",none", 2).result, 0);
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
    EXPECT_EQ(Split("/custom " + file + ",v", 2).result, 1);
    ASSERT_EQ(g_OpenWaveformFiles.count(file.c_str()), 1U);
    EXPECT_EQ(g_OpenWaveformFiles.at(file.c_str()).m_useCount, 1);
}

TEST_F(CustomSplitOfFiles, GivesFormulasThatPlayTheElements)
{
    const SSplit split = Split("/custom " + File("a.vcd") + ",v,0,8ns", 2);
    ASSERT_EQ(split.result, 1);
    EXPECT_THAT(ValuesAt(split.elements, 0), ElementsAre("1", "0"));
    EXPECT_THAT(ValuesAt(split.elements, 5000), ElementsAre("0", "1"));
}

TEST_F(CustomSplitOfFiles, ReadsAnEventStreamAnewEachTime)
{
    const std::string zero(1, '\2'), one(1, '\3');
    WriteStream(
        File("a.zyn"),
        {{"v", VectorType(2), {}, {{"(1)", Bit, {{0, one}, {5, zero}}, {}}, {"(0)", Bit, {{0, zero}, {5, one}}, {}}}}},
        1000000, 9);
    const SSplit split = Split("/custom " + File("a.zyn") + ",v", 2);
    ASSERT_EQ(split.result, 1);
    EXPECT_THAT(split.elements,
                ElementsAre("/custom " + File("a.zyn") + ",v(1)", "/custom " + File("a.zyn") + ",v(0)"));
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
    EXPECT_THAT(ValuesAt(split.elements, 0), ElementsAre("1", "0"));
    EXPECT_THAT(ValuesAt(split.elements, 6000), ElementsAre("0", "1"));
    EXPECT_EQ(Split("/custom " + File("a.zyn") + ",none", 2).result, 0);
    EXPECT_EQ(Split("/custom " + File("none.zyn") + ",v", 2).result, 0);
}

TEST_F(CustomSplitOfFiles, RefusesAFileThatIsMissingOrDamaged)
{
    std::ofstream(File("bad.fst")) << "no database";
    std::ofstream(File("bad.zyn")) << "no stream";
    for (const char *name : {"none.fst", "bad.fst", "none.vcd", "bad.zyn", "none.tmp"}) {
        const SSplit split = Split("/custom " + File(name) + ",v", 2);
        EXPECT_EQ(split.result, 0) << name;
        EXPECT_THAT(split.elements, IsEmpty()) << name;
    }
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
    for (const std::string &message : m_log.Messages())
        EXPECT_EQ(message.find("Waveform file"), std::string::npos) << message;
}

TEST_F(CustomSplitOfFiles, TakesACounterFirstUnlikeTheFactory)
{
    const std::string formula = "\\counter /custom " + File("a.vcd") + ",v";
    EXPECT_EQ(Split(formula, 2).result, 0);
    EXPECT_NE(Create(formula), nullptr);
}

}  // namespace
