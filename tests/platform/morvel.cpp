#include "platform/morvel.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>

#include "logcatcher.h"
#include "platform/stream/oldstream.h"
#include "platform/stream/streamfiles.h"
#include "slots.h"

namespace {

using Morvel::KEventData;
using Morvel::KEventsStore;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using namespace std::string_literals;

// A store of one scalar that outlives its file.
KEventsStore StoreOf(const STreeNode &node)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {node});
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    return *raw->GetEventsStore(0);
}

std::string ValueOf(const KEventData &event, unsigned size)
{
    std::string value(size, '\x55');
    event.GetValue(reinterpret_cast<unsigned char *>(value.data()), size);
    return value;
}

CEvents RandomEvents(std::mt19937 &random, std::size_t count, unsigned valueSize, long long maxStep)
{
    CEvents events;
    long long time = 0;
    for (std::size_t i = 0; i < count; ++i) {
        time += std::uniform_int_distribution<long long>(0, maxStep)(random);
        std::string value(valueSize, '\0');
        for (char &byte : value)
            byte = static_cast<char>(random());
        events.emplace_back(time, value);
    }
    return events;
}

STreeNode RandomTree(std::mt19937 &random, int depth)
{
    static const std::pair<const char *, unsigned> types[] = {
        {StdLogic, 1}, {Real, 8}, {"i#7#integerrict-2147483648 2147483647", 4}};
    const auto &[type, size] = types[random() % 3];
    if (depth == 0 || random() % 3 == 0)
        return {"s" + std::to_string(random() % 100),
                type,
                RandomEvents(random, random() % 4 == 0 ? 1000 + random() % 1100 : random() % 5, size, random() % 300),
                {}};
    STreeNode node{"r" + std::to_string(random() % 100), "r#1#r1 a e#3#bitc2 01", {}, {}};
    const std::size_t count = random() % 4;
    for (std::size_t i = 0; i < count; ++i)
        node.children.push_back(RandomTree(random, depth - 1));
    return node;
}

TEST(EventStream, ReadsBackWhatWasWritten)
{
    const CStreamFolder folder;
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        std::vector<STreeNode> nodes;
        for (std::size_t i = random() % 4; i-- > 0;)
            nodes.push_back(RandomTree(random, static_cast<int>(random() % 5)));
        WriteStream(folder / "a.zyn", nodes);
        ASSERT_EQ(ReadStream(folder / "a.zyn"), nodes) << "round " << round;
    }
}

TEST(OldEventStream, IsReadAsItWasWritten)
{
    const CStreamFolder folder;
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        std::vector<STreeNode> nodes;
        for (std::size_t i = random() % 4; i-- > 0;)
            nodes.push_back(RandomTree(random, static_cast<int>(random() % 5)));
        WriteOldStream(folder / "a.zyn", nodes);
        ASSERT_EQ(ReadStream(folder / "a.zyn"), nodes) << "round " << round;
    }
}

TEST(EventStream, KeepsEventsThatCameInAnyOrderOfTheSignals)
{
    const CStreamFolder folder;
    std::mt19937 random(2);
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    std::vector<CEvents> expected(3);
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(writer->AddSignal(-1, std::to_string(i).c_str(), StdLogic), i);
    std::vector<long long> times(3, 0);
    for (int i = 0; i < 9000; ++i) {
        const auto signal = random() % 3;
        times[signal] += static_cast<long long>(random() % 3);
        const std::string value(1, static_cast<char>(random() % 9));
        ASSERT_TRUE(writer->AddEvent(static_cast<int>(signal), times[signal], value.data()));
        expected[signal].emplace_back(times[signal], value);
    }
    ASSERT_TRUE(writer->Finish());
    const auto nodes = ReadStream(folder / "a.zyn");
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(nodes[i].events, expected[i]);
}

TEST(EventStream, IsThatOfTheLastOfTwoWritersOnOnePlace)
{
    const CStreamFolder folder;
    const std::string path = folder / "two.zyn";
    const StreamWriterPtr first(Morvel::CreateStreamWrite(path.c_str(), 1));
    const StreamWriterPtr second(Morvel::CreateStreamWrite(path.c_str(), 1));
    ASSERT_EQ(first->AddSignal(-1, "a", StdLogic), 0);
    ASSERT_TRUE(first->AddEvent(0, 5, "\2"));
    ASSERT_TRUE(first->Finish());
    ASSERT_EQ(second->AddSignal(-1, "b", StdLogic), 0);
    EXPECT_EQ(ReadStream(path).at(0).name, "a");
    EXPECT_TRUE(second->Finish());
    EXPECT_EQ(ReadStream(path).at(0).name, "b");
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(EventStream, KeepsResolutionAndEndTime)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {Bit("a", {{70, "\2"}})}, 1000000, 200);
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    EXPECT_EQ(raw->GetResolution(), 1000000);
    EXPECT_EQ(raw->GetEndTime(), 200);
}

TEST(EventStream, EndsWithItsLastEventWhereThatLiesBehindTheEndTime)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {Bit("a", {{70, "\2"}}), Bit("b", {})}, 1, 50);
    EXPECT_EQ(RawStreamPtr(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()))->GetEndTime(), 70);
}

TEST(EventStream, HoldsTheLargestTimes)
{
    const long long last = 0x7FFFFFFFFFFFFFFF;
    const CEvents events = {{0, "\1"}, {last - 1, "\2"}, {last, "\3"}, {last, "\4"}};
    EXPECT_EQ(AllEvents(std::make_unique<KEventsStore>(StoreOf(Bit("a", events))).get()), events);
}

TEST(EventStream, MayHoldNoSignalAtAll)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {});
    const StreamPtr stream(Morvel::CreateStreamRead((folder / "a.zyn").c_str()));
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->GetSignalCount(), 0);
    EXPECT_EQ(stream->GetSignal(0), -1);
}

TEST(StreamReader, AnswersWithNothingForWhatTheFileDoesNotHave)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {Vector("v", {{}, {}}), Bit("b", {})});
    const StreamPtr stream(Morvel::CreateStreamRead((folder / "a.zyn").c_str()));
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    EXPECT_EQ(stream->GetSignalCount(), 2);
    EXPECT_EQ(stream->GetSignal(2), -1);
    EXPECT_EQ(stream->GetSignal(-1), -1);
    const int vector = stream->GetSignal(0);
    EXPECT_GE(stream->GetChild(vector, 1), 0);
    for (const auto &[parent, number] :
         {std::pair{vector, 2}, {vector, -1}, {-1, 0}, {99, 0}, {stream->GetSignal(1), 0}})
        EXPECT_EQ(stream->GetChild(parent, number), -1) << parent << ' ' << number;
    for (const int handle : {-1, 4, 99}) {
        bool hasChildren = true;
        int count = 7;
        const char *name = nullptr;
        stream->GetInfo(handle, &hasChildren, &count, &name, nullptr, nullptr);
        EXPECT_FALSE(hasChildren);
        EXPECT_EQ(count, 0);
        EXPECT_STREQ(name, "");
        EXPECT_EQ(stream->GetTypeText(handle), nullptr);
        EXPECT_EQ(raw->GetEventsStore(handle), nullptr);
    }
}

TEST(StreamReader, TellsNameTypeAndChildren)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {Bit("tb.clk", {}), Vector("tb.v", {{}, {}, {}})});
    const StreamPtr stream(Morvel::CreateStreamRead((folder / "a.zyn").c_str()));
    bool hasChildren = false;
    int count = 0;
    int mode = 7;
    int reserved = 7;
    const char *name = nullptr;
    stream->GetInfo(stream->GetSignal(1), &hasChildren, &count, &name, &mode, &reserved);
    EXPECT_TRUE(hasChildren);
    EXPECT_EQ(count, 3);
    EXPECT_STREQ(name, "tb.v");
    EXPECT_EQ(mode, 0);
    EXPECT_EQ(reserved, 0);
    stream->GetInfo(stream->GetChild(stream->GetSignal(1), 0), &hasChildren, nullptr, &name, nullptr, nullptr);
    EXPECT_FALSE(hasChildren);
    EXPECT_STREQ(name, "(2)");
    EXPECT_STREQ(stream->GetTypeText(stream->GetSignal(0)), StdLogic);
    stream->GetInfo(0, nullptr, nullptr, nullptr, nullptr, nullptr);
}

TEST(EventsStore, PlacesOnTheLastEventNotLaterThanTheTime)
{
    const KEventsStore store = StoreOf(Bit("a", {{5, "\1"}, {9, "\2"}, {9, "\3"}, {12, "\4"}}));
    const struct {
        long long time, found;
        const char *value;
    } rows[] = {{5, 5, "\1"}, {8, 5, "\1"}, {9, 9, "\3"}, {11, 9, "\3"}, {12, 12, "\4"}, {1000, 12, "\4"}};
    for (const auto &row : rows) {
        KEventData event;
        ASSERT_TRUE(store.GetFirstEvent(row.time, &event, nullptr)) << row.time;
        EXPECT_EQ(event.GetTime(), row.found) << row.time;
        EXPECT_EQ(ValueOf(event, 1), row.value) << row.time;
    }
    KEventData event;
    EXPECT_FALSE(store.GetFirstEvent(4, &event, nullptr));
    EXPECT_FALSE(store.GetFirstEvent(-1, &event, nullptr));
    EXPECT_EQ(event.GetTime(), -1);
}

TEST(EventsStore, StepsToTheFirstLaterEventAndStaysAtTheEnd)
{
    const KEventsStore store = StoreOf(Bit("a", {{5, "\1"}, {5, "\2"}, {9, "\3"}}));
    KEventData event;
    ASSERT_TRUE(store.GetFirstEvent(5, &event, nullptr));
    ASSERT_TRUE(store.GetNextEvent(&event));
    EXPECT_EQ(event.GetTime(), 9);
    EXPECT_FALSE(store.GetNextEvent(&event));
    EXPECT_EQ(event.GetTime(), 9);
    EXPECT_EQ(ValueOf(event, 1), "\3");
}

TEST(EventsStore, StepsFromNowhereToTheFirstOfAllEvents)
{
    const KEventsStore store = StoreOf(Bit("a", {{5, "\1"}, {5, "\2"}}));
    KEventData event;
    ASSERT_TRUE(store.GetNextEvent(&event));
    EXPECT_EQ(ValueOf(event, 1), "\1");
    ASSERT_TRUE(store.GetNextEvent(&event));
    EXPECT_EQ(ValueOf(event, 1), "\2");
    KEventData none;
    EXPECT_FALSE(StoreOf(Bit("a", {})).GetNextEvent(&none));
}

TEST(EventsStore, DoesNotStepAnEventOfAnotherSignal)
{
    const KEventsStore store = StoreOf(Bit("a", {{5, "\1"}, {9, "\2"}}));
    const KEventsStore other = StoreOf(Bit("b", {{5, "\1"}, {9, "\2"}}));
    KEventData event;
    ASSERT_TRUE(other.GetFirstEvent(5, &event, nullptr));
    EXPECT_FALSE(store.GetNextEvent(&event));
    EXPECT_EQ(ValueOf(KEventData(), 2), "\0\0"s);
}

TEST(EventsStore, CopiesAValueIntoABufferOfAnySize)
{
    const KEventsStore store = StoreOf({"r", Real, {{0, "abcdefgh"}}, {}});
    EXPECT_EQ(store.GetSecondSize(), 8);
    KEventData event;
    ASSERT_TRUE(store.GetFirstEvent(0, &event, nullptr));
    EXPECT_EQ(ValueOf(event, 8), "abcdefgh");
    EXPECT_EQ(ValueOf(event, 3), "abc");
    EXPECT_EQ(ValueOf(event, 10), "abcdefgh\0\0"s);
    event.GetValue(nullptr, 0);
}

TEST(EventsStore, OfASignalWithoutEventsFindsNothing)
{
    const KEventsStore store = StoreOf(Bit("a", {}));
    KEventData event;
    EXPECT_FALSE(store.GetFirstEvent(0x7FFFFFFFFFFFFFFF, &event, nullptr));
    EXPECT_EQ(store.GetSecondSize(), 1);
}

TEST(EventsStore, AgreesWithALinearScan)
{
    std::mt19937 random(3);
    for (const std::size_t count :
         {std::size_t{1}, std::size_t{1023}, std::size_t{1024}, std::size_t{1025}, std::size_t{3000}}) {
        const CEvents events = RandomEvents(random, count, 1, 3);
        const KEventsStore store = StoreOf(Bit("a", events));
        for (long long time = 0; time <= events.back().first + 1; ++time) {
            const auto later = std::ranges::find_if(events, [&](const auto &event) { return event.first > time; });
            KEventData event;
            ASSERT_EQ(store.GetFirstEvent(time, &event, nullptr), later != events.begin()) << time;
            if (later == events.begin())
                continue;
            ASSERT_EQ(std::pair(event.GetTime(), ValueOf(event, 1)), *std::prev(later)) << time;
            ASSERT_EQ(store.GetNextEvent(&event), later != events.end()) << time;
            const auto now = later != events.end() ? later : std::prev(later);
            ASSERT_EQ(std::pair(event.GetTime(), ValueOf(event, 1)), *now) << time;
        }
    }
}

TEST(EventsStore, OfABusGivesTheWholeValueAtEachChangeOfAnElement)
{
    const KEventsStore store = StoreOf(Vector("v", {{{0, "\2"}, {10, "\3"}}, {{10, "\2"}, {30, "\3"}}, {{20, "\4"}}}));
    EXPECT_EQ(store.GetSecondSize(), 3);
    EXPECT_THAT(AllEvents(&store),
                ElementsAre(Pair(0, "\2\0\0"s), Pair(10, "\3\2\0"s), Pair(20, "\3\2\4"s), Pair(30, "\3\3\4"s)));
    KEventData event;
    ASSERT_TRUE(store.GetFirstEvent(29, &event, nullptr));
    EXPECT_EQ(event.GetTime(), 20);
    ASSERT_TRUE(store.GetNextEvent(&event));
    EXPECT_EQ(event.GetTime(), 30);
    EXPECT_FALSE(store.GetNextEvent(&event));
}

TEST(EventsStore, OfABusTakesTheLastOfSeveralEventsAtOneTime)
{
    const KEventsStore store = StoreOf(Vector("v", {{{5, "\2"}, {5, "\3"}}, {{5, "\4"}}}));
    EXPECT_THAT(AllEvents(&store), ElementsAre(Pair(5, "\3\4")));
}

TEST(EventsStore, OfABusAgreesWithAMergeOfItsElements)
{
    std::mt19937 random(4);
    for (int round = 0; round < 20; ++round) {
        std::vector<CEvents> elements(1 + random() % 5);
        std::map<long long, std::string> merged;
        for (CEvents &element : elements) {
            element = RandomEvents(random, random() % 4 == 0 ? 1500 : random() % 20, 1, 3);
            for (const auto &event : element)
                merged[event.first] = std::string(elements.size(), '\0');
        }
        for (auto &[time, value] : merged) {
            for (std::size_t i = 0; i < elements.size(); ++i) {
                for (const auto &event : elements[i]) {
                    if (event.first <= time)
                        value[i] = event.second[0];
                }
            }
        }
        const KEventsStore store = StoreOf(Vector("v", elements));
        ASSERT_EQ(AllEvents(&store), CEvents(merged.begin(), merged.end()));
    }
}

TEST(EventsStore, OfARecordDoesNotExist)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {{"r", "r#1#r2 a e#3#bitc2 01 b e#3#bitc2 01", {}, {Bit(".a", {}), Bit(".b", {})}}});
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    const CLogCatcher log;
    EXPECT_EQ(raw->GetEventsStore(0), nullptr);
    EXPECT_NE(raw->GetEventsStore(1), nullptr);
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(EventsStore, IsTheSameEachTimeItIsAskedFor)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {Vector("v", {{{1, "\1"}}, {}})});
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    EXPECT_EQ(raw->GetEventsStore(0), raw->GetEventsStore(0));
    EXPECT_EQ(raw->GetEventsStore(1), raw->GetEventsStore(1));
}

TEST(EventsStore, GoesOnAfterMoreBlocksThanAreKeptUnpacked)
{
    std::vector<CEvents> elements(5000, {{0, "\2"}, {7, "\3"}});
    const KEventsStore store = StoreOf(Vector("v", elements));
    EXPECT_THAT(AllEvents(&store), ElementsAre(Pair(0, std::string(5000, '\2')), Pair(7, std::string(5000, '\3'))));
}

TEST(StreamWriter, RefusesEventsThatGoBackOrBelongToNoScalar)
{
    const CStreamFolder folder;
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    const int bit = writer->AddSignal(-1, "b", StdLogic);
    const int record = writer->AddSignal(-1, "r", "r#1#r1 a e#3#bitc2 01");
    EXPECT_TRUE(writer->AddEvent(bit, 5, "\1"));
    EXPECT_TRUE(writer->AddEvent(bit, 5, "\2"));
    EXPECT_FALSE(writer->AddEvent(bit, 4, "\1"));
    EXPECT_FALSE(writer->AddEvent(bit, -1, "\1"));
    EXPECT_FALSE(writer->AddEvent(bit, 6, nullptr));
    EXPECT_FALSE(writer->AddEvent(record, 6, "\1"));
    EXPECT_FALSE(writer->AddEvent(-1, 6, "\1"));
    EXPECT_FALSE(writer->AddEvent(2, 6, "\1"));
    ASSERT_TRUE(writer->Finish());
    EXPECT_THAT(ReadStream(folder / "a.zyn")[0].events, ElementsAre(Pair(5, "\1"), Pair(5, "\2")));
}

TEST(StreamWriter, RefusesSignalsWithoutAParentOrBelowAScalar)
{
    const CStreamFolder folder;
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    EXPECT_EQ(writer->AddSignal(0, "a", StdLogic), -1);
    EXPECT_EQ(writer->AddSignal(-2, "a", StdLogic), -1);
    EXPECT_EQ(writer->AddSignal(-1, nullptr, StdLogic), -1);
    EXPECT_EQ(writer->AddSignal(-1, "a", nullptr), -1);
    EXPECT_EQ(writer->AddSignal(-1, "a", StdLogic), 0);
    EXPECT_EQ(writer->AddSignal(0, "b", StdLogic), -1);
}

TEST(StreamWriter, NestsSignals64DeepAndNoDeeper)
{
    const CStreamFolder folder;
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    int parent = -1;
    for (int depth = 1; depth <= 64; ++depth)
        ASSERT_GE(parent = writer->AddSignal(parent, ".f", "r#1#r1 a e#3#bitc2 01"), 0) << depth;
    EXPECT_EQ(writer->AddSignal(parent, ".f", StdLogic), -1);
    ASSERT_TRUE(writer->Finish());
    EXPECT_NE(StreamPtr(Morvel::CreateStreamRead((folder / "a.zyn").c_str())), nullptr);
}

TEST(StreamWriter, LeavesNothingBehindUnlessItFinishes)
{
    const CStreamFolder folder;
    WriteBytesTo(folder / "a.zyn", "before");
    StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    writer->AddSignal(-1, "a", StdLogic);
    EXPECT_EQ(ReadBytesOf(folder / "a.zyn"), "before");
    writer.reset();
    EXPECT_EQ(ReadBytesOf(folder / "a.zyn"), "before");
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(StreamWriter, ReplacesAFileAndFinishesOnce)
{
    const CStreamFolder folder;
    WriteBytesTo(folder / "a.zyn", "before");
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    EXPECT_TRUE(writer->Finish());
    EXPECT_FALSE(writer->Finish());
    EXPECT_NE(StreamPtr(Morvel::CreateStreamRead((folder / "a.zyn").c_str())), nullptr);
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(StreamWriter, SaysWhyItCannotWrite)
{
    const CStreamFolder folder;
    const CLogCatcher log;
    EXPECT_EQ(Morvel::CreateStreamWrite((folder / "no/a.zyn").c_str(), 1), nullptr);
    EXPECT_EQ(Morvel::CreateStreamWrite((folder / "").c_str(), 1), nullptr);
    EXPECT_EQ(Morvel::CreateStreamWrite("/dev/null", 1), nullptr);
    EXPECT_THAT(
        log.Messages(),
        ElementsAre("1 KERNEL Event stream " + folder / "no/a.zyn" + " cannot be written: No such file or directory.",
                    "1 KERNEL Event stream " + folder / "" + " cannot be written: what is there is no regular file.",
                    "1 KERNEL Event stream /dev/null cannot be written: what is there is no regular file."));
}

TEST(StreamWriter, ReportsAFileThatCouldNotBePutInItsPlace)
{
    const CStreamFolder folder;
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    std::filesystem::create_directory(folder / "a.zyn");
    const CLogCatcher log;
    EXPECT_FALSE(writer->Finish());
    EXPECT_THAT(log.Messages(), ElementsAre(testing::HasSubstr("a.zyn cannot be written: ")));
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(StreamWriter, NeedsAFileNameAndAResolution)
{
    const CStreamFolder folder;
    EXPECT_EQ(Morvel::CreateStreamWrite(nullptr, 1), nullptr);
    EXPECT_EQ(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 0), nullptr);
    EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(StreamInterfaces, KeepTheOrderOfTheirSlots)
{
    EXPECT_EQ(SlotOf(&Morvel::IMorvelRead::GetSignalCount), 0u);
    EXPECT_EQ(SlotOf(&Morvel::IMorvelRead::GetChild), 1u);
    EXPECT_EQ(SlotOf(&Morvel::IMorvelRead::GetSignal), 2u);
    EXPECT_EQ(SlotOf(&Morvel::IMorvelRead::GetInfo), 3u);
    EXPECT_EQ(SlotOf(&Morvel::IMorvelRead::GetTypeText), 4u);
    EXPECT_EQ(SlotOf(&Morvel::IMorvelRead::Release), 5u);
    EXPECT_EQ(SlotOf(&Morvel::IRawMorvelRead::GetResolution), 0u);
    EXPECT_EQ(SlotOf(&Morvel::IRawMorvelRead::GetEndTime), 1u);
    EXPECT_EQ(SlotOf(&Morvel::IRawMorvelRead::GetEventsStore), 2u);
}

}  // namespace
