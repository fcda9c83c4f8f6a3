// Opening files and pipes.
#include "platform/input/openinput.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <thread>

namespace {

class CPipe {
public:
    CPipe() { EXPECT_EQ(mkfifo(m_name.c_str(), 0600), 0); }
    CPipe(const CPipe &) = delete;
    CPipe &operator=(const CPipe &) = delete;
    ~CPipe() { unlink(m_name.c_str()); }

    const char *Name() const { return m_name.c_str(); }
    std::thread WriteAfter(std::chrono::milliseconds open, std::chrono::milliseconds write) const
    {
        return std::thread([this, open, write] {
            std::this_thread::sleep_for(open);
            const int file = ::open(Name(), O_WRONLY);
            std::this_thread::sleep_for(write);
            EXPECT_EQ(::write(file, "text", 4), 4);
            ::close(file);
        });
    }

private:
    std::string m_name = testing::TempDir() + "tesk_pipe_" + std::to_string(getpid());
};

TEST(OpenInput, RefusesAPipeThatNothingWritesTo)
{
    const CPipe pipe;
    EXPECT_FALSE(tesk::OpenInput(pipe.Name()).IsOpen());
    EXPECT_EQ(errno, ENXIO);
    EXPECT_EQ(tesk::InputErrorText(ENXIO), "it is a pipe that nothing writes to");
}

TEST(OpenInput, IsNotHeldUpByInterruptions)
{
    struct sigaction ignoring {};
    struct sigaction before {};
    ignoring.sa_handler = [](int) {};
    sigaction(SIGALRM, &ignoring, &before);
    const itimerval often{{0, 20'000}, {0, 20'000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    const CPipe pipe;
    const bool isOpen = tesk::OpenInput(pipe.Name()).IsOpen();
    const int error = errno;
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(error, ENXIO);
}

TEST(OpenInput, WaitsForAWriterThatIsOrComes)
{
    using std::chrono::milliseconds;
    for (const auto &[open, write] : {std::pair(0, 0), std::pair(100, 0), std::pair(0, 700)}) {
        const CPipe pipe;
        std::thread writer = pipe.WriteAfter(milliseconds(open), milliseconds(write));
        const tesk::CFile file = tesk::OpenInput(pipe.Name());
        ASSERT_TRUE(file.IsOpen()) << open << " " << write;
        std::string text;
        EXPECT_EQ(tesk::ReadBeginning(file, 100, text), 0) << open << " " << write;
        EXPECT_EQ(text, "text") << open << " " << write;
        writer.join();
    }
}

TEST(OpenInput, TellsOfAMissingFile)
{
    EXPECT_FALSE(tesk::OpenInput("/nowhere/file").IsOpen());
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(tesk::InputErrorText(ENOENT), "No such file or directory");
}

}  // namespace
