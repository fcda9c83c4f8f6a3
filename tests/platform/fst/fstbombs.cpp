// Small files that stand for much: each must be answered soon and in little memory.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <optional>

#include "logcatcher.h"
#include "platform/fst/fstmaker.h"

namespace {

using namespace fsttest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A file, opened if it can be, and what was said of it.
class CBomb {
public:
    explicit CBomb(const CFstMaker &maker) : CBomb(maker.Bytes()) {}
    explicit CBomb(const CBytes &bytes)
    {
        WriteBytes(m_folder / "bomb.fst", bytes);
        try {
            m_reader.reset(NTARN::IDatabaseReader::create((m_folder / "bomb.fst").c_str(), false));
        } catch (const NTARN::XFileCorrupted &) {
        }
    }

    bool IsOpen() const { return m_reader != nullptr; }
    NTARN::IDatabaseReader *operator->() const { return m_reader.get(); }
    std::size_t EventCount(int handle) const { return AllEvents(*m_reader, handle).size(); }
    std::vector<std::string> Messages() const { return m_log.Messages(); }

private:
    CLogCatcher m_log;
    CTemporaryFolder m_folder;
    ReaderPtr m_reader;
};

CBytes Repeated(const CBytes &bytes, std::size_t count)
{
    CBytes repeated(bytes.size() * count);
    std::memcpy(repeated.data(), bytes.data(), bytes.size());
    for (std::size_t done = bytes.size(); done < repeated.size(); done *= 2)
        std::memcpy(repeated.data() + done, repeated.data(), std::min(done, repeated.size() - done));
    return repeated;
}

// A chain as a block holds it, and the index that says it is the first store's alone.
CBytes Chain(const CBytes &changes)
{
    return CByteWriter().Varint(changes.size()).Append(PackZlib(changes)).bytes;
}
const CBytes FirstStore = CByteWriter().SignedVarint(3).bytes;

double SecondsSince(std::clock_t begin)
{
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

constexpr const char *TooMuch = "claims more than a file of its size can hold";

TEST(FstBomb, OfAWideSignalLeavesItOut)
{
    for (const std::uint64_t width : {(1ULL << 24) + 1, (1ULL << 31) - 3, 0xFFFFFFFEULL}) {
        CFstMaker maker;
        const CBomb bomb(maker.Variable(maker.Wire, "v", width).Variable(maker.Wire, "a", 1));
        ASSERT_TRUE(bomb.IsOpen());
        EXPECT_EQ(bomb->RootHandlesEnd() - bomb->RootHandlesBegin(), 1);
        EXPECT_EQ(bomb->GetName(1), "a");
        EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr("signals of more than 16777216 bits are left out (1)")));
    }
    CFstMaker maker;
    maker.Variable(maker.Wire, "v", 1ULL << 24).Raw(77, CBytes(2 << 20));  // as wide as a file of this size may say
    EXPECT_EQ(CBomb(maker)->GetChildRange(1).last, 1 + (1 << 24));
}

TEST(FstBomb, OfManyWideSignalsIsRefused)
{
    for (const int count : {3, 5}) {
        CFstMaker maker;
        maker.Variable(maker.Wire, "v", 1 << 20);
        for (int i = 1; i < count; ++i)
            maker.Variable(maker.Wire, "v", 1 << 20, 1);
        const CBomb bomb(maker);
        EXPECT_EQ(bomb.IsOpen(), count == 3);
        EXPECT_THAT(bomb.Messages(), count == 3 ? testing::Matcher<std::vector<std::string>>(IsEmpty())
                                                : ElementsAre(HasSubstr("claims more bits than a file of its size")));
    }
}

TEST(FstBomb, OfManyNamesForOneSignalIsRefused)
{
    for (const std::size_t count : {500'000, 600'000}) {
        CFstMaker maker;
        maker.Variable(maker.Wire, "", 1).RawHierarchy(Repeated({16, 0, 0, 1, 1}, count));
        const CBomb bomb(maker);
        EXPECT_EQ(bomb.IsOpen(), count == 500'000);
        if (!bomb.IsOpen()) {
            EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr("more scopes and signals")));
        }
    }
}

TEST(FstBomb, OfManyScopesIsRefused)
{
    CFstMaker maker;
    EXPECT_FALSE(CBomb(maker.RawHierarchy(Repeated({254, 0, 'a', 0, 0, 255}, 600'000))).IsOpen());
}

TEST(FstBomb, OfLongPathsIsRefused)
{
    for (const std::size_t count : {200, 300}) {
        CFstMaker maker;
        maker.RawHierarchy(Repeated({254, 0, 'a', 0, 0}, 30000)).Variable(maker.Wire, "", 1);
        maker.RawHierarchy(Repeated({16, 0, 0, 1, 1}, count));
        EXPECT_EQ(CBomb(maker).IsOpen(), count == 200);
    }
}

TEST(FstBomb, OfScopesWithoutANameInsideEachOtherIsNotClimbed)
{
    CFstMaker maker;
    maker.Scope("a").RawHierarchy(Repeated({254, 0, 0, 0}, 300'000)).Variable(maker.Wire, "v", 1);
    maker.RawHierarchy(Repeated({16, 0, 'v', 0, 1, 1}, 20'000));
    const std::clock_t begin = std::clock();
    const CBomb bomb(maker);
    for (int handle = 1; handle <= 20'000; ++handle)
        ASSERT_EQ(bomb->GetName(handle), "a.v");
    EXPECT_LT(SecondsSince(begin), 4);
}

TEST(FstBomb, OfAHierarchyThatUnpacksToMuchIsRefused)
{
    for (const int kind : {4, 6, 7}) {
        for (const std::size_t size : {10, 40}) {
            CFstMaker maker;
            maker.hierarchyKind = kind;
            maker.RawHierarchy(CBytes(size << 20, 253));
            EXPECT_EQ(CBomb(maker).IsOpen(), size == 10) << kind;
        }
    }
}

TEST(FstBomb, OfAGeometryThatUnpacksToMuchIsRefused)
{
    for (const std::size_t excess : {2, 1000}) {
        CFstMaker maker;
        maker.geometryExcess = excess;
        EXPECT_EQ(CBomb(maker.Variable(maker.Wire, "a", 1)).IsOpen(), excess == 2);
    }
}

TEST(FstBomb, OfAFrameThatUnpacksToMuchLeavesItOut)
{
    for (const std::size_t size : {16, 30}) {
        CFstMaker maker;
        maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1);
        const CBomb bomb(maker.Block(0, {1}, "1" + std::string(size << 20, 'x'), {{}, {{0, "1"}}}));
        EXPECT_EQ(bomb.EventCount(1), size == 16 ? 1U : 0U);
        EXPECT_EQ(bomb.EventCount(2), size == 16 ? 2U : 1U);
        EXPECT_EQ(bomb.Messages().size(), size == 16 ? 0U : 1U);
    }
}

TEST(FstBomb, OfManyTimesLeavesTheirBlockOut)
{
    for (const std::size_t count : {4'000'000, 7'000'000}) {
        CFstMaker maker;
        maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1);
        const CBytes block = maker.RawBlockContents(0, 0, CBytes(count), count, "", Chain({2}), FirstStore);
        const CBomb bomb(maker.Raw(8, block).Raw(8, block));
        EXPECT_EQ(bomb.EventCount(1), count == 4'000'000 ? 2U : 1U);
        EXPECT_EQ(bomb.EventCount(2), 0U);
        if (count == 7'000'000) {
            EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr(TooMuch)));
        }
    }
}

TEST(FstBomb, OfManyChangesLeavesTheLastOnesOut)
{
    CFstMaker maker;
    maker.Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1);
    const CBytes chain = Chain(Repeated({0, 2}, 7'000'000));
    maker.Raw(8, maker.RawBlockContents(0, 0, {0}, 1, "", chain, FirstStore)).Block(1, {1}, "", {{}, {{0, "1"}}});
    const CBomb bomb(maker);
    const NTARN::KEventIterator last = --bomb->EventsEnd(1);
    EXPECT_GT(last.event() - bomb->EventsFrom(1, 0).event(), 10'000'000);
    EXPECT_LT(last.event() - bomb->EventsFrom(1, 0).event(), 11'000'000);
    EXPECT_EQ(bomb.EventCount(2), 0U);  // nothing is left for it
    EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr(TooMuch)));
}

// A wide signal that changes all its bits, a few bytes each time.
TEST(FstBomb, OfAWideSignalThatChangesLeavesTheLastChangesOut)
{
    constexpr std::size_t Width = 1 << 22;
    CFstMaker maker;
    maker.Variable(maker.Wire, "v", Width);
    CBytes value(1 + Width / 8), changes;
    for (int i = 0; i < 8; ++i) {
        std::fill(value.begin() + 1, value.end(), static_cast<std::uint8_t>(i % 2 == 0 ? 0 : 255));
        changes.insert(changes.end(), value.begin(), value.end());
    }
    const CBomb bomb(maker.Raw(8, maker.RawBlockContents(0, 0, {0}, 1, "", Chain(changes), FirstStore)));
    EXPECT_EQ(bomb.EventCount(bomb->GetChildRange(1).last), 2U);
    EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr(TooMuch)));
}

TEST(FstBomb, OfALongChainLeavesItOut)
{
    for (const std::size_t changes : {500, 1500}) {
        CFstMaker maker;
        maker.Variable(maker.Wire, "v", 1 << 18);
        const CBytes chain = Chain(CBytes(changes * (1 + (1 << 15))));
        const CBomb bomb(maker.Raw(8, maker.RawBlockContents(0, 0, {0}, 1, "", chain, FirstStore)));
        EXPECT_EQ(bomb.EventCount(bomb->GetChildRange(1).first), changes == 500 ? 1U : 0U);
        EXPECT_EQ(bomb.Messages().size(), changes == 500 ? 0U : 1U);
    }
}

// Of the signals that share a chain each has a value of its own in front of it.
TEST(FstBomb, OfALongChainThatManySignalsShareLeavesThemOut)
{
    constexpr int Stores = 15;
    constexpr std::size_t Width = 1 << 18;
    CFstMaker maker;
    std::string frame(Stores * Width, '0');
    CByteWriter index;
    for (int i = 0; i < Stores; ++i) {
        maker.Variable(maker.Wire, "v", Width);
        frame[static_cast<std::size_t>(i) * Width + static_cast<std::size_t>(i)] = '1';
        index.SignedVarint(i == 0 ? 3 : i == 1 ? -1 : 1);
    }
    const CBytes chain = Chain(CBytes(1000 * (1 + Width / 8)));
    const CBomb bomb(maker.Raw(8, maker.RawBlockContents(0, 1, {1}, 1, frame, chain, index.bytes)));
    EXPECT_EQ(bomb.EventCount(bomb->GetChildRange(1).first), 2U);
    for (int handle = 2; handle <= Stores; ++handle)
        bomb.EventCount(bomb->GetChildRange(handle).first);
    EXPECT_EQ(bomb.EventCount(bomb->GetChildRange(Stores).first), 1U);
    EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr(TooMuch)));
}

TEST(FstBomb, OfManyBlocksAndManySignalsDoesNotAskEachOfTheOnesForEachOfTheOthers)
{
    constexpr int Stores = 100'000;
    CFstMaker maker;
    for (int i = 0; i < Stores; ++i)
        maker.Variable(maker.Wire, "", 1);
    const CBytes block = maker.BlockContents(0, {0}, "", {{{0, "1"}}});
    for (int i = 0; i < 5'000; ++i)
        maker.Raw(8, block);
    const CBomb bomb(maker);
    const std::clock_t begin = std::clock();
    for (int handle = 1; handle <= Stores; ++handle)
        bomb->EventsEnd(handle);
    EXPECT_LT(SecondsSince(begin), 4);
    EXPECT_EQ(bomb.EventCount(1), 5'000U);
}

CBytes Wrapped(const CBytes &bytes, std::uint64_t size)
{
    const CBytes packed = PackGzip(bytes);
    return CByteWriter().Byte(254).Number(packed.size() + 16).Number(size).Append(packed).bytes;
}

TEST(FstBomb, OfAWrapperIsRefusedWhereMoreIsInItThanItSays)
{
    CFstMaker maker;
    const CBytes bytes = maker.Variable(maker.Wire, "a", 1).Bytes();
    EXPECT_TRUE(CBomb(Wrapped(bytes, bytes.size())).IsOpen());
    EXPECT_FALSE(CBomb(Wrapped(bytes, bytes.size() - 1)).IsOpen());
}

TEST(FstBomb, OfAWrapperAroundMuchIsRefused)
{
    for (const std::size_t size : {10, 40}) {
        CFstMaker maker;
        const CBytes bytes = maker.Variable(maker.Wire, "a", 1).Raw(77, CBytes(size << 20)).Bytes();
        const CBomb bomb(Wrapped(bytes, bytes.size()));
        EXPECT_EQ(bomb.IsOpen(), size == 10);
        if (!bomb.IsOpen()) {
            EXPECT_THAT(bomb.Messages(), ElementsAre(HasSubstr("more packed bytes")));
        }
    }
}

}  // namespace
