// Event-stream files that are missing, cut off, damaged, or lie.
#include <cstdint>

#include "logcatcher.h"
#include "platform/stream/morvelformat.h"
#include "platform/stream/oldstream.h"
#include "platform/stream/streamfiles.h"

namespace {

using Morvel::BlockEntrySize;
using Morvel::CByteReader;
using Morvel::Crc;
using Morvel::HeaderSize;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using namespace std::string_literals;

// A file in memory that a test bends. What it saves has right checksums.
class CStreamBytes {
public:
    using FWrite = void (*)(const std::string &, const std::vector<STreeNode> &, long long, long long);

    explicit CStreamBytes(const std::vector<STreeNode> &nodes, FWrite write = WriteStream)
    {
        write(m_folder / "good.zyn", nodes, 1000, 500);
        bytes = ReadBytesOf(m_folder / "good.zyn");
    }

    std::uint64_t IndexOffset() const
    {
        return CByteReader(std::string_view(bytes).substr(32)).Little<std::uint64_t>();
    }

    template <class T>
    void Put(std::size_t offset, T number)
    {
        std::string text;
        Morvel::Append(text, number);
        bytes.replace(offset, sizeof(T), text);
    }

    // Index size and both checksums.
    void Repair()
    {
        const std::uint64_t offset = IndexOffset();
        Put(40, std::uint64_t{bytes.size() - offset});
        Put(48, Crc(std::string_view(bytes).substr(static_cast<std::size_t>(offset))));
        RepairHeader();
    }

    void RepairHeader() { Put(52, Crc(std::string_view(bytes).substr(0, 52))); }

    // Saves and opens it. @return what was read, and empty with its message in `log` if that failed
    std::vector<STreeNode> Read() const
    {
        WriteBytesTo(File(), bytes);
        return ReadStream(File());
    }

    std::string File() const { return m_folder / "bad.zyn"; }

    std::string bytes;

private:
    CStreamFolder m_folder;
};

std::vector<STreeNode> Sample()
{
    CEvents many;
    for (int i = 0; i < 1100; ++i)
        many.emplace_back(i, std::string(1, static_cast<char>(i % 7)));
    return {Bit("tb.clk", many),
            Vector("tb.v", {{{1, "\2"}}, {{2, "\3"}, {5, "\2"}}}),
            {"tb.r", Real, {{0, "\0\0\0\0\0\0\xF8\x3F"s}}, {}}};
}

// The whole of what readers can be asked, to see that nothing breaks.
void Exercise(const std::string &file)
{
    ReadStream(file);
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(file.c_str()));
    for (int handle = 0; raw != nullptr && handle < 8; ++handle)
        AllEvents(raw->GetEventsStore(handle));
}

std::vector<std::string> MessagesOfOpening(const std::string &file)
{
    const CLogCatcher log;
    EXPECT_EQ(Morvel::CreateStreamRead(file.c_str()), nullptr);
    const auto messages = log.Messages();
    EXPECT_EQ(Morvel::CreateRawMorvelRead(file.c_str()), nullptr);
    EXPECT_EQ(log.Messages().size(), 2 * messages.size()) << "both readers say the same";
    return messages;
}

TEST(MissingStream, IsNullWithoutAMessage)
{
    const CStreamFolder folder;
    WriteBytesTo(folder / "file", "");
    EXPECT_THAT(MessagesOfOpening(folder / "none.zyn"), IsEmpty());
    EXPECT_THAT(MessagesOfOpening(folder / "none/none.zyn"), IsEmpty());
    EXPECT_THAT(MessagesOfOpening(folder / "file/none.zyn"), IsEmpty());
    EXPECT_THAT(MessagesOfOpening(""), IsEmpty());
    EXPECT_EQ(Morvel::CreateStreamRead(nullptr), nullptr);
    EXPECT_EQ(Morvel::CreateRawMorvelRead(nullptr), nullptr);
}

TEST(ForeignStream, IsNullWithOneLineThatNamesFileAndFault)
{
    const CStreamFolder folder;
    const struct {
        std::string bytes;
        const char *fault;
    } rows[] = {
        {"", "is empty"},
        {"t", "is no event stream"},
        {"$date today $end\n$timescale 1ns $end\n", "is no event stream"},
        {std::string(100, '\0'), "is no event stream"},
        {"teskevs\n", "is cut off in its header"},
        {"teskevs\n" + std::string(47, '\0'), "is cut off in its header"},
        {"teskevs\n" + std::string(48, '\0'), "is damaged: its header has the wrong checksum"},
    };
    for (const auto &row : rows) {
        WriteBytesTo(folder / "a.zyn", row.bytes);
        EXPECT_THAT(MessagesOfOpening(folder / "a.zyn"),
                    ElementsAre("1 KERNEL Event stream " + folder / "a.zyn" + " " + row.fault + "."));
    }
}

TEST(ForeignStream, MayBeAFolder)
{
    const CStreamFolder folder;
    EXPECT_THAT(MessagesOfOpening(folder / ""),
                ElementsAre("1 KERNEL Event stream " + folder / "" + " is a directory."));
}

// Streams of both versions.
class DamagedStream : public testing::TestWithParam<CStreamBytes::FWrite> {};
INSTANTIATE_TEST_SUITE_P(OfBothVersions, DamagedStream, testing::Values(WriteStream, WriteOldStream));

TEST_P(DamagedStream, IsRefusedWhereverItIsCutOff)
{
    CStreamBytes stream(Sample(), GetParam());
    const std::string whole = stream.bytes;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        WriteBytesTo(stream.File(), whole.substr(0, size));
        const CLogCatcher log;
        ASSERT_EQ(Morvel::CreateStreamRead(stream.File().c_str()), nullptr) << size;
        ASSERT_EQ(log.Messages().size(), 1u) << size;
        ASSERT_THAT(log.Messages()[0], HasSubstr("bad.zyn is ")) << size;
    }
}

TEST_P(DamagedStream, IsRefusedWhereSomethingFollowsIt)
{
    CStreamBytes stream(Sample(), GetParam());
    stream.bytes += '\0';
    WriteBytesTo(stream.File(), stream.bytes);
    EXPECT_THAT(MessagesOfOpening(stream.File()),
                ElementsAre(HasSubstr("is damaged: there is something behind its index.")));
}

TEST_P(DamagedStream, GivesNoWrongEventWhicheverByteIsFlipped)
{
    const auto nodes = Sample();
    CStreamBytes stream(nodes, GetParam());
    const std::string whole = stream.bytes;
    const std::uint64_t indexOffset = stream.IndexOffset();
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const char flip : {'\x01', '\xFF'}) {
            stream.bytes = whole;
            stream.bytes[i] = static_cast<char>(stream.bytes[i] ^ flip);
            const CLogCatcher log;
            const auto read = stream.Read();
            ASSERT_GE(log.Messages().size(), 1u) << i;
            if (i < HeaderSize || i >= indexOffset) {
                ASSERT_THAT(read, IsEmpty()) << i;
                continue;
            }
            ASSERT_EQ(log.Messages().size(), 1u) << i;
            ASSERT_THAT(log.Messages()[0], HasSubstr("is damaged: a block has the wrong checksum.")) << i;
            ASSERT_EQ(read.size(), nodes.size());
            for (std::size_t n = 0; n < nodes.size(); ++n)
                ASSERT_TRUE(read[n].events.empty() || read[n].events == nodes[n].events) << i;
        }
    }
}

TEST(DamagedOldStream, LosesTheBusOfADamagedElementAndTellsItOnce)
{
    CStreamBytes stream({Vector("v", {{{1, "\2"}}, {{2, "\3"}}}), Bit("b", {{3, "\4"}})}, WriteOldStream);
    char &last = stream.bytes[static_cast<std::size_t>(stream.IndexOffset()) - 1];  // of the right element
    last = static_cast<char>(~last);
    WriteBytesTo(stream.File(), stream.bytes);
    const CLogCatcher log;
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(stream.File().c_str()));
    ASSERT_NE(raw, nullptr);
    EXPECT_EQ(raw->GetEventsStore(0), nullptr);
    EXPECT_EQ(raw->GetEventsStore(0), nullptr);
    EXPECT_EQ(log.Messages().size(), 1u);
    EXPECT_EQ(AllEvents(raw->GetEventsStore(1)).size(), 1u);
    EXPECT_EQ(AllEvents(raw->GetEventsStore(2)).size(), 1u);
}

// Any change of one byte, with checksums that fit: whatever is read, it is read safely.
TEST_P(DamagedStream, IsReadSafelyWhicheverByteLies)
{
    CStreamBytes stream({Bit("b", {{1, "\2"}, {3, "\3"}}), Vector("v", {{{1, "\2"}}, {}})}, GetParam());
    const std::string whole = stream.bytes;
    const std::uint64_t indexOffset = stream.IndexOffset();
    const CLogCatcher log;
    for (std::size_t i = 8; i < whole.size(); ++i) {
        for (const int byte : {0, 1, 2, 3, 0x7F, 0x80, 0xFF}) {
            stream.bytes = whole;
            stream.bytes[i] = static_cast<char>(byte);
            if (i >= indexOffset)
                stream.Repair();
            else
                stream.RepairHeader();
            WriteBytesTo(stream.File(), stream.bytes);
            Exercise(stream.File());
        }
    }
}

// The index of a file without blocks, written by hand.
struct SLyingSignal {
    std::string name = "a";
    std::uint32_t type = 0;
    std::uint32_t children = 0;
    std::uint64_t events = 0;
    std::string blocks;
};

std::string IndexOf(std::uint32_t count, std::uint32_t topLevel, const std::vector<SLyingSignal> &signals)
{
    std::string index;
    Morvel::Append(index, std::uint32_t{1});
    index += StdLogic + "\0"s;
    Morvel::Append(index, count);
    Morvel::Append(index, topLevel);
    for (const SLyingSignal &signal : signals) {
        index += signal.name + '\0';
        Morvel::Append(index, signal.type);
        Morvel::Append(index, signal.children);
        Morvel::Append(index, signal.events);
        index += signal.blocks;
    }
    return index;
}

std::string BlockEntry(std::uint64_t offset, std::uint32_t size, std::uint32_t crc = 0, std::int64_t first = 0)
{
    std::string entry;
    Morvel::AppendBlockEntry(entry, {offset, size, crc, first});
    return entry;
}

TEST(LyingOldStream, IsRefusedForAnIndexThatCannotBe)
{
    const std::string type = "\1\0\0\0"s + StdLogic + "\0"s;
    std::vector<SLyingSignal> chain(65, {"a", 0, 1, 0, ""});
    chain.back().children = 0;
    const struct {
        std::string index;
        const char *fault;
    } rows[] = {
        {"", "is cut off"},
        {"\xFF\xFF\xFF\xFF", "has more types than room"},
        {"\2\0\0\0a\0b"s, "is cut off"},
        {type + "\xFF\xFF\xFF\xFF\1\0\0\0"s, "has more signals than room"},
        {IndexOf(2, 2, {{}}), "has more signals than room"},
        {IndexOf(1, 2, {{}}), "has a wrong number of top-level signals"},
        {IndexOf(1, 0, {{}}), "has a wrong number of top-level signals"},
        {IndexOf(0, 1, {}), "has a wrong number of top-level signals"},
        {IndexOf(1, 1, {{"a", 1, 0, 0, ""}}), "names a type that it does not have"},
        {IndexOf(1, 1, {{"a", 0, 1, 0, ""}}), "has a wrong number of children"},
        {IndexOf(2, 1, {{"a", 0, 0, 0, ""}, {}}), "has a wrong number of children"},
        {IndexOf(2, 1, {{"a", 0, 1, 1, BlockEntry(56, 0)}, {}}), "has a wrong number of children"},
        {IndexOf(3, 2, {{"a", 0, 2, 0, ""}, {}, {}}), "has a wrong number of children"},
        {IndexOf(1, 1, {{"a", 0, 0xFFFFFFFF, 0, ""}}), "has a wrong number of children"},
        {IndexOf(65, 1, chain), "nests signals too deep"},
        {IndexOf(1, 1, {{"a", 0, 0, 1, ""}}), "has more blocks than room"},
        {IndexOf(1, 1, {{"a", 0, 0, 0xFFFFFFFFFFFFFFFF, BlockEntry(56, 0)}}), "has more blocks than room"},
        {IndexOf(1, 1, {{"a", 0, 0, 1025, BlockEntry(56, 0)}}), "has more blocks than room"},
        {IndexOf(1, 1, {{"a", 0, 0, 1, BlockEntry(55, 1)}}), "has a block outside the file"},
        {IndexOf(1, 1, {{"a", 0, 0, 1, BlockEntry(56, 1)}}), "has a block outside the file"},
        {IndexOf(1, 1, {{"a", 0, 0, 1, BlockEntry(0xFFFFFFFFFFFFFFFF, 0xFFFFFFFF)}}), "has a block outside the file"},
        {IndexOf(1, 1, {{}}) + '\0', "does not end where it should"},
    };
    CStreamBytes stream({}, WriteOldStream);
    stream.bytes.resize(HeaderSize);
    stream.Put(32, std::uint64_t{HeaderSize});
    for (const auto &row : rows) {
        stream.bytes.resize(HeaderSize);
        stream.bytes += row.index;
        stream.Repair();
        WriteBytesTo(stream.File(), stream.bytes);
        EXPECT_THAT(MessagesOfOpening(stream.File()), ElementsAre("1 KERNEL Event stream " + stream.File() +
                                                                  " is damaged: its index " + row.fault + "."));
    }
}

TEST(LyingStream, IsRefusedForAHeaderThatCannotBe)
{
    const std::uint64_t huge = 0xFFFFFFFFFFFFFFFF;
    const struct {
        std::size_t offset;
        std::uint64_t number;
        const char *fault;
    } rows[] = {
        {8, 3, "has version 3 of the format; versions 1 and 2 can be read"},
        {16, 0, "is damaged: its header has no sensible times"},
        {16, huge, "is damaged: its header has no sensible times"},
        {24, huge, "is damaged: its header has no sensible times"},
        {32, 0, "is cut off: its index is missing"},
        {32, huge, "is cut off: its index is missing"},
        {40, huge, "is cut off: its index is missing"},
        {40, 0, "is damaged: there is something behind its index"},
    };
    CStreamBytes stream(Sample());
    const std::string whole = stream.bytes;
    for (const auto &row : rows) {
        stream.bytes = whole;
        stream.Put(row.offset, row.number);
        stream.RepairHeader();
        WriteBytesTo(stream.File(), stream.bytes);
        EXPECT_THAT(MessagesOfOpening(stream.File()),
                    ElementsAre("1 KERNEL Event stream " + stream.File() + " " + row.fault + "."));
    }
}

TEST(LyingOldStream, IsRefusedWhereSignalsShareABlock)
{
    CStreamBytes stream({Bit("a", {{1, "\2"}})}, WriteOldStream);
    const std::string entry = stream.bytes.substr(stream.bytes.size() - BlockEntrySize);
    stream.bytes.resize(static_cast<std::size_t>(stream.IndexOffset()));
    stream.bytes += IndexOf(2, 2, {{"a", 0, 0, 1, entry}, {"b", 0, 0, 1, entry}});
    stream.Repair();
    WriteBytesTo(stream.File(), stream.bytes);
    EXPECT_THAT(MessagesOfOpening(stream.File()), ElementsAre(HasSubstr("its index has blocks that overlap.")));
}

// A file with one std_logic signal whose blocks hold these packed bytes, and checksums that fit.
void WriteBlocks(CStreamBytes &stream, const std::vector<std::pair<std::string, long long>> &blocks,
                 std::uint64_t events)
{
    stream.bytes.resize(HeaderSize);
    SLyingSignal signal;
    signal.events = events;
    for (const auto &[packed, first] : blocks) {
        signal.blocks += BlockEntry(stream.bytes.size(), static_cast<std::uint32_t>(packed.size()), Crc(packed), first);
        stream.bytes += packed;
    }
    stream.Put(32, std::uint64_t{stream.bytes.size()});
    stream.bytes += IndexOf(1, 1, {signal});
    stream.Repair();
    WriteBytesTo(stream.File(), stream.bytes);
}

CEvents EventsOfBlocks(const std::vector<std::pair<std::string, long long>> &blocks, std::uint64_t events)
{
    CStreamBytes stream({}, WriteOldStream);
    WriteBlocks(stream, blocks, events);
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(stream.File().c_str()));
    return AllEvents(raw->GetEventsStore(0));
}

TEST(LyingOldStream, HasNoEventsWhereABlockIsNotWhatTheIndexSays)
{
    const long long last = 0x7FFFFFFFFFFFFFFF;
    const std::string full(1023 + 1024, '\1');  // differences and values
    const std::string bomb = Deflated(std::string(10 << 20, '\0'));
    const struct {
        std::vector<std::pair<std::string, long long>> blocks;
        std::uint64_t events;
    } rows[] = {
        {{{"", 0}}, 1},
        {{{"no zlib stream", 0}}, 1},
        {{{bomb, 0}}, 1},  // more than a block can hold
        {{{bomb, 0}}, 1024},
        {{{Deflated("\2") + "x", 0}}, 1},  // something behind the packed bytes
        {{{Deflated("\2").substr(0, 8), 0}}, 1},
        {{{Deflated("\2\2"), 0}}, 1},  // a value too many
        {{{Deflated(""), 0}}, 1},      // one too few
        {{{Deflated("\1\2"), 0}}, 2},
        {{{Deflated("\x80\x80"), 0}}, 2},                         // a difference without an end
        {{{Deflated(std::string(9, '\x80') + "\1\2\3"), 0}}, 2},  // of more than 63 bits
        {{{Deflated("\1\2\3"), last}}, 2},                        // behind the end of time
        {{{Deflated("\2"), -1}}, 1},
        {{{Deflated(full), 5000}, {Deflated("\2"), 6022}}, 1025},  // goes back in time by one tick
    };
    for (const auto &row : rows) {
        const CLogCatcher log;
        EXPECT_THAT(EventsOfBlocks(row.blocks, row.events), IsEmpty());
        EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("is damaged: a block is not what the index says.")));
    }
    EXPECT_EQ(EventsOfBlocks({{Deflated(full), 5000}, {Deflated("\2"), 6023}}, 1025).size(), 1025u);
    EXPECT_EQ(EventsOfBlocks({{Deflated("\1\2\3"), last - 1}}, 2).size(), 2u);
    EXPECT_EQ(EventsOfBlocks({{Deflated(std::string(8, '\xFF') + "\x7F\2\3"), 0}}, 2).back().first, last);
}

TEST(LyingStream, HasNoEventsWhereElementsDoNotFitTheArray)
{
    const std::string vector = Vector("v", {{}, {}}).type;
    const STreeNode wrong[] = {
        {"v", vector, {}, {Bit("(1)", {})}},
        {"v", vector, {}, {Bit("(2)", {}), Bit("(1)", {}), Bit("(0)", {})}},
        {"v", vector, {}, {Bit("(1)", {}), {"(0)", Real, {}, {}}}},
        {"v", vector, {}, {Bit("(1)", {}), {"(0)", "no type", {}, {}}}},
    };
    for (const STreeNode &node : wrong) {
        CStreamBytes stream({node});
        WriteBytesTo(stream.File(), stream.bytes);
        const RawStreamPtr raw(Morvel::CreateRawMorvelRead(stream.File().c_str()));
        const CLogCatcher log;
        EXPECT_EQ(raw->GetEventsStore(0), nullptr);
        EXPECT_THAT(log.Messages(),
                    ElementsAre(HasSubstr("is damaged: the elements of an array do not fit its type.")));
    }
}

TEST(LyingStream, HasNoEventsWhereTheTypeHasNone)
{
    CStreamBytes stream({Bit("a", {{1, "\2"}})});
    const std::size_t type = stream.bytes.find(StdLogic);
    stream.bytes[type] = '?';
    stream.Repair();
    WriteBytesTo(stream.File(), stream.bytes);
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(stream.File().c_str()));
    const CLogCatcher log;
    EXPECT_EQ(raw->GetEventsStore(0), nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("is damaged: a signal has events that its type cannot have.")));
}

TEST(StreamStore, OutlivesItsReaderAndTheFile)
{
    const CStreamFolder folder;
    const auto nodes = Sample();
    WriteStream(folder / "a.zyn", nodes);
    RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    const auto scalar = std::make_unique<const Morvel::KEventsStore>(*raw->GetEventsStore(0));
    const Morvel::KEventsStore bus = *raw->GetEventsStore(1);
    raw.reset();
    std::filesystem::remove(folder / "a.zyn");
    EXPECT_EQ(AllEvents(scalar.get()), nodes[0].events);
    EXPECT_EQ(AllEvents(&bus).size(), 3u);
}

TEST(StreamStore, IsNullWhereTheFileWasCutOffAfterOpening)
{
    const CStreamFolder folder;
    WriteStream(folder / "a.zyn", Sample());
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead((folder / "a.zyn").c_str()));
    std::filesystem::resize_file(folder / "a.zyn", HeaderSize + 1);
    const CLogCatcher log;
    EXPECT_EQ(raw->GetEventsStore(0), nullptr);
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("a.zyn cannot be read to its end.")));
}

}  // namespace
