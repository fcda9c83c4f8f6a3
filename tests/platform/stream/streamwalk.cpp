#include "platform/stream/streamwalk.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "tests/platform/stream/streamfiles.h"
#include "tests/platform/stream/stretchfile.h"

namespace {

using Morvel::CStreamWalk;
using tesk::SElements;

constexpr long long Forever = std::numeric_limits<long long>::max();

// What signals have at each time at which one of them changes.
using CValues = std::map<std::pair<long long, std::uint32_t>, tesk::CElementValues>;

CValues Walked(const std::string &file, const std::vector<SElements> &signals)
{
    CStreamWalk walk(Morvel::OpenStreamFile(file), signals);
    CValues values;
    long long time = 0;
    while (walk.Next(time, Forever)) {
        for (const std::uint32_t signal : walk.GetChanged()) {
            values[{time, signal}] = walk.GetValues(signal);
            const auto positions = walk.GetPositions(signal);
            for (std::size_t i = 0; i < positions.size(); ++i)
                EXPECT_EQ(positions[i], walk.GetValues(signal)[i].value_or(walk.NoPosition));
        }
    }
    return values;
}

// The same from the stores of the elements.
CValues Gathered(const std::string &file, const std::vector<SElements> &signals)
{
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(file.c_str()));
    CValues values;
    for (std::uint32_t signal = 0; signal < signals.size(); ++signal) {
        const auto count = static_cast<std::size_t>(signals[signal].count);
        std::map<long long, tesk::CElementValues> changes;
        for (std::size_t i = 0; i < count; ++i) {
            for (const auto &[time, bytes] :
                 AllEvents(raw->GetEventsStore(static_cast<int>(signals[signal].first + static_cast<long long>(i))))) {
                changes[time].resize(count);
                changes[time][i] = tesk::LoadLittleEndian(bytes.data(), bytes.size());
            }
        }
        tesk::CElementValues now(count);
        for (const auto &[time, changed] : changes) {
            for (std::size_t i = 0; i < count; ++i)
                now[i] = changed[i] ? changed[i] : now[i];
            values[{time, signal}] = now;
        }
    }
    return values;
}

// Writes random events by rising time.
void WriteRandom(const std::string &file, std::mt19937 &random, int events)
{
    const StreamWriterPtr writer(Morvel::CreateStreamWrite(file.c_str(), 1));
    std::vector<STreeNode> nodes = {
        Bit("a", {}), {"r", Real, {}, {}}, Vector("v", std::vector<CEvents>(70)), Vector("w", std::vector<CEvents>(3))};
    for (const STreeNode &node : nodes)
        AddTree(*writer, -1, node);
    const std::vector<int> scalars = [] {
        std::vector<int> all = {0, 1};
        for (int i = 3; i < 73; ++i)
            all.push_back(i);
        for (int i = 74; i < 77; ++i)
            all.push_back(i);
        return all;
    }();
    long long time = 0;
    for (int i = 0; i < events; ++i) {
        time += random() % 4 == 0 ? 1 : 0;
        std::string value(8, '\0');
        value[0] = static_cast<char>(random() % 8 == 0 ? random() % 9 : 2 + random() % 2);
        ASSERT_TRUE(writer->AddEvent(scalars[random() % scalars.size()], time, value.data()));
    }
    ASSERT_TRUE(writer->Finish());
}

// Handles go by levels: a, r, v, w, then the elements of v, then those of w.
const std::vector<SElements> Everything = {{0, 1}, {1, 1}, {4, 70}, {74, 3}};

TEST(StreamWalk, MeetsWhatTheStoresOfTheScalarsHold)
{
    const CStreamFolder folder;
    std::mt19937 random(5);
    for (int round = 0; round < 20; ++round) {
        WriteRandom(folder / "a.zyn", random, 2000);
        ASSERT_EQ(Walked(folder / "a.zyn", Everything), Gathered(folder / "a.zyn", Everything)) << round;
    }
}

TEST(StreamWalk, TakesTheSignalsThatItIsGivenInThatOrder)
{
    const CStreamFolder folder;
    std::mt19937 random(6);
    WriteRandom(folder / "a.zyn", random, 3000);
    const std::vector<SElements> signals = {{74, 3}, {0, 1}, {74, 3}, {70, 2}};
    EXPECT_EQ(Walked(folder / "a.zyn", signals), Gathered(folder / "a.zyn", signals));
}

TEST(StreamWalk, GoesFromStretchToStretch)
{
    const CStreamFolder folder;
    std::mt19937 random(7);
    WriteRandom(folder / "a.zyn", random, 1100000);
    const auto file = Morvel::OpenStreamFile(folder / "a.zyn");
    EXPECT_EQ(file.index->Stretches().size(), 3u);
    EXPECT_TRUE(Morvel::AreStretchesInOrder(*file.index));
    CStreamWalk walk(file, Everything);
    long long time = 0;
    long long last = -1;
    while (walk.Next(time, Forever)) {
        ASSERT_GT(time, last);
        last = time;
    }
    EXPECT_EQ(last, file.index->GetEndTime());
}

TEST(StreamWalk, StopsWhereItIsTold)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", {Bit("a", {{1, "\2"}, {5, "\3"}})});
    CStreamWalk walk(Morvel::OpenStreamFile(folder / "a.zyn"), std::vector<SElements>{{0, 1}});
    long long time = 0;
    EXPECT_TRUE(walk.Next(time, 4));
    EXPECT_EQ(time, 1);
    EXPECT_FALSE(walk.Next(time, 4));
    EXPECT_EQ(walk.GetPositions(0).front(), 2);
    EXPECT_TRUE(walk.Next(time, 5));
    EXPECT_EQ(time, 5);
    EXPECT_FALSE(walk.Next(time, Forever));
}

TEST(StreamWalk, NeedsStretchesThatFollowEachOther)
{
    const CStreamFolder folder;
    const StreamWriterPtr writer(Morvel::CreateStreamWrite((folder / "a.zyn").c_str(), 1));
    for (int signal = 0; signal < 5; ++signal) {
        writer->AddSignal(-1, "a", StdLogic);
        for (int i = 0; i < 600000; ++i)
            ASSERT_TRUE(writer->AddEvent(signal, i, "\2"));
    }
    ASSERT_TRUE(writer->Finish());
    EXPECT_FALSE(Morvel::AreStretchesInOrder(*Morvel::OpenStreamFile(folder / "a.zyn").index));
}

TEST(StreamWalk, FailsWhereABlockIsDamaged)
{
    const CStreamFolder folder;
    SStretchClaim claim{0, 7, 0, 6, 2};
    const std::string table("\2\7\1\0\0\4", 6);
    WriteBytesTo(folder / "a.zyn", StretchFile(claim, table, std::string("\2\2\0\7", 4)));
    CStreamWalk walk(Morvel::OpenStreamFile(folder / "a.zyn"), std::vector<SElements>{{0, 1}});
    long long time = 0;
    EXPECT_THROW(while (walk.Next(time, Forever)){}, Morvel::XFault);
}

}  // namespace
