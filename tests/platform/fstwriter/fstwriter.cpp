// What the writer writes, read by our reader and by fst2vcd.
#include "platform/fstwriter/fstwriter.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <random>

#include "logcatcher.h"
#include "platform/fst/fstvcd.h"
#include "platform/kestrin.h"

namespace {

using namespace fsttest;
using NTARN::CFstWriter;
using NTARN::EFstDirection;
using NTARN::EFstScope;
using NTARN::EFstVariable;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr EFstDirection None = EFstDirection::None;
constexpr const char *NeedsGtkwave = "fst2vcd is in the package gtkwave";

// A file that is written, then read.
class CWritten {
public:
    /// @param fill   gives the writer what to write. @return the last time
    explicit CWritten(const std::function<std::uint64_t(CFstWriter &)> &fill, int exponent = -9,
                      std::size_t blockSize = CFstWriter::UsualBlockSize)
    {
        std::ofstream out(Path(), std::ios::binary);
        CFstWriter writer(out, exponent, "today", blockSize);
        const std::uint64_t end = fill(writer);
        EXPECT_TRUE(writer.Finish(end)) << writer.Error();
        out.close();
        m_reader.reset(NTARN::IDatabaseReader::create(Path().c_str(), false));
    }

    std::filesystem::path Path() const { return m_folder / "written.fst"; }
    NTARN::IDatabaseReader *operator->() const { return m_reader.get(); }
    std::vector<SEvent> Events(int handle) const { return AllEvents(*m_reader, handle); }
    std::string Dump() const
    {
        const std::filesystem::path vcd = m_folder / "dump.vcd";
        EXPECT_EQ(
            std::system(("fst2vcd -e -f '" + Path().string() + "' -o '" + vcd.string() + "' >/dev/null 2>&1").c_str()),
            0);
        const CBytes bytes = ReadBytes(vcd);
        return {bytes.begin(), bytes.end()};
    }

private:
    CTemporaryFolder m_folder;
    ReaderPtr m_reader;
};

TEST(FstWriter, WritesScopesVariablesAndChanges)
{
    const CLogCatcher log;
    const CWritten file([](CFstWriter &writer) {
        writer.OpenScope(EFstScope::Module, "tb");
        const auto clk = writer.AddVariable(EFstVariable::Wire, EFstDirection::In, "clk", 1);
        const auto data = writer.AddVariable(EFstVariable::Reg, None, "data [3:0]", 4);
        writer.OpenScope(EFstScope::Generate, "gen(0)");
        writer.AddAlias(EFstVariable::Wire, None, "clock", clk);
        const auto level = writer.AddVariable(EFstVariable::Real, None, "level", 1);
        writer.CloseScope();
        writer.AddVariable(EFstVariable::Wire, None, "\\a+b [0:1]", 2);
        writer.CloseScope();
        writer.SetTime(0);
        writer.Change(clk, "0");
        writer.Change(data, "01zX");
        writer.Change(level, 0.5);
        writer.SetTime(10);
        writer.Change(clk, "H");
        writer.Change(level, -2.5);
        writer.SetTime(10);
        writer.Change(data, "0101");
        return 25U;
    });
    EXPECT_THAT(log.Messages(), IsEmpty());
    const char *const names[] = {"tb.clk", "tb.data", "tb.gen[0].clock", "tb.gen[0].level", "tb.\\a+b\\"};
    ASSERT_EQ(file->RootHandlesEnd() - file->RootHandlesBegin(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(file->GetName(i + 1), names[i]);
    EXPECT_EQ(file->GetEndTime(), 25);
    EXPECT_EQ(file->GetResolution(), 1'000'000);
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{0, 2}, SEvent{10, 7}));
    EXPECT_EQ(file.Events(3), file.Events(1));
    EXPECT_THAT(file.Events(6), ElementsAre(SEvent{0, 2}));
    EXPECT_THAT(file.Events(9), ElementsAre(SEvent{0, 1}, SEvent{10, 3}));
    EXPECT_THAT(file.Events(4), ElementsAre(SEvent{0, 0x3FE0000000000000}, SEvent{10, 0xC004000000000000}));
    EXPECT_THAT(file.Events(10), IsEmpty());
    EXPECT_STREQ(file->GetType(5).GetTypeIdentifier(), "std_logic_vector(0 to 1)");
}

TEST(FstWriter, WritesAnXForALetterThatNoTypeHas)
{
    const CLogCatcher log;
    const CWritten file([](CFstWriter &writer) {
        const auto bus = writer.AddVariable(EFstVariable::Wire, None, "bus", 4);
        writer.SetTime(1);
        writer.Change(bus, "1q\xFF!");
        return 2U;
    });
    EXPECT_THAT(file.Dump(), HasSubstr("b1xxx !"));
}

TEST(FstWriter, WritesWhatFst2VcdReads)
{
    const CLogCatcher log;
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    const CWritten file([](CFstWriter &writer) {
        writer.OpenScope(EFstScope::Module, "tb");
        const auto in = writer.AddVariable(EFstVariable::Wire, EFstDirection::In, "in", 1);
        const auto count = writer.AddVariable(EFstVariable::Integer, None, "count", 32);
        const auto text = writer.AddVariable(EFstVariable::Text, None, "state", 0);
        writer.SetTime(7);
        writer.Change(in, "u");
        writer.Change(count, std::string(31, '0') + "1");
        writer.ChangeText(text, "IDLE");
        writer.SetTime(1ULL << 40);
        writer.ChangeText(text, "");
        return std::uint64_t{2} << 40;
    });
    const std::string dump = file.Dump();
    for (const char *line :
         {"today", "tesk", "$scope module tb $end", "$var wire 1 ! in $end", "$var integer 32 \" count $end", "\n#7\n",
          "u!", "b00000000000000000000000000000001 \"", "sIDLE #", "\n#1099511627776\ns #"})
        EXPECT_THAT(dump, HasSubstr(line));
}

// One random signal and what it did.
struct SRandomSignal {
    std::uint32_t handle;
    std::size_t width;  // 0 for a real
    std::vector<std::pair<long long, std::string>> changes;
    std::vector<std::pair<long long, double>> reals;
};

std::string RandomLetters(std::mt19937 &random, std::size_t width)
{
    const bool isBinary = random() % 2 == 0;
    std::string letters;
    for (std::size_t i = 0; i < width; ++i)
        letters += "01uxzwlh-"[random() % (isBinary ? 2 : 9)];
    return letters;
}

std::uint64_t FillAtRandom(CFstWriter &writer, std::vector<SRandomSignal> &signals, std::mt19937 &random, int times)
{
    const std::size_t widths[] = {1, 1, 1, 2, 7, 8, 9, 31, 64, 300, 0, 0};
    writer.OpenScope(EFstScope::Module, "top");
    for (std::size_t i = 0; i < std::size(widths); ++i) {
        const std::size_t width = widths[i];
        std::string name = "s" + std::to_string(i);
        if (i == 4)
            name += " [-2:4]";  // upwards, from below 0
        if (i == 5)
            name += " [11:4]";
        const EFstVariable kind = width == 0 ? EFstVariable::Real : EFstVariable::Logic;
        signals.push_back({writer.AddVariable(kind, None, name, static_cast<std::uint32_t>(width)), width, {}, {}});
    }
    std::uint64_t time = random() % 3;
    for (int i = 0; i < times; ++i, time += 1 + (random() % 50 == 0 ? 1ULL << 33 : random() % 40)) {
        writer.SetTime(time);
        for (SRandomSignal &signal : signals) {
            if (random() % 3 != 0)
                continue;
            if (signal.width == 0) {
                signal.reals.emplace_back(
                    time, std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 90) - 60));
                writer.Change(signal.handle, signal.reals.back().second);
            } else {
                signal.changes.emplace_back(time, RandomLetters(random, signal.width));
                writer.Change(signal.handle, signal.changes.back().second);
            }
        }
    }
    return time;
}

std::vector<SEvent> EventsOf(const SRandomSignal &signal, std::size_t element)
{
    std::vector<SEvent> events;
    for (const auto &[time, real] : signal.reals) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &real, sizeof bits);
        events.push_back({time, bits});
    }
    for (const auto &[time, letters] : signal.changes) {
        const std::uint64_t value = PositionOf(letters[element]);
        if (signal.width == 1 || events.empty() || events.back().value != value)
            events.push_back({time, value});
    }
    return events;
}

// Small blocks, so that there are many, and one.
TEST(FstWriter, WritesWhatIsReadBackTheSameByOursAndByFst2Vcd)
{
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    std::mt19937 random(1);
    for (const std::size_t blockSize : {200, 5000, 1 << 20}) {
        std::vector<SRandomSignal> signals;
        const CLogCatcher log;
        const CWritten file([&](CFstWriter &writer) { return FillAtRandom(writer, signals, random, 300); }, -12,
                            blockSize);
        EXPECT_THAT(log.Messages(), IsEmpty());
        for (std::size_t i = 0; i < signals.size(); ++i) {
            const int handle = static_cast<int>(i) + 1;
            const int first = std::max(file->GetChildRange(handle).first, 0);
            if (first == 0) {
                EXPECT_EQ(file.Events(handle), EventsOf(signals[i], 0)) << i;
            }
            for (std::size_t element = 0; first > 0 && element < signals[i].width; ++element)
                EXPECT_EQ(file.Events(first + static_cast<int>(element)), EventsOf(signals[i], element)) << i;
        }
        ExpectAsFst2Vcd(file.Path());
    }
}

TEST(FstWriter, KeepsTheChangesOfSignalsThatChangeAlikeOnce)
{
    const CWritten file([](CFstWriter &writer) {
        for (int i = 0; i < 200; ++i)
            writer.AddVariable(EFstVariable::Wire, None, "a", 1);
        for (std::uint64_t time = 0; time < 300; ++time) {
            writer.SetTime(time * time);
            for (std::uint32_t handle = 1; handle <= 200; ++handle)
                writer.Change(handle, time % 3 == 0 || (handle == 7 && time == 200) ? "1" : "0");
        }
        return 0U;
    });
    EXPECT_LT(std::filesystem::file_size(file.Path()), 2'000U);
    EXPECT_EQ(file->EventsFrom(1, 0).event(), file->EventsFrom(200, 0).event());
    EXPECT_NE(file.Events(7), file.Events(6));
    ExpectAsFst2Vcd(file.Path());
}

TEST(FstWriter, WritesAFileWithoutChanges)
{
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    const CLogCatcher log;
    const auto declare = [](CFstWriter &writer) {
        writer.AddVariable(EFstVariable::Wire, None, "a", 1);
        return 12U;
    };
    const CWritten file(declare);
    EXPECT_EQ(file->GetEndTime(), 12);
    EXPECT_THAT(file.Events(1), IsEmpty());
    EXPECT_THAT(file.Dump(), HasSubstr("$var wire 1 ! a $end"));
    const CWritten empty([](CFstWriter &) { return 0U; });
    EXPECT_EQ(empty->RootHandlesBegin(), empty->RootHandlesEnd());
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(FstWriter, TakesValuesInFrontOfTheFirstTime)
{
    const CWritten file([](CFstWriter &writer) {
        const auto a = writer.AddVariable(EFstVariable::Wire, None, "a", 1);
        const auto b = writer.AddVariable(EFstVariable::Wire, None, "b", 2);
        writer.Change(a, "1");
        writer.SetTime(5);
        writer.Change(b, "10");
        return 9U;
    });
    EXPECT_THAT(file.Events(1), ElementsAre(SEvent{5, 3}));
    EXPECT_THAT(file.Events(3), ElementsAre(SEvent{5, 3}));
}

TEST(FstWriter, WritesAHundredThousandVariables)
{
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    constexpr std::uint32_t Count = 100'000;
    const CWritten file([](CFstWriter &writer) {
        for (std::uint32_t i = 1; i <= Count; ++i) {
            writer.OpenScope(EFstScope::Module, "u" + std::to_string(i / 100));
            writer.AddVariable(EFstVariable::Wire, None, "v" + std::to_string(i) + (i % 2 == 0 ? "" : " [7:0]"),
                               i % 2 == 0 ? 1 : 8);
            writer.CloseScope();
        }
        for (std::uint64_t time = 0; time < 3; ++time) {
            writer.SetTime(time);
            for (std::uint32_t i = 1; i <= Count; i += 1 + 6 * static_cast<std::uint32_t>(time))
                writer.Change(i, i % 2 == 0 ? "1" : time == 1 ? "0000000z" : "01010101");
        }
        return 3U;
    });
    ASSERT_EQ(file->RootHandlesEnd() - file->RootHandlesBegin(), static_cast<int>(Count));
    EXPECT_EQ(file->GetName(Count), "u1000.v100000");
    EXPECT_EQ(file.Events(8), (std::vector<SEvent>{{0, 3}, {1, 3}}));
    const std::string dump = file.Dump();
    EXPECT_THAT(dump, HasSubstr("v99999 [7:0] $end\n"));
    const std::size_t lines = static_cast<std::size_t>(std::ranges::count(dump, '\n'));
    EXPECT_GT(lines, 2 * Count + Count / 7 + Count / 13);
}

TEST(FstWriter, TellsWhatMakesNoSense)
{
    const struct {
        std::function<void(CFstWriter &, std::uint32_t bit, std::uint32_t real)> act;
        const char *error;
    } rows[] = {
        {[](CFstWriter &writer, auto, auto) { writer.CloseScope(); }, "not open"},
        {[](CFstWriter &writer, auto, auto) { writer.AddVariable(EFstVariable::Wire, None, "w", 0); }, "no width"},
        {[](CFstWriter &writer, auto, auto) { writer.AddVariable(EFstVariable::Wire, None, "w", (1 << 24) + 1); },
         "no width"},
        {[](CFstWriter &writer, auto, auto) { writer.AddAlias(EFstVariable::Wire, None, "w", 3); }, "no such variable"},
        {[](CFstWriter &writer, auto, auto) { writer.AddAlias(EFstVariable::Wire, None, "w", 0); }, "no such variable"},
        {[](CFstWriter &writer, auto bit, auto) { writer.AddAlias(EFstVariable::Real, None, "w", bit); },
         "no such variable"},
        {[](CFstWriter &writer, auto, auto) { writer.SetTime(0), writer.OpenScope(EFstScope::Module, "m"); }, "behind"},
        {[](CFstWriter &writer, auto, auto) { writer.SetTime(5), writer.SetTime(4); }, "earlier"},
        {[](CFstWriter &writer, auto, auto) { writer.SetTime(1ULL << 63); }, "too long"},
        {[](CFstWriter &writer, auto bit, auto) { writer.Change(bit, "01"); }, "width"},
        {[](CFstWriter &writer, auto bit, auto) { writer.Change(bit, 1.0); }, "no such variable"},
        {[](CFstWriter &writer, auto, auto real) { writer.Change(real, "0"); }, "no such variable"},
        {[](CFstWriter &writer, auto, auto) { writer.Change(99, "0"); }, "no such variable"},
    };
    for (const auto &row : rows) {
        std::ostringstream out;
        CFstWriter writer(out, -9);
        const auto bit = writer.AddVariable(EFstVariable::Wire, None, "b", 1);
        const auto real = writer.AddVariable(EFstVariable::Real, None, "r", 1);
        row.act(writer, bit, real);
        EXPECT_THAT(writer.Error(), HasSubstr(row.error));
        EXPECT_FALSE(writer.Finish()) << row.error;
    }
}

TEST(FstWriter, TellsThatItsStreamFails)
{
    std::ofstream out("/dev/full", std::ios::binary);
    CFstWriter writer(out, -9);
    writer.AddVariable(EFstVariable::Wire, None, "b", 1);
    EXPECT_FALSE(writer.Finish());
    EXPECT_EQ(writer.Error(), "the file cannot be written");
}

}  // namespace
