// Files that are cut off, damaged or lie.
#include <gmock/gmock.h>

#include "logcatcher.h"
#include "platform/fst/fstmaker.h"

namespace {

using namespace fsttest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

ReaderPtr Open(const std::filesystem::path &path)
{
    return ReaderPtr(NTARN::IDatabaseReader::create(path.c_str(), false));
}

// Asks for everything that there is, of wide buses for the first elements and the last.
void ReadAll(NTARN::IDatabaseReader &reader)
{
    reader.GetEndTime();
    reader.GetResolution();
    for (const int *root = reader.RootHandlesBegin(); root != reader.RootHandlesEnd(); ++root) {
        reader.GetName(*root);
        reader.GetType(*root);
        AllEvents(reader, *root);
        const NTARN::HSignalRange children = reader.GetChildRange(*root);
        for (int child = children.first; child >= 0 && child <= std::min(children.first + 20, children.last); ++child) {
            reader.GetName(child);
            AllEvents(reader, child);
        }
        AllEvents(reader, children.last);
    }
}

// Whether a file is taken; whatever it holds, reading it does no harm.
bool Survives(const std::filesystem::path &path)
try {
    const ReaderPtr reader = Open(path);
    if (reader)
        ReadAll(*reader);
    return reader != nullptr;
} catch (const NTARN::XFileCorrupted &) {
    return false;
}

CFstMaker Sample(int kind = 8, char packer = 'Z')
{
    CFstMaker maker;
    maker.kind = kind;
    maker.packer = packer;
    maker.end = 40;
    maker.Scope("s").Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1).Variable(maker.Reg, "v", 3);
    maker.Variable(maker.Real, "r", 8).EndScope();
    const CFstChanges same = {{0, "0"}, {1, "1"}, {2, "z"}};
    maker.Block(0, {0, 10, 20}, "xxxxx" + RealLetters(0), {same, same, {{0, "01x"}}, {{1, RealLetters(2)}}});
    maker.Block(20, {20, 30, 40}, "10100" + RealLetters(2), {{{1, "z"}}, {}, {{2, "110"}}, {}});
    return maker;
}

const int Forms[][2] = {{1, 'Z'}, {5, 'F'}, {8, '4'}, {8, 'Z'}};

TEST(FstOpening, TellsAMissingFileFromOneThatIsNoDump)
{
    const CTemporaryFolder folder;
    EXPECT_THROW(Open(folder / "none.fst"), NTARN::XFileDoesNotExist);
    EXPECT_THROW(Open(folder / "none/none.fst"), NTARN::XFileDoesNotExist);
    EXPECT_THROW(Open(""), NTARN::XFileDoesNotExist);
    EXPECT_THROW(NTARN::IDatabaseReader::create(nullptr, false), NTARN::XFileDoesNotExist);
    EXPECT_THROW(Open(folder / ""), NTARN::XFileCorrupted);
    EXPECT_THROW(Open("/dev/null"), NTARN::XFileCorrupted);
    const CBytes files[] = {{}, {0}, {254}, CBytes(400), {'$', 'd', 'a', 't', 'e'}, CBytes(400, 254), CBytes(400, 255)};
    for (const CBytes &bytes : files) {
        WriteBytes(folder / "file.fst", bytes);
        EXPECT_THROW(Open(folder / "file.fst"), NTARN::XFileCorrupted) << bytes.size();
    }
}

TEST(FstOpening, RefusesAFileThatHasLostItsHierarchy)
{
    const CTemporaryFolder folder;
    const CBytes bytes = Sample().Bytes();
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        WriteBytes(folder / "cut.fst", {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_THROW(Open(folder / "cut.fst"), NTARN::XFileCorrupted) << size;
    }
}

TEST(FstOpening, ReadsACutFileUpToItsLastWholeBlock)
{
    const CTemporaryFolder folder;
    const std::filesystem::path path = folder / "cut.fst";
    CFstMaker maker = Sample();
    maker.hasGeometry = false;
    maker.hierarchyKind = -1;
    WriteBytes(folder / "cut.fst.hier", maker.Hierarchy());
    const CBytes bytes = maker.Bytes();
    const std::size_t secondBlock =
        bytes.size() - 1 -
        (CFstMaker(Sample())
             .BlockContents(20, {20, 30, 40}, "10100" + RealLetters(2), {{{1, "z"}}, {}, {{2, "110"}}, {}})
             .size() +
         8);
    for (std::size_t size = 330; size <= bytes.size(); ++size) {
        WriteBytes(path, {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)});
        const CLogCatcher log;
        const ReaderPtr reader = Open(path);
        ReadAll(*reader);
        const long long end = size == bytes.size() ? 40 : size >= secondBlock ? 20 : 0;
        EXPECT_EQ(reader->GetEndTime(), end) << size;
        EXPECT_THAT(log.Messages(), ElementsAre("2 KERNEL Waveform file `" + path.string() +
                                                "' is cut off: it is read up to time " + std::to_string(end) + "."));
        EXPECT_THAT(AllEvents(*reader, 1), SizeIs(end == 40 ? 4 : end == 20 ? 3 : 0)) << size;
    }
}

TEST(FstOpening, TakesAHierarchyBesideTheFileAsFarAsItGoes)
{
    const CTemporaryFolder folder;
    CFstMaker maker = Sample();
    maker.hasGeometry = false;
    maker.hierarchyKind = -1;
    const CBytes hierarchy = maker.Hierarchy();
    WriteBytes(folder / "cut.fst", maker.Bytes());
    std::ptrdiff_t most = 0;
    for (std::size_t size = 1; size <= hierarchy.size(); ++size) {
        WriteBytes(folder / "cut.fst.hier", {hierarchy.begin(), hierarchy.begin() + static_cast<std::ptrdiff_t>(size)});
        const CLogCatcher log;
        const ReaderPtr reader = Open(folder / "cut.fst");
        const std::ptrdiff_t count = reader->RootHandlesEnd() - reader->RootHandlesBegin();
        EXPECT_GE(count, most);
        most = count;
        ReadAll(*reader);
        EXPECT_THAT(log.Messages(), SizeIs(1)) << size;
    }
    EXPECT_EQ(most, 4);
    WriteBytes(folder / "cut.fst.hier", {});
    EXPECT_THROW(Open(folder / "cut.fst"), NTARN::XFileCorrupted);
}

TEST(FstOpening, OfAWholeFileWithItsHierarchyBesideItWarnsOfNothing)
{
    const CTemporaryFolder folder;
    CFstMaker maker = Sample();
    maker.hierarchyKind = -1;
    WriteBytes(folder / "whole.fst", maker.Bytes());
    WriteBytes(folder / "whole.fst.hier", maker.Hierarchy());
    const CLogCatcher log;
    ReadAll(*Open(folder / "whole.fst"));
    EXPECT_THAT(log.Messages(), IsEmpty());
    // Of another design: not this file's.
    WriteBytes(folder / "whole.fst.hier", CFstMaker().Variable(5, "x", 9).Hierarchy());
    EXPECT_THROW(Open(folder / "whole.fst"), NTARN::XFileCorrupted);
}

TEST(FstOpening, PassesOverALastBlockThatIsLongerThanTheFile)
{
    const CTemporaryFolder folder;
    const CBytes times = CByteWriter().Number(40).Number(99).bytes;
    for (const std::uint64_t missing : {0, 1}) {
        CByteWriter file;
        file.Append(Sample().Bytes()).Byte(8).Number(8 + times.size() + missing).Append(times);
        WriteBytes(folder / "long.fst", file.bytes);
        const CLogCatcher log;
        EXPECT_EQ(Open(folder / "long.fst")->GetEndTime(), missing == 0 ? 99 : 40);
        EXPECT_EQ(log.Messages().size(), missing);
    }
}

TEST(FstOpening, PassesOverABlockThatItsWriterDidNotFinish)
{
    const CTemporaryFolder folder;
    WriteBytes(folder / "file.fst", Sample().Raw(255, CBytes(50)).Bytes());
    const CLogCatcher log;
    const ReaderPtr reader = Open(folder / "file.fst");
    EXPECT_THAT(AllEvents(*reader, 1), SizeIs(4));
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("cut off: it is read up to time 40.")));
}

TEST(FstOpening, OfAWrappedFileThatIsCutDoesNoHarm)
{
    const CTemporaryFolder folder;
    const CBytes bytes = Sample().Bytes(), packed = PackGzip(bytes);
    const CBytes file = CByteWriter().Byte(254).Number(packed.size() + 16).Number(bytes.size()).Append(packed).bytes;
    for (std::size_t size = 0; size + 20 < file.size(); ++size) {
        WriteBytes(folder / "cut.fst", {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_THROW(Open(folder / "cut.fst"), NTARN::XFileCorrupted) << size;
    }
}

TEST(FstDamage, OfAnyByteDoesNoHarmAndIsToldAtMostOnce)
{
    const CTemporaryFolder folder;
    for (const auto &[kind, packer] : Forms) {
        const CBytes whole = Sample(kind, static_cast<char>(packer)).Bytes();
        CBytes bytes = whole;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if (i >= 80 && i < 320)
                continue;  // texts of the header
            for (const int flip : {0x01, 0x40, 0x80, 0xFF}) {
                bytes[i] = static_cast<std::uint8_t>(whole[i] ^ flip);
                WriteBytes(folder / "flipped.fst", bytes);
                const CLogCatcher log;
                Survives(folder / "flipped.fst");
                EXPECT_LE(log.Messages().size(), 2U) << i << " " << flip;
            }
            bytes[i] = whole[i];
        }
    }
}

TEST(FstDamage, OfOneBlockLeavesTheOthersReadableAndIsToldOnce)
{
    const CTemporaryFolder folder;
    CFstMaker maker = Sample();
    CBytes broken = maker.BlockContents(40, {40, 50}, "xxxxx" + RealLetters(0), {{{0, "1"}}, {}, {}, {}});
    broken.back() = 99;  // more times than there are
    maker.Raw(8, broken).Block(60, {60, 70}, "", {{{1, "1"}}, {}, {}, {}});
    WriteBytes(folder / "broken.fst", maker.Bytes());
    const CLogCatcher log;
    const ReaderPtr reader = Open(folder / "broken.fst");
    EXPECT_THAT(log.Messages(), IsEmpty());
    EXPECT_EQ(AllEvents(*reader, 1).back(), (SEvent{70, 3}));
    ReadAll(*reader);
    EXPECT_THAT(log.Messages(), ElementsAre("2 KERNEL Waveform file `" + (folder / "broken.fst").string() +
                                            "' is damaged: value changes behind time 40 are left out."));
}

TEST(FstDamage, OfBlocksThatAreOutOfOrderKeepsTimesRising)
{
    const CTemporaryFolder folder;
    CFstMaker maker = Sample();
    maker.Block(5, {5, 50}, "", {{{0, "1"}, {1, "0"}}, {}, {}, {}});
    WriteBytes(folder / "back.fst", maker.Bytes());
    const CLogCatcher log;
    const std::vector<SEvent> events = AllEvents(*Open(folder / "back.fst"), 1);
    EXPECT_TRUE(std::ranges::is_sorted(events, {}, &SEvent::time));
    EXPECT_THAT(log.Messages(), SizeIs(1));
}

TEST(FstDamage, OfTheIndexOfAChainIsFound)
{
    // Tables for three stores, over 4 bytes of chains: each lies in another way.
    const CByteWriter tables[] = {
        CByteWriter().SignedVarint(1001),               // behind the chains
        CByteWriter().SignedVarint(3).SignedVarint(9),  // the second behind them
        CByteWriter().SignedVarint(-1),                 // the same as itself
        CByteWriter().SignedVarint(-9),                 // the same as a later one
        CByteWriter().SignedVarint(1),                  // the same as no one
        CByteWriter().SignedVarint(3).Varint(1ULL << 40),
        CByteWriter().SignedVarint(INT64_MIN + 1),
        CByteWriter().Varint(UINT64_MAX - 1),
        CByteWriter().Byte(0x80),
    };
    const CTemporaryFolder folder;
    for (const CByteWriter &table : tables) {
        CFstMaker maker;
        maker.Variable(5, "a", 1).Variable(5, "b", 1).Variable(5, "c", 1);
        CByteWriter block;
        block.Number(0).Number(9).Number(1).Varint(3).Varint(3).Varint(3).Letters("xxx").Varint(3).Byte('Z');
        block.Append({0, 2, 0, 2}).Append(table.bytes).Number(table.bytes.size());
        block.Byte(0).Number(1).Number(1).Number(1);
        WriteBytes(folder / "lie.fst", maker.Raw(8, block.bytes).Bytes());
        const CLogCatcher log;
        EXPECT_TRUE(Survives(folder / "lie.fst"));
        EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("damaged"))) << (&table - tables);
    }
}

TEST(FstDamage, OfSizesThatAreClaimedTakesNoMemory)
{
    const CTemporaryFolder folder;
    const CLogCatcher log;
    const std::uint64_t huge[] = {1ULL << 31, 1ULL << 40, 1ULL << 63, UINT64_MAX};
    for (const std::uint64_t size : huge) {
        for (int place = 0; place < 8; ++place) {
            const auto or_ = [&](int at, std::uint64_t honest) { return place == at ? size : honest; };
            CByteWriter block;
            block.Number(0).Number(9).Number(or_(0, 1)).Varint(or_(1, 1)).Varint(or_(2, 1)).Varint(or_(3, 1));
            block.Letters("x").Varint(1).Byte('Z').Varint(or_(4, 0)).Byte(2).SignedVarint(3).Number(or_(5, 1));
            block.Byte(0).Number(or_(6, 1)).Number(1).Number(or_(7, 1));
            CFstMaker maker;
            WriteBytes(folder / "claim.fst", maker.Variable(5, "a", 1).Raw(8, block.bytes).Bytes());
            EXPECT_TRUE(Survives(folder / "claim.fst")) << place;
        }
    }
}

TEST(FstDamage, OfWidthsDoesNotMakeMoreHandlesThanThereAre)
{
    const CTemporaryFolder folder;
    CFstMaker maker;
    maker.Variable(5, "a", 1ULL << 40);
    WriteBytes(folder / "wide.fst", maker.Bytes());
    EXPECT_FALSE(Survives(folder / "wide.fst"));
}

TEST(FstDamage, OfNamesIsRefusedBeforePathsFillTheMemory)
{
    const CTemporaryFolder folder;
    CFstMaker maker;
    for (int i = 0; i < 70; ++i)
        maker.Scope(std::string(1000, 'a'));
    WriteBytes(folder / "deep.fst", maker.Bytes());
    EXPECT_FALSE(Survives(folder / "deep.fst"));
    CFstMaker deep;
    for (int i = 0; i < 30000; ++i)
        deep.Scope("a");
    WriteBytes(folder / "deep.fst", deep.Variable(5, "b", 1).Bytes());
    EXPECT_EQ(Open(folder / "deep.fst")->GetName(1).size(), 60001U);
}

}  // namespace
