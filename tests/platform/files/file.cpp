#include "platform/files/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "platform/files/temporaryfile.h"
#include "tests/faultyfiles.h"

namespace {

using tesk::CFile;

CFile FileOf(const std::string &text)
{
    CFile file = tesk::MakeTemporaryFile();
    EXPECT_TRUE(file.Write(text.data(), text.size()));
    EXPECT_EQ(file.Seek(0, SEEK_SET), 0);
    return file;
}

TEST(File, IsClosedWithTheObjectAndOnce)
{
    const std::size_t before = OpenDescriptors();
    {
        CFile first = FileOf("a");
        CFile second = std::move(first);
        EXPECT_TRUE(second.IsOpen());
        EXPECT_EQ(OpenDescriptors(), before + 1);
        second = FileOf("b");
        EXPECT_EQ(OpenDescriptors(), before + 1);
        EXPECT_EQ(second.Close(), 0);
        EXPECT_EQ(second.Close(), 0);
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(File, IsNotOpenWhereThereIsNone)
{
    EXPECT_FALSE(CFile::Open("/nowhere/file").IsOpen());
    EXPECT_EQ(errno, ENOENT);
}

TEST(File, GivesAllOfItThroughPiecesAndInterruptions)
{
    const CFile file = FileOf("0123456789");
    CFaultyFiles files(ReadCalls);
    files.LimitPieces(3);
    files.Interrupt();
    std::string bytes(20, '\0');
    EXPECT_EQ(file.ReadAt(2, bytes.data(), 6), 6);
    EXPECT_EQ(bytes.substr(0, 6), "234567");
    EXPECT_EQ(file.Read(bytes.data(), 20), 3);
    EXPECT_EQ(file.ReadFully(bytes.data(), 20), 7);
    EXPECT_EQ(bytes.substr(0, 7), "3456789");
    EXPECT_EQ(file.ReadFully(bytes.data(), 20), 0);
}

TEST(File, TakesAllOfItThroughPiecesAndInterruptions)
{
    const CFile file = FileOf("");
    {
        CFaultyFiles files(WriteCalls);
        files.LimitPieces(3);
        files.Interrupt();
        EXPECT_TRUE(file.Write("0123456789", 10));
        EXPECT_EQ(files.Count(), 4u);
    }
    std::string bytes(20, '\0');
    EXPECT_EQ(file.ReadAt(0, bytes.data(), 20), 10);
    EXPECT_EQ(bytes.substr(0, 10), "0123456789");
}

TEST(File, TellsOfAnErrorBehindGoodPieces)
{
    const CFile file = FileOf("0123456789");
    std::string bytes(10, '\0');
    CFaultyFiles files(ReadCalls | WriteCalls, EIO, 2);
    files.LimitPieces(3);
    EXPECT_EQ(file.ReadFully(bytes.data(), 10), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(file.ReadAt(0, bytes.data(), 10), -1);
    EXPECT_FALSE(file.Write("abc", 3));
    EXPECT_EQ(errno, EIO);
}

TEST(File, TellsThatItCouldNotBeClosedButNotThatThisWasInterrupted)
{
    const std::size_t before = OpenDescriptors();
    CFile first = FileOf("a");
    CFile second = FileOf("a");
    {
        const CFaultyFiles files(CloseCalls, ENOSPC, 1);
        EXPECT_EQ(first.Close(), ENOSPC);
    }
    const CFaultyFiles files(CloseCalls, EINTR, 1);
    EXPECT_EQ(second.Close(), 0);
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(ReadBeginning, GivesSoManyBytesOrTheWholeFile)
{
    std::string bytes;
    EXPECT_EQ(tesk::ReadBeginning(FileOf("0123456789"), 4, bytes), 0);
    EXPECT_EQ(bytes, "0123");
    const std::string large(200'000, 'x');
    EXPECT_EQ(tesk::ReadBeginning(FileOf(large), 1'000'000, bytes), 0);
    EXPECT_EQ(bytes, large);
    EXPECT_EQ(tesk::ReadBeginning("/nowhere/file", 4, bytes), ENOENT);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(tesk::ReadBeginning("/", 4, bytes), EISDIR);
}

TEST(TemporaryFile, IsSeenByNobody)
{
    namespace fs = std::filesystem;
    const CFile file = tesk::MakeTemporaryFile();
    ASSERT_TRUE(file.IsOpen());
    struct stat status {};
    ASSERT_TRUE(file.Status(status));
    EXPECT_EQ(status.st_nlink, 0u);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST(TemporaryFile, IsMadeWhereTheSystemHasNoneWithoutAName)
{
    const std::size_t before = OpenDescriptors();
    {
        const CFaultyFiles files(OpenCalls, EOPNOTSUPP, 1, 1);
        const CFile file = tesk::MakeTemporaryFile();
        ASSERT_TRUE(file.IsOpen());
        struct stat status {};
        ASSERT_TRUE(file.Status(status));
        EXPECT_EQ(status.st_nlink, 0u);
    }
    {
        const CFaultyFiles files(OpenCalls, ENOSPC, 1);
        EXPECT_FALSE(tesk::MakeTemporaryFile().IsOpen());
        EXPECT_EQ(errno, ENOSPC);
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
