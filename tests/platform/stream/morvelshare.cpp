// What openings of one event-stream file have in common, and files that gzip packed.
#include <gmock/gmock.h>

#include "platform/morvel.h"
#include "tests/logcatcher.h"
#include "tests/platform/input/gzipsupport.h"
#include "tests/platform/stream/streamfiles.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

StreamPtr Open(const std::string &file)
{
    return StreamPtr(Morvel::CreateStreamRead(file.c_str()));
}

RawStreamPtr OpenRaw(const std::string &file)
{
    return RawStreamPtr(Morvel::CreateRawMorvelRead(file.c_str()));
}

const std::string Zero("\2", 1);
const std::string One("\3", 1);

TEST(OpeningsOfAStream, ShareTheIndexWhileEventsOfItAreKept)
{
    const CStreamFolder folder;
    const std::string file = folder / "a.zyn";
    WriteStream(file, {Bit("a", {{1, Zero}, {5, One}})});
    const char *text = nullptr;
    std::unique_ptr<Morvel::KEventsStore> kept;
    {
        const StreamPtr first = Open(file);
        const RawStreamPtr raw = OpenRaw(file);
        text = first->GetTypeText(0);
        kept = std::make_unique<Morvel::KEventsStore>(*raw->GetEventsStore(0));
    }
    const StreamPtr second = Open(file);
    EXPECT_EQ(second->GetTypeText(0), text);
    EXPECT_EQ(AllEvents(kept.get()), (CEvents{{1, Zero}, {5, One}}));
}

TEST(OpeningsOfAStream, MeetWhatIsInTheFileNow)
{
    const CStreamFolder folder;
    const std::string file = folder / "a.zyn", other = folder / "b.zyn";
    WriteStream(file, {Bit("a", {{1, Zero}})});
    WriteStream(other, {Bit("b", {{1, Zero}})});
    const StreamPtr first = Open(file);
    WriteBytesTo(file, ReadBytesOf(other));
    const StreamPtr second = Open(file);
    ASSERT_NE(second, nullptr);
    const char *name = nullptr;
    second->GetInfo(0, nullptr, nullptr, &name, nullptr, nullptr);
    EXPECT_STREQ(name, "b");
    first->GetInfo(0, nullptr, nullptr, &name, nullptr, nullptr);
    EXPECT_STREQ(name, "a");
    std::string damaged = ReadBytesOf(other);
    damaged.back() = static_cast<char>(~damaged.back());
    WriteBytesTo(file, damaged.substr(1));
    const CLogCatcher log;
    for (std::size_t calls = 1; calls <= 2; ++calls) {
        EXPECT_EQ(Open(file), nullptr);
        EXPECT_THAT(log.Messages(), SizeIs(calls));
    }
}

TEST(PackedStream, IsReadAsItIs)
{
    const CStreamFolder folder;
    const std::string file = folder / "a.zyn", packed = folder / "b.zyn.gz";
    const std::vector<STreeNode> nodes = {Bit("a", {{1, Zero}, {5, One}}), Vector("v", {{{2, One}}, {{3, Zero}}})};
    WriteStream(file, nodes);
    WriteBytesTo(packed, Gzip(ReadBytesOf(file)));
    const CLogCatcher log;
    EXPECT_EQ(ReadStream(packed), nodes);
    const RawStreamPtr raw = OpenRaw(packed);
    ASSERT_NE(raw, nullptr);
    EXPECT_EQ(raw->GetResolution(), 1000);
    EXPECT_EQ(AllEvents(OpenRaw(packed)->GetEventsStore(1)).size(), 2u);
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(PackedStream, IsRefusedWhereItIsCutOff)
{
    const CStreamFolder folder;
    const std::string file = folder / "a.zyn";
    WriteStream(file, {Bit("a", {{1, Zero}, {5, One}})});
    const std::string packed = Gzip(ReadBytesOf(file));
    for (std::size_t size = 2; size < packed.size(); ++size) {
        WriteBytesTo(file, packed.substr(0, size));
        const CLogCatcher log;
        EXPECT_EQ(Open(file), nullptr) << size;
        ASSERT_THAT(log.Messages(), SizeIs(1)) << size;
        EXPECT_THAT(log.Messages()[0], HasSubstr("Event stream " + file + " cannot be read: ")) << size;
    }
}

TEST(PackedStream, UnpacksToNoMoreThanItsSizeAllows)
{
    const CStreamFolder folder;
    const std::string file = folder / "a.zyn";
    WriteBytesTo(file, Gzip("teskevs\n" + std::string(std::size_t{48} << 20, '\0')));
    const CLogCatcher log;
    EXPECT_EQ(Open(file), nullptr);
    ASSERT_THAT(log.Messages(), SizeIs(1));
    EXPECT_THAT(log.Messages()[0], HasSubstr("too many for a file of this size"));
}

}  // namespace
