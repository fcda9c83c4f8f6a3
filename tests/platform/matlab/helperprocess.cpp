#include "platform/matlab/helperprocess.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "platform/matlab/processes.h"

namespace {

using namespace std::chrono_literals;

constexpr std::size_t Plenty = 1 << 20;

class HelperProcess : public CCleanTest {};

std::vector<std::string> Shell(const std::string &script)
{
    return {"/bin/sh", "-c", script};
}

// What a script writes, to the end.
std::string OutputOf(const std::string &script)
{
    CHelperProcess process(Shell(script), 5s, Plenty);
    std::string output;
    for (char c = 0; process.Read(&c, 1);)
        output += c;
    return output;
}

TEST_F(HelperProcess, HandsOutWhatTheProgramWrites)
{
    EXPECT_EQ(OutputOf("printf 'one two'"), "one two");
}

TEST_F(HelperProcess, ReadsMoreThanAPipeHolds)
{
    CHelperProcess process(Shell("head -c 1000000 /dev/zero; printf x"), 5s, Plenty);
    std::vector<char> zeros(1000000, 'y');
    char last = 0;
    ASSERT_TRUE(process.Read(zeros.data(), zeros.size()));
    EXPECT_EQ(zeros, std::vector<char>(1000000, '\0'));
    ASSERT_TRUE(process.Read(&last, 1));
    EXPECT_EQ(last, 'x');
}

// What went wrong with a script of which nothing can be read.
std::string FaultOf(const std::vector<std::string> &command, std::chrono::milliseconds time = 5s)
{
    CHelperProcess process(command, time, Plenty);
    char byte = 0;
    EXPECT_FALSE(process.Read(&byte, 1));
    return process.Fault();
}

TEST_F(HelperProcess, SaysWhatWentWrongWithTheProgram)
{
    EXPECT_EQ(FaultOf({"/no/such/program"}), "cannot be started: No such file or directory");
    EXPECT_EQ(FaultOf({"/etc/passwd"}), "cannot be started: Permission denied");
    EXPECT_EQ(FaultOf(Shell("kill -9 $$")), "was ended by signal 9 (Killed)");
    EXPECT_EQ(FaultOf(Shell("sleep 9"), 100ms), "did not answer within 1 s");
    EXPECT_EQ(FaultOf(Shell("exit 1")), "");
    EXPECT_EQ(FaultOf(Shell("true")), "");
}

TEST_F(HelperProcess, RefusesToReadBeyondTheEnd)
{
    CHelperProcess process(Shell("printf abc"), 5s, Plenty);
    char text[4];
    EXPECT_FALSE(process.Read(text, 4));
    EXPECT_FALSE(process.Read(text, 1));
}

TEST_F(HelperProcess, RefusesToReadMoreThanAgreed)
{
    CHelperProcess process(Shell("cat /dev/zero"), 5s, 10);
    char bytes[8];
    EXPECT_TRUE(process.Read(bytes, 8));
    EXPECT_EQ(process.GetRemaining(), 2U);
    EXPECT_FALSE(process.Read(bytes, 3));
    EXPECT_FALSE(process.Read(bytes, 1));
}

TEST_F(HelperProcess, KillsAProgramThatTakesTooLong)
{
    const auto begin = std::chrono::steady_clock::now();
    {
        CHelperProcess process(Shell("trap '' TERM; printf a; sleep 100"), 100ms, Plenty);
        char byte = 0;
        EXPECT_TRUE(process.Read(&byte, 1));
        EXPECT_FALSE(process.Read(&byte, 1));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
}

TEST_F(HelperProcess, KillsAProgramWhoseOutputIsNotWanted)
{
    const CHelperProcess process(Shell("cat /dev/zero"), 5s, Plenty);
}

TEST_F(HelperProcess, KillsAProgramThatClosesItsOutputAndStays)
{
    CHelperProcess process({"/bin/sh", "-c", "exec >&-; sleep 100"}, 5s, Plenty);
    char byte = 0;
    EXPECT_FALSE(process.Read(&byte, 1));
}

TEST_F(HelperProcess, ReadsNothingOfAProgramThatCannotBeStarted)
{
    for (const char *program : {"/no/such/program", "/tmp", ""}) {
        CHelperProcess process({program}, 5s, Plenty);
        char byte = 0;
        EXPECT_FALSE(process.Read(&byte, 1)) << program;
    }
}

TEST_F(HelperProcess, PassesNoDescriptorOn)
{
    const int file = open("/dev/zero", O_RDONLY);  // without O_CLOEXEC
    EXPECT_EQ(OutputOf("for i in 3 4 5 6 7 8 9; do [ -e /proc/self/fd/$i ] && printf $i; done"), "");
    EXPECT_EQ(OutputOf("readlink /proc/self/fd/0; readlink /proc/self/fd/2"), "/dev/null\n/dev/null\n");
    close(file);
}

TEST_F(HelperProcess, StartsWithSignalsAsTheyAreAtFirst)
{
    sigset_t all, before;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, &before);
    const auto pipe = signal(SIGPIPE, SIG_IGN);
    // The last 31 signals: the C library keeps two of the others to itself.
    const std::string output = OutputOf("sed -nE 's/^Sig(Blk|Ign):.*(.{7})$/\\2 /p' /proc/self/status | tr -d '\\n'");
    signal(SIGPIPE, pipe);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(output, "0000000 0000000 ");
}

TEST_F(HelperProcess, WorksWhereTheHostIgnoresItsChildren)
{
    const auto before = signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(OutputOf("printf a"), "a");
    {
        CHelperProcess process(Shell("sleep 100"), 50ms, Plenty);
        char byte = 0;
        EXPECT_FALSE(process.Read(&byte, 1));
    }
    signal(SIGCHLD, before);
}

TEST_F(HelperProcess, WorksWhereTheHostHasNoStandardDescriptors)
{
    const int input = dup(STDIN_FILENO), output = dup(STDOUT_FILENO), error = dup(STDERR_FILENO);
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
    close(STDERR_FILENO);
    const std::string text = OutputOf("printf a");
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    for (const int descriptor : {input, output, error})
        close(descriptor);
    EXPECT_EQ(text, "a");
}

}  // namespace
