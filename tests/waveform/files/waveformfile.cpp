#include "waveform/files/waveformfile.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/stream/streamfiles.h"
#include "waveform/fakefiles.h"
#include "waveform/files/databasefile.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/filewalk.h"
#include "waveform/files/signalwalk.h"
#include "waveform/files/vcdfile.h"

using tesk::CSignalWalk;
using tesk::EFileKind;
using tesk::IWaveformFile;
using tesk::SFileSignal;

namespace {

using testing::ElementsAre;

constexpr const char *Bus = "a#28#std_logic_vector(1 downto 0)1 ricd1 0 e#9#std_logicc9 UX01ZWLH-";
const CFileEvents High = {{0, 2, 0}, {10, 3, 0}, {10, 2, 0}, {30, 3, 0}};
const CFileEvents Low = {{10, 3, 0}, {20, 2, 0}};

// One bus and one scalar, "wire", that has the events of the bus's left element, in a file of each kind.
std::unique_ptr<IWaveformFile> MakeFile(EFileKind kind, const std::string &streamName)
{
    if (kind == EFileKind::Vcd)
        return std::make_unique<tesk::CVcdFile>(
            std::unique_ptr<WaveStore>(NewStore(1000, 50, {{"tb.bus", Bus, {High, Low}}, {"wire", StdLogic, {High}}})));
    if (kind == EFileKind::Database)
        return std::make_unique<tesk::CDatabaseFile>(std::make_unique<CFakeReader>(
            1000, 50,
            std::vector<SFakeSignal>{
                {"tb.bus", Bus, {}, {2, 3}}, {"wire", StdLogic, High}, {"[1]", StdLogic, High}, {"[0]", StdLogic, Low}},
            2));
    const auto bytes = [](const CFileEvents &events) {
        CEvents raw;
        for (const NTARN::SFileEvent &event : events)
            raw.emplace_back(event.time, std::string(1, static_cast<char>(event.value)));
        return raw;
    };
    WriteStream(streamName,
                {{"tb.bus", Bus, {}, {{"(1)", StdLogic, bytes(High), {}}, {"(0)", StdLogic, bytes(Low), {}}}},
                 {"wire", StdLogic, bytes(High), {}}},
                1000, 50);
    return tesk::FileKind(kind).open(streamName.c_str());
}

// The changes of a signal, such as "10:03", with "-" for an element that has no event yet.
std::vector<std::string> ChangesOf(IWaveformFile &file, const SFileSignal &signal)
{
    std::vector<std::string> changes;
    CSignalWalk walk(file, signal);
    while (walk.Next()) {
        std::string change = std::to_string(walk.GetTime()) + ':';
        for (const auto &value : walk.GetValues())
            change += value ? std::to_string(*value) : "-";
        changes.push_back(change);
    }
    return changes;
}

}  // namespace

TEST(WaveformFile, ReadsTheSameInEveryKind)
{
    const CStreamFolder folder;
    for (const EFileKind kind : {EFileKind::Stream, EFileKind::Vcd, EFileKind::Database}) {
        SCOPED_TRACE(static_cast<int>(kind));
        const auto file = MakeFile(kind, folder / "a.zyn");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(file->GetResolution(), 1000);
        EXPECT_EQ(file->GetEndTime(), 50);
        const std::vector<SFileSignal> &signals = file->GetSignals();
        ASSERT_EQ(signals.size(), 2u);
        EXPECT_EQ(signals[0].path, "tb.bus");
        EXPECT_EQ(signals[0].elementCount, 2);
        EXPECT_EQ(signals[1].path, "wire");
        EXPECT_EQ(signals[1].elementCount, 1);
        EXPECT_THAT(ChangesOf(*file, signals[0]), ElementsAre("0:2-", "10:23", "20:22", "30:32"));
        EXPECT_THAT(ChangesOf(*file, signals[1]), ElementsAre("0:2", "10:2", "30:3"));
        EXPECT_NE(file->FindSignal("WIRE"), std::nullopt);
        EXPECT_EQ(file->FindSignal("wir"), std::nullopt);
        EXPECT_EQ(&file->GetSignals(), &signals);  // listed once
    }
}

TEST(WaveformFile, WalksOverAnElementWithTheLastValueOfEachTime)
{
    const CStreamFolder folder;
    for (const EFileKind kind : {EFileKind::Stream, EFileKind::Vcd, EFileKind::Database}) {
        SCOPED_TRACE(static_cast<int>(kind));
        const auto file = MakeFile(kind, folder / "a.zyn");
        ASSERT_NE(file, nullptr);
        const auto walk = file->Walk(file->GetSignals()[1].firstElement);
        ASSERT_NE(walk, nullptr);
        std::vector<std::string> events;
        std::uint64_t value = 0;
        for (long long time = 0; walk->Next(time, value);)
            events.push_back(std::to_string(time) + ':' + std::to_string(value));
        EXPECT_THAT(events, ElementsAre("0:2", "10:2", "30:3"));
    }
}

TEST(WaveformFile, OfAnEventStreamIsWalkedAndCountedByTime)
{
    const CStreamFolder folder;
    const auto file = MakeFile(EFileKind::Stream, folder / "a.zyn");
    ASSERT_NE(file, nullptr);
    const auto walk = file->WalkChanges(file->GetSignals());
    ASSERT_NE(walk, nullptr);
    std::vector<std::string> changes;
    for (long long time = 0; walk->Next(time, 25);) {
        for (const std::uint32_t signal : walk->GetChanged())
            changes.push_back(std::to_string(time) + " signal " + std::to_string(signal) + ": " +
                              std::to_string(walk->GetValues(signal).front().value_or(99)));
    }
    EXPECT_THAT(changes,
                ElementsAre("0 signal 0: 2", "0 signal 1: 2", "10 signal 0: 2", "10 signal 1: 2", "20 signal 0: 2"));

    tesk::SStretch stretch;
    stretch.from = 10;
    const auto counts = file->CountChanges(file->GetSignals(), stretch, [](long long, long long) {});
    ASSERT_TRUE(counts.has_value());
    EXPECT_EQ(counts->at(0).count, 3);
    EXPECT_EQ(counts->at(1).count, 2);
}

TEST(WaveformFile, WhoseReaderGoesThroughOneSignalAfterTheOtherIsMergedAndNotCounted)
{
    const auto file = MakeFile(EFileKind::Database, {});
    EXPECT_EQ(file->WalkChanges(file->GetSignals()), nullptr);
    EXPECT_EQ(file->CountChanges(file->GetSignals(), {}, [](long long, long long) {}), std::nullopt);
    EXPECT_EQ(file->EstimateEndTime(), 50);
    // The fake's reader keeps the events of each signal apart.
    EXPECT_NE(file->IdentifyEvents(file->GetSignals()[0].firstElement),
              file->IdentifyEvents(file->GetSignals()[1].firstElement));
}

TEST(WaveformFile, MakesTheWholeSignalOrItsFirstElementWhereTheyShareAHandle)
{
    const auto file = MakeFile(EFileKind::Vcd, {});
    const auto typeOf = [&](bool whole) {
        ISignal *signal = nullptr;
        EXPECT_GE(file->MakeSignal(*file->FindSignal("tb.bus"), whole, &signal), 0);
        const TReference<ISignal> owner(signal);
        return std::string(signal->GetTypeInfo()->GetTypeInfoString());
    };
    EXPECT_EQ(typeOf(true), Bus);
    EXPECT_EQ(typeOf(false), StdLogic);
}

TEST(FileWalk, GoesThroughTheSignalsByTimeAndAtOneTimeInTheirOrder)
{
    const CStreamFolder folder;
    for (const EFileKind kind : {EFileKind::Stream, EFileKind::Vcd, EFileKind::Database}) {
        SCOPED_TRACE(static_cast<int>(kind));
        const auto file = MakeFile(kind, folder / "a.zyn");
        ASSERT_NE(file, nullptr);
        std::vector<std::string> changes;
        tesk::CFileWalk walk(*file, file->GetSignals());
        while (walk.Next())
            changes.push_back(std::to_string(walk.GetTime()) + " signal " + std::to_string(walk.GetSignal()) + " of " +
                              std::to_string(walk.GetValues().size()) + ": " +
                              std::to_string(walk.GetValues().front().value_or(99)));
        EXPECT_THAT(changes, ElementsAre("0 signal 0 of 2: 2", "0 signal 1 of 1: 2", "10 signal 0 of 2: 2",
                                         "10 signal 1 of 1: 2", "20 signal 0 of 2: 2", "30 signal 0 of 2: 3",
                                         "30 signal 1 of 1: 3"));
        EXPECT_FALSE(walk.Next());
    }
}

TEST(FileWalk, OfNoSignalsIsAtItsEnd)
{
    const auto file = MakeFile(EFileKind::Vcd, {});
    EXPECT_FALSE(tesk::CFileWalk(*file, {}).Next());
}
