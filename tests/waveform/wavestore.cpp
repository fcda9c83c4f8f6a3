#include "waveform/wavestore.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <memory>
#include <random>
#include <stdexcept>

#include "platform/kestrin.h"
#include "tests/logcatcher.h"
#include "tests/platform/vcd/vcdsupport.h"
#include "tests/slots.h"
#include "waveform/storetools.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *Down = "a#28#std_logic_vector(7 downto 4)1 ricd7 4 e#9#std_logicc9 UX01ZWLH-";
constexpr const char *EightBits = "a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-";
constexpr const char *Up = "a#24#std_logic_vector(2 to 5)1 rict2 5 e#9#std_logicc9 UX01ZWLH-";
constexpr const char *Below = "a#29#std_logic_vector(1 downto -2)1 ricd1 -2 e#9#std_logicc9 UX01ZWLH-";
constexpr const char *Record = "r#1#r2 x e#3#bitc2 01 y f#4#realrrct-1.79769e+308 1.79769e+308";

// Adds a signal with the next `count` handles.
void Add(WaveStore &store, const char *name, const char *type, long long first, long long count)
{
    store.addSignal(name, type, 1, 2, 3, 4, 5);
    for (long long handle = first; handle < first + count; ++handle)
        store.addHandle(&handle, 6);
    EXPECT_EQ(store.endSignal(), 0);
}

TEST(WaveStore, IsEmptyWhenNew)
{
    const WaveStore store;
    EXPECT_EQ(store.FindSignal("a"), 0);
    EXPECT_EQ(store.GetSignalType(1, true), nullptr);
    EXPECT_FALSE(store.HasEvents(1));
    EXPECT_EQ(store.FindLast(1, 0), nullptr);
    EXPECT_EQ(store.FindNext(1, 0), nullptr);
    EXPECT_EQ(store.GetEndTime(), 0);
}

TEST(WaveStore, FindsASignalOrAnElementOfAnArray)
{
    WaveStore store;
    Add(store, "tb.a", StdLogicType, 1, 1);
    Add(store, "tb.byte", EightBits, 2, 8);
    Add(store, "tb.up", Up, 10, 4);
    Add(store, "tb.rec", Record, 14, 2);
    Add(store, "tb.bit[3]", StdLogicType, 16, 1);
    Add(store, "tb.byte", StdLogicType, 17, 1);
    const struct {
        const char *name;
        long long handle;
    } rows[] = {
        {"tb.a", 1},
        {"TB.A", 1},
        {"tb", 0},
        {"tb.ab", 0},
        {"tb.a[0]", 0},  // no array
        {"", 0},
        {"tb.byte", 2},
        {"tb.byte[7]", 2},  // the left bound first
        {"tb.byte[0]", 9},
        {"Tb.Byte[6]", 3},
        {"tb.byte[8]", 0},
        {"tb.byte[-1]", 0},
        {"tb.byte[3", 0},
        {"tb.byte[3x]", 0},
        {"tb.byte[]", 0},
        {"tb.byte[", 0},
        {"tb.byte(3)", 0},
        {"tb.byte[3]xyz", 6},  // deliberate: what follows the "]" is not looked at
        {"tb.byte[3][9]", 6},
        {"tb.byte[007]", 2},
        {"tb.byte[99999999999999999999]", 0},
        {"tb.byte[-99999999999999999999]", 0},
        {"tb.byte[4294967296]", 0},
        {"tb.up[2]", 10},
        {"tb.up[5]", 13},
        {"tb.up[1]", 0},
        {"tb.up[6]", 0},
        {"tb.rec", 14},
        {"tb.rec.x", 0},  // deliberate: no fields
        {"tb.bit[3]", 16},
        {"tb.bit[4]", 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(store.FindSignal(row.name), row.handle) << row.name;
    EXPECT_EQ(store.FindSignal(nullptr), 0);
}

// Deliberate: left - index + right elements from the first handle.
TEST(WaveStore, ShiftsTheIndexOfADescendingRangeByItsRightBound)
{
    WaveStore store;
    Add(store, "first", StdLogicType, 1, 1);
    Add(store, "v", Down, 2, 4);   // 7 downto 4: an index counts 11 - index elements
    Add(store, "n", Below, 6, 4);  // 1 downto -2: -1 - index elements
    const struct {
        const char *name;
        long long handle;
    } rows[] = {
        {"v[7]", 0},  {"v[4]", 0},  {"v[8]", 0},  {"n[1]", 4}, {"n[0]", 5},
        {"n[-1]", 6}, {"n[-2]", 7}, {"n[-3]", 0}, {"n[2]", 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(store.FindSignal(row.name), row.handle) << row.name;
}

TEST(WaveStore, FindsTheElementOfALaterSignalOfTheSameNameWhereTheFirstHasNone)
{
    WaveStore store;
    Add(store, "v", StdLogicType, 1, 1);
    Add(store, "v", EightBits, 2, 8);
    Add(store, "v[1]", StdLogicType, 10, 1);
    EXPECT_EQ(store.FindSignal("v"), 1);
    EXPECT_EQ(store.FindSignal("v[1]"), 8);
}

TEST(WaveStore, TellsTheTypeOfAHandle)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 1, 1);
    Add(store, "v", EightBits, 2, 8);
    Add(store, "r", Record, 10, 2);
    const struct {
        long long handle;
        bool whole;
        const char *type;
    } rows[] = {
        {1, true, StdLogicType}, {1, false, StdLogicType},    {2, true, EightBits},
        {9, true, EightBits},    {2, false, StdLogicType},    {9, false, StdLogicType},
        {10, true, Record},      {10, false, "e#3#bitc2 01"}, {11, false, "f#4#realrrct-1.79769e+308 1.79769e+308"},
    };
    for (const auto &row : rows)
        EXPECT_STREQ(store.GetSignalType(row.handle, row.whole)->GetTypeInfoString(), row.type) << row.handle;
    EXPECT_EQ(store.GetSignalType(12, true), nullptr);
    EXPECT_EQ(store.GetSignalType(std::numeric_limits<long long>::max(), false), nullptr);
    EXPECT_STREQ(store.GetSignalType(0, true)->GetTypeInfoString(),
                 StdLogicType);  // the first whose last handle is not below
}

TEST(WaveStore, KeepsResolutionAndEndTime)
{
    WaveStore store;
    const long long resolution = 1000;
    const long long time = 77;
    store.setResolution(&resolution);
    store.setEndTime(&time);
    store.setFlag(true);
    EXPECT_EQ(store.GetResolution(), 1000);
    EXPECT_EQ(store.GetEndTime(), 77);
}

TEST(WaveStore, AnswersTheCallsThatDoNothing)
{
    WaveStore store;
    store.open();
    store.setOption(1);
    store.beginHeader();
    store.endHeader();
    store.beginSignals();
    store.endSignals();
    store.beginEvents();
    store.endEvents();
    store.setUserData(1);
    EXPECT_TRUE(store.acceptsData(0));
    EXPECT_EQ(store.getInterface(), nullptr);
    EXPECT_FALSE(store.isCancelled());
}

TEST(WaveStore, LooksUpEventsAroundATime)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 1, 2);
    PutEvent(store, 1, 10, 2);
    PutEvent(store, 1, 20, 3);
    PutEvent(store, 1, 20, 4);
    PutEvent(store, 1, 30, 5);
    const struct {
        long long time;
        const char *last, *next;
    } rows[] = {{-1, "-", "10=2"},    {9, "-", "10=2"},  {10, "10=2", "20=3"}, {19, "10=2", "20=3"},
                {20, "20=4", "30=5"}, {30, "30=5", "-"}, {99, "30=5", "-"}};
    for (const auto &row : rows) {
        EXPECT_EQ(EventText(store.FindLast(1, row.time)), row.last) << row.time;
        EXPECT_EQ(EventText(store.FindNext(1, row.time)), row.next) << row.time;
    }
    EXPECT_TRUE(store.HasEvents(1));
    EXPECT_FALSE(store.HasEvents(2));
    EXPECT_EQ(store.FindLast(2, 50), nullptr);
    EXPECT_EQ(store.FindNext(2, -1), nullptr);
}

TEST(WaveStore, KeepsAnEventWhole)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 1, 1);
    const WaveEvent events[] = {{std::numeric_limits<long long>::min(), UINT64_MAX, 0},
                                {-5, 12, 0},
                                {-5, 13, 0},
                                {0, 7, UINT64_MAX},
                                {std::numeric_limits<long long>::max(), 1, 1}};
    const long long handle = 1;
    for (const WaveEvent &event : events)
        store.addEvent(&handle, &event);
    for (const WaveEvent &event : events) {
        const WaveEvent *found = store.FindLast(1, event.m_time);
        if (event.m_value == 12)
            continue;  // another comes at its time
        EXPECT_EQ(found->m_time, event.m_time);
        EXPECT_EQ(found->m_value, event.m_value);
        EXPECT_EQ(found->m_unused, event.m_unused);
    }
    EXPECT_EQ(store.FindNext(1, -6)->m_value, 12u);
}

// A straight scan for the first event later than some time, and the one in front of it, in the order of arrival.
struct SScan {
    const WaveEvent *last = nullptr;
    const WaveEvent *next = nullptr;

    SScan(const std::vector<WaveEvent> &events, long long time)
    {
        for (const WaveEvent &event : events) {
            if (event.m_time > time) {
                next = &event;
                return;
            }
            last = &event;
        }
    }
};

TEST(WaveStore, AgreesWithAStraightScan)
{
    std::mt19937_64 random(1);
    for (const bool isOrdered : {true, false}) {
        for (int round = 0; round < 60; ++round) {
            const auto count = random() % (round % 10 == 0 ? 3000 : 60);
            const long long step = round % 3 == 0 ? 2 : 1LL << random() % 40;
            std::vector<WaveEvent> events;
            long long time = 0;
            for (std::uint64_t i = 0; i < count; ++i) {
                const auto pause = static_cast<long long>(random() % static_cast<std::uint64_t>(step));
                time = isOrdered ? time + pause : static_cast<long long>(random() % 1000);
                events.push_back(
                    {time, random() % 4 == 0 ? random() : random() % 9, random() % 50 == 0 ? random() : 0});
            }
            WaveStore store;
            Add(store, "a", StdLogicType, 1, 3);
            for (const WaveEvent &event : events) {
                PutEvent(store, 3, 5, 1);  // another run between
                PutEvent(store, 2, event.m_time, event.m_value, event.m_unused);
            }
            for (int probe = 0; probe < 60; ++probe) {
                const long long at = events.empty() ? 0 : events[random() % events.size()].m_time + probe % 3 - 1;
                const SScan scan(events, at);
                const WaveEvent *const last = store.FindLast(2, at);
                ASSERT_EQ(last != nullptr, scan.last != nullptr);
                if (last != nullptr) {
                    ASSERT_EQ(last->m_value, scan.last->m_value);
                    ASSERT_EQ(last->m_unused, scan.last->m_unused);
                }
                ASSERT_EQ(EventText(store.FindNext(2, at)), EventText(scan.next));
            }
        }
    }
}

TEST(WaveStore, TakesEventsBetweenLookUps)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 1, 1);
    for (int i = 0; i < 2000; ++i) {
        PutEvent(store, 1, i, 2);
        ASSERT_EQ(store.FindLast(1, i)->m_time, i);
        if (i == 1000)
            store.endEvents();
    }
    EXPECT_EQ(store.FindNext(1, 998)->m_time, 999);
}

TEST(WaveStore, HoldsMoreEventsThanItCollects)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 1, 700);
    for (int i = 0; i < 1200000; ++i)
        PutEvent(store, 1 + i % 700, i, static_cast<std::uint64_t>(i % 9));
    for (int i = 0; i < 1200000; i += 1111) {
        ASSERT_EQ(EventText(store.FindLast(1 + i % 700, i + 699)), std::to_string(i) + "=" + std::to_string(i % 9));
        ASSERT_EQ(EventText(store.FindNext(1 + i % 700, i - 1)), std::to_string(i) + "=" + std::to_string(i % 9));
    }
}

TEST(WaveStore, IgnoresWhatAWriterMustNotSay)
{
    WaveStore store;
    EXPECT_EQ(store.endSignal(), 0);  // no signal
    store.addSignal(nullptr, nullptr, 0, 0, 0, 0, 0);
    EXPECT_EQ(store.endSignal(), 0);  // no handle
    for (const long long handle : {0LL, -1LL, std::numeric_limits<long long>::min()}) {
        store.addHandle(&handle, 0);
        PutEvent(store, handle, 1, 1);
        EXPECT_FALSE(store.HasEvents(handle));
    }
    store.addHandle(nullptr, 0);
    Add(store, "far", EightBits, std::numeric_limits<long long>::max() - 1, 1);
    PutEvent(store, 2, 1, 1);
    PutEvent(store, std::numeric_limits<long long>::max(), 1, 1);
    EXPECT_FALSE(store.HasEvents(2));
    EXPECT_EQ(store.FindSignal("far[0]"), std::numeric_limits<long long>::min() + 5);  // wrapped, and without events
    EXPECT_EQ(store.FindLast(store.FindSignal("far[0]"), 9), nullptr);
    store.addEvent(nullptr, nullptr);
    store.setEndTime(nullptr);
    store.setResolution(nullptr);
    store.shareEvents(nullptr, nullptr);
}

TEST(WaveStore, FindsTheTypeByTheFirstFittingLastHandleThoughHandlesFall)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 10, 1);
    Add(store, "b", EightBits, 3, 1);
    Add(store, "c", Record, 12, 1);
    EXPECT_STREQ(store.GetSignalType(3, true)->GetTypeInfoString(), StdLogicType);
    EXPECT_STREQ(store.GetSignalType(11, true)->GetTypeInfoString(), Record);
}

TEST(WaveStore, SharesTheEventsOfHandles)
{
    WaveStore store;
    Add(store, "a", StdLogicType, 1, 5);
    const auto share = [&store](long long handle, long long original) { store.shareEvents(&handle, &original); };
    share(2, 1);
    share(3, 2);
    share(1, 3);  // the same already
    share(4, 4);
    share(9, 1);
    share(1, 9);
    PutEvent(store, 1, 10, 2);
    PutEvent(store, 3, 20, 3);
    for (const long long handle : {1, 2, 3}) {
        EXPECT_EQ(EventText(store.FindLast(handle, 15)), "10=2");
        EXPECT_EQ(EventText(store.FindLast(handle, 25)), "20=3");
    }
    EXPECT_FALSE(store.HasEvents(4));
    share(1, 5);  // and all that share with it
    EXPECT_FALSE(store.HasEvents(3));
    PutEvent(store, 5, 7, 1);
    EXPECT_EQ(EventText(store.FindNext(2, 0)), "7=1");
}

TEST(WaveStore, KeepsTheSlotsOfTheInterface)
{
    EXPECT_EQ(SlotOf(&WaveStore::open), 0u);
    EXPECT_EQ(SlotOf(&WaveStore::addSignal), 9u);
    EXPECT_EQ(SlotOf(&WaveStore::setFlag), 15u);
    EXPECT_EQ(SlotOf(&WaveStore::setUserData), 20u);
}

// -- ImportVcdFile

TEST(ImportVcdFile, FillsAStore)
{
    const CTextFile file(
        "$timescale 10 ps $end $scope module tb $end $var wire 4 ! v [3:0] $end $var real 64 \" r $end "
        "$var wire 4 ! w [3:0] $end $upscope $end $enddefinitions $end #5 b1010 ! r2.5 \" #9 b1011 ! #12");
    const CLogCatcher log;
    const std::unique_ptr<WaveStore> store(ImportVcdFile(file.Name().c_str()));
    ASSERT_NE(store, nullptr);
    EXPECT_THAT(log.Messages(), IsEmpty());
    EXPECT_EQ(store->GetResolution(), 10000);
    EXPECT_EQ(store->GetEndTime(), 12);
    EXPECT_EQ(store->FindSignal("TB.V"), 1);
    EXPECT_EQ(store->FindSignal("tb.r"), 5);
    EXPECT_EQ(store->FindSignal("tb.w[0]"), 9);
    EXPECT_EQ(EventText(store->FindLast(1, 100)), "5=3");
    for (const long long bit : {4, 9}) {
        EXPECT_EQ(EventText(store->FindLast(bit, 5)), "5=2");
        EXPECT_EQ(EventText(store->FindNext(bit, 5)), "9=3");
    }
    EXPECT_EQ(std::bit_cast<double>(store->FindLast(5, 5)->m_value), 2.5);
    EXPECT_EQ(store->GetSignalType(5, true)->GetKind(), 3);
    EXPECT_STREQ(store->GetSignalType(6, true)->GetTypeIdentifier(), "std_logic_vector(3 downto 0)");
}

TEST(ImportVcdFile, LogsWhatIsWrongAndGivesNull)
{
    const CTextFile file("$date x $end\n$var wire 1 $end");
    const CLogCatcher log;
    EXPECT_EQ(ImportVcdFile(file.Name().c_str()), nullptr);
    EXPECT_EQ(ImportVcdFile("/nowhere/x.vcd"), nullptr);
    EXPECT_EQ(ImportVcdFile(nullptr), nullptr);
    EXPECT_THAT(log.Messages(),
                ElementsAre("1 VCD " + file.Name() + ":2: a variable without a width or an identifier code",
                            "1 VCD /nowhere/x.vcd: cannot open the file: No such file or directory",
                            "1 VCD : cannot open the file: No such file or directory"));
}

TEST(ImportVcdFile, LogsAnyOtherFailureAsAnImportError)
{
    const CTextFile file(VcdHead);
    const CLogCatcher log;
    NTARN::NImport::SetProgress([](void *, long long, long long) { throw std::logic_error("odd"); }, nullptr);
    EXPECT_EQ(ImportVcdFile(file.Name().c_str()), nullptr);
    NTARN::NImport::SetProgress(nullptr, nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre("1 VCD Import error."));
}

TEST(ImportVcdFile, TellsOfMemoryThatRunsOut)
{
    const CTextFile file(VcdHead);
    const CLogCatcher log;
    NTARN::NImport::SetProgress([](void *, long long, long long) { throw std::bad_alloc(); }, nullptr);
    EXPECT_EQ(ImportVcdFile(file.Name().c_str()), nullptr);
    NTARN::NImport::SetProgress(nullptr, nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre("1 VCD " + file.Name() + ": out of memory while the file is read"));
}

TEST(ImportVcdFile, DoesNotWaitForAPipeThatNothingWritesTo)
{
    const std::string name = testing::TempDir() + "tesk_" + std::to_string(getpid()) + ".pipe.vcd";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    const CLogCatcher log;
    EXPECT_EQ(ImportVcdFile(name.c_str()), nullptr);
    unlink(name.c_str());
    EXPECT_THAT(log.Messages(),
                ElementsAre("1 VCD " + name + ": cannot open the file: it is a pipe that nothing writes to"));
}

TEST(ImportVcdFile, GivesAStoreOfWhatCanBeReadOfADamagedFile)
{
    const CTextFile file(VcdHead + "#3 1! #4 0! ~~~");
    const CLogCatcher log;
    const std::unique_ptr<WaveStore> store(ImportVcdFile(file.Name().c_str()));
    ASSERT_NE(store, nullptr);
    EXPECT_EQ(EventText(store->FindLast(1, 9)), "4=2");
    EXPECT_THAT(log.Messages(),
                ElementsAre("2 VCD " + file.Name() + ":6: \"~~~\" is no value change; the file is read up to 4 ns"));
}

// A clock of a thousand names would be a thousand times as large.
TEST(ImportVcdFile, StoresTheEventsOfAnAliasOnce)
{
    std::string text;
    for (int i = 0; i < 5000; ++i)
        text += "$var wire 1 ! a" + std::to_string(i) + " $end\n";
    text += "$enddefinitions $end\n";
    for (int i = 0; i < 20000; ++i)
        text += "#" + std::to_string(i) + "\n" + std::to_string(i % 2) + "!\n";
    const CTextFile file(text);
    const std::unique_ptr<WaveStore> store(ImportVcdFile(file.Name().c_str()));
    EXPECT_EQ(EventText(store->FindLast(store->FindSignal("a4999"), 777)), "777=3");
}

}  // namespace
