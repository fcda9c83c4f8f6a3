// A VCD file whose values are read as they come, beside the same file imported as a whole.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "logcatcher.h"
#include "platform/fst/fsttools.h"
#include "waveform/files/filewalk.h"
#include "waveform/files/mergedwalk.h"
#include "waveform/files/vcdfile.h"

namespace {

using fsttest::CTemporaryFolder;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr long long Never = std::numeric_limits<long long>::max();

std::string WriteVcd(const CTemporaryFolder &folder, const std::string &text)
{
    std::ofstream(folder / "a.vcd", std::ios::binary) << text;
    return (folder / "a.vcd").string();
}

// "10: 0=23 2=3" for each time at which signals change.
std::vector<std::string> Texts(tesk::IChangeWalk &walk)
{
    std::vector<std::string> texts;
    long long time = 0;
    long long next = 0;
    while (walk.PeekTime(next) && walk.Next(time, Never)) {
        EXPECT_LE(next, time);
        texts.push_back(std::to_string(time) + ":");
        for (const std::uint32_t signal : walk.GetChanged()) {
            texts.back() += " " + std::to_string(signal) + "=";
            for (const auto &value : walk.GetValues(signal))
                texts.back() += value ? std::to_string(*value) : "-";
        }
    }
    EXPECT_FALSE(walk.Next(time, Never));
    EXPECT_FALSE(walk.PeekTime(next));
    return texts;
}

std::vector<long long> Counts(const std::vector<tesk::SChangeCount> &counted)
{
    std::vector<long long> counts;
    for (const tesk::SChangeCount &count : counted)
        counts.insert(counts.end(), {count.count, count.first, count.last});
    return counts;
}

void Ignore(long long, long long) {}

// What is read as it comes is what an import finds, and so is what the log tells.
void ExpectTheSame(const std::string &path, const std::string &what)
{
    CLogCatcher importLog;
    const std::unique_ptr<WaveStore> store(ImportVcdFile(path.c_str()));
    const std::vector<std::string> expectedLog = importLog.Messages();
    CLogCatcher log;
    const auto file = tesk::CVcdFile::Open(path.c_str());
    ASSERT_EQ(file != nullptr, store != nullptr) << what;
    if (file == nullptr)
        return;
    tesk::CVcdFile imported(*store);
    const auto walk = file->WalkChanges(file->GetSignals());
    ASSERT_NE(walk, nullptr);
    tesk::CMergedWalk merged(imported, imported.GetSignals());
    ASSERT_EQ(Texts(*walk), Texts(merged)) << what;
    EXPECT_EQ(file->GetEndTime(), imported.GetEndTime()) << what;
    EXPECT_EQ(file->GetResolution(), imported.GetResolution());
    EXPECT_EQ(log.Messages(), expectedLog) << what;
    const auto counting = tesk::CVcdFile::Open(path.c_str());
    EXPECT_EQ(Counts(tesk::CountChanges(*counting, counting->GetSignals(), Ignore)),
              Counts(tesk::CountChanges(imported, imported.GetSignals(), Ignore)))
        << what;
}

constexpr const char *Head =
    "$timescale 10 ns $end\n$scope module tb $end\n$var wire 1 ! a $end\n$var wire 4 \" v [3:0] $end\n"
    "$var real 64 # r $end\n$var wire 1 ! alias $end\n$var wire 130 $ wide [129:0] $end\n"
    "$var wire 4 \" other [4:1] $end\n$var wire 2 \" part [1:0] $end\n$var string 1 s text $end\n"
    "$upscope $end\n$enddefinitions $end\n";

const std::string Values =
    "1! b10 \" #0 $dumpvars x! bx \" r1.5 # bz $ $end\n#10 0! b101 \" b1 $ #10 1!\n#12 b0101 \"\n"
    "#11 0! r2 #\n#20 b" +
    std::string(130, '1') + " $ 1\"\nshello s\n#30 b1x0z \" b" + std::string(67, 'x') + "01 $ r3 !\n#40\n";

}  // namespace

TEST(VcdChanges, AreThoseOfTheWholeFile)
{
    const CTemporaryFolder folder;
    ExpectTheSame(WriteVcd(folder, Head + Values), "all");
    ExpectTheSame(WriteVcd(folder, Head), "no values");
    ExpectTheSame(WriteVcd(folder, "$enddefinitions $end\n#5\n"), "no signals");
}

TEST(VcdChanges, AreThoseOfTheWholeFileWhereverItIsCut)
{
    const CTemporaryFolder folder;
    const std::string whole = Head + Values;
    for (std::size_t size = 0; size < whole.size(); ++size)
        ExpectTheSame(WriteVcd(folder, whole.substr(0, size)), "cut at " + std::to_string(size));
}

TEST(VcdChanges, AreThoseOfTheWholeFileWhateverByteIsDamaged)
{
    const CTemporaryFolder folder;
    const std::string whole = Head + Values;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const char c : {'#', '1'}) {
            std::string text = whole;
            text[i] = c;
            ExpectTheSame(WriteVcd(folder, text), "byte " + std::to_string(i));
        }
    }
}

TEST(VcdChanges, OfRandomFilesAreThoseOfTheWholeFile)
{
    const CTemporaryFolder folder;
    std::mt19937 random(1);
    for (int round = 0; round < 30; ++round) {
        const std::vector<int> widths = {1, 3, 8, 9, 64, 65, 100, 128};
        std::string text = "$timescale 1 ns $end\n";
        for (std::size_t i = 0; i < widths.size(); ++i)
            text += "$var wire " + std::to_string(widths[i]) + ' ' + static_cast<char>('a' + i) + " s" +
                    std::to_string(i) + " $end\n";
        text += "$enddefinitions $end\n";
        for (std::size_t time = 0; time < 300; time += random() % 4) {
            text += '#' + std::to_string(time) + "\nb";
            const std::size_t signal = random() % widths.size();
            const unsigned letters = random() % 3 == 0 ? 4 : 2;
            for (std::size_t bit = random() % 130; bit > 0; --bit)
                text += "01xz"[random() % letters];
            text += std::string("0 ") + static_cast<char>('a' + signal) + '\n';
        }
        ExpectTheSame(WriteVcd(folder, text), std::to_string(round));
    }
}

TEST(VcdChanges, GoNoFurtherThanTheyAreAsked)
{
    const CTemporaryFolder folder;
    const auto file = tesk::CVcdFile::Open(WriteVcd(folder, Head + Values).c_str());
    const std::vector<tesk::SFileSignal> signals = {file->GetSignals()[1], file->GetSignals()[2]};
    const auto walk = file->WalkChanges(signals);
    std::vector<long long> times;
    long long time = -1;
    for (const long long until : {-1, 9, 11, 19, 25}) {
        while (walk->Next(time, until)) {
            EXPECT_LE(time, until);
            times.push_back(time);
        }
    }
    EXPECT_THAT(times, ElementsAre(0, 10, 12, 20));
    EXPECT_THAT(walk->GetPositions(0), ElementsAre(2, 2, 2, 3));
    EXPECT_THAT(walk->GetPositions(1), IsEmpty());
    EXPECT_EQ(file->EstimateEndTime(), 40);
}

TEST(VcdChanges, OfWhatIsDeclaredAmongTheValuesAreLeftOutWithOneWarning)
{
    const CTemporaryFolder folder;
    const std::string late =
        "#50 $var wire 1 & late $end $var wire 70 ' bus $end $var wire 1 ! same $end 1& b1 ' 0! #60 0&\n";
    const std::string path = WriteVcd(folder, Head + Values + late);
    const CLogCatcher log;
    const auto file = tesk::CVcdFile::Open(path.c_str());
    const auto walk = file->WalkChanges(file->GetSignals());
    EXPECT_EQ(Texts(*walk).back(), "50: 0=2 3=2");
    EXPECT_EQ(file->GetEndTime(), 60);
    EXPECT_THAT(log.Messages(), Contains(testing::EndsWith("declared among the values are left out")).Times(1));
    const auto counted = tesk::CVcdFile::Open(path.c_str());
    EXPECT_THAT(tesk::CountChanges(*counted, counted->GetSignals(), Ignore), SizeIs(7));
    // Events are read as a whole, and there it is.
    const auto whole = tesk::CVcdFile::Open(path.c_str());
    EXPECT_EQ(whole->GetEndTime(), 60);
    EXPECT_NE(whole->Walk(1), nullptr);
    EXPECT_NE(whole->FindSignal("late"), std::nullopt);
    EXPECT_EQ(Texts(*counted->WalkChanges(counted->GetSignals())).back(), "50: 0=2 3=2");
}

TEST(VcdFile, ReadsNoValuesUntilTheyAreAskedFor)
{
    const CTemporaryFolder folder;
    const CLogCatcher log;
    const auto file =
        tesk::CVcdFile::Open(WriteVcd(folder, std::string(Head) + "#0 1! #5 this is no value #7").c_str());
    EXPECT_EQ(file->GetResolution(), 10000000);
    EXPECT_THAT(file->GetSignals(), SizeIs(7));
    EXPECT_THAT(log.Messages(), SizeIs(1));  // of the string
    EXPECT_EQ(file->EstimateEndTime(), 0);   // on a line of its own no time stands
    EXPECT_EQ(file->GetEndTime(), 7);
    EXPECT_GT(log.Messages().size(), 1u);
}

TEST(VcdFile, IsReadOnceMoreForEventsBehindAWalk)
{
    const CTemporaryFolder folder;
    const std::string path = WriteVcd(folder, Head + Values);
    const auto file = tesk::CVcdFile::Open(path.c_str());
    {
        const auto walk = file->WalkChanges(file->GetSignals());
        long long time = 0;
        EXPECT_TRUE(walk->Next(time, Never));  // and no further
    }
    EXPECT_EQ(file->GetEndTime(), 40);
    tesk::CMergedWalk again(*file, file->GetSignals());
    const std::unique_ptr<WaveStore> store(ImportVcdFile(path.c_str()));
    tesk::CVcdFile imported(*store);
    tesk::CMergedWalk expected(imported, imported.GetSignals());
    EXPECT_EQ(Texts(again), Texts(expected));
    EXPECT_EQ(file->WalkChanges(file->GetSignals()), nullptr);  // what is stored is merged

    const auto gone = tesk::CVcdFile::Open(path.c_str());
    gone->WalkChanges(gone->GetSignals()).reset();
    std::filesystem::remove(path);
    const CLogCatcher log;
    EXPECT_EQ(gone->Walk(1), nullptr);
    EXPECT_THAT(log.Messages(), SizeIs(1));
}

TEST(VcdFile, IsReadAnewForEachWalk)
{
    const CTemporaryFolder folder;
    const std::string path = WriteVcd(folder, Head + Values);
    const auto file = tesk::CVcdFile::Open(path.c_str());
    const auto first = file->WalkChanges(file->GetSignals());
    long long time = 0;
    ASSERT_TRUE(first->Next(time, Never));
    const auto second = file->WalkChanges(file->GetSignals());
    ASSERT_TRUE(first->Next(time, Never));
    const std::vector<std::string> all = Texts(*second);
    const std::vector<std::string> left = Texts(*first);
    EXPECT_THAT(all, SizeIs(left.size() + 2));
    EXPECT_TRUE(std::equal(left.begin(), left.end(), all.end() - std::ssize(left)));
    EXPECT_EQ(Counts(*file->CountChanges(file->GetSignals(), {}, Ignore)),
              Counts(*file->CountChanges(file->GetSignals(), {}, Ignore)));
    EXPECT_EQ(Texts(*file->WalkChanges(file->GetSignals())), all);
}

TEST(VcdFile, HasAnEndThatItsValuesTell)
{
    const CTemporaryFolder folder;
    const std::string path = WriteVcd(folder, Head + Values);
    const auto walked = tesk::CVcdFile::Open(path.c_str());
    EXPECT_EQ(walked->FindEndTime(), std::nullopt);
    const auto walk = walked->WalkChanges(walked->GetSignals());
    EXPECT_EQ(Texts(*walk).size(), 5U);
    EXPECT_EQ(walked->FindEndTime(), 40);
    const auto asked = tesk::CVcdFile::Open(path.c_str());
    EXPECT_EQ(asked->GetEndTime(), 40);
    EXPECT_EQ(asked->FindEndTime(), 40);
    EXPECT_EQ(Texts(*asked->WalkChanges(asked->GetSignals())).size(), 5U);
}

TEST(VcdFile, IsNotReadAnewWhereItHasChanged)
{
    const CTemporaryFolder folder;
    for (const std::string &other : {"$timescale 1 ns $end" + std::string(Head).substr(21),
                                     std::string(Head).replace(std::string(Head).find("[3:0]"), 5, "[4:1]"),
                                     std::string(Head).replace(std::string(Head).find("1 ! alias"), 9, "1 % alias")}) {
        const std::string path = WriteVcd(folder, Head + Values);
        const auto file = tesk::CVcdFile::Open(path.c_str());
        file->WalkChanges(file->GetSignals()).reset();
        WriteVcd(folder, other + Values);
        EXPECT_THROW(file->WalkChanges(file->GetSignals()), std::runtime_error) << other;
        const CLogCatcher log;
        EXPECT_EQ(file->GetEndTime(), 0);
        EXPECT_THAT(log.Messages(), Contains(HasSubstr("the file has changed since it was opened")));
        WriteVcd(folder, Head + Values);
        EXPECT_EQ(file->GetEndTime(), 40);
    }
}

TEST(VcdFile, IsReadOnceMoreForEventsBesideAWalkThatGoesOn)
{
    const CTemporaryFolder folder;
    const auto file = tesk::CVcdFile::Open(WriteVcd(folder, Head + Values).c_str());
    const auto walk = file->WalkChanges(file->GetSignals());
    long long time = 0;
    ASSERT_TRUE(walk->Next(time, Never));
    EXPECT_NE(file->Walk(1), nullptr);
    while (walk->Next(time, Never)) {
    }
    EXPECT_EQ(time, 40);
}

TEST(VcdFile, LeavesAPartOfASignalToTheEvents)
{
    const CTemporaryFolder folder;
    const auto file = tesk::CVcdFile::Open(WriteVcd(folder, Head + Values).c_str());
    const tesk::SFileSignal &bus = file->GetSignals()[1];
    const tesk::SFileSignal part{"part", *bus.type.GetArrayElementKTypeInfo(), bus.firstElement + 3, 1};
    EXPECT_EQ(file->WalkChanges({part}), nullptr);
    tesk::CFileWalk walk(*file, {part});
    EXPECT_TRUE(walk.Next());
    EXPECT_THAT(walk.GetPositions(), ElementsAre(1));
}

TEST(VcdFile, FromAPipeIsReadAtOnce)
{
    const CTemporaryFolder folder;
    const std::string path = (folder / "pipe.vcd").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::thread writer([&path] {
        std::ofstream(path) << "$timescale 1ns $end\n$var wire 1 ! a $end\n$enddefinitions $end\n#0\n0!\n#7\n1!\n#9\n";
    });
    const auto file = tesk::CVcdFile::Open(path.c_str());
    writer.join();
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->EstimateEndTime(), 9);
    EXPECT_EQ(file->WalkChanges(file->GetSignals()), nullptr);
    const auto walk = file->Walk(file->GetSignals().at(0).firstElement);
    long long time = -1;
    std::uint64_t value = 0;
    EXPECT_TRUE(walk->Next(time, value));
    EXPECT_EQ(time, 0);
    EXPECT_TRUE(walk->Next(time, value));
    EXPECT_EQ(time, 7);
    EXPECT_FALSE(walk->Next(time, value));
}

TEST(VcdFile, ThatIsNoneIsRefusedWithOneMessage)
{
    const CTemporaryFolder folder;
    const CLogCatcher log;
    EXPECT_EQ(tesk::CVcdFile::Open(WriteVcd(folder, "$var wire 1").c_str()), nullptr);
    EXPECT_THAT(log.Messages(), SizeIs(1));
}
