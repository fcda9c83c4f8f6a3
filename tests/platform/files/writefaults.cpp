// Files that are written while the system fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "faultyfiles.h"
#include "logcatcher.h"
#include "platform/files/draft.h"
#include "platform/stream/streamfiles.h"

namespace {

using testing::Each;
using testing::HasSubstr;

// Writes a file with each call failing. @param write  @return whether it says that the file is complete
void ExpectWholeOrAsBefore(const std::string &path, const std::function<bool()> &write)
{
    constexpr const char *Before = "what was there";
    const auto put = [&] { std::ofstream(path, std::ios::binary) << Before; };
    const std::size_t descriptors = OpenDescriptors();
    const auto folder = std::filesystem::path(path).parent_path();
    std::size_t count = 0;
    put();
    {
        const CFaultyFiles files(WritingCalls);
        ASSERT_TRUE(write());
        count = files.Count();
    }
    const std::string whole = ReadBytesOf(path);
    EXPECT_GE(count, 4u) << "opening, writing, closing, renaming";
    {
        put();
        CFaultyFiles files(0);
        files.LimitPieces(7);
        files.Interrupt();
        EXPECT_TRUE(write());
    }
    EXPECT_EQ(ReadBytesOf(path), whole) << "written in pieces, with interruptions";
    for (const int error : {EIO, ENOSPC}) {
        ForEachCall(count, [&](std::size_t call) {
            put();
            const CFaultyFiles files(WritingCalls, error, call, call);
            const bool isWritten = write();
            EXPECT_EQ(ReadBytesOf(path), isWritten ? whole : Before) << "call " << call;
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "call " << call;
        });
    }
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST(WriteFaults, OfADraftLeaveWhatWasThereAndNothingElse)
{
    const CStreamFolder folder;
    const std::string path = folder / "a";
    ExpectWholeOrAsBefore(path, [&] {
        tesk::CDraft draft(path);
        for (int i = 0; i < 50'000 && draft.IsOpen(); ++i)
            draft.Stream() << i << '\n';
        const bool isPublished = draft.Publish();
        EXPECT_EQ(isPublished, draft.Error() == 0);
        return isPublished;
    });
}

TEST(WriteFaults, OfADraftShowTheFirstError)
{
    const CStreamFolder folder;
    const CFaultyFiles files(WriteCalls, EDQUOT, 2, 2);
    tesk::CDraft draft(folder / "a");
    draft.Stream() << std::string(70'000, 'a') << std::flush;
    draft.Stream() << std::string(70'000, 'b') << std::flush;
    EXPECT_TRUE(draft.Stream().fail());
    EXPECT_EQ(draft.Error(), EDQUOT);
    EXPECT_FALSE(draft.Publish());
    EXPECT_EQ(draft.Error(), EDQUOT);
    EXPECT_EQ(folder.FileCount(), 0u);
}

// What a system holds back, as over a network, may be lost as late as that.
TEST(WriteFaults, OfClosingADraftLeaveWhatWasThere)
{
    const CStreamFolder folder;
    const std::string path = folder / "a";
    std::ofstream(path) << "before";
    tesk::CDraft draft(path);
    draft.Stream() << "after";
    const CFaultyFiles files(CloseCalls, EDQUOT, 1, 1);
    EXPECT_FALSE(draft.Publish());
    EXPECT_EQ(draft.Error(), EDQUOT);
    EXPECT_EQ(ReadBytesOf(path), "before");
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(WriteFaults, OfAnEventStreamNameIt)
{
    CEvents events;
    for (long long time = 0; time < 20'000; ++time)
        events.emplace_back(time * time, std::string(1, static_cast<char>(2 + time % 2)));
    const CStreamFolder folder;
    const std::string path = folder / "a.zyn";
    ExpectWholeOrAsBefore(path, [&] {
        const CLogCatcher log;
        bool isWritten = false;
        if (const StreamWriterPtr writer{Morvel::CreateStreamWrite(path.c_str(), 1000)}) {
            const int bit = writer->AddSignal(-1, "bit", StdLogic);
            bool isGood = true;
            for (const auto &[time, value] : events)
                isGood = writer->AddEvent(bit, time, value.data()) && isGood;
            isWritten = writer->Finish() && isGood;
        }
        EXPECT_EQ(isWritten, log.Messages().empty());
        EXPECT_THAT(log.Messages(), Each(HasSubstr("Event stream " + path + " cannot be written: ")));
        return isWritten;
    });
}

}  // namespace
