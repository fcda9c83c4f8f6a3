// Files that are cut off, damaged or lie.
#include <gmock/gmock.h>

#include "logcatcher.h"
#include "platform/fst/fstvcd.h"
#include "platform/ghw/ghwmaker.h"
#include "platform/ghw/ghwshow.h"

namespace {

using namespace ghwtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Asks for everything that there is, of wide parts for the first ones and the last.
void ReadAll(NTARN::IDatabaseReader &reader, int handle)
{
    reader.GetName(handle);
    reader.GetFullName(handle, false);
    reader.GetType(handle);
    AllEvents(reader, handle);
    const NTARN::HSignalRange children = reader.GetChildRange(handle);
    for (int child = children.first; child >= 0 && child <= std::min(children.first + 20, children.last); ++child)
        ReadAll(reader, child);
    if (children.last > children.first + 20)
        ReadAll(reader, children.last);
}

void ReadAll(NTARN::IDatabaseReader &reader)
{
    for (const int *root = reader.RootHandlesBegin(); root != reader.RootHandlesEnd(); ++root)
        ReadAll(reader, *root);
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

bool Survives(const CTemporaryFolder &folder, const CBytes &bytes)
{
    WriteBytes(folder / "bad.ghw", bytes);
    return Survives(folder / "bad.ghw");
}

bool Survives(const CGhwMaker &maker)
{
    return Survives(CTemporaryFolder(), maker.Bytes());
}

CBytes FirstOf(const CBytes &bytes, std::size_t size)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
}

TEST(GhwOpening, TellsAMissingFileFromOneThatIsNoDump)
{
    const CTemporaryFolder folder;
    EXPECT_THROW(Open(folder / "none.ghw"), NTARN::XFileDoesNotExist);
    EXPECT_THROW(Open(folder / ""), NTARN::XFileCorrupted);
    EXPECT_FALSE(Survives(folder, {}));
    const CBytes bytes = Sample().Bytes();
    // Of the header: the length, the versions, the byte order and the size of a word.
    for (const std::size_t place : {9U, 10U, 11U, 12U, 13U}) {
        CBytes changed = bytes;
        changed[place] = 3;
        EXPECT_FALSE(Survives(folder, changed)) << place;
    }
}

TEST(GhwOpening, RefusesAFileThatIsCutInFrontOfItsChanges)
{
    const CTemporaryFolder folder;
    const CBytes head = Sample().Head();
    for (std::size_t size = 0; size < head.size(); ++size)
        EXPECT_FALSE(Survives(folder, FirstOf(head, size))) << size;
    const CLogCatcher log;
    EXPECT_TRUE(Survives(folder, head));
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("cut off: it is read up to time 0.")));
}

TEST(GhwOpening, ReadsACutFileUpToTheLastTimeThatIsWhole)
{
    const CTemporaryFolder folder;
    const CGhwMaker maker = Sample();
    const CBytes bytes = maker.Bytes(), head = maker.Head();
    CGhwMaker shorter = Sample();
    shorter.changes.bytes.clear();
    const std::size_t snapshot = head.size() + 4 + 4 + 8 + 3 + 8;  // its values
    const std::size_t ten = snapshot + 4 + 4 + 8 + 1 + 1 + 4 + 1;  // the list at 10
    const std::size_t thirty = ten + 1 + 1 + 1 + 1 + 8 + 1;        // the list at 30
    for (std::size_t size = head.size(); size < bytes.size(); ++size) {
        WriteBytes(folder / "cut.ghw", FirstOf(bytes, size));
        const CLogCatcher log;
        const ReaderPtr reader = Open(folder / "cut.ghw");
        ReadAll(*reader);
        const long long end = size >= thirty ? 30 : size >= ten ? 10 : 0;
        EXPECT_EQ(reader->GetEndTime(), end) << size;
        EXPECT_EQ(Events(*reader, "tb.a"), size < snapshot ? "" : size < ten ? "0:0" : "0:0 10:1") << size;
        EXPECT_EQ(Events(*reader, "tb.r"), size < snapshot ? "" : size < thirty ? "0:1.5" : "0:1.5 30:-2") << size;
        EXPECT_THAT(log.Messages(), ElementsAre("2 KERNEL Waveform file `" + (folder / "cut.ghw").string() +
                                                "' is cut off: it is read up to time " + std::to_string(end) + "."));
    }
}

TEST(GhwOpening, PassesOverWhatStandsBehindTheEnd)
{
    const CTemporaryFolder folder;
    CBytes bytes = Sample().Bytes();
    bytes.insert(bytes.end(), 100, 0xFF);
    const CLogCatcher log;
    EXPECT_TRUE(Survives(folder, bytes));
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(GhwDamage, OfTheChangesLeavesWhatStandsInFront)
{
    const CBytes faults[] = {
        {9, 1, 0},                                         // no such element
        {0xFF, 0xFF, 0xFF, 0xFF, 0x7F},                    // a number of more than 32 bits
        {2, 1, 1, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F, 0},  // an integer of more than 32 bits
    };
    for (const CBytes &fault : faults) {
        CGhwMaker maker = Sample();
        maker.Cycles(30, {{0, {1, 0}}, {5, fault}});
        const CTemporaryFolder folder;
        WriteBytes(folder / "bad.ghw", maker.Bytes());
        const CLogCatcher log;
        const ReaderPtr reader = Open(folder / "bad.ghw");
        EXPECT_EQ(Events(*reader, "tb.a"), "0:0 10:1 30:0");
        EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("is damaged: it is read up to time 30.")));
    }
}

TEST(GhwDamage, OfTimesNeverMakesThemFall)
{
    const struct {
        std::uint64_t begin;
        std::int64_t step;
    } rows[] = {{29, 1}, {UINT64_MAX, 1}, {1ULL << 63, 0}, {30, -2}, {30, INT64_MIN}, {30, INT64_MAX}};
    for (const auto &row : rows) {
        CGhwMaker maker = Sample();
        maker.Cycles(row.begin, {{0, {}}, {row.step, {1, 0}}});
        const CTemporaryFolder folder;
        WriteBytes(folder / "bad.ghw", maker.Bytes());
        const CLogCatcher log;
        const ReaderPtr reader = Open(folder / "bad.ghw");
        EXPECT_EQ(Events(*reader, "tb.a"), "0:0 10:1") << row.begin << " " << row.step;
        EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("is damaged: it is read up to time 30.")));
    }
}

TEST(GhwDamage, OfAnyByteDoesNoHarmAndIsToldAtMostOnce)
{
    const CTemporaryFolder folder;
    for (const bool isBigEndian : {false, true}) {
        const CBytes whole = Sample(isBigEndian).Bytes();
        CBytes bytes = whole;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            for (const int flip : {0x01, 0x02, 0x10, 0x40, 0x80, 0xFF}) {
                bytes[i] = static_cast<std::uint8_t>(whole[i] ^ flip);
                const CLogCatcher log;
                Survives(folder, bytes);
                EXPECT_LE(log.Messages().size(), 1U) << i << " " << flip;
            }
            bytes[i] = whole[i];
        }
    }
}

TEST(GhwDamage, OfAFileOfGhdlDoesNoHarmWhereverItIs)
{
    const CTemporaryFolder folder;
    const CBytes whole = ReadBytes(fsttest::DataFile("ghw_types.ghdl.ghw"));
    const CLogCatcher log;
    CBytes bytes = whole;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(whole[i] ^ (i % 2 == 0 ? 0x01 : 0x81));
        Survives(folder, bytes);
        bytes[i] = whole[i];
        if (i % 4 == 0)
            Survives(folder, FirstOf(whole, i));
    }
}

TEST(GhwDamage, OfTypesIsRefused)
{
    const std::pair<const char *, std::function<void(CGhwMaker &)>> faults[] = {
        {"an unknown kind", [](CGhwMaker &maker) { maker.Type(30, "access"); }},
        {"no literals", [](CGhwMaker &maker) { maker.Enumeration("none", {}); }},
        {"a literal without a name",
         [](CGhwMaker &maker) {
             maker.Type(Bit, "bit", {1, 0});
         }},
        {"a literal that is no string",
         [](CGhwMaker &maker) {
             maker.Type(Bit, "bit", {1, 99});
         }},
        {"more literals than bytes",
         [](CGhwMaker &maker) {
             maker.Type(Bit, "bit", {0xFF, 0xFF, 0x7F});
         }},
        {"an array of itself", [](CGhwMaker &maker) { maker.ArrayOf("self", maker.typeCount + 1, {1}); }},
        {"an array without a dimension", [](CGhwMaker &maker) { maker.ArrayOf("flat", 1, {}); }},
        {"a record of type 0",
         [](CGhwMaker &maker) {
             maker.RecordOf("zero", {{"a", 0}});
         }},
        {"a range of another kind",
         [](CGhwMaker &maker) {
             maker.Subtype(SubScalar, "odd", 2, {Bit, 0, 1});
         }},
        {"a range of a record",
         [](CGhwMaker &maker) {
             maker.Subtype(SubScalar, "odd", 4, {Bit, 0, 1});
         }},
        {"a record as an array", [](CGhwMaker &maker) { maker.Subtype(SubArray, "odd", 4); }},
        {"bounds beyond 32 bits",
         [](CGhwMaker &maker) { maker.Subtype(SubScalar, "odd", 2, Range(Int, 0, 1LL << 31)); }},
        {"an index that is real",
         [](CGhwMaker &maker) {
             maker.Subtype(SubArray, "odd", maker.ArrayOf("real", 1, {3}), Joined({{Real}, CBytes(16)}));
         }},
        {"a signal whose range is open",
         [](CGhwMaker &maker) { maker.AddSignal("open", maker.ArrayOf("bits", 1, {2}), {1}); }},
        {"an element that is not there", [](CGhwMaker &maker) { maker.AddSignal("far", 1, {9}).elementCount = 4; }},
        {"element 0", [](CGhwMaker &maker) { maker.AddSignal("none", 1, {0}); }},
        {"an element of two types", [](CGhwMaker &maker) { maker.AddSignal("twice", 2, {1}); }},
        {"a scope that ends twice", [](CGhwMaker &maker) { maker.EndScope(); }},
        {"an unknown scope", [](CGhwMaker &maker) { maker.Scope(22, "x"); }},
        {"a generate statement over a record", [](CGhwMaker &maker) { maker.ForScope("x", 4, {0}); }},
        {"a position without a literal", [](CGhwMaker &maker) { maker.ForScope("x", 1, {2}); }},
    };
    EXPECT_TRUE(Survives(Sample()));
    for (const auto &[what, fault] : faults) {
        CGhwMaker maker = Sample();
        fault(maker);
        EXPECT_FALSE(Survives(maker)) << what;
    }
}

// Types of types of types, each twice as large as the one before.
CGhwMaker Doubling(int levels, std::uint32_t first(CGhwMaker &))
{
    CGhwMaker maker;
    std::uint32_t type = first(maker);
    for (int i = 0; i < levels; ++i)
        type = maker.RecordOf("r", {{"a", type}, {"b", type}});
    maker.AddSignal("s", type, {});
    return maker;
}

TEST(GhwDamage, OfSizesThatAreClaimedTakesNoMemory)
{
    const auto bit = [](CGhwMaker &maker) { return maker.Enumeration("bit", {"'0'", "'1'"}); };
    EXPECT_FALSE(Survives(Doubling(40, bit)));
    EXPECT_FALSE(Survives(Doubling(100, bit)));
    // Without a scalar nothing in the file stands for what is asked for.
    const auto empty = [](CGhwMaker &maker) { return maker.RecordOf("none", {}); };
    EXPECT_TRUE(Survives(Doubling(8, empty)));
    EXPECT_TRUE(Survives(Doubling(30, empty)));
    EXPECT_TRUE(Survives(Doubling(62, empty)));
    EXPECT_FALSE(Survives(Doubling(64, empty)));

    for (const std::int64_t right : {1LL << 20, 1LL << 30}) {
        CGhwMaker maker;
        const std::uint32_t integer = maker.Type(Int, "integer");
        const std::uint32_t nulls = maker.ArrayOf("nulls", maker.RecordOf("none", {}), {integer});
        maker.AddSignal("s", maker.Subtype(SubArray, "", nulls, Range(Int, 1, right)), {});
        EXPECT_EQ(Survives(maker), right == 1LL << 20) << right;
    }
    for (const std::uint64_t size : {1ULL << 20, 0xFFFFFFFFULL}) {
        for (const std::size_t place : {4U, 8U}) {  // how many strings, and of how many letters
            CBytes bytes = Sample().Bytes();
            const CBytes word = CGhwMaker().Word(size);
            std::ranges::copy(word, bytes.begin() + static_cast<std::ptrdiff_t>(16 + 4 + place));
            EXPECT_EQ(Survives(CTemporaryFolder(), bytes), place == 8U);
        }
        CGhwMaker maker = Sample();
        maker.elementCount = static_cast<std::uint32_t>(size);
        EXPECT_FALSE(Survives(maker));
    }
}

TEST(GhwDamage, OfStringsThatGrowFromOneToTheNextIsRefused)
{
    CGhwMaker maker = Sample();
    const std::string letters(20000, 'x');
    for (int i = 0; i < 2000; ++i) {
        maker.strings.Letters(i == 0 ? letters : "y");
        maker.strings.Byte(0x80 | (20000 & 31)).Byte(0x80 | (20000 >> 5 & 31)).Byte(20000 >> 10);
        ++maker.stringCount;
    }
    EXPECT_FALSE(Survives(maker));
}

TEST(GhwDamage, OfNamesLeavesOutThoseThatAreTooLong)
{
    CGhwMaker maker = Sample();
    for (int i = 0; i < 5000; ++i)
        maker.Scope(Block, "x");
    maker.AddSignal("deep", 1, {1});
    const CTemporaryFolder folder;
    WriteBytes(folder / "deep.ghw", maker.Bytes());
    const CLogCatcher log;
    const ReaderPtr reader = Open(folder / "deep.ghw");
    EXPECT_EQ(reader->RootHandlesEnd() - reader->RootHandlesBegin(), 3);
    EXPECT_EQ(Events(*reader, "tb.a"), "0:0 10:1");
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("names or types are too long are left out (1).")));
}

TEST(GhwDamage, OfNamesLeavesOutThoseThatWouldFillTheMemory)
{
    CGhwMaker maker = Sample();
    maker.Scope(Block, std::string(4000, 'n'));
    const std::uint32_t name = maker.String("x");
    constexpr int Count = 20000;
    for (int i = 0; i < Count; ++i)
        maker.scopes.Byte(Signal).Varint(name).Varint(1).Varint(1);
    const CTemporaryFolder folder;
    WriteBytes(folder / "long.ghw", maker.Bytes());
    const CLogCatcher log;
    const ReaderPtr reader = Open(folder / "long.ghw");
    const std::ptrdiff_t kept = reader->RootHandlesEnd() - reader->RootHandlesBegin();
    EXPECT_GT(kept, 5000);
    EXPECT_LT(kept, 10000);
    EXPECT_EQ(reader->GetName(static_cast<int>(kept)).size(), 4002U);
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("left out (" + std::to_string(Count + 3 - kept) + ").")));
}

TEST(GhwDamage, OfAFileThatChangesWhileItIsOpenIsTold)
{
    const CTemporaryFolder folder;
    CGhwMaker maker = Sample();
    for (std::uint64_t time = 30; time < 4000; ++time)
        maker.Cycles(time, {{0, {1, 1}}});
    WriteBytes(folder / "made.ghw", maker.Bytes());
    const CLogCatcher log;
    const ReaderPtr reader = Open(folder / "made.ghw");
    WriteBytes(folder / "made.ghw", maker.Head());
    ReadAll(*reader);
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("has changed since it was opened")));
}

}  // namespace
