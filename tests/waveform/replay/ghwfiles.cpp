// VHDL types out of a GHW file: played, split, and as a tree of signals.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "core/formulaparser.h"
#include "platform/tarn.h"
#include "signal/signal.h"
#include "testpaths.h"
#include "waveform/fakefiles.h"
#include "waveform/tarnstimulus.h"

namespace {

using testing::ElementsAre;

const std::string File = TESK_SOURCE_DIR "/tests/data/ghw_types.ghdl.ghw";

class GhwFiles : public WaveformFiles {};

// Values at the changes, each with its time in ns.
std::vector<std::string> Played(const std::string &signal)
{
    const StimulusPtr stimulus = Create("/custom " + File + "," + signal);
    if (stimulus == nullptr)
        return {"none"};
    std::vector<std::string> values;
    for (const long long ns : {0, 3, 10, 15, 35})
        values.push_back(ValueAt(*stimulus, ns * 1000).value_or("-"));
    return values;
}

TEST_F(GhwFiles, PlayValuesInTheWordsOfTheirTypes)
{
    EXPECT_THAT(Played("ghw_types.st"), ElementsAre("idle", "idle", "run", "run", "\\odd_name\\"));
    EXPECT_THAT(Played("ghw_types.bo"), ElementsAre("false", "false", "false", "false", "true"));
    EXPECT_THAT(Played("ghw_types.i"), ElementsAre("-5", "-5", "7", "7", "7"));
    EXPECT_THAT(Played("ghw_types.t"), ElementsAre("3000000", "3000000", "1000000000", "1000000000", "1000000000"));
    EXPECT_THAT(Played("ghw_types.fa"), ElementsAre("8589934592", "8589934592", "-4", "-4", "-4"));
    EXPECT_THAT(Played("GHW_TYPES.ps(1).place"), ElementsAre("-2147483648", "-2147483648", "-2147483648", "77", "77"));
    EXPECT_THAT(Played("ghw_types.ni(2)(3)"), ElementsAre("0", "0", "0", "1", "1"));
    EXPECT_THAT(Played("ghw_types.some(run).s"), ElementsAre("0", "1", "1", "1", "1"));
}

TEST_F(GhwFiles, SplitARecordIntoItsFieldsAndTheseIntoTheirElements)
{
    std::vector<SimpleString::CStr> elements;
    const auto split = [&](const std::string &signal, int count) {
        return CFormulaParser().Run(("/custom " + File + "," + signal + " @5ns").c_str(), elements, count, false, 0);
    };
    ASSERT_EQ(split("ghw_types.pa", 2), 1);
    EXPECT_EQ(std::string(elements[0]), "/custom " + File + ",ghw_types.pa.data @5ns");
    EXPECT_EQ(std::string(elements[1]), "/custom " + File + ",ghw_types.pa.count @5ns");
    ASSERT_EQ(split("ghw_types.pa.data", 2), 1);
    EXPECT_EQ(std::string(elements[1]), "/custom " + File + ",ghw_types.pa.data(0) @5ns");
    ASSERT_EQ(split("ghw_types.tr.leaf", 2), 1);
    EXPECT_EQ(std::string(elements[1]), "/custom " + File + ",ghw_types.tr.leaf(1) @5ns");
    EXPECT_EQ(split("ghw_types.pa", 3), 0);
    ASSERT_EQ(split("ghw_types.ps", 2), 1);
    EXPECT_NE(Create(std::string(elements[1]) + " -r 1us"), nullptr);
}

TEST_F(GhwFiles, MakeATreeOfSignalsWithTheTypesOfTheDesign)
{
    const std::unique_ptr<NTARN::IDatabaseReader> reader(NTARN::IDatabaseReader::create(File.c_str(), false));
    ISignalContainer *container = nullptr;
    ASSERT_EQ(CreateSignalContainer(&container, nullptr), S_OK);
    ASSERT_EQ(container->LoadFromDatabase(reader.get()), S_OK);
    EXPECT_EQ(container->GetCount(), static_cast<unsigned>(reader->RootHandlesEnd() - reader->RootHandlesBegin()));
    EXPECT_EQ(container->GetMaxTime(), 35000000);
    ISignal *packet = nullptr;
    for (unsigned i = 0; i < container->GetCount(); ++i) {
        ISignal *signal = nullptr;
        ASSERT_EQ(container->GetAt(i, &signal), S_OK);
        if (std::string(signal->GetName()) == "ghw_types.pa")
            packet = signal;
    }
    ASSERT_NE(packet, nullptr);
    EXPECT_EQ(packet->GetHandle(), -1);
    ISignalContainer *fields = packet->GetChildren();
    ASSERT_NE(fields, nullptr);
    ASSERT_EQ(fields->GetCount(), 2U);
    ISignal *count = nullptr;
    ASSERT_EQ(fields->GetAt(1, &count), S_OK);
    EXPECT_EQ(std::string(count->GetName()), "count");
    EXPECT_EQ(std::string(count->GetTypeInfo()->GetTypeIdentifier()), "natural");
    EXPECT_EQ(count->GetHandle(), FindTarnSignalHandle(reader.get(), "ghw_types.pa.count", -1, nullptr, {-1, -1}));
    container->Release();
}

}  // namespace
