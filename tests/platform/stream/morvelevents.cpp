#include "platform/stream/morvelevents.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

using Morvel::CBlockCache;
using Morvel::CScalarEvents;
using Morvel::SBlock;
using Morvel::SEventPlace;

constexpr std::uint64_t MostBlocks = 4096;

void Fill(CBlockCache &cache, std::uint64_t first)
{
    for (std::uint64_t number = first; number < first + MostBlocks; ++number)
        cache.Keep(number, SBlock{{7}, "foreign"});
}

TEST(BlockCache, StartsAnewWhenItIsFull)
{
    CBlockCache cache;
    Fill(cache, 0);
    EXPECT_NE(cache.Find(0), nullptr);
    EXPECT_NE(cache.Find(MostBlocks - 1), nullptr);
    EXPECT_EQ(cache.Keep(MostBlocks, SBlock{{9}, "last"}).values, "last");
    EXPECT_EQ(cache.Find(0), nullptr);
    EXPECT_EQ(cache.Find(MostBlocks - 1), nullptr);
    ASSERT_NE(cache.Find(MostBlocks), nullptr);
    EXPECT_EQ(cache.Find(MostBlocks)->times, std::vector<long long>{9});
}

std::string Packed(const std::string &bytes)
{
    std::string packed(compressBound(bytes.size()), '\0');
    uLongf size = packed.size();
    compress(reinterpret_cast<Bytef *>(packed.data()), &size, reinterpret_cast<const Bytef *>(bytes.data()),
             bytes.size());
    packed.resize(size);
    return packed;
}

TEST(ScalarEvents, AreUnpackedAgainWhenOthersHaveTakenTheirPlace)
{
    const auto cache = std::make_shared<CBlockCache>();
    CScalarEvents events(cache, Morvel::EBlockForm::Old, 1, 2);
    ASSERT_TRUE(events.AddBlock(Packed("\5ab"), 10));  // 5 ticks later, then a value of one byte each
    for (int round = 0; round < 2; ++round) {
        SEventPlace place{};
        ASSERT_TRUE(events.FindLast(15, place));
        EXPECT_EQ(place.time, 15);
        unsigned char value = 0;
        events.CopyValue(place, &value);
        EXPECT_EQ(value, 'b');
        Fill(*cache, cache->Reserve(MostBlocks));
    }
}

}  // namespace
