#include "platform/fst/fstchain.h"

#include <gtest/gtest.h>

#include "platform/fst/fstmaker.h"

namespace {

using namespace fsttest;

// Of a bus of 8 bits; a change is the times to step and the packed bits.
TEST(FstChain, EndsWhereItsTimesCannotBeCounted)
{
    constexpr std::uint64_t Furthest = (1ULL << 63) - 1;  // one step
    const CByteWriter bytes = CByteWriter().Varint(Furthest << 1).Byte(1).Varint(Furthest << 1).Byte(2);
    NTARN::SFstStore store;
    store.kind = NTARN::SFstStore::EKind::Bits;
    store.size = 8;
    for (const std::uint64_t step : {1, 2}) {
        const CBytes chained = CByteWriter(bytes).Varint(step << 1).Byte(3).bytes;
        NTARN::CFstChain chain(chained, store);
        std::uint64_t time = 0;
        EXPECT_EQ(chain.Next(time).bytes[0], 1);
        EXPECT_EQ(time, Furthest);
        EXPECT_EQ(chain.Next(time).bytes[0], 2);
        EXPECT_EQ(time, UINT64_MAX - 1);
        if (step == 1) {
            EXPECT_EQ(chain.Next(time).bytes[0], 3);
            EXPECT_EQ(time, UINT64_MAX);
        } else {
            EXPECT_THROW(chain.Next(time), NTARN::XFstDamage);
        }
    }
}

}  // namespace
