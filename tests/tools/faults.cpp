// Every command that reads or writes files, run while the system fails.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "core/stimulus.h"
#include "faultyfiles.h"
#include "platform/files/file.h"
#include "testpaths.h"
#include "tools/commands/commands.h"
#include "tools/files/readwatch.h"
#include "tools/loglines.h"
#include "tools/runtool.h"

namespace {

using testing::AnyOf;
using testing::HasSubstr;

using CWords = std::vector<std::string>;

// Takes what is written to standard error while it lives.
class CErrorCatcher {
public:
    CErrorCatcher() : m_before(dup(STDERR_FILENO)), m_caught(memfd_create("stderr", MFD_CLOEXEC))
    {
        std::fflush(stderr);
        dup2(m_caught.Descriptor(), STDERR_FILENO);
    }
    CErrorCatcher(const CErrorCatcher &) = delete;
    CErrorCatcher &operator=(const CErrorCatcher &) = delete;
    ~CErrorCatcher() { dup2(m_before.Descriptor(), STDERR_FILENO); }

    std::string Text() const
    {
        std::fflush(stderr);
        std::string text(1 << 16, '\0');
        const ssize_t size = pread(m_caught.Descriptor(), text.data(), text.size(), 0);
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return text;
    }

private:
    tesk::CFile m_before;
    tesk::CFile m_caught;
};

using FAdd = void (*)(CCommandLine &);
constexpr std::pair<const char *, FAdd> Commands[] = {
    {"check", AddCheckCommand},     {"convert", AddConvertCommand}, {"diff", AddDiffCommand},
    {"export", AddExportCommand},   {"import", AddImportCommand},   {"play", AddPlayCommand},
    {"signals", AddSignalsCommand}, {"view", AddViewCommand},
};

struct SRun {
    int status = -1;
    std::string err;
    std::string output;  // the file's bytes
};

// Runs a command within this process, with "-o" and a file behind the words, or the file alone.
class CToolInside {
public:
    CToolInside(CWords words, std::string output, std::string before)
        : m_words(std::move(words)), m_output(std::move(output)), m_before(std::move(before))
    {}

    SRun Run() const
    {
        std::ofstream(m_output, std::ios::binary) << m_before;
        SRun run;
        const CErrorCatcher errors;
        run.status = RunWords();
        run.err = errors.Text();
        run.output = ReadFile(m_output);
        return run;
    }

private:
    int RunWords() const
    {
        const long long resolution = g_simRes;
        CWords words = m_words;
        words.insert(words.begin(), "tesk");
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        int status = -1;
        {
            const tesk::CReadWatch watch;
            const CLogLines log(CLogLines::EWarnings::Shown, CLogLines::EErrors::Shown);
            CCommandLine commandLine;
            std::ranges::find(Commands, m_words[0], [](const auto &row) {
                return std::string(row.first);
            })->second(commandLine);
            status = commandLine.Run(static_cast<int>(arguments.size()), arguments.data());
        }
        IStimulus::OnEndsim();
        g_simRes = resolution;
        return status;
    }

    CWords m_words;
    std::string m_output;
    std::string m_before;
};

class ToolFaults : public testing::Test {
protected:
    static constexpr const char *Before = "what was there";

    static std::string Data(const std::string &name) { return TESK_SOURCE_DIR "/tests/data/" + name; }
    static std::string Example(const std::string &name) { return TESK_SOURCE_DIR "/examples/" + name; }

    std::string Path(const std::string &name) const { return (m_folder / name.c_str()).string(); }

    std::string Put(const std::string &name, const std::string &text) const
    {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

    // A file that the tool itself makes.
    std::string Make(CWords words, const std::string &name) const
    {
        words.push_back(Path(name));
        EXPECT_EQ(CToolInside(words, Path(name), "").Run().status, 0) << name;
        return Path(name);
    }

    // @param words  of the command; its output stands behind them
    void ExpectWholeOrRefused(CWords words, const std::string &ending)
    {
        const CTemporaryFolder folder;
        m_outputs = (folder / "").string();
        const std::string output = m_outputs + "out" + ending;
        const bool takesFile = words[0] == "convert";
        if (!takesFile)
            words.emplace_back("-o");
        words.push_back(output);
        const CToolInside tool(words, output, Before);
        m_what = testing::PrintToString(words);

        std::size_t count = 0, writeCount = 0;
        SRun whole;
        {
            const CFaultyFiles files(ReadingCalls | WritingCalls);
            whole = tool.Run();
            count = files.Count();
        }
        ASSERT_THAT(whole.status, AnyOf(0, words[0] == "diff" ? 1 : 0)) << m_what << whole.err;
        ASSERT_NE(whole.output, Before) << m_what;
        {
            CFaultyFiles files(WriteCalls | CloseCalls | RenameCalls);
            files.LimitPieces(7);
            files.Interrupt();
            const SRun run = tool.Run();
            EXPECT_EQ(run.output, whole.output) << m_what << run.err;
            EXPECT_EQ(run.err, whole.err) << m_what;
        }
        {
            const CFaultyFiles files(WriteCalls | CloseCalls | RenameCalls);
            tool.Run();
            writeCount = files.Count();
        }
        const std::size_t descriptors = OpenDescriptors();
        ForEachCall(count, [&](std::size_t call) {
            Fail(tool, whole, {ReadingCalls | WritingCalls, EIO, call, call});
            if (call % 3 == 1)
                Fail(tool, whole, {ReadingCalls | WritingCalls, EIO, call, CFaultyFiles::Never});
        });
        ForEachCall(writeCount, [&](std::size_t call) {
            Fail(tool, whole, {WriteCalls | CloseCalls | RenameCalls, ENOSPC, call, call});
        });
        EXPECT_EQ(OpenDescriptors(), descriptors) << m_what;
    }

private:
    struct SFault {
        unsigned calls;
        int error;
        std::size_t first, last;
    };

    void Fail(const CToolInside &tool, const SRun &whole, const SFault &fault)
    {
        const CFaultyFiles files(fault.calls, fault.error, fault.first, fault.last);
        const SRun run = tool.Run();
        const std::string where = m_what + ", call " + std::to_string(fault.first) +
                                  (fault.last != fault.first ? " and on" : "") + ": " + run.err;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_outputs), {}), 1) << where;
        if (run.output == whole.output && run.status == whole.status && run.err == whole.err)
            return;
        EXPECT_EQ(run.status, 1) << where;
        EXPECT_EQ(run.output, Before) << where;
        EXPECT_THAT(run.err, HasSubstr(std::strerror(fault.error))) << where;
        EXPECT_THAT(run.err,
                    AnyOf(HasSubstr((m_folder / "").string()), HasSubstr(m_outputs), HasSubstr(TESK_SOURCE_DIR)))
            << where;
    }

    CTemporaryFolder m_folder;
    std::string m_outputs;  // the folder of the case
    std::string m_what;
};

TEST_F(ToolFaults, OfConvertLeaveTheFileAsItWas)
{
    const std::string vcd = Data("tb.iverilog.vcd");
    const std::string stream = Make({"convert", vcd}, "a.zyn");
    for (const std::string &input : {vcd, Data("tb.iverilog.fst"), Data("tb.ghdl.ghw"), stream}) {
        for (const char *ending : {".vcd", ".fst", ".zyn"}) {
            if (input != stream || std::string(ending) != ".zyn")
                ExpectWholeOrRefused({"convert", input}, ending);
        }
    }
}

TEST_F(ToolFaults, OfPicturesAndListsLeaveTheFileAsItWas)
{
    const std::string stream = Make({"convert", Data("tb.iverilog.vcd")}, "a.zyn");
    for (const std::string &input : {Data("tb.iverilog.vcd"), Data("tb.iverilog.fst"), Data("tb.ghdl.ghw"), stream}) {
        ExpectWholeOrRefused({"view", input}, ".svg");
        ExpectWholeOrRefused({"signals", input}, ".json");
    }
    ExpectWholeOrRefused({"signals", Example("sine.txt")}, ".json");
}

TEST_F(ToolFaults, OfDiffLeaveTheReportAsItWas)
{
    ExpectWholeOrRefused({"diff", Example("traffic.vcd"), Example("traffic.fst")}, ".txt");
    ExpectWholeOrRefused({"diff", Data("tb.iverilog.fst"), Data("tb.ghdl.ghw"), "--scope", "tb=tb"}, ".txt");
}

TEST_F(ToolFaults, OfPlayLeaveTheFileAsItWas)
{
    for (const char *ending : {".csv", ".json", ".vcd", ".fst", ".svg"})
        ExpectWholeOrRefused({"play", "1 0ns, 0 5ns -r 10ns"}, ending);
    const std::string stream = Make({"convert", Example("traffic.vcd")}, "a.zyn");
    for (const std::string &file : {Example("traffic.vcd"), Example("traffic.fst"), stream})
        ExpectWholeOrRefused({"play", "/custom " + file + ",tb.count"}, ".csv");
    ExpectWholeOrRefused({"play", "/custom " + Data("tb.ghdl.ghw") + ",tb.clk"}, ".csv");
    ExpectWholeOrRefused({"play", "/txt " + Example("sine.txt") + ",sine -time_points time -interval 1ns", "--type",
                          "std_logic_vector(7 downto 0)"},
                         ".csv");
}

TEST_F(ToolFaults, OfBenchesLeaveTheFileAsItWas)
{
    ExpectWholeOrRefused({"play", Example("uart.toml")}, ".vcd");
    const std::string bench = Put("bench.toml", "until = \"100ns\"\n[[replay]]\nfile = \"" + Example("traffic.fst") +
                                                    "\"\nscope = \"tb\"\ndrive = [\"*\"]\n");
    ExpectWholeOrRefused({"play", bench}, ".vcd");
    for (const char *form : {"sv", "vhdl", "force", "add_force", "pwl", "wavejson"})
        ExpectWholeOrRefused({"export", Example("counter.toml"), "--weaken", "--to", form}, ".txt");
    const std::string force = Make({"export", Example("counter.toml"), "--to", "force", "-o"}, "a.do");
    ExpectWholeOrRefused({"import", force, "--from", "force"}, ".toml");
}

}  // namespace
