// Walks over many signals by time, and counts of their changes, beside the events of the signals one by one.
#include <gmock/gmock.h>

#include <cstdint>
#include <fstream>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "logcatcher.h"
#include "platform/changes/changewalk.h"
#include "platform/fst/fstmaker.h"
#include "platform/fstwriter/fstwriter.h"

namespace {

using namespace fsttest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr long long Never = std::numeric_limits<long long>::max();

ReaderPtr Open(const CTemporaryFolder &folder, const CBytes &bytes)
try {
    WriteBytes(folder / "walk.fst", bytes);
    return ReaderPtr(NTARN::IDatabaseReader::create((folder / "walk.fst").c_str(), false));
} catch (const NTARN::XFileCorrupted &) {
    return nullptr;
}

std::vector<tesk::SElements> Signals(NTARN::IDatabaseReader &reader)
{
    std::vector<tesk::SElements> signals;
    for (const int *root = reader.RootHandlesBegin(); root != reader.RootHandlesEnd(); ++root) {
        const NTARN::HSignalRange children = reader.GetChildRange(*root);
        const bool isBus = children.first >= 0;
        signals.push_back({isBus ? children.first : *root, isBus ? children.last - children.first + 1 : 1});
    }
    return signals;
}

tesk::IChangeSource &Source(NTARN::IDatabaseReader &reader)
{
    return dynamic_cast<tesk::IChangeSource &>(reader);
}

// "signal=values" for each signal that changes at a time, in their order.
using CChanges = std::map<long long, std::vector<std::string>>;

std::string Text(std::size_t signal, const tesk::CElementValues &values)
{
    std::string text = std::to_string(signal) + "=";
    for (const auto &value : values)
        text += value ? std::to_string(*value) : "-";
    return text;
}

CChanges Scanned(NTARN::IDatabaseReader &reader)
{
    CChanges changes;
    const std::vector<tesk::SElements> signals = Signals(reader);
    for (std::size_t i = 0; i < signals.size(); ++i) {
        std::map<long long, std::map<std::size_t, std::uint64_t>> byTime;
        for (long long element = 0; element < signals[i].count; ++element) {
            for (const SEvent &event : AllEvents(reader, static_cast<int>(signals[i].first + element)))
                byTime[event.time][static_cast<std::size_t>(element)] = event.value;
        }
        tesk::CElementValues values(static_cast<std::size_t>(signals[i].count));
        for (const auto &[time, elements] : byTime) {
            for (const auto &[element, value] : elements)
                values[element] = value;
            changes[time].push_back(Text(i, values));
        }
    }
    return changes;
}

CChanges Walked(NTARN::IDatabaseReader &reader)
{
    CChanges changes;
    const auto walk = Source(reader).WalkChanges(Signals(reader));
    long long time = 0;
    std::optional<long long> last;
    while (walk->Next(time, Never)) {
        EXPECT_TRUE(!last || time > *last);
        last = time;
        for (const std::uint32_t signal : walk->GetChanged())
            changes[time].push_back(Text(signal, walk->GetValues(signal)));
    }
    return changes;
}

std::vector<long long> Counted(NTARN::IDatabaseReader &reader, const tesk::SStretch &stretch = {})
{
    std::vector<long long> counts;
    const auto counted = Source(reader).CountChanges(Signals(reader), stretch, [](long long, long long) {});
    for (const tesk::SChangeCount &count : *counted)
        counts.push_back(count.count);
    return counts;
}

std::vector<long long> CountedIn(const CChanges &changes, std::size_t signals)
{
    std::vector<long long> counts(signals);
    for (const auto &[time, changed] : changes) {
        for (const std::string &text : changed)
            ++counts[std::stoul(text)];
    }
    return counts;
}

// Reads a file three times, since what one reading finds damaged is known to the next.
void ExpectTheSame(const CTemporaryFolder &folder, const CBytes &bytes, const std::string &what)
{
    const CLogCatcher log;
    const ReaderPtr scanned = Open(folder, bytes);
    const ReaderPtr walked = Open(folder, bytes);
    const ReaderPtr counted = Open(folder, bytes);
    if (scanned == nullptr)
        return;
    const CChanges changes = Scanned(*scanned);
    if (Source(*walked).WalkChanges({}) != nullptr) {
        ASSERT_EQ(Walked(*walked), changes) << what;
    }
    ASSERT_EQ(Counted(*counted), CountedIn(changes, Signals(*counted).size())) << what;
}

CFstMaker Sample(int kind = 8, char packer = 'Z')
{
    CFstMaker maker;
    maker.kind = kind;
    maker.packer = packer;
    maker.end = 60;
    maker.Scope("s").Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1).Variable(maker.Reg, "v", 19);
    maker.Variable(maker.Real, "r", 8).Variable(maker.Wire, "other", 1, 1).Variable(maker.Reg, "w", 2).EndScope();
    const CFstChanges same = {{0, "0"}, {1, "1"}, {1, "0"}, {2, "z"}};
    const std::string low(19, '0'), odd = "0101010101010101010", mixed = "01x" + std::string(16, 'z');
    maker.Block(0, {0, 10, 20}, "xx" + std::string(19, 'x') + RealLetters(0) + "10",
                {same, same, {{0, low}, {1, odd}, {2, odd}}, {{1, RealLetters(2)}}, {{1, "01"}, {1, "10"}, {2, "11"}}});
    // It begins with the time at which the one before ends.
    maker.Block(20, {20, 30, 40, 60}, "10" + odd + RealLetters(2) + "11",
                {{{0, "1"}, {3, "1"}}, {}, {{0, mixed}, {2, low}}, {}, {{0, "11"}, {1, "11"}, {3, "00"}}});
    return maker;
}

const int Forms[][2] = {{1, 'Z'}, {5, 'F'}, {8, '4'}, {8, 'Z'}};

}  // namespace

TEST(FstWalk, AgreesWithTheEventsOfEachSignalInEveryForm)
{
    const CTemporaryFolder folder;
    for (const auto &[kind, packer] : Forms)
        ExpectTheSame(folder, Sample(kind, static_cast<char>(packer)).Bytes(), std::to_string(kind));
    CFstMaker fine = Sample();
    fine.scale = -16;  // ten of its ticks are one that is told
    ExpectTheSame(folder, fine.Bytes(), "divided times");
    CFstMaker early = Sample();
    early.timeZero = -5;
    ExpectTheSame(folder, early.Bytes(), "time zero");
    ExpectTheSame(folder, CFstMaker().Variable(CFstMaker::Wire, "a", 1).Bytes(), "no blocks");
}

TEST(FstWalk, TellsASignalThatChangesInTwoBlocksAtOneTimeOnce)
{
    const CTemporaryFolder folder;
    const ReaderPtr reader = Open(folder, Sample().Bytes());
    const CChanges changes = Walked(*reader);
    ASSERT_TRUE(changes.contains(20));
    EXPECT_THAT(changes.at(20), SizeIs(5));
    EXPECT_EQ(changes.at(20).front(), "0=3");
}

TEST(FstWalk, AgreesWithTheEventsOfEachSignalWhateverByteIsDamaged)
{
    const CTemporaryFolder folder;
    const CBytes whole = Sample(8, '4').Bytes();
    for (std::size_t i = 330; i < whole.size(); ++i) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            CBytes bytes = whole;
            bytes[i] = static_cast<std::uint8_t>(bytes[i] ^ flip);
            ExpectTheSame(folder, bytes, "byte " + std::to_string(i) + " by " + std::to_string(flip));
        }
    }
}

TEST(FstWalk, GoesNoFurtherThanItIsAsked)
{
    const CTemporaryFolder folder;
    const ReaderPtr reader = Open(folder, Sample().Bytes());
    const auto walk = Source(*reader).WalkChanges(Signals(*reader));
    std::vector<long long> times;
    long long time = -1;
    for (const long long until : {-1, 0, 9, 9, 10, 19, 45})
        while (walk->Next(time, until)) {
            EXPECT_LE(time, until);
            times.push_back(time);
        }
    EXPECT_THAT(times, ElementsAre(0, 10, 20, 40));  // at 30 a bus is written as it is
    EXPECT_EQ(Text(0, walk->GetValues(0)), "0=3");
    EXPECT_THAT(walk->GetPositions(5), ElementsAre(3, 3));
    EXPECT_THAT(walk->GetPositions(3), IsEmpty());  // a real
}

TEST(FstWalk, OfAFewSignalsAmongManyAgreesWithTheirEvents)
{
    constexpr int Many = 200;
    const CTemporaryFolder folder;
    std::ofstream out(folder / "walk.fst", std::ios::binary);
    NTARN::CFstWriter writer(out, -9);
    std::vector<std::uint32_t> wires;
    for (int wire = 0; wire < Many; ++wire)
        wires.push_back(
            writer.AddVariable(NTARN::EFstVariable::Wire, NTARN::EFstDirection::None, "w" + std::to_string(wire), 1));
    for (std::uint64_t time = 0; time < 20; ++time) {
        writer.SetTime(time);
        for (std::size_t wire = 0; wire < wires.size(); ++wire) {
            if ((time + wire) % 3 == 0)
                writer.Change(wires[wire], (time + wire) % 2 == 0 ? "1" : "0");
        }
    }
    ASSERT_TRUE(writer.Finish()) << writer.Error();
    out.close();

    const ReaderPtr reader(NTARN::IDatabaseReader::create((folder / "walk.fst").c_str(), false));
    const std::vector<tesk::SElements> all = Signals(*reader);
    const std::vector<tesk::SElements> few = {all.at(5), all.at(100), all.at(Many - 1)};
    std::vector<std::vector<SEvent>> walked(few.size());
    const auto walk = Source(*reader).WalkChanges(few);
    for (long long time = 0; walk->Next(time, Never);) {
        for (const std::uint32_t signal : walk->GetChanged())
            walked[signal].push_back({time, walk->GetValues(signal).front().value_or(99)});
    }
    for (std::size_t i = 0; i < few.size(); ++i) {
        EXPECT_THAT(walked[i], SizeIs(testing::Gt(5u)));
        EXPECT_EQ(walked[i], AllEvents(*reader, static_cast<int>(few[i].first))) << i;
    }
}

TEST(FstWalk, CountsOnlyWhatLiesInTheStretch)
{
    const CTemporaryFolder folder;
    const ReaderPtr reader = Open(folder, Sample().Bytes());
    EXPECT_THAT(Counted(*reader, {10, 20}), ElementsAre(2, 2, 2, 1, 2, 2));
    EXPECT_THAT(Counted(*reader, {21, std::nullopt}), ElementsAre(1, 0, 1, 0, 1, 1));
}

TEST(FstWalk, IsLeftToTheEventsWhereBlocksOverlapOrASignalIsNotWhole)
{
    const CTemporaryFolder folder;
    CFstMaker maker;
    maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "v", 2);
    maker.Block(0, {0, 10}, "xxx", {{{0, "0"}, {1, "1"}}, {}});
    const ReaderPtr good = Open(folder, maker.Bytes());
    EXPECT_NE(Source(*good).WalkChanges(Signals(*good)), nullptr);
    const tesk::SElements parts[] = {{good->GetChildRange(2).first, 1}, {good->GetChildRange(2).last, 1}, {99, 1}};
    for (const tesk::SElements &part : parts) {
        EXPECT_EQ(Source(*good).WalkChanges({&part, 1}), nullptr);
        EXPECT_EQ(Source(*good).CountChanges({&part, 1}, {}, [](long long, long long) {}), std::nullopt);
    }
    maker.Block(5, {5, 20}, "xxx", {{{0, "z"}}, {}});
    const ReaderPtr overlapping = Open(folder, maker.Bytes());
    EXPECT_EQ(Source(*overlapping).WalkChanges(Signals(*overlapping)), nullptr);
}

TEST(FstIdentity, IsSharedByAliasesAndByWhatTheWriterFoundToChangeAlikeAndReadsNoEvents)
{
    const CTemporaryFolder folder;
    const ReaderPtr reader = Open(folder, Sample().Bytes());
    const auto identity = [&](int handle) { return Source(*reader).IdentifyChanges(handle); };
    EXPECT_EQ(identity(1), identity(5));
    EXPECT_NE(identity(1), identity(2));  // the second block tells them apart
    EXPECT_NE(identity(reader->GetChildRange(3).first), identity(reader->GetChildRange(3).last));
    EXPECT_EQ(identity(99), -99);
    CFstMaker alike;
    alike.Variable(alike.Wire, "a", 1).Variable(alike.Wire, "b", 1).Variable(alike.Wire, "silent", 1);
    alike.Block(0, {0, 10}, "xxx", {{{0, "0"}, {1, "1"}}, {{0, "0"}, {1, "1"}}, {}});
    const ReaderPtr sharing = Open(folder, alike.Bytes());
    EXPECT_EQ(Source(*sharing).IdentifyChanges(1), Source(*sharing).IdentifyChanges(2));
    EXPECT_EQ(Source(*sharing).IdentifyChanges(3), -3);
}

TEST(FstWalk, OfARandomFileAgreesWithTheEventsOfEachSignal)
{
    const CTemporaryFolder folder;
    std::mt19937 random(1);
    for (int round = 0; round < 20; ++round) {
        CFstMaker maker = CFstMaker();
        for (int i = 0; i < 80; ++i)
            maker.Variable(maker.Wire, "s" + std::to_string(i), i % 4 == 0 ? 9 : 1);
        std::uint64_t time = 0;
        for (int block = 0; block < 3; ++block) {
            std::vector<std::uint64_t> times;
            for (int i = 0; i < 50; ++i)
                times.push_back(time += random() % 3);
            std::vector<CFstChanges> changes(80);
            for (std::size_t signal = 0; signal < changes.size(); ++signal) {
                for (std::uint64_t index = random() % 20; index < times.size(); index += random() % 20) {
                    std::string letters;
                    for (int bit = 0; bit < (signal % 4 == 0 ? 9 : 1); ++bit)
                        letters += "0101x"[random() % 5];
                    changes[signal].emplace_back(index, letters);
                }
            }
            maker.Block(times.front(), times, std::string(20 * 9 + 60, 'x'), changes);
        }
        ExpectTheSame(folder, maker.Bytes(), std::to_string(round));
    }
}
