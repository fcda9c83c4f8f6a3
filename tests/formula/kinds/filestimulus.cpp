// The choice of the kind of a file, and the readers that stimuli share.

#include <fstream>

#include "logcatcher.h"
#include "waveform/customstimulus.h"
#include "waveform/fakefiles.h"
#include "waveform/tarnstimulus.h"
#include "waveform/vcdstimulus.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileStimulus : public WaveformFiles {
protected:
    static CFakeReader *EnterDatabase(const char *name)
    {
        CFakeReader *reader = new CFakeReader(1000, 100, {{"s", IntegerType, {{10, 1, 0}}}});
        Enter(name, reader);
        return reader;
    }
    static void EnterVcd(const char *name) { Enter(name, NewStore(1000, 100, {{"s", IntegerType, {{{10, 1, 0}}}}})); }
};

template <typename TStimulus>
bool IsA(const StimulusPtr &stimulus)
{
    return dynamic_cast<TStimulus *>(stimulus.get()) != nullptr;
}

TEST_F(FileStimulus, IsOfTheKindThatTheFileNameTells)
{
    for (const char *name : {"a.db", "a.vcd.db", ".vcd", ".zyn", ".tmp", "a.ZYN", "a.VCD", "a", "a b.db", "\"a.db"}) {
        const bool isVcd = std::string(name) == "a.vcd.db";
        isVcd ? EnterVcd(name) : static_cast<void>(EnterDatabase(name));
        const StimulusPtr stimulus = Create("/custom " + std::string(name) + ",s");
        EXPECT_EQ(IsA<CVcdStimulus>(stimulus), isVcd) << name;
        EXPECT_EQ(IsA<CTarnStimulus>(stimulus), !isVcd) << name;
    }
}

TEST_F(FileStimulus, IsOfTheKindThatTheFileNameTellsWithoutTheBlanksBehindIt)
{
    EnterVcd("a.vcd.db");
    EXPECT_TRUE(IsA<CVcdStimulus>(Create("/custom a.vcd.db \t,s")));
}

TEST_F(FileStimulus, OfAnEventStreamIsNeverLookedForInTheTable)
{
    for (const char *name : {"nowhere/a.zyn", "nowhere/a.tmp", "nowhere/a.vcd.zyn", "nowhere/a.tmp.vcd"}) {
        const std::unique_ptr<CFakeReader> reader(EnterDatabase(name));
        const CLogCatcher log;
        EXPECT_EQ(Create("/custom " + std::string(name) + ",s"), nullptr) << name;
        EXPECT_THAT(log.Messages(), IsEmpty()) << name;
        g_OpenWaveformFiles[name].m_reader = nullptr;
    }
}

TEST_F(FileStimulus, IsMadeFromAKeywordInAnyLetterCaseAndPlace)
{
    EnterDatabase("a.db");
    for (const char *formula : {"/CUSTOM a.db,s", "x /Custom a.db , s", "/customa.db,s", "/custom\ta.db\n,s",
                                "\"/custom a.db,s\"", "\"/custom a.db,s,1ps,20ps\" @0ns", "/custom a.db,s\"",
                                "1 0ns /txt /custom a.db,s", "\\counter /custom a.db,s"})
        EXPECT_TRUE(IsA<CTarnStimulus>(Create(formula))) << formula;
}

TEST_F(FileStimulus, NeedsAFileACommaAndASignal)
{
    EnterDatabase("a.db");
    EnterDatabase("");
    const CLogCatcher log;
    for (const char *formula :
         {"/custom", "/custom a.db", "/custom a.zyn", "/custom ,s", "/custom a.db,", "/custom a.db, \t", "/custom \t,s",
          "\"/custom a.db,\"", "\"/custom\"", "/custom a.db,s(", "/custom a.db,s x", "/custom a.db,s -rel 1ns"})
        EXPECT_EQ(Create(formula), nullptr) << formula;
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST_F(FileStimulus, StoresTheResolutionInAnyCase)
{
    g_simRes = 1;
    EXPECT_EQ(Create("/custom", 0, 77), nullptr);
    EXPECT_EQ(g_simRes, 77);
}

TEST_F(FileStimulus, SharesTheReaderOfItsFile)
{
    EnterDatabase("a.db");
    const StimulusPtr first = Create("/custom a.db,s");
    const StimulusPtr second = Create("/custom  a.db ,s");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(g_OpenWaveformFiles.size(), 1u);
    EXPECT_EQ(g_OpenWaveformFiles["a.db"].m_useCount, 3);
}

TEST_F(FileStimulus, LeavesItsReaderToTheTable)
{
    EnterDatabase("a.db");
    const int ended = CFakeReader::Ended();
    Create("/custom a.db,s").reset();
    EXPECT_EQ(CFakeReader::Ended(), ended);
    EXPECT_EQ(ValueAt(*Create("/custom a.db,s"), 10), "1");
}

TEST_F(FileStimulus, CountsUsesUpTo255)
{
    EnterDatabase("a.db");
    for (int i = 0; i < 255; ++i)
        Create("/custom a.db,s").reset();
    EXPECT_EQ(g_OpenWaveformFiles["a.db"].m_useCount, 0);
    EXPECT_NE(Create("/custom a.db,s"), nullptr);
}

TEST_F(FileStimulus, ThatCannotBeMadeLeavesTheTableAlone)
{
    EnterDatabase("a.db");
    const int ended = CFakeReader::Ended();
    const CLogCatcher log;
    EXPECT_EQ(Create("/custom a.db,none"), nullptr);
    EXPECT_EQ(g_OpenWaveformFiles.size(), 1u);
    EXPECT_EQ(CFakeReader::Ended(), ended);
    EXPECT_NE(Create("/custom a.db,s"), nullptr);
}

TEST_F(FileStimulus, OfAnEntryWithoutAReaderCannotBeMade)
{
    Enter("a.db", nullptr);
    Enter("a.vcd", nullptr);
    EXPECT_EQ(Create("/custom a.db,s"), nullptr);
    EXPECT_EQ(Create("/custom a.vcd,s"), nullptr);
}

TEST_F(FileStimulus, OfAMissingDatabaseIsRefusedWithAMessage)
{
    const CLogCatcher log;
    EXPECT_EQ(Create("/custom nowhere/a.db,s"), nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre("1 KERNEL Waveform file does not exist."));
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
}

TEST_F(FileStimulus, OfASignalThatTheFileDoesNotHaveNamesItAsTheFileWould)
{
    EnterDatabase("a.db");
    EnterVcd("a.vcd");
    const CLogCatcher log;
    EXPECT_EQ(Create("/custom a.db,x(3)"), nullptr);
    EXPECT_EQ(Create("/custom a.vcd,y(1)(2).%s"), nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre("1 KERNEL Signal `x[3]' not found in waveform file.",
                                            "1 KERNEL Signal `y[1][2].%s' not found in waveform file."));
}

TEST_F(FileStimulus, FindsElementsInParentheses)
{
    Enter("a.db", new CFakeReader(1000, 100,
                                  {{"s", VectorType(2), {}, {1, 2}}, {"[1]", StdLogicType}, {"[0]", StdLogicType}}, 1));
    const StimulusPtr stimulus = Create("/custom a.db,s(0)");
    ASSERT_NE(stimulus, nullptr);
    EXPECT_STREQ(stimulus->GetSignalTypeInfo()->GetTypeIdentifier(), "std_logic");
    EXPECT_EQ(FormulaOf(*stimulus), "\"/custom a.db,s[0],0ps,100ps\"");
}

TEST_F(FileStimulus, OfASignalWhoseTypeIsNoneCannotBeMade)
{
    Enter("a.db", new CFakeReader(1000, 100, {{"s", "no type"}}));
    Enter("a.vcd", NewStore(1000, 100, {{"s", "no type"}}));
    EXPECT_EQ(Create("/custom a.db,s"), nullptr);
    EXPECT_EQ(Create("/custom a.vcd,s"), nullptr);
}

// A reader that fails behind the look-up of a signal, in the ways that a reader can.
struct SUnknownFailure {};

template <typename TFailure>
class CFailingReader final : public NTARN::IDatabaseReader {
public:
    long long GetEndTime() override { return 10; }
    long long GetResolution() override { return 1; }
    const int *RootHandlesBegin() override { return &m_handle; }
    const int *RootHandlesEnd() override { return &m_handle + 1; }
    NTARN::HSignalRange GetChildRange(int) override { return {}; }
    std::string GetName(int) override { return "s"; }
    const Kestrin::KTypeInfo &GetType(int) override { throw TFailure(); }
    NTARN::KEventIterator EventsFrom(int, long long) override { return {nullptr, 0, 0}; }
    NTARN::KEventIterator EventsEnd(int) override { return {nullptr, 0, 0}; }
    int GetMode(int) override { return 0; }
    std::string GetFullName(int, bool) override { return "s"; }
    long long GetSignalEndTime(int) override { return 10; }

private:
    int m_handle = 0;
};

TEST_F(FileStimulus, IsRefusedWhateverAReaderRaises)
{
    Enter("corrupted.db", new CFailingReader<NTARN::XFileCorrupted>);
    Enter("missing.db", new CFailingReader<NTARN::XFileDoesNotExist>);
    Enter("memory.db", new CFailingReader<std::bad_alloc>);
    Enter("unknown.db", new CFailingReader<SUnknownFailure>);
    const CLogCatcher log;
    for (const char *name : {"corrupted", "missing", "memory", "unknown"})
        EXPECT_EQ(Create("/custom " + std::string(name) + ".db,s"), nullptr) << name;
    EXPECT_THAT(log.Messages(),
                ElementsAre("1 KERNEL Waveform file corrupted.", "1 KERNEL Waveform file does not exist."));
    EXPECT_EQ(g_OpenWaveformFiles.size(), 4u);
}

// A reader that finds its file damaged when it is asked for events.
class CDamagedReader final : public CFakeReader {
public:
    using CFakeReader::CFakeReader;
    NTARN::KEventIterator EventsFrom(int, long long) override { throw NTARN::XFileCorrupted(); }
};

TEST_F(FileStimulus, HasNoValueAndNoChangeWhereTheReaderFails)
{
    Enter("a.db", new CDamagedReader(1000, 100, {{"s"}}));
    const StimulusPtr stimulus = Create("/custom a.db,s");
    ASSERT_NE(stimulus, nullptr);
    stimulus->AllowBinary8BytesValues();
    SimpleString::CStr text;
    long long bits = 0;
    EXPECT_FALSE(stimulus->GetValue(5, text));
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(5, bits));
    EXPECT_EQ(stimulus->GetNextEventTime(5), -1);
}

}  // namespace
