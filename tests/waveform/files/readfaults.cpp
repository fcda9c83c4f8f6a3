// Waveform files of every kind, and text tables, read while the system fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "faultyfiles.h"
#include "logcatcher.h"
#include "platform/fst/fstmaker.h"
#include "platform/input/gzipsupport.h"
#include "platform/stream/streamfiles.h"
#include "testpaths.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/filewalk.h"
#include "waveform/table/tables.h"

namespace {

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string ShowChanges(tesk::IWaveformFile &file)
{
    std::ostringstream text;
    const std::vector<tesk::SFileSignal> &signals = file.GetSignals();
    for (const tesk::SFileSignal &signal : signals)
        text << signal.path << ' ';
    tesk::CFileWalk walk(file, signals);
    while (walk.Next())
        text << walk.GetTime() << ':' << walk.GetSignal() << ' ';
    return text.str();
}

// Signal by signal, as stimuli and their signals read them.
std::string ShowElements(tesk::IWaveformFile &file)
{
    std::ostringstream text;
    for (const tesk::SFileSignal &signal : file.GetSignals()) {
        const auto walk = file.Walk(signal.firstElement);
        long long time = 0;
        std::uint64_t value = 0;
        while (walk != nullptr && walk->Next(time, value))
            text << time << ':' << value << ' ';
    }
    return text.str();
}

std::string ShowCounts(tesk::IWaveformFile &file)
{
    std::ostringstream text;
    for (const tesk::SChangeCount &count : tesk::CountChanges(file, file.GetSignals(), [](long long, long long) {}))
        text << count.count << ' ';
    return text.str();
}

// As a comparison goes through a file: it asks for each time before it goes there.
std::string ShowTimes(tesk::IWaveformFile &file)
{
    std::ostringstream text;
    const auto walk = tesk::WalkInTime(file, file.GetSignals());
    long long next = 0, time = 0;
    while (walk->PeekTime(next) && walk->Next(time, next))
        text << time << ':' << walk->GetChanged().size() << ' ';
    return text.str();
}

struct SAnswer {
    std::string text;
    std::vector<std::string> faults;  // of level 1, and what was thrown

    bool operator==(const SAnswer &) const = default;
};

using FRead = std::function<std::string()>;

SAnswer Try(const FRead &read)
{
    SAnswer answer;
    const CLogCatcher log;
    try {
        answer.text = read();
    } catch (const std::exception &fault) {
        answer.faults.emplace_back(fault.what());
    }
    for (const std::string &message : log.Messages()) {
        if (message.starts_with("1 "))
            answer.faults.push_back(message);
    }
    return answer;
}

// Reads with each call failing once, and from each on, and with all calls cut short and interrupted.
void ExpectNoFaultGoesUnsaid(const std::string &what, const FRead &read)
{
    const std::size_t descriptors = OpenDescriptors();
    std::size_t count = 0;
    SAnswer whole;
    {
        const CFaultyFiles files(ReadingCalls | WriteCalls);
        whole = Try(read);
        count = files.Count();
    }
    ASSERT_THAT(whole.faults, IsEmpty()) << what;
    ASSERT_FALSE(whole.text.empty()) << what;
    EXPECT_GE(count, 2u) << what;
    {
        CFaultyFiles files(0);
        files.LimitPieces(7);
        files.Interrupt();
        EXPECT_EQ(Try(read), whole) << what;
    }
    ForEachCall(count, [&](std::size_t call) {
        for (const std::size_t last : {call, CFaultyFiles::Never}) {
            const CFaultyFiles files(ReadingCalls | WriteCalls, EIO, call, last);
            const SAnswer answer = Try(read);
            EXPECT_TRUE(answer == whole || !answer.faults.empty()) << what << ", call " << call << ": " << answer.text;
            for (const std::string &fault : answer.faults)
                EXPECT_THAT(fault, AnyOf(HasSubstr("Input/output error"), HasSubstr("cannot be opened")))
                    << what << ", call " << call;
        }
    });
    EXPECT_EQ(OpenDescriptors(), descriptors) << what;
    EXPECT_EQ(Try(read), whole) << what << ": and nothing of it is kept";
}

std::string BytesOf(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class ReadFaults : public testing::Test {
protected:
    std::string Put(const std::string &name, const std::string &bytes) const
    {
        std::ofstream(m_folder / name, std::ios::binary) << bytes;
        return m_folder / name;
    }

    static std::string Sample(const std::string &name) { return TESK_SOURCE_DIR "/tests/data/" + name; }

    static void ExpectFaultsTold(tesk::EFileKind kind, const std::string &path)
    {
        using FShow = std::string (*)(tesk::IWaveformFile &);
        for (const FShow show : {FShow(ShowChanges), FShow(ShowElements), FShow(ShowCounts), FShow(ShowTimes)}) {
            ExpectNoFaultGoesUnsaid(path, [&] {
                const auto file = tesk::FileKind(kind).open(path.c_str());
                return file != nullptr ? show(*file) : std::string();
            });
        }
    }

    CStreamFolder m_folder;
};

TEST_F(ReadFaults, OfAVcdAreTold)
{
    const std::string sample = Sample("tb.iverilog.vcd");
    ExpectFaultsTold(tesk::EFileKind::Vcd, sample);
    ExpectFaultsTold(tesk::EFileKind::Vcd, Put("packed.vcd", Gzip(BytesOf(sample))));
}

TEST_F(ReadFaults, OfAnFstAreTold)
{
    for (const char *name : {"tb.iverilog.fst", "fst_types.ghdl.fst", "tb.verilator.fst"})
        ExpectFaultsTold(tesk::EFileKind::Database, Sample(name));
}

// Which is unpacked into a temporary file.
TEST_F(ReadFaults, OfAPackedFstAreTold)
{
    const std::string bytes = BytesOf(Sample("tb.iverilog.fst"));
    const std::string packed = Gzip(bytes);
    const auto head = fsttest::CByteWriter().Byte(254).Number(16 + packed.size()).Number(bytes.size()).bytes;
    ExpectFaultsTold(tesk::EFileKind::Database, Put("packed.fst", std::string(head.begin(), head.end()) + packed));
}

TEST_F(ReadFaults, OfAGhwFileAreTold)
{
    for (const char *name : {"tb.ghdl.ghw", "ghw_types.ghdl.ghw"})
        ExpectFaultsTold(tesk::EFileKind::Database, Sample(name));
}

TEST_F(ReadFaults, OfAnEventStreamAreTold)
{
    CEvents events;
    for (long long time = 0; time < 3000; ++time)
        events.emplace_back(time * time, std::string(1, static_cast<char>(2 + time % 2)));
    const std::string path = m_folder / "a.zyn";
    WriteStream(path, {Bit("a", events), Bit("b", {{5, std::string(1, '\2')}}), Vector("v", {events, events})});
    ExpectFaultsTold(tesk::EFileKind::Stream, path);
    ExpectFaultsTold(tesk::EFileKind::Stream, Put("packed.zyn", Gzip(BytesOf(path))));
}

// A table that breaks off is none.
TEST_F(ReadFaults, OfATextTableAreTold)
{
    std::string columns = "t s\n", lines = "t";
    for (int i = 0; i < 60'000; ++i)
        columns += std::to_string(i) + " 1\n";
    for (int i = 0; i < 500; ++i)
        lines += " " + std::to_string(i);
    lines += "\ns";
    for (int i = 0; i < 500; ++i)
        lines += " 1";
    const struct {
        const char *name;
        const std::string &text;
        const char *arguments;
    } rows[] = {{"columns.txt", columns, ",s -time_points t"}, {"rows.txt", lines, ",s -row -time_points t"}};
    for (const auto &row : rows) {
        const std::string path = Put(row.name, row.text);
        ExpectNoFaultGoesUnsaid(path, [&] {
            CFileFormulaArgs args;
            EXPECT_TRUE(ParseTxtArgs((path + row.arguments).c_str(), args));
            const int handle = ImportTextFile(0, args, MakeSignal(BitType).get());
            if (handle == 0)
                throw std::runtime_error("cannot be opened");  // which is not told but by the number
            const std::size_t count = g_SampleColumns.at(handle)->m_events.size();
            IStimulus::OnEndsim();
            return std::to_string(count);
        });
    }
}

}  // namespace
